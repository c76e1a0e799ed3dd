#include "foundation/FFTransform.h"

#include <cassert>
#include <cmath>
#include <new>

FFTransform::FFTransform(const float *y, int count)
{
    Transform(y, count);
}

FFTransform::~FFTransform()
{
    delete[] m_spectrum;
}

double FFTransform::GetMod(int i) const
{
    if (!m_spectrum || i < 0 || i >= m_numTransformed)
        return 0.0;
    return m_spectrum[i].Mod();
}

void FFTransform::Transform(const float *y, int count)
{
    m_numCurvePts = count;
    if (count <= 0 || !y)
        return;
    int n = 1;
    while (n <= count / 2)
        n *= 2;
    Complex *term = new (std::nothrow) Complex[n];
    if (!term)
        return; // no room: the spectrum stays empty
    m_spectrum = term;
    m_numTransformed = n;

    // Removing the mean level of the two ends keeps the window from smearing a constant
    // offset over the low bins.
    const double offset = (static_cast<double>(y[0]) + static_cast<double>(y[n - 1])) * 0.5;
    double windowSum = 0.0;
    if (n == 1) {
        // The window is undefined over one point; that point minus the offset is 0 anyway.
        windowSum = 1.0;
    } else {
        const double toPhase = 2.0 / (n - 1);
        for (int i = 0; i < n; ++i) {
            const float w = static_cast<float>(std::cos((i * toPhase - 1.0) * 3.14159) * 0.46 + 0.54);
            windowSum += w;
            term[i] = Complex((y[i] - offset) * w, 0.0);
        }
    }

    if (n > 1) {
        // Bit-reversal reordering by a reversed counter j.
        int j = 0;
        for (int i = 0; i < n; ++i) {
            if (i < j) {
                const Complex t = term[i];
                term[i] = term[j];
                term[j] = t;
            }
            int m = n / 2;
            while (m <= j) {
                j -= m;
                m = (m + 1) / 2;
            }
            j += m;
        }
    }

    // Butterflies over rising half lengths; one twiddle per k, hoisted out of the
    // inner walk.
    for (int le = 1; le < n; le *= 2) {
        const int step = 2 * le;
        for (int k = 0; k < le; ++k) {
            const double x = k * -3.141592654 / le;
            const Complex factor(std::cos(x), std::sin(x));
            for (int i = k; i + le < n; i += step) {
                const Complex t = factor * term[i + le];
                term[i + le] = term[i] - t;
                term[i] = term[i] + t;
            }
        }
    }

    const double gain = 2.0 / windowSum;
    for (int i = 0; i < n; ++i) {
        term[i].real *= gain;
        term[i].imag *= gain;
    }
}
