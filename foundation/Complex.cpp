#include "foundation/Complex.h"

#include <cmath>

namespace {
// Stands in for the magnitude of a zero divisor.
constexpr double kTinyDivisor = 1e-50;
}

Complex Complex::operator/(Complex const &b) const
{
    const double q = b.real * b.real + b.imag * b.imag;
    if (q == 0.0) {
        // The divisor is taken as the real number 1e-50: the quotient is the dividend
        // blown up by 1e+50, large but finite, so callers see a spike and not a trap.
        return Complex(real / kTinyDivisor, imag / kTinyDivisor);
    }
    return Complex((real * b.real + imag * b.imag) / q, (imag * b.real - real * b.imag) / q);
}

double Complex::Mod() const
{
    return std::sqrt(real * real + imag * imag);
}

double Complex::Phase() const
{
    return std::atan2(imag, real);
}
