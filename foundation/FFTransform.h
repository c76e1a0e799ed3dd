// The amplitude spectrum of a curve's reduced data: Hamming window, radix-2 FFT over the
// largest power of two of points, scaled so that a sine of amplitude A peaks near A.
#pragma once

#include "foundation/Complex.h"

class Curve;

class FFTransform {
public:
    // Transforms the converted data of the curve (Convert must have run); with no
    // converted points the spectrum stays empty. The curve is only read, not kept.
    explicit FFTransform(Curve *curve);
    // Transforms count values y (the same as a curve's converted y). The array is only
    // read during the call.
    FFTransform(const float *y, int count);
    ~FFTransform();
    FFTransform(FFTransform const &) = delete;
    FFTransform &operator=(FFTransform const &) = delete;

    // N, the number of transformed points: the largest power of two not above the number
    // of curve points; 0 when there were none.
    int GetNumPts() const { return m_numTransformed; }
    // Modulus of term i, 0 <= i < N; 0.0 out of range.
    double GetMod(int i) const;
    // Number of points the curve had.
    int GetNumCurvePts() const { return m_numCurvePts; }

private:
    void Transform(const float *y, int count);

    Complex *m_spectrum = nullptr;
    int m_numCurvePts = 0;
    int m_numTransformed = 0;
};
