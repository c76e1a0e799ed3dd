#include "foundation/Matrix.h"

#include <cassert>
#include <cmath>
#include <climits>
#include <cstring>
#include <new>
#include <vector>

namespace {
// Target of out-of-range element references, so that a stray write lands nowhere.
double g_scratch = 0.0;
// A pivot of exactly zero is replaced by this, so a singular system still yields numbers.
constexpr double kTinyPivot = 1e-20;
}

Matrix::Matrix(int r, int c)
{
    // Elements are addressed by int; larger shapes are refused like a failed allocation.
    if (r <= 0 || c <= 0 || static_cast<long long>(r) * c > INT_MAX)
        return;
    // Cleared, so that nothing reads indeterminate values before the caller fills it.
    data = new (std::nothrow) double[static_cast<size_t>(r) * static_cast<size_t>(c)]();
    if (!data)
        return; // valid stays 0: the data were not allocated
    rows = r;
    cols = c;
    valid = 1;
}

Matrix::Matrix(Matrix const &other)
    : rows(other.rows), cols(other.cols), sign(other.sign), valid(other.valid)
{
    const size_t n = static_cast<size_t>(rows) * static_cast<size_t>(cols);
    if (other.data) {
        data = new (std::nothrow) double[n];
        if (!data) {
            rows = cols = 0;
            valid = 0;
            return;
        }
        std::memcpy(data, other.data, n * sizeof(double));
    }
    if (other.index) {
        index = new (std::nothrow) int[rows];
        if (index)
            std::memcpy(index, other.index, static_cast<size_t>(rows) * sizeof(int));
    }
}

Matrix::~Matrix()
{
    delete[] data;
    delete[] index;
}

Matrix &Matrix::operator=(Matrix const &other)
{
    if (other.rows != rows || other.cols != cols) {
        valid = 0;
        return *this;
    }
    if (this != &other && data && other.data)
        std::memcpy(data, other.data, static_cast<size_t>(rows) * cols * sizeof(double));
    valid = other.valid;
    return *this;
}

double &Matrix::operator()(int i, int j)
{
    assert(i >= 0 && i < rows && j >= 0 && j < cols);
    if (i < 0 || i >= rows || j < 0 || j >= cols || !data)
        return g_scratch;
    return data[i * cols + j];
}

double Matrix::Get(int i, int j) const
{
    if (i < 0 || i >= rows || j < 0 || j >= cols || !data)
        return 0.0;
    return data[i * cols + j];
}

void Matrix::Add(Matrix const &a, Matrix const &b)
{
    if (a.rows != b.rows || a.cols != b.cols || a.rows != rows || a.cols != cols) {
        valid = 0;
        return;
    }
    if (!data || !a.data || !b.data)
        return;
    const int n = rows * cols;
    for (int k = 0; k < n; ++k)
        data[k] = a.data[k] + b.data[k];
}

void Matrix::Add(int row, double v)
{
    if (row < 0 || row >= rows || !data)
        return;
    double *p = data + row * cols;
    for (int j = 0; j < cols; ++j)
        p[j] += v;
}

void Matrix::Add(double v)
{
    if (!data)
        return;
    const int n = rows * cols;
    for (int k = 0; k < n; ++k)
        data[k] += v;
}

void Matrix::Mult(Matrix const &a, Matrix const &b)
{
    if (a.cols != b.rows || rows != a.rows || cols != b.cols) {
        valid = 0;
        return;
    }
    if (!data || !a.data || !b.data)
        return;
    // Into a temporary first: a or b may be this matrix.
    std::vector<double> out(static_cast<size_t>(rows) * cols);
    const int inner = a.cols;
    for (int i = 0; i < rows; ++i) {
        const double *ar = a.data + i * inner;
        for (int j = 0; j < cols; ++j) {
            double sum = 0.0;
            for (int k = 0; k < inner; ++k)
                sum += ar[k] * b.data[k * b.cols + j];
            out[static_cast<size_t>(i) * cols + j] = sum;
        }
    }
    std::memcpy(data, out.data(), out.size() * sizeof(double));
}

void Matrix::Mult(int row, double v)
{
    if (row < 0 || row >= rows || !data)
        return;
    double *p = data + row * cols;
    for (int j = 0; j < cols; ++j)
        p[j] *= v;
}

void Matrix::Mult(double v)
{
    if (!data)
        return;
    const int n = rows * cols;
    for (int k = 0; k < n; ++k)
        data[k] *= v;
}

void Matrix::Tran(Matrix const &a)
{
    if (rows != a.cols || cols != a.rows) {
        valid = 0;
        return;
    }
    if (!data || !a.data)
        return;
    std::vector<double> out(static_cast<size_t>(rows) * cols);
    for (int i = 0; i < a.rows; ++i)
        for (int j = 0; j < a.cols; ++j)
            out[static_cast<size_t>(j) * cols + i] = a.data[i * a.cols + j];
    std::memcpy(data, out.data(), out.size() * sizeof(double));
}

bool Matrix::Decompose()
{
    if (rows != cols || !data) {
        valid = 0;
        return false;
    }
    const int n = rows;
    sign = 1;
    delete[] index;
    index = new (std::nothrow) int[n];
    if (!index) {
        valid = 0;
        return false;
    }
    // Identity until the columns are processed, so BKSub after a refused LU stays in bounds.
    for (int i = 0; i < n; ++i)
        index[i] = i;

    std::vector<double> scale(n);
    for (int i = 0; i < n; ++i) {
        const double *r = data + i * n;
        double big = 0.0;
        for (int j = 0; j < n; ++j) {
            const double t = std::fabs(r[j]);
            if (t > big)
                big = t;
        }
        if (big == 0.0) {
            valid = 0;
            return false;
        }
        scale[i] = 1.0 / big;
    }

    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < j; ++i) {
            double *ri = data + i * n;
            double sum = ri[j];
            for (int k = 0; k < i; ++k)
                sum -= ri[k] * data[k * n + j];
            ri[j] = sum;
        }
        double big = 0.0;
        int pivot = j;
        for (int i = j; i < n; ++i) {
            double *ri = data + i * n;
            double sum = ri[j];
            for (int k = 0; k < j; ++k)
                sum -= ri[k] * data[k * n + j];
            ri[j] = sum;
            const double candidate = scale[i] * std::fabs(sum);
            if (candidate >= big) { // ">=": ties go to the later row
                big = candidate;
                pivot = i;
            }
        }
        if (pivot != j) {
            double *rp = data + pivot * n;
            double *rj = data + j * n;
            for (int k = 0; k < n; ++k) {
                const double t = rp[k];
                rp[k] = rj[k];
                rj[k] = t;
            }
            sign = -sign;
            scale[pivot] = scale[j];
        }
        index[j] = pivot;
        double &diag = data[j * n + j];
        if (diag == 0.0)
            diag = kTinyPivot;
        const double inv = 1.0 / diag;
        for (int i = j + 1; i < n; ++i)
            data[i * n + j] *= inv;
    }
    return true;
}

void Matrix::LU()
{
    Decompose();
}

void Matrix::BKSub(double *b)
{
    if (!b || !index || !data || rows != cols) {
        valid = 0;
        return;
    }
    const int n = rows;
    int first = -1; // first non-zero entry of b: the forward sums start there
    for (int i = 0; i < n; ++i) {
        const int ip = index[i];
        double sum = b[ip];
        b[ip] = b[i];
        const double *ri = data + i * n;
        if (first >= 0) {
            for (int k = first; k < i; ++k)
                sum -= ri[k] * b[k];
        } else if (sum != 0.0) {
            first = i;
        }
        b[i] = sum;
    }
    for (int i = n - 1; i >= 0; --i) {
        const double *ri = data + i * n;
        double sum = b[i];
        for (int k = i + 1; k < n; ++k)
            sum -= ri[k] * b[k];
        b[i] = sum / ri[i];
    }
}

void Matrix::Inv()
{
    if (!Decompose())
        return;
    const int n = rows;
    std::vector<double> inverse(static_cast<size_t>(n) * n);
    std::vector<double> column(n);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i)
            column[i] = 0.0;
        column[j] = 1.0;
        BKSub(column.data());
        for (int i = 0; i < n; ++i)
            inverse[static_cast<size_t>(i) * n + j] = column[i];
    }
    std::memcpy(data, inverse.data(), inverse.size() * sizeof(double));
}
