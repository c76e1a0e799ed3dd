// A complex number of two doubles, the element of a spectrum. Plain value type: copy
// freely; no base class and nothing virtual, so an array of them is a plain block.
#pragma once

class Complex {
public:
    double real = 0.0;
    double imag = 0.0;

    // 0 + 0i.
    Complex() = default;
    // re + im i.
    Complex(double re, double im) : real(re), imag(im) {}

    Complex &operator=(Complex const &) = default;

    Complex operator+(Complex const &b) const { return Complex(real + b.real, imag + b.imag); }
    Complex operator-(Complex const &b) const { return Complex(real - b.real, imag - b.imag); }
    // (a c - b d) + (a d + b c) i.
    Complex operator*(Complex const &b) const
    {
        return Complex(real * b.real - imag * b.imag, real * b.imag + imag * b.real);
    }
    // Quotient; a zero divisor gives a very large value (1 / 0 has real part 1e+50)
    // rather than a fault.
    Complex operator/(Complex const &b) const;

    // The compound forms change this value and return it.
    Complex &operator+=(Complex const &b) { return *this = *this + b; }
    Complex &operator-=(Complex const &b) { return *this = *this - b; }
    Complex &operator*=(Complex const &b) { return *this = *this * b; }
    Complex &operator/=(Complex const &b) { return *this = *this / b; }

    // Sets both parts and returns the new value.
    Complex Point(double re, double im)
    {
        real = re;
        imag = im;
        return *this;
    }

    double Real() const { return real; }
    double Imag() const { return imag; }
    // Modulus sqrt(re^2 + im^2).
    double Mod() const;
    // Argument atan2(imag, real), in -pi..pi.
    double Phase() const;
};
