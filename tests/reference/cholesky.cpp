// SPDX-License-Identifier: BSD-3-Clause
#include "reference.h"

#include <cmath>

extern "C" {
double ddot_(const int* n, const reference::number* x, const int* incx, const reference::number* y,
             const int* incy);
double dnrm2_(const int* n, const reference::number* x, const int* incx);
void drotg_(reference::number* a, reference::number* b, reference::number* c, reference::number* s);
}

namespace reference {

int cholupd(char job, int n, int nlead, int ncol, number* l, int ldl, number* x, double tol)
{
    if (job != 'P' && job != 'p' && job != 'N' && job != 'n')
        return 0;
    bool add = job == 'P' || job == 'p';
    int64_t k1 = nlead < ncol ? nlead : ncol;
    int64_t k2 = n < ncol ? n : ncol;
    for (int64_t j = 0; j < (k1 > k2 ? k1 : k2); ++j) {
        number* column = l + j * ldl;
        double t = x[j] / column[j];
        if (j < k1 ? add : !add) { // orthogonal
            double c = std::sqrt(t * t + 1.0);
            column[j] = column[j] * c;
            for (int64_t i = j + 1; i < n; ++i) {
                column[i] = (t * x[i] + column[i]) / c;
                x[i] = x[i] * c - column[i] * t;
            }
        } else { // hyperbolic
            if (std::fabs(t) >= 1.0 - tol)
                return static_cast<int>(j + 1);
            double c = std::sqrt(1.0 - t * t);
            column[j] = column[j] * c;
            for (int64_t i = j + 1; i < n; ++i) {
                column[i] = (column[i] - t * x[i]) / c;
                x[i] = x[i] * c - t * column[i];
            }
        }
    }
    return 0;
}

void dchud(number* l, int ldl, int p, const number* x, number* c, number* s)
{
    for (int64_t j = 0; j < p; ++j) {
        number xi = x[j];
        for (int64_t i = 0; i < j; ++i) {
            double old = l[j + i * ldl];
            double t = c[i] * old + xi * s[i];
            xi = xi * c[i] - s[i] * old;
            l[j + i * ldl] = t;
        }
        drotg_(&l[j + j * ldl], &xi, &c[j], &s[j]);
    }
}

int dchdd(number* l, int ldl, int p, const number* x, number* c, number* s)
{
    int one = 1;
    s[0] = x[0] / l[0];
    for (int j = 1; j < p; ++j) {
        double dot = ddot_(&j, &l[j], &ldl, s, &one);
        double difference = x[j] - dot;
        s[j] = difference / l[j + int64_t{j} * ldl];
    }
    double norm = dnrm2_(&p, s, &one);
    if (!(1.0 > norm))
        return -1;
    double alpha = std::sqrt(1.0 - norm * norm);
    for (int64_t i = p - 1; i >= 0; --i) {
        double sigma = alpha + std::fabs(s[i]);
        double a = alpha / sigma;
        double b = s[i] / sigma;
        double rho = std::sqrt(a * a + b * b);
        c[i] = a / rho;
        s[i] = b / rho;
        alpha = rho * sigma;
    }
    for (int64_t j = 0; j < p; ++j) {
        double xi = 0.0;
        for (int64_t i = j; i >= 0; --i) {
            double old = l[j + i * ldl];
            double t = c[i] * xi + s[i] * old;
            l[j + i * ldl] = c[i] * old - s[i] * xi;
            xi = t;
        }
    }
    return 0;
}

} // namespace reference
