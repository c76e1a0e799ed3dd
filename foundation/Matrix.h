// A small dense matrix of doubles, row by row, with an in-place LU decomposition for
// solving systems and inverting. Failures are reported only through `valid`; no
// operation throws. Sized for the handful of unknowns of a fit, not for large systems.
#pragma once

class Matrix {
public:
    double *data = nullptr; // rows * cols entries, row by row, owned
    int rows = 0;
    int cols = 0;
    int sign = 1;           // parity of the row exchanges of the last LU: +1 or -1
    int valid = 0;          // 1 if the data were allocated; 0 once an operation failed
    int *index = nullptr;   // pivot row of each column from the last LU, owned; null before

    // A rows x cols matrix of zeros. Non-positive sizes, more than INT_MAX elements or
    // no memory give an empty matrix with valid = 0.
    Matrix(int rows, int cols);
    // Deep copy of shape, data, sign, valid and pivots.
    Matrix(Matrix const &other);
    ~Matrix();

    // Copies data and valid from a matrix of the same shape; a shape mismatch only
    // sets valid = 0.
    Matrix &operator=(Matrix const &other);

    // Element (i, j), 0-based. Out of range is a caller error (asserted in debug); it
    // then refers to a scratch cell so no write lands outside the data.
    double &operator()(int i, int j);
    // Element (i, j) by value; 0.0 out of range.
    double Get(int i, int j) const;
    int GetRow() const { return rows; }
    int GetCol() const { return cols; }

    // this = a + b; all three shapes must be equal, else valid = 0 and nothing changes.
    void Add(Matrix const &a, Matrix const &b);
    // Adds v to every element of one row (ignored when the row is out of range).
    void Add(int row, double v);
    // Adds v to every element.
    void Add(double v);
    // this = a * b; needs a.cols == b.rows and this a.rows x b.cols, else valid = 0 and
    // nothing changes. a or b may be this matrix itself.
    void Mult(Matrix const &a, Matrix const &b);
    // Multiplies one row by v (ignored when the row is out of range).
    void Mult(int row, double v);
    // Multiplies every element by v.
    void Mult(double v);
    // this = transpose of a; needs this a.cols x a.rows, else valid = 0. a may be this.
    void Tran(Matrix const &a);

    // Crout decomposition with scaled partial pivoting, in place: L below the diagonal
    // (unit diagonal implied), U on and above it; pivots in `index`, parity in `sign`.
    // Non-square or a row of zeros: valid = 0. A zero pivot is replaced by 1e-20.
    void LU();
    // Solves A x = b in place on b (length rows), using the factors of the last LU.
    // Without a previous LU valid = 0 and b is left alone.
    void BKSub(double *b);
    // Replaces the data by the inverse: LU, then one BKSub per unit column. Non-square
    // matrices or a row of zeros leave the data unchanged with valid = 0.
    void Inv();

private:
    bool Decompose();
};
