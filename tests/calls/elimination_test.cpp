// SPDX-License-Identifier: BSD-3-Clause
// The calls that the blocked drivers make, recorded: options, dimensions, addresses, scalars, hidden lengths.
// dtrsm_ and dgemm_ are this program's own; calls from one of our routines to another are caught by the
// linker (--wrap).
#include "TOVBlaModule.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::vector<std::string> calls;

// The arrays that the drivers are given; only diagonal blocks are ever touched.
constexpr int Lda = 11;
double a[Lda * 10], d[10], dinv[10], tolerances[10], reg[10], dcorr[10], tolerance;
int negpiv[10];

/// "a(4,1)" for the address of that element, "dinv(4)" for one in a vector.
std::string where(const void* p)
{
    char text[40] = "elsewhere";
    auto in = [&](const auto& array, const char* format) {
        if (p < &array || p >= &array + 1)
            return;
        const auto k = static_cast<int>((static_cast<const char*>(p) - reinterpret_cast<const char*>(array)) /
                                        static_cast<std::ptrdiff_t>(sizeof array[0]));
        if (static_cast<const void*>(array) == a)
            std::snprintf(text, sizeof text, format, k % Lda + 1, k / Lda + 1);
        else
            std::snprintf(text, sizeof text, format, k + 1);
    };
    in(a, "a(%d,%d)");
    in(d, "d(%d)");
    in(dinv, "dinv(%d)");
    in(tolerances, "tol(%d)");
    in(reg, "reg(%d)");
    in(dcorr, "dcorr(%d)");
    in(negpiv, "negpiv(%d)");
    return p == &tolerance ? "tolerance" : text;
}

std::string show(const int* x)
{
    return std::to_string(*x);
}
std::string show(const char* option)
{
    return std::string(1, *option);
}
std::string show(std::size_t hidden)
{
    std::string text(1, '#'); // a sum of literal and temporary raises a false alarm in GCC 12
    return text.append(std::to_string(hidden));
}

/// A scalar is shown by value, an array element by its place.
std::string show(const double* x)
{
    const std::string place = where(x);
    return place == "elsewhere" ? (*x == 1.0 ? "1" : *x == -1.0 ? "-1" : "?") : place;
}

template <class... Arguments>
void record(const char* name, Arguments... arguments)
{
    std::string call = name;
    ((call += ' ', call += show(arguments)), ...);
    calls.push_back(call);
}

} // namespace

extern "C" {

void dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
            const int* n, const double* alpha, const double* t, const int* ldt, double* b, const int* ldb,
            std::size_t h1, std::size_t h2, std::size_t h3, std::size_t h4)
{
    record("dtrsm_", side, uplo, transa, diag, m, n, alpha, t, ldt, const_cast<const double*>(b), ldb, h1, h2,
           h3, h4);
}

void dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
            const double* alpha, const double* x, const int* ldx, const double* y, const int* ldy,
            const double* beta, double* c, const int* ldc, std::size_t h1, std::size_t h2)
{
    record("dgemm_", transa, transb, m, n, k, alpha, x, ldx, y, ldy, beta, const_cast<const double*>(c), ldc,
           h1, h2);
}

void __real_blac_dtrsm_(const char*, const char*, const char*, const char*, const int*, const int*,
                        const double*, const double*, const int*, double*, const int*, std::size_t,
                        std::size_t, std::size_t, std::size_t);

void __wrap_blac_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag,
                        const int* m, const int* n, const double* alpha, const double* t, const int* ldt,
                        double* b, const int* ldb, std::size_t h1, std::size_t h2, std::size_t h3,
                        std::size_t h4)
{
    record("blac_dtrsm_", side, uplo, transa, diag, m, n, alpha, t, ldt, const_cast<const double*>(b), ldb,
           h1, h2, h3, h4);
    __real_blac_dtrsm_(side, uplo, transa, diag, m, n, alpha, t, ldt, b, ldb, h1, h2, h3, h4);
}

void __wrap_blac_dsyrk_scaled_(const int* nb, const int* n, const int* k, const double* alpha,
                               const double* x, const int* ldx, const double* y, const int* ldy,
                               const double* beta, double* c, const int* ldc, const double* diagonal)
{
    record("blac_dsyrk_scaled_", nb, n, k, alpha, x, ldx, y, ldy, beta, const_cast<const double*>(c), ldc,
           diagonal);
}

#define SMALL(name)                                                                                          \
    void __wrap_##name(const int* n, double* x, const int* ldx, double* p, double* r, const double* tol)     \
    {                                                                                                        \
        record(#name, n, const_cast<const double*>(x), ldx, const_cast<const double*>(p),                    \
               const_cast<const double*>(r), tol);                                                           \
    }
#define SMALL_REG(name)                                                                                      \
    void __wrap_##name(const int* n, double* x, const int* ldx, double* p, double* r, const double* tol,     \
                       const int* flags, const double* scale, double* shift)                                 \
    {                                                                                                        \
        record(#name, n, const_cast<const double*>(x), ldx, const_cast<const double*>(p),                    \
               const_cast<const double*>(r), tol);                                                           \
        for (const void* array : {static_cast<const void*>(flags), static_cast<const void*>(scale),          \
                                  static_cast<const void*>(shift)})                                          \
            (calls.back() += ' ') += where(array);                                                           \
    }
SMALL(blac_selim_small_)
SMALL(blac_uelim_small_)
SMALL_REG(blac_selim_small_reg_)
SMALL_REG(blac_uelim_small_reg_)
}

namespace {

using Calls = std::vector<std::string>;

Calls calls_of_selim(int n, int nb)
{
    calls.clear();
    blac_selim_(&n, &nb, &tolerance, a, &Lda, d, dinv);
    return calls;
}
Calls calls_of_selim_reg(int n, int nb)
{
    calls.clear();
    blac_selim_reg_(&n, &nb, a, &Lda, d, dinv, tolerances, negpiv, reg, dcorr);
    return calls;
}
Calls calls_of_uelim(int n, int nb)
{
    calls.clear();
    blac_uelim_(&n, &nb, &tolerance, a, &Lda, d, dinv);
    return calls;
}
Calls calls_of_uelim_reg(int n, int nb)
{
    calls.clear();
    blac_uelim_reg_(&n, &nb, a, &Lda, d, dinv, tolerances, negpiv, reg, dcorr);
    return calls;
}

TEST(CallsOfSelim, OfOrderSevenInPanelsOfThree)
{
    EXPECT_EQ(calls_of_selim(7, 3), (Calls{
                                        "blac_selim_small_ 3 a(1,1) 11 d(1) dinv(1) tolerance",
                                        "dtrsm_ R U N U 4 3 1 a(1,1) 11 a(4,1) 11 #1 #1 #1 #1",
                                        "blac_dsyrk_scaled_ 3 4 3 -1 a(4,1) 11 a(4,1) 11 1 a(4,4) 11 dinv(1)",
                                        "blac_selim_small_ 3 a(4,4) 11 d(4) dinv(4) tolerance",
                                        "dtrsm_ R U N U 1 3 1 a(4,4) 11 a(7,4) 11 #1 #1 #1 #1",
                                        "blac_dsyrk_scaled_ 3 1 3 -1 a(7,4) 11 a(7,4) 11 1 a(7,7) 11 dinv(4)",
                                        "blac_selim_small_ 1 a(7,7) 11 d(7) dinv(7) tolerance",
                                    }));
}

TEST(CallsOfSelimReg, OfOrderSevenInPanelsOfThreeSolveThroughTheFacade)
{
    EXPECT_EQ(calls_of_selim_reg(7, 3),
              (Calls{
                  "blac_selim_small_reg_ 3 a(1,1) 11 d(1) dinv(1) tol(1) negpiv(1) reg(1) dcorr(1)",
                  "blac_dtrsm_ R U N U 4 3 1 a(1,1) 11 a(4,1) 11 #1 #1 #1 #1",
                  "dtrsm_ R U N U 4 3 1 a(1,1) 11 a(4,1) 11 #1 #1 #1 #1",
                  "blac_dsyrk_scaled_ 3 4 3 -1 a(4,1) 11 a(4,1) 11 1 a(4,4) 11 dinv(1)",
                  "blac_selim_small_reg_ 3 a(4,4) 11 d(4) dinv(4) tol(4) negpiv(4) reg(4) dcorr(4)",
                  "blac_dtrsm_ R U N U 1 3 1 a(4,4) 11 a(7,4) 11 #1 #1 #1 #1",
                  "dtrsm_ R U N U 1 3 1 a(4,4) 11 a(7,4) 11 #1 #1 #1 #1",
                  "blac_dsyrk_scaled_ 3 1 3 -1 a(7,4) 11 a(7,4) 11 1 a(7,7) 11 dinv(4)",
                  "blac_selim_small_reg_ 1 a(7,7) 11 d(7) dinv(7) tol(7) negpiv(7) reg(7) dcorr(7)",
              }));
}

TEST(CallsOfUelim, OfOrderSevenInPanelsOfThree)
{
    EXPECT_EQ(calls_of_uelim(7, 3), (Calls{
                                        "blac_uelim_small_ 3 a(1,1) 11 d(1) dinv(1) tolerance",
                                        "dtrsm_ R U N U 4 3 1 a(1,1) 11 a(4,1) 11 #1 #1 #1 #1",
                                        "dtrsm_ L L N N 3 4 1 a(1,1) 11 a(1,4) 11 #1 #1 #1 #1",
                                        "dgemm_ N N 4 4 3 -1 a(4,1) 11 a(1,4) 11 1 a(4,4) 11 #1 #1",
                                        "blac_uelim_small_ 3 a(4,4) 11 d(4) dinv(4) tolerance",
                                        "dtrsm_ R U N U 1 3 1 a(4,4) 11 a(7,4) 11 #1 #1 #1 #1",
                                        "dtrsm_ L L N N 3 1 1 a(4,4) 11 a(4,7) 11 #1 #1 #1 #1",
                                        "dgemm_ N N 1 1 3 -1 a(7,4) 11 a(4,7) 11 1 a(7,7) 11 #1 #1",
                                        "blac_uelim_small_ 1 a(7,7) 11 d(7) dinv(7) tolerance",
                                    }));
}

TEST(CallsOfUelimReg, OfOrderSevenInPanelsOfThreeSolveDirectly)
{
    EXPECT_EQ(calls_of_uelim_reg(7, 3),
              (Calls{
                  "blac_uelim_small_reg_ 3 a(1,1) 11 d(1) dinv(1) tol(1) negpiv(1) reg(1) dcorr(1)",
                  "dtrsm_ R U N U 4 3 1 a(1,1) 11 a(4,1) 11 #1 #1 #1 #1",
                  "dtrsm_ L L N N 3 4 1 a(1,1) 11 a(1,4) 11 #1 #1 #1 #1",
                  "dgemm_ N N 4 4 3 -1 a(4,1) 11 a(1,4) 11 1 a(4,4) 11 #1 #1",
                  "blac_uelim_small_reg_ 3 a(4,4) 11 d(4) dinv(4) tol(4) negpiv(4) reg(4) dcorr(4)",
                  "dtrsm_ R U N U 1 3 1 a(4,4) 11 a(7,4) 11 #1 #1 #1 #1",
                  "dtrsm_ L L N N 3 1 1 a(4,4) 11 a(4,7) 11 #1 #1 #1 #1",
                  "dgemm_ N N 1 1 3 -1 a(7,4) 11 a(4,7) 11 1 a(7,7) 11 #1 #1",
                  "blac_uelim_small_reg_ 1 a(7,7) 11 d(7) dinv(7) tol(7) negpiv(7) reg(7) dcorr(7)",
              }));
}

TEST(CallsOfTheBlockedEliminations, UpToThePanelWidthAreOneBlock)
{
    for (int n = 1; n <= 5; ++n) {
        const std::string rest =
            std::string(1, static_cast<char>('0' + n)).append(" a(1,1) 11 d(1) dinv(1) tolerance");
        EXPECT_EQ(calls_of_selim(n, 5), Calls{std::string("blac_selim_small_ ").append(rest)});
        EXPECT_EQ(calls_of_uelim(n, 5), Calls{std::string("blac_uelim_small_ ").append(rest)});
    }
}

TEST(CallsOfTheBlockedEliminations, OfAMultipleOfThePanelWidthEndWithAFullBlock)
{
    const Calls symmetric = calls_of_selim(6, 3), unsymmetric = calls_of_uelim(6, 3);
    EXPECT_EQ(symmetric.size(), 4u);
    EXPECT_EQ(symmetric.back(), "blac_selim_small_ 3 a(4,4) 11 d(4) dinv(4) tolerance");
    EXPECT_EQ(unsymmetric.size(), 5u);
    EXPECT_EQ(unsymmetric.back(), "blac_uelim_small_ 3 a(4,4) 11 d(4) dinv(4) tolerance");
}

TEST(CallsOfTheBlockedEliminations, OfOrderZeroAndBelowAreWhatThePanelArithmeticGives)
{
    for (auto [n, order] : {std::pair{0, "4"}, {-1, "3"}, {-3, "1"}, {-4, "0"}, {-5, "-1"}, {-6, "-2"}}) {
        const std::string rest = std::string(" ") + order + " a(1,1) 11 d(1) dinv(1) ";
        EXPECT_EQ(calls_of_selim(n, 4), Calls{"blac_selim_small_" + rest + "tolerance"});
        EXPECT_EQ(calls_of_uelim(n, 4), Calls{"blac_uelim_small_" + rest + "tolerance"});
        EXPECT_EQ(calls_of_selim_reg(n, 4),
                  Calls{"blac_selim_small_reg_" + rest + "tol(1) negpiv(1) reg(1) dcorr(1)"});
        EXPECT_EQ(calls_of_uelim_reg(n, 4),
                  Calls{"blac_uelim_small_reg_" + rest + "tol(1) negpiv(1) reg(1) dcorr(1)"});
    }
}

} // namespace
