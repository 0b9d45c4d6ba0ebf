// SPDX-License-Identifier: BSD-3-Clause
#include "recorder.h"

#include <cctype>
#include <utility>

namespace recorder {

std::vector<Call> calls;
std::function<void(const Call&)> at_call;

void clear()
{
    calls.clear();
    at_call = nullptr;
}

static void record(Call call)
{
    calls.push_back(std::move(call));
    if (at_call)
        at_call(calls.back());
}

} // namespace recorder

using recorder::record;
using std::size_t;

extern "C" {

void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
            const double* beta, double* c, const int* ldc, size_t l1, size_t l2)
{
    record(
        {"dgemm", {*transa, *transb}, {*m, *n, *k, *lda, *ldb, *ldc}, {*alpha, *beta}, {a, b, c}, {l1, l2}});
}

static void triangular(const char* name, const char* side, const char* uplo, const char* transa,
                       const char* diag, const int* m, const int* n, const double* alpha, const double* a,
                       const int* lda, double* b, const int* ldb, size_t l1, size_t l2, size_t l3, size_t l4)
{
    record({name, {*side, *uplo, *transa, *diag}, {*m, *n, *lda, *ldb}, {*alpha}, {a, b}, {l1, l2, l3, l4}});
}

void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb,
            size_t l1, size_t l2, size_t l3, size_t l4)
{
    triangular("dtrsm", side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, l1, l2, l3, l4);
}

void dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* a, const int* lda, double* b, const int* ldb,
            size_t l1, size_t l2, size_t l3, size_t l4)
{
    triangular("dtrmm", side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb, l1, l2, l3, l4);
}

int lsame_(const char* ca, const char* cb, size_t l1, size_t l2)
{
    record({"lsame", {*ca, *cb}, {}, {}, {}, {l1, l2}});
    return std::toupper(static_cast<unsigned char>(*ca)) == std::toupper(static_cast<unsigned char>(*cb));
}
}
