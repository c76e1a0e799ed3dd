#include <gtest/gtest.h>

#include <cmath>

#include "foundation/Complex.h"

namespace {

struct BinaryCase {
    const char *name;
    Complex a, b;
    char op;
    double re, im;
};

Complex Apply(Complex a, Complex const &b, char op)
{
    switch (op) {
    case '+': return a + b;
    case '-': return a - b;
    case '*': return a * b;
    default: return a / b;
    }
}

Complex ApplyCompound(Complex &a, Complex const &b, char op)
{
    switch (op) {
    case '+': return a += b;
    case '-': return a -= b;
    case '*': return a *= b;
    default: return a /= b;
    }
}

const BinaryCase kBinary[] = {
    {"sum", {1, 2}, {3, -5}, '+', 4, -3},
    {"difference", {1, 2}, {3, -5}, '-', -2, 7},
    {"product (ac-bd)+(ad+bc)i", {1, 2}, {3, 4}, '*', -5, 10},
    {"product with i", {0, 1}, {0, 1}, '*', -1, 0},
    {"quotient", {-5, 10}, {3, 4}, '/', 1, 2},
    {"quotient by real", {3, -6}, {3, 0}, '/', 1, -2},
    {"quotient by i", {1, 0}, {0, 1}, '/', 0, -1},
    {"one over zero is huge", {1, 0}, {0, 0}, '/', 1e50, 0},
    {"i over zero is huge", {0, 2}, {0, 0}, '/', 0, 2e50},
    {"zero over zero is zero", {0, 0}, {0, 0}, '/', 0, 0},
};

TEST(ComplexArithmetic, BinaryOperatorsAndCompoundForms)
{
    for (auto const &c : kBinary) {
        SCOPED_TRACE(c.name);
        const Complex r = Apply(c.a, c.b, c.op);
        EXPECT_DOUBLE_EQ(r.Real(), c.re);
        EXPECT_DOUBLE_EQ(r.Imag(), c.im);

        // The compound form changes the left operand and returns the same value.
        Complex left = c.a;
        const Complex returned = ApplyCompound(left, c.b, c.op);
        EXPECT_DOUBLE_EQ(left.real, c.re);
        EXPECT_DOUBLE_EQ(left.imag, c.im);
        EXPECT_DOUBLE_EQ(returned.real, c.re);
        EXPECT_DOUBLE_EQ(returned.imag, c.im);
    }
}

TEST(ComplexArithmetic, DivisionByZeroStaysFinite)
{
    const Complex r = Complex(-3, 0.5) / Complex();
    EXPECT_TRUE(std::isfinite(r.real));
    EXPECT_TRUE(std::isfinite(r.imag));
    EXPECT_DOUBLE_EQ(r.real, -3e50);
    EXPECT_DOUBLE_EQ(r.imag, 0.5e50);
}

TEST(ComplexValue, ModulusAndPhase)
{
    struct Case {
        double re, im, mod, phase;
    };
    const double pi = std::acos(-1.0);
    const Case cases[] = {
        {3, 4, 5, std::atan2(4.0, 3.0)},
        {0, 0, 0, 0},
        {-1, 0, 1, pi},
        {0, -2, 2, -pi / 2},
        {-1, -1, std::sqrt(2.0), -3 * pi / 4},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(testing::Message() << c.re << "," << c.im);
        Complex z(c.re, c.im);
        EXPECT_DOUBLE_EQ(z.Mod(), c.mod);
        EXPECT_DOUBLE_EQ(z.Phase(), c.phase);
    }
}

TEST(ComplexValue, DefaultIsZeroAndPointSetsBoth)
{
    Complex z;
    EXPECT_EQ(z.Real(), 0.0);
    EXPECT_EQ(z.Imag(), 0.0);
    const Complex r = z.Point(2.5, -1.5);
    EXPECT_EQ(z.Real(), 2.5);
    EXPECT_EQ(z.Imag(), -1.5);
    EXPECT_EQ(r.Real(), 2.5);
    EXPECT_EQ(r.Imag(), -1.5);
}

} // namespace
