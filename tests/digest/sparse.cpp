// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

namespace {

// An m×n matrix by rows: some rows empty, columns in any order and repeated.
struct Sparse
{
    int m, n, nrhs;
    int *start, *column;
    double* value;

    explicit Sparse(digest::Case& c) : m(c.size()), n(1 + c.below(30)), nrhs(c.count(19))
    {
        std::vector<int> starts{c.below(3)}, columns(static_cast<std::size_t>(starts[0]), 0);
        for (int i = 0; i < m; ++i) {
            for (int p = c.odds(4) ? 0 : c.below(9); p > 0; --p)
                columns.push_back(c.below(n));
            starts.push_back(static_cast<int>(columns.size()));
        }
        start = c.integers(starts);
        column = c.integers(columns);
        value = c.vector(static_cast<int>(columns.size()));
    }
};

} // namespace

DIGEST(blac_sparse_umv_, Computed)
{
    const Sparse s(c);
    const double* const x = c.matrix(s.n, s.nrhs, s.n);
    blac_sparse_umv_(s.value, x, s.start, s.column, c.matrix_room(s.m, s.nrhs, s.m), &s.m, &s.n, &s.nrhs);
}

DIGEST(blac_sparse_umtv_, Computed)
{
    const Sparse s(c);
    const double* const x = c.matrix(s.m, s.nrhs, s.m);
    blac_sparse_umtv_(s.value, x, s.start, s.column, c.matrix_room(s.n, s.nrhs, s.n), &s.m, &s.n, &s.nrhs);
}

DIGEST(blac_sparse_sparse_umtv_, Computed)
{
    const Sparse s(c);
    std::vector<int> rows;
    for (int r = s.m > 0 ? c.below(2 * s.m) : 0; r > 0; --r)
        rows.push_back(c.below(s.m));
    const int nl = static_cast<int>(rows.size());
    const double* const x = c.matrix(nl, s.nrhs, nl);
    double* const y = c.matrix_room(s.n, s.nrhs, s.n);
    blac_sparse_sparse_umtv_(s.value, x, s.start, s.column, y, &nl, &s.n, &s.nrhs, c.integers(rows));
}
