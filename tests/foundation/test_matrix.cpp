#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "foundation/Matrix.h"

namespace {

Matrix Make(int r, int c, std::initializer_list<double> values)
{
    Matrix m(r, c);
    int k = 0;
    for (double v : values) {
        m(k / c, k % c) = v;
        ++k;
    }
    return m;
}

std::vector<double> Values(Matrix const &m)
{
    return std::vector<double>(m.data, m.data + m.rows * m.cols);
}

void ExpectNear(Matrix const &m, std::vector<double> const &expected, double tol = 1e-12)
{
    ASSERT_EQ(static_cast<size_t>(m.rows * m.cols), expected.size());
    for (size_t k = 0; k < expected.size(); ++k)
        EXPECT_NEAR(m.data[k], expected[k], tol) << "element " << k;
}

TEST(MatrixShape, MismatchesRefuseAndLeaveDataAlone)
{
    struct Case {
        const char *name;
        int r, c;                 // shape of the target
        int ar, ac, br, bc;       // shapes of the operands
        char op;                  // '+' Add(a, b), '*' Mult(a, b), 't' Tran(a), '=' operator=
    };
    const Case cases[] = {
        {"add, target differs", 2, 2, 2, 3, 2, 3, '+'},
        {"add, operands differ", 2, 3, 2, 3, 3, 2, '+'},
        {"mult, inner sizes differ", 2, 2, 2, 3, 2, 2, '*'},
        {"mult, target not a.rows x b.cols", 3, 3, 2, 3, 3, 2, '*'},
        {"tran, target not transposed", 2, 3, 2, 3, 0, 0, 't'},
        {"assign, shapes differ", 2, 2, 2, 3, 0, 0, '='},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        Matrix target(c.r, c.c);
        for (int k = 0; k < c.r * c.c; ++k)
            target.data[k] = 7.0 + k;
        const std::vector<double> before = Values(target);
        Matrix a(c.ar, c.ac);
        a.Add(1.0);
        Matrix b(c.br > 0 ? c.br : 1, c.bc > 0 ? c.bc : 1);
        b.Add(2.0);
        switch (c.op) {
        case '+': target.Add(a, b); break;
        case '*': target.Mult(a, b); break;
        case 't': target.Tran(a); break;
        default: target = a; break;
        }
        EXPECT_EQ(target.valid, 0);
        EXPECT_EQ(Values(target), before);
    }
}

TEST(MatrixShape, MatchingShapesCompute)
{
    Matrix a = Make(2, 3, {1, 2, 3, 4, 5, 6});
    Matrix b = Make(3, 2, {7, 8, 9, 10, 11, 12});

    Matrix p(2, 2);
    p.Mult(a, b);
    EXPECT_EQ(p.valid, 1);
    ExpectNear(p, {58, 64, 139, 154});

    Matrix t(3, 2);
    t.Tran(a);
    ExpectNear(t, {1, 4, 2, 5, 3, 6});

    Matrix s(2, 3);
    s.Add(a, a);
    ExpectNear(s, {2, 4, 6, 8, 10, 12});

    // Assignment copies valid along with the data.
    Matrix bad(2, 3);
    bad.Tran(a); // refused: makes bad invalid
    ASSERT_EQ(bad.valid, 0);
    Matrix target(2, 3);
    target = bad;
    EXPECT_EQ(target.valid, 0);
    bad = a;
    EXPECT_EQ(bad.valid, 1);
    EXPECT_EQ(Values(bad), Values(a));
}

TEST(MatrixShape, ProductAndTransposeInPlace)
{
    Matrix m = Make(2, 2, {1, 2, 3, 4});
    Matrix b = Make(2, 2, {5, 6, 7, 8});
    m.Mult(m, b);
    ExpectNear(m, {19, 22, 43, 50});
    m.Tran(m);
    ExpectNear(m, {19, 43, 22, 50});
}

TEST(MatrixElements, RowOperationsStayInTheirRow)
{
    Matrix m = Make(2, 3, {1, 2, 3, 4, 5, 6});
    m.Add(1, 10.0);
    m.Mult(0, -2.0);
    m.Add(2, 99.0);  // no such row: ignored
    m.Mult(-1, 0.0); // no such row: ignored
    ExpectNear(m, {-2, -4, -6, 14, 15, 16});
    EXPECT_EQ(m.Get(2, 0), 0.0);

    // An invalid matrix keeps working as usual.
    Matrix other(3, 3);
    m.Tran(other);
    ASSERT_EQ(m.valid, 0);
    m.Add(1.0);
    m.Mult(0.5);
    ExpectNear(m, {-0.5, -1.5, -2.5, 7.5, 8, 8.5});
}

struct LuCase {
    const char *name;
    int n;
    std::vector<double> a;
    std::vector<double> lu;    // L below the diagonal, U on and above
    std::vector<int> index;
    int sign;
};

TEST(MatrixLU, WorkedDecompositions)
{
    const LuCase cases[] = {
        // Row scales 1/2 and 1/4: candidates 0.5 and 0.75 pick row 1.
        {"scaled pivot", 2, {1, 2, 3, 4}, {3, 4, 1.0 / 3, 2.0 / 3}, {1, 1}, -1},
        // Candidates tie at 1: the later row wins.
        {"tie goes to the later row", 2, {1, 0, 2, -2}, {2, -2, 0.5, 1}, {1, 1}, -1},
        // Without scaling, row 1 (|4| > |2|) would pivot; scaled, row 0 (1 > 0.4) does.
        {"scaling beats size", 2, {2, 1, 4, 10}, {2, 1, 2, 8}, {0, 1}, 1},
        // A pivot of exactly 0 goes on as 1e-20.
        {"singular", 2, {1, 2, 2, 4}, {2, 4, 0.5, 1e-20}, {1, 1}, -1},
        // Two exchanges: rows 0 and 2, then rows 1 and 2; the parity comes back to +1.
        {"three by three", 3, {1, 2, 3, 4, 5, 6, 7, 8, 10},
         {7, 8, 10, 1.0 / 7, 6.0 / 7, 11.0 / 7, 4.0 / 7, 0.5, -0.5}, {2, 2, 2}, 1},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m(c.n, c.n);
        for (size_t k = 0; k < c.a.size(); ++k)
            m.data[k] = c.a[k];
        m.LU();
        EXPECT_EQ(m.valid, 1);
        EXPECT_EQ(m.sign, c.sign);
        ASSERT_NE(m.index, nullptr);
        EXPECT_EQ(std::vector<int>(m.index, m.index + c.n), c.index);
        ExpectNear(m, c.lu, 1e-12);
    }
}

TEST(MatrixLU, Refusals)
{
    Matrix zeroRow = Make(2, 2, {1, 2, 0, 0});
    zeroRow.LU();
    EXPECT_EQ(zeroRow.valid, 0);

    Matrix wide = Make(2, 3, {1, 2, 3, 4, 5, 6});
    wide.LU();
    EXPECT_EQ(wide.valid, 0);
    EXPECT_EQ(wide.index, nullptr);
    EXPECT_EQ(Values(wide), (std::vector<double>{1, 2, 3, 4, 5, 6}));

    // No LU yet: BKSub refuses and leaves b alone.
    Matrix fresh = Make(2, 2, {2, 1, 1, 3});
    double b[2] = {3, 5};
    fresh.BKSub(b);
    EXPECT_EQ(fresh.valid, 0);
    EXPECT_EQ(b[0], 3);
    EXPECT_EQ(b[1], 5);

    wide.Inv();
    EXPECT_EQ(Values(wide), (std::vector<double>{1, 2, 3, 4, 5, 6}));
}

TEST(MatrixSolve, BackSubstitution)
{
    struct Case {
        const char *name;
        int n;
        std::vector<double> a, b, x;
    };
    const Case cases[] = {
        {"two", 2, {2, 1, 1, 3}, {3, 5}, {0.8, 1.4}},
        {"no pivoting", 3, {2, 1, 1, 4, -6, 0, -2, 7, 2}, {5, -2, 9}, {1, 1, 2}},
        {"pivoting", 3, {1, 2, 3, 4, 5, 6, 7, 8, 10}, {5, 11, 19}, {1, -1, 2}},
        // Leading zeros in b: the forward sums start at the first non-zero entry.
        {"leading zeros", 3, {1, 0, 0, 1, 1, 0, 1, 1, 1}, {0, 0, 3}, {0, 0, 3}},
        {"leading zeros with fill", 3, {4, 1, 0, 1, 4, 1, 0, 1, 4}, {0, 0, 56}, {1, -4, 15}},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        Matrix m(c.n, c.n);
        for (size_t k = 0; k < c.a.size(); ++k)
            m.data[k] = c.a[k];
        m.LU();
        std::vector<double> b = c.b;
        m.BKSub(b.data());
        for (int i = 0; i < c.n; ++i)
            EXPECT_NEAR(b[i], c.x[i], 1e-12) << "x" << i;
    }
}

TEST(MatrixSolve, Inverse)
{
    Matrix d = Make(2, 2, {2, 0, 0, 4});
    d.Inv();
    EXPECT_EQ(d.valid, 1);
    ExpectNear(d, {0.5, 0, 0, 0.25});

    Matrix m = Make(3, 3, {2, 1, 1, 4, -6, 0, -2, 7, 2});
    Matrix orig = m;
    m.Inv();
    Matrix product(3, 3);
    product.Mult(orig, m);
    ExpectNear(product, {1, 0, 0, 0, 1, 0, 0, 0, 1}, 1e-12);
    ExpectNear(m, {0.75, -0.3125, -0.375, 0.5, -0.375, -0.25, -1, 1, 1}, 1e-12);

    Matrix zeroRow = Make(2, 2, {0, 0, 1, 2});
    zeroRow.Inv();
    EXPECT_EQ(zeroRow.valid, 0);
    EXPECT_EQ(Values(zeroRow), (std::vector<double>{0, 0, 1, 2}));
}

} // namespace
