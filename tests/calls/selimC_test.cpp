// SPDX-License-Identifier: BSD-3-Clause
// The calls that blaC_selimC makes of the library beneath: n = 7, nb = 3, panels at 1 and 4, last block of
// width 1.
#include "TOVBlaModule.h"
#include "recorder.h"

#include <gtest/gtest.h>

#include <vector>

// The facade on the way, caught by the linker (--wrap): the hidden lengths that arrive there.
static std::vector<std::size_t> lengths;

extern "C" {
void __real_blac_dtrmm_(const char*, const char*, const char*, const char*, const int*, const int*,
                        const double*, const double*, const int*, double*, const int*, std::size_t,
                        std::size_t, std::size_t, std::size_t);
void __real_blac_dgemm_(const char*, const char*, const int*, const int*, const int*, const double*,
                        const double*, const int*, const double*, const int*, const double*, double*,
                        const int*, std::size_t, std::size_t);

void __wrap_blac_dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag,
                        const int* m, const int* n, const double* alpha, const double* t, const int* ldt,
                        double* b, const int* ldb, std::size_t h1, std::size_t h2, std::size_t h3,
                        std::size_t h4)
{
    lengths.insert(lengths.end(), {h1, h2, h3, h4});
    __real_blac_dtrmm_(side, uplo, transa, diag, m, n, alpha, t, ldt, b, ldb, h1, h2, h3, h4);
}
void __wrap_blac_dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                        const double* alpha, const double* x, const int* ldx, const double* y, const int* ldy,
                        const double* beta, double* c, const int* ldc, std::size_t h1, std::size_t h2)
{
    lengths.insert(lengths.end(), {h1, h2});
    __real_blac_dgemm_(transa, transb, m, n, k, alpha, x, ldx, y, ldy, beta, c, ldc, h1, h2);
}
}

namespace {

using recorder::Call;
using recorder::calls;
using Ints = std::vector<int>;

TEST(SelimC, MakesTheDocumentedCallsInOrder)
{
    const int n = 7, nb = 3, front = 7 * 3 + 4 * 3 + 1;
    std::vector<double> a(front + 2 * n + nb * nb, 1.0);
    for (int i : {0, 8, 16, 21, 26, 31, 33}) // the diagonal
        a[static_cast<std::size_t>(i)] = 100.0;
    double* const first = a.data();
    double* const second = first + 21;
    double* const last = second + 12;
    double* const work = first + front + 2 * n;
    const double* const d = first + front;
    const double* const dinv = d + n;

    recorder::clear();
    lengths.clear();
    recorder::at_call = [&](const Call& call) {
        if (call.name != "dgemm" || call.options != "NT")
            return;
        // The diagonal that the scaled product read was the reciprocals: W = X·diag(dinv).
        const int panel = call.arrays[0] < second ? 0 : 1;
        for (int l = 0; l < nb; ++l)
            EXPECT_EQ(call.arrays[1][l * call.sizes[1]],
                      call.arrays[0][l * call.sizes[3]] * dinv[panel * nb + l]);
    };
    blaC_selimC(n, nb, 0.0, first);
    recorder::at_call = nullptr;

    struct Expected
    {
        const char *name, *options;
        Ints sizes;
        double alpha;
        const double *out, *left;
    };
    const Expected expected[] = {
        // first panel
        {"dtrmm", "RLTU", {4, 3, 3, 7}, 1.0, first + 3, work},
        {"dgemm", "NT", {4, 3, 3, 7, 3, 4}, -1.0, second, first + 3},
        {"dgemm", "NT", {1, 1, 3, 7, 1, 1}, -1.0, last, first + 6},
        {"dtrmm", "RLNN", {4, 3, 3, 7}, 1.0, first + 3, work},
        // second panel
        {"dtrmm", "RLTU", {1, 3, 3, 4}, 1.0, second + 3, work},
        {"dgemm", "NT", {1, 1, 3, 4, 1, 1}, -1.0, last, second + 3},
        {"dtrmm", "LLNN", {3, 3, 3, 7}, 1.0, first + 3, work},
        {"dgemm", "NN", {1, 3, 3, 4, 7, 7}, -1.0, first + 6, second + 3},
        {"dtrmm", "RLNN", {1, 3, 3, 4}, 1.0, second + 3, work},
        // last block
        {"dtrmm", "LLNN", {1, 3, 3, 7}, 1.0, first + 6, work},
        {"dtrmm", "LLNN", {1, 3, 3, 4}, 1.0, second + 3, work},
    };
    std::size_t next = 0;
    for (const Call& call : calls) {
        if (call.name == "lsame")
            continue;
        ASSERT_LT(next, std::size(expected)) << "one call too many: " << call.name << ' ' << call.options;
        const Expected& e = expected[next++];
        SCOPED_TRACE(next);
        EXPECT_EQ(call.name, e.name);
        EXPECT_EQ(call.options, e.options);
        EXPECT_EQ(call.sizes, e.sizes);
        EXPECT_EQ(call.scalars[0], e.alpha);
        EXPECT_EQ(call.arrays.back(), e.out);
        EXPECT_EQ(call.arrays.front(), e.left);
        if (call.name == "dgemm")
            EXPECT_EQ(call.scalars[1], 1.0);
    }
    EXPECT_EQ(next, std::size(expected));
    EXPECT_EQ(lengths, std::vector<std::size_t>(7 * 4 + 1 * 2, 1)) << "of the products through the facade";
    for (int k = 0; k < n; ++k)
        EXPECT_EQ(dinv[k], 1.0 / d[k]);
    recorder::clear();
}

} // namespace
