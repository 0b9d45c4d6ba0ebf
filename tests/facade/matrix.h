// SPDX-License-Identifier: BSD-3-Clause
// Small dense matrices with the few operations that a check of a result takes.
#pragma once

#include <complex>
#include <cstdint>
#include <random>
#include <vector>

using complex = std::complex<double>;

inline double conjugate(double x)
{
    return x;
}
inline complex conjugate(complex x)
{
    return std::conj(x);
}

/// Column-major, leading dimension `rows`, indices from 0.
template <class T>
struct Matrix
{
    int rows, columns;
    std::vector<T> data;

    Matrix(int m, int n) : rows(m), columns(n), data(static_cast<std::size_t>(m) * n) {}

    T& operator()(int i, int j) { return data[i + static_cast<std::size_t>(j) * rows]; }
    T operator()(int i, int j) const { return data[i + static_cast<std::size_t>(j) * rows]; }
    operator T*() { return data.data(); }
    operator const T*() const { return data.data(); }
};

inline void draw(double& x, std::mt19937_64& random)
{
    x = std::uniform_real_distribution<double>(-1.0, 1.0)(random);
}
inline void draw(complex& x, std::mt19937_64& random)
{
    double re, im;
    draw(re, random);
    draw(im, random);
    x = complex(re, im);
}

/// The same matrix in every run: how well it is conditioned is no matter of chance.
template <class T>
Matrix<T> random_matrix(int m, int n, std::uint64_t number)
{
    std::mt19937_64 random(number);
    Matrix<T> a(m, n);
    for (T& x : a.data)
        draw(x, random);
    return a;
}

template <class T>
Matrix<T> identity(int n)
{
    Matrix<T> a(n, n);
    for (int i = 0; i < n; ++i)
        a(i, i) = 1;
    return a;
}

template <class T>
Matrix<T> diagonal(const std::vector<T>& d)
{
    Matrix<T> a(static_cast<int>(d.size()), static_cast<int>(d.size()));
    for (int i = 0; i < a.rows; ++i)
        a(i, i) = d[i];
    return a;
}

/// Aᵀ, or Aᴴ.
template <class T>
Matrix<T> transpose(const Matrix<T>& a, bool conjugated = false)
{
    Matrix<T> b(a.columns, a.rows);
    for (int j = 0; j < a.columns; ++j)
        for (int i = 0; i < a.rows; ++i)
            b(j, i) = conjugated ? conjugate(a(i, j)) : a(i, j);
    return b;
}
template <class T>
Matrix<T> adjoint(const Matrix<T>& a)
{
    return transpose(a, true);
}

template <class T>
Matrix<T> operator*(const Matrix<T>& a, const Matrix<T>& b)
{
    Matrix<T> c(a.rows, b.columns);
    for (int j = 0; j < b.columns; ++j)
        for (int l = 0; l < a.columns; ++l)
            for (int i = 0; i < a.rows; ++i)
                c(i, j) += a(i, l) * b(l, j);
    return c;
}
template <class T>
Matrix<T> combine(T alpha, const Matrix<T>& a, T beta, const Matrix<T>& b)
{
    Matrix<T> c(a.rows, a.columns);
    for (std::size_t i = 0; i < c.data.size(); ++i)
        c.data[i] = alpha * a.data[i] + beta * b.data[i];
    return c;
}
template <class T>
Matrix<T> operator-(const Matrix<T>& a, const Matrix<T>& b)
{
    return combine(T(1), a, T(-1), b);
}

/// The entries that `keep(i, j)` names; zero elsewhere.
template <class T, class Keep>
Matrix<T> part(const Matrix<T>& a, Keep keep)
{
    Matrix<T> b(a.rows, a.columns);
    for (int j = 0; j < a.columns; ++j)
        for (int i = 0; i < a.rows; ++i)
            if (keep(i, j))
                b(i, j) = a(i, j);
    return b;
}
template <class T>
Matrix<T> lower(const Matrix<T>& a)
{
    return part(a, [](int i, int j) { return i >= j; });
}
template <class T>
Matrix<T> upper(const Matrix<T>& a)
{
    return part(a, [](int i, int j) { return i <= j; });
}
template <class T>
Matrix<T> hessenberg(const Matrix<T>& a)
{
    return part(a, [](int i, int j) { return i <= j + 1; });
}
/// The first m rows and n columns.
template <class T>
Matrix<T> corner(const Matrix<T>& a, int m, int n)
{
    Matrix<T> b(m, n);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i)
            b(i, j) = a(i, j);
    return b;
}
/// A + Aᵀ.
template <class T>
Matrix<T> symmetric(const Matrix<T>& a)
{
    return combine(T(1), a, T(1), transpose(a));
}
/// A·Aᵀ + n·I.
inline Matrix<double> positive_definite(const Matrix<double>& a)
{
    return combine(1.0, a * transpose(a), static_cast<double>(a.rows), identity<double>(a.rows));
}
/// The lower triangle, column by column.
template <class T>
std::vector<T> pack_lower(const Matrix<T>& a)
{
    std::vector<T> packed;
    for (int j = 0; j < a.columns; ++j)
        for (int i = j; i < a.rows; ++i)
            packed.push_back(a(i, j));
    return packed;
}
template <class T>
Matrix<T> unpack_lower(const std::vector<T>& packed, int n)
{
    Matrix<T> a(n, n);
    std::size_t next = 0;
    for (int j = 0; j < n; ++j)
        for (int i = j; i < n; ++i)
            a(i, j) = packed[next++];
    return a;
}
inline Matrix<double> tridiagonal(const std::vector<double>& d, const std::vector<double>& e)
{
    Matrix<double> a = diagonal(d);
    for (int i = 0; i + 1 < a.rows; ++i)
        a(i + 1, i) = a(i, i + 1) = e[i];
    return a;
}

/// The largest entry, in absolute value; NaN if there is one.
template <class T>
double largest(const Matrix<T>& a)
{
    double m = 0;
    for (const T& x : a.data)
        m = std::abs(x) <= m ? m : std::abs(x);
    return m;
}
