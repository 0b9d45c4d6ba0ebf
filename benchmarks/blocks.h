// SPDX-License-Identifier: BSD-3-Clause
// Many independent blocks to eliminate, together no larger than the second-level cache.
#pragma once

#include "bench.h"

#include <algorithm>
#include <memory>

namespace bench {

/// Copies of one diagonally dominant symmetric block, positive definite, with their outputs.
struct Blocks
{
    int n, lda;
    int64_t count, stride;
    Array original, a, d, dinv, tol, reg, dcorr;
    std::vector<int> negpiv;

    Blocks(int order, int ld)
        : n(order), lda(ld), count(std::clamp<int64_t>((1 << 17) / (int64_t{ld} * order), 1, 1000)),
          stride(int64_t{ld} * order), original(count * stride), a(count * stride), d(n), dinv(n), tol(n),
          reg(n), dcorr(n), negpiv(static_cast<std::size_t>(n))
    {
        fill(original);
        for (int64_t b = 0; b < count; ++b)
            for (int64_t j = 0; j < n; ++j)
                for (int64_t i = 0; i <= j; ++i) {
                    double* const block = original + b * stride;
                    if (i == j)
                        block[i + j * lda] = n + 1.0;
                    else
                        block[i + j * lda] = block[j + i * lda];
                }
        for (int k = 0; k < n; ++k) {
            tol[k] = 1e-10;
            reg[k] = 1.0;
        }
    }
};

inline void add_variant(const std::string& name, int n, int lda, double work,
                        void (*factorise)(Blocks&, double* block))
{
    const int64_t count = std::clamp<int64_t>((1 << 17) / (int64_t{lda} * n), 1, 1000);
    add(name, work * static_cast<double>(count), [=] {
        auto blocks = std::make_shared<Blocks>(n, lda);
        return Job{[=] { blocks->a.copy_from(blocks->original); },
                   [=] {
                       for (int64_t b = 0; b < blocks->count; ++b)
                           factorise(*blocks, blocks->a + b * blocks->stride);
                   }};
    });
}

} // namespace bench
