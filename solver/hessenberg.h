// SPDX-License-Identifier: BSD-3-Clause
// The least-squares problem of GMRES: min |norm*e1 - H*y|, H a Hessenberg matrix with one row more than
// columns that grows by columns and is kept triangular by rotations.
#pragma once

#include <algorithm>
#include <cmath>

class Hessenberg
{
public:
    static constexpr int longest = 30; // columns

    explicit Hessenberg(double norm) { right_[0] = norm; }

    // `h` of columns() + 2 entries; the norm that y leaves now.
    double append(double* h)
    {
        for (int i = 0; i < columns_; ++i)
            rotate(i, h[i], h[i + 1]);
        const double length = std::hypot(h[columns_], h[columns_ + 1]);
        cosine_[columns_] = length > 0.0 ? h[columns_] / length : 1.0;
        sine_[columns_] = length > 0.0 ? h[columns_ + 1] / length : 0.0;
        rotate(columns_, h[columns_], h[columns_ + 1]);
        std::copy_n(h, columns_ + 1, triangle_[columns_]);
        right_[columns_ + 1] = 0.0;
        rotate(columns_, right_[columns_], right_[columns_ + 1]);
        ++columns_;
        return std::fabs(right_[columns_]);
    }
    int columns() const { return columns_; }
    // y, of columns() entries
    const double* solve()
    {
        for (int k = columns_ - 1; k >= 0; --k) {
            right_[k] = triangle_[k][k] == 0.0 ? 0.0 : right_[k] / triangle_[k][k];
            for (int i = 0; i < k; ++i)
                right_[i] -= triangle_[k][i] * right_[k];
        }
        return right_;
    }

private:
    void rotate(int k, double& above, double& below) const
    {
        const double turned = cosine_[k] * above + sine_[k] * below;
        below = cosine_[k] * below - sine_[k] * above;
        above = turned;
    }

    int columns_ = 0;
    double triangle_[longest][longest], right_[longest + 1], cosine_[longest], sine_[longest];
};
