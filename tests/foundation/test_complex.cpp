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

// Phase is atan2(imag, real): the argument order shows off the real axis.
TEST(ComplexValue, ModulusAndPhase)
{
    const double pi = std::acos(-1.0);
    struct Case {
        Complex z;
        double mod, phase;
    };
    const Case cases[] = {{{3, 4}, 5, std::atan2(4.0, 3.0)}, {{-1, 0}, 1, pi}, {{0, -2}, 2, -pi / 2}};
    for (auto const &c : cases) {
        EXPECT_DOUBLE_EQ(c.z.Mod(), c.mod);
        EXPECT_DOUBLE_EQ(c.z.Phase(), c.phase);
    }
    Complex z;
    EXPECT_EQ(z.Point(2.5, -1.5).Imag(), -1.5);
    EXPECT_EQ(z.Real(), 2.5);
}

} // namespace
