// SPDX-License-Identifier: BSD-3-Clause
#include "profile.h"

#include <chrono>
#include <cstddef>

namespace profile {

const char* const name[parts] = {"small kernel", "triangular", "dgemm", "scaled copies", "block assembly"};
double seconds[parts];

namespace {

using Clock = std::chrono::steady_clock;

bool running = false;
int current = parts; // what the time since `since` belongs to; parts: to none
Clock::time_point since;

int enter(int part)
{
    const auto now = Clock::now();
    if (current < parts)
        seconds[current] += std::chrono::duration<double>(now - since).count();
    const int outer = current;
    current = part;
    since = now;
    return outer;
}

template <class Routine, class... Arguments>
void timed(Part part, Routine routine, Arguments... arguments)
{
    if (!running) {
        routine(arguments...);
        return;
    }
    const int outer = enter(part);
    routine(arguments...);
    enter(outer);
}

} // namespace

void start()
{
    for (double& s : seconds)
        s = 0.0;
    running = true;
}

void stop()
{
    running = false;
}

} // namespace profile

using S = const char*;
using N = const int*;
using D = const double*;
using A = double*;
using Length = std::size_t;

// Defines what the linker's --wrap calls instead of a routine.
#define TIMED(part, routine, parameters, arguments)                                                          \
    extern "C" void __real_##routine parameters;                                                             \
    extern "C" void __wrap_##routine parameters;                                                             \
    void __wrap_##routine parameters                                                                         \
    {                                                                                                        \
        profile::timed(profile::part, __real_##routine, PROFILE_ARGUMENTS arguments);                        \
    }
#define PROFILE_ARGUMENTS(...) __VA_ARGS__

TIMED(small, blac_selim_small_, (N n, A a, N lda, A d, A dinv, D tol), (n, a, lda, d, dinv, tol))
TIMED(triangular, dtrsm_,
      (S side, S uplo, S trans, S diag, N m, N n, D alpha, D t, N ldt, A b, N ldb, Length l1, Length l2,
       Length l3, Length l4),
      (side, uplo, trans, diag, m, n, alpha, t, ldt, b, ldb, l1, l2, l3, l4))
TIMED(triangular, blac_dtrmm_, (S side, S uplo, S trans, S diag, N m, N n, D alpha, D t, N ldt, A b, N ldb),
      (side, uplo, trans, diag, m, n, alpha, t, ldt, b, ldb))
TIMED(triangular, blac_dtrtri_, (S uplo, S diag, N n, A t, N ldt, int* info), (uplo, diag, n, t, ldt, info))
TIMED(products, dgemm_,
      (S transa, S transb, N m, N n, N k, D alpha, D a, N lda, D b, N ldb, D beta, A c, N ldc, Length l1,
       Length l2),
      (transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, l1, l2))
TIMED(scaled, blac_dgemm_scaled2_,
      (S transa, S transb, N m, N n, N k, D alpha, D a, N lda, D b, N ldb, D beta, A c, N ldc, D d),
      (transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d))
TIMED(assembly, blac_addrectblock_, (N m, N n, A a, N lda, D b, N ldb), (m, n, a, lda, b, ldb))
TIMED(assembly, blac_addtriblock_, (N n, A a, N lda, D b, N ldb), (n, a, lda, b, ldb))
