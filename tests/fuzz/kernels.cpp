// SPDX-License-Identifier: BSD-3-Clause
// Differential fuzzing: the input chooses a kernel, its sizes, increments, layouts and data; every tier of
// this processor must leave the same memory as the plain loop, all arrays and what lies around them.
#include "TOVBlaModule.h"
#include "bits.h"
#include "bytes.h"
#include "random.h"
#include "reference.h"
#include "tiers.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <random>
#include <vector>

using namespace support;

namespace {

/// An array three times over: as it is before the call, for the plain loop, for the library.
struct Array
{
    Guarded<double> before, expected, actual;
    std::int64_t start; // element that the call is given: not the first one of a vector walked downwards

    Array(std::int64_t count, std::size_t gap, std::int64_t first)
        : before(count, gap), expected(count, gap), actual(count, gap), start(first)
    {
    }
    void reset(const Guarded<double>& to) const
    {
        std::memcpy(to.pages().begin(), before.pages().begin(), before.pages().size());
    }
};

class Case
{
public:
    explicit Case(fuzz::Bytes& bytes) : bytes_(bytes)
    {
        for (int i = 0; i < 4; ++i)
            seed_ = seed_ << 8 | bytes.byte();
    }

    /// An array of numbers; moved ones may be any bits.
    Array& array(std::int64_t count, bool moved = false, std::int64_t start = 0)
    {
        const std::size_t gaps[] = {0, 8, 16, 24, 3};
        Array& x = arrays_.emplace_back(count, bytes_.choice(gaps), start);
        const Data kinds[] = {Data::Ordinary, Data::Special, moved ? Data::Bits : Data::Special,
                              Data::Ordinary};
        const Data kind = bytes_.choice(kinds);
        const double specials[] = {0.0, -0.0,   1e-36, -1e-36, 1e36, double(NAN), double(INFINITY),
                                   1.0, 5e-324, 0.5};
        std::mt19937_64 random(seed_ + arrays_.size());
        const bool integers = bytes_.byte() % 4 == 0; // exact cancellation
        for (std::int64_t i = 0; i < x.before.size(); ++i)
            x.before.set(i, integers ? static_cast<double>(random() % 5) - 2.0 : draw(random, kind));
        for (int edits = bytes_.number(0, 3); edits > 0 && count > 0; --edits) {
            const std::int64_t at = (bytes_.byte() + 256 * bytes_.byte()) % count;
            x.before.set(at, bytes_.choice(specials));
        }
        x.reset(x.expected);
        return x;
    }
    /// A vector of n elements with this increment.
    Array& vector(int n, int inc, bool moved = false)
    {
        const std::int64_t span = n < 1 ? 0 : std::int64_t{n - 1} * std::abs(inc);
        return array(n < 1 ? 0 : span + 1, moved, inc < 0 ? span : 0);
    }

    /// Takes a number into the comparison.
    static void put(double* to, double value) { std::memcpy(to, &value, 8); }

    /// Holds call, the library's, on every tier against the plain loop. Both are given a function that yields
    /// the address of an array.
    template <class Plain, class Call>
    void compare(const char* name, NaNs nans, Plain plain, Call call)
    {
        plain([](const Array& x) { return x.expected.data() + x.start; });
        for (const Tier& tier : tiers()) {
            bla_feature_word = tier.mask;
            for (const Array& x : arrays_)
                x.reset(x.actual);
            call([](const Array& x) { return x.actual.data() + x.start; });
            int number = 0;
            for (const Array& x : arrays_) {
                ++number;
                if (auto same = same_memory(x.expected, x.actual, nans); !same) {
                    std::fprintf(stderr, "%s on tier %s differs: array %d, %s\n", name, tier.name, number,
                                 same.message());
                    std::abort();
                }
            }
        }
    }

private:
    fuzz::Bytes& bytes_;
    std::uint64_t seed_ = 0;
    std::deque<Array> arrays_;
};

#ifdef BLA_FUZZ_WRONG
/// A kernel that is wrong in last bits only: the fuzzer must find it.
void wrong_scale_low2(const int* n, reference::number* a, const int* lda)
{
    for (std::int64_t j = 0; j < *n; ++j)
        for (std::int64_t i = j + 1; i < *n; ++i) {
            const double p = a[j + j * *lda];
            a[i + j * *lda] = p > 1e-36 || -1e-36 > p ? a[i + j * *lda] / p : a[i + j * *lda] * 0.0;
        }
}
#    define blac_scale_low2_ wrong_scale_low2
#endif

/// Judges one call of kernel number `kernel`; false if there is none of this number.
bool judge(int kernel, fuzz::Bytes& bytes)
{
    Case c(bytes);
    // Most sizes are small; one in sixteen is large enough for bands, tiles and blocks.
    auto size = [&](int least) {
        return bytes.byte() % 16 == 0 ? bytes.number(least, 200) : bytes.number(least, 40);
    };
    const int m = size(-1), n = size(-1), k = size(1), rows = m > 0 ? m : 1, columns = n > 0 ? n : 1;
    const int lda = bytes.number(0, 5), ldb = bytes.number(0, 5), ldc = bytes.number(0, 5); // beyond the rows
    const int increments[] = {1, 1, 1, 1, 1, 0, -1, 2, -2, 3};
    const int incx = bytes.choice(increments), incy = bytes.choice(increments),
              incz = bytes.choice(increments);
    const std::int64_t long_n = n;
    const auto computed = NaNs::Alike, moved = NaNs::Exact;

    switch (kernel) {
    case 0: {
        auto &x = c.vector(n, 1, true), &a = c.array(1, true);
        c.compare(
            "tovbla_vdasn_", moved, [&](auto at) { reference::vdasn(n, at(x), at(a)); },
            [&](auto at) { tovbla_vdasn_(&n, at(x), at(a)); });
        return true;
    }
    case 1: {
        auto &x = c.vector(n, 1, true), &a = c.array(1, true);
        c.compare(
            "tovbla_bvdasn_", moved, [&](auto at) { reference::vdasn(n, at(x), at(a)); },
            [&](auto at) { tovbla_bvdasn_(&long_n, at(x), at(a)); });
        return true;
    }
    case 2: {
        auto &x = c.vector(n, 1), &a = c.array(1);
        c.compare(
            "tovbla_vdscale_", computed, [&](auto at) { reference::vdscale(n, at(x), a.before.get(0)); },
            [&](auto at) { tovbla_vdscale_(&n, at(x), at(a)); });
        return true;
    }
    case 3: {
        auto &x = c.vector(n, 1), &a = c.array(1);
        c.compare(
            "tovbla_bvdscale_", computed, [&](auto at) { reference::vdscale(n, at(x), a.before.get(0)); },
            [&](auto at) { tovbla_bvdscale_(&long_n, at(x), at(a)); });
        return true;
    }
    case 4: {
        auto &x = c.vector(n, incx, true), &y = c.vector(n, incy, true);
        c.compare(
            "tovbla_vdcopyi_", moved, [&](auto at) { reference::vdcopyi(n, at(x), incx, at(y), incy); },
            [&](auto at) { tovbla_vdcopyi_(&n, at(x), &incx, at(y), &incy); });
        return true;
    }
    case 5: {
        auto &x = c.vector(n, incx, true), &y = c.vector(n, incy, true);
        c.compare(
            "tovbla_vdnegcopyi_", moved, [&](auto at) { reference::vdnegcopyi(n, at(x), incx, at(y), incy); },
            [&](auto at) { tovbla_vdnegcopyi_(&n, at(x), &incx, at(y), &incy); });
        return true;
    }
    case 6: {
        auto &x = c.vector(n, incx), &y = c.vector(n, incy), &z = c.vector(n, incz);
        c.compare(
            "tovbla_vdaddi_", computed,
            [&](auto at) { reference::vdaddi(n, at(x), incx, at(y), incy, at(z), incz); },
            [&](auto at) { tovbla_vdaddi_(&n, at(x), &incx, at(y), &incy, at(z), &incz); });
        return true;
    }
    case 7: {
        auto &x = c.vector(n, incx), &y = c.vector(n, incy), &z = c.vector(n, incz);
        c.compare(
            "tovbla_vdnegaddi_", computed,
            [&](auto at) { reference::vdnegaddi(n, at(x), incx, at(y), incy, at(z), incz); },
            [&](auto at) { tovbla_vdnegaddi_(&n, at(x), &incx, at(y), &incy, at(z), &incz); });
        return true;
    }
    case 8: {
        auto &x = c.array(2 * n, true), &y = c.array(2 * n, true);
        c.compare(
            "tovbla_vzconj_", moved, [&](auto at) { reference::vzconj(n, at(x), at(y)); },
            [&](auto at) {
                tovbla_vzconj_(&n, reinterpret_cast<const blac_complex*>(at(x)),
                               reinterpret_cast<blac_complex*>(at(y)));
            });
        return true;
    }
    case 9: {
        const int la = rows + lda, lb = rows + ldb;
        auto &a = c.array(extent(m, n, la)), &b = c.array(extent(m, n, lb));
        c.compare(
            "blac_addrectblock_", computed,
            [&](auto at) { reference::addrectblock(m, n, at(a), la, at(b), lb); },
            [&](auto at) { blac_addrectblock_(&m, &n, at(a), &la, at(b), &lb); });
        return true;
    }
    case 10: {
        const int la = rows + lda, lb = columns + ldb;
        auto &a = c.array(extent(m, n, la)), &b = c.array(extent(n, m, lb));
        c.compare(
            "blac_addrectblockt_", computed,
            [&](auto at) { reference::addrectblockt(m, n, at(a), la, at(b), lb); },
            [&](auto at) { blac_addrectblockt_(&m, &n, at(a), &la, at(b), &lb); });
        return true;
    }
    case 11: {
        const int la = columns + lda, lb = columns + ldb;
        auto &a = c.array(extent(n, n, la)), &b = c.array(extent(n, n, lb));
        c.compare(
            "blac_addtriblock_", computed, [&](auto at) { reference::addtriblock(n, at(a), la, at(b), lb); },
            [&](auto at) { blac_addtriblock_(&n, at(a), &la, at(b), &lb); });
        return true;
    }
    case 12: {
        const int la = columns + lda;
        auto &a = c.array(extent(n, n, la)), &d = c.array(n), &dinv = c.array(n);
        c.compare(
            "blac_copydiag_", computed, [&](auto at) { reference::copydiag(n, at(a), la, at(d), at(dinv)); },
            [&](auto at) { blac_copydiag_(&n, at(a), &la, at(d), at(dinv)); });
        return true;
    }
    case 13: {
        const int la = columns + lda, lb = rows + ldb;
        auto &a = c.array(extent(n, m, la), true), &b = c.array(extent(m, n, lb), true);
        c.compare(
            "blac_datcpy_", moved, [&](auto at) { reference::datcpy(m, n, at(a), la, at(b), lb); },
            [&](auto at) { blac_datcpy_(&m, &n, at(a), &la, at(b), &lb); });
        return true;
    }
    case 14: {
        const int la = rows + lda, lb = rows + ldb;
        auto &a = c.array(extent(m, n, la)), &s = c.array(n), &b = c.array(extent(m, n, lb));
        c.compare(
            "blac_dlacpysc_", computed,
            [&](auto at) { reference::dlacpysc(m, n, at(a), la, at(s), at(b), lb); },
            [&](auto at) { blac_dlacpysc_(&m, &n, at(a), &la, at(s), at(b), &lb); });
        return true;
    }
    case 15: {
        const int height = m < 0 ? 0 : m, la = rows + lda, lb = rows + ldb;
        auto &b = c.array(extent(m, n, lb), true), &a = c.array(extent(m, n, la), true);
        c.compare(
            "blaC_copyrect_intr", moved,
            [&](auto at) { reference::copyrect(height, n, at(b), lb, at(a), la); },
            [&](auto at) { blaC_copyrect_intr(height, n, at(b), lb, at(a), la); });
        return true;
    }
    case 16: {
        auto &a = c.array(1, true), &x = c.vector(n, incx, true);
        c.compare(
            "blac_dset_", moved, [&](auto at) { reference::dset(n, at(a), at(x), incx); },
            [&](auto at) { blac_dset_(&n, at(a), at(x), &incx); });
        return true;
    }
    case 17: {
        const int la = columns + lda;
        auto& a = c.array(extent(n, n, la), true);
        c.compare(
            "blac_zerotri_", moved, [&](auto at) { reference::zerotri(n, 0, n, at(a), la); },
            [&](auto at) { blac_zerotri_(&n, at(a), &la); });
        return true;
    }
    case 18: {
        const int la = columns + lda, first = n > 0 ? bytes.number(0, n - 1) : 0,
                  width = n > 0 ? bytes.number(-1, n - first) : 0;
        auto& a = c.array(extent(n, n, la), true);
        c.compare(
            "blaC_zerotriC", moved, [&](auto at) { reference::zerotri(n, first, width, at(a), la); },
            [&](auto at) { blaC_zerotriC(n, first, width, at(a), la); });
        return true;
    }
    case 19: {
        const char uplo = bytes.letter("LUluX");
        const int la = columns + lda;
        auto& a = c.array(extent(n, n, la), true);
        c.compare(
            "blac_reflect_", moved, [&](auto at) { reference::reflect(uplo, n, at(a), la); },
            [&](auto at) { blac_reflect_(&uplo, &n, at(a), &la); });
        return true;
    }
    case 20: {
        const int la = rows + lda, lb = rows + ldb;
        auto &d = c.array(n), &a = c.array(extent(m, n, la)), &b = c.array(extent(m, n, lb));
        c.compare(
            "blac_scale_", computed, [&](auto at) { reference::scale(m, n, at(d), at(a), la, at(b), lb); },
            [&](auto at) { blac_scale_(&m, &n, at(d), at(a), &la, at(b), &lb); });
        return true;
    }
    case 21: {
        const int la = rows + lda;
        auto &a = c.array(extent(m, n, la)), &d = c.array(m);
        c.compare(
            "blac_scale2_", computed, [&](auto at) { reference::scale2(m, n, at(a), la, at(d)); },
            [&](auto at) { blac_scale2_(&m, &n, at(a), &la, at(d)); });
        return true;
    }
    case 22: {
        const int la = columns + lda;
        auto &a = c.array(extent(n, m, la)), &d = c.array(m);
        c.compare(
            "blac_scale2t_", computed, [&](auto at) { reference::scale2t(m, n, at(a), la, at(d)); },
            [&](auto at) { blac_scale2t_(&m, &n, at(a), &la, at(d)); });
        return true;
    }
    case 23: {
        const int la = columns + lda;
        auto &a = c.array(extent(n, n, la)), &d = c.array(n - 1);
        c.compare(
            "blac_scale_low_", computed, [&](auto at) { reference::scale_low(n, at(a), la, at(d)); },
            [&](auto at) { blac_scale_low_(&n, at(a), &la, at(d)); });
        return true;
    }
    case 24: {
        const int la = columns + lda;
        auto& a = c.array(extent(n, n, la));
        c.compare(
            "blac_scale_low2_", computed, [&](auto at) { reference::scale_low2(n, at(a), la); },
            [&](auto at) { blac_scale_low2_(&n, at(a), &la); });
        return true;
    }
    case 25:
    case 26: { // the two forms differ in the step of D
        const char transa = bytes.letter("NTnt"), transb = bytes.letter("NTnt");
        const bool plain_a = (transa | 32) == 'n', plain_b = (transb | 32) == 'n', vector = kernel == 26;
        const int la = (plain_a ? rows : k) + lda, lb = (plain_b ? k : columns) + ldb, lc = rows + ldc;
        const int ldd = vector ? 0 : bytes.number(0, 5), width = columns;
        const double scalars[] = {1.0, -1.0, 0.0, 0.5, double(NAN), -0.0};
        const double alpha = bytes.choice(scalars), beta = bytes.choice(scalars);
        auto &a = c.array(plain_a ? extent(m, k, la) : extent(k, m, la)),
             &b = c.array(plain_b ? extent(k, width, lb) : extent(width, k, lb)),
             &d = c.array((k - 1) * (ldd + 1) + 1), &result = c.array(extent(m, width, lc));
        const int height = m < 0 ? 0 : m;
        auto plain = [&](auto at) {
            reference::dgemm_scaled(transa, transb, height, width, k, alpha, at(a), la, at(b), lb, beta,
                                    at(result), lc, at(d), ldd);
        };
        if (vector)
            c.compare("blac_dgemm_scaled2_", computed, plain, [&](auto at) {
                blac_dgemm_scaled2_(&transa, &transb, &height, &width, &k, &alpha, at(a), &la, at(b), &lb,
                                    &beta, at(result), &lc, at(d));
            });
        else
            c.compare("blac_dgemm_scaled_", computed, plain, [&](auto at) {
                blac_dgemm_scaled_(&transa, &transb, &height, &width, &k, &alpha, at(a), &la, at(b), &lb,
                                   &beta, at(result), &lc, at(d), &ldd);
            });
        return true;
    }
    case 27:
    case 28: {
        const int nb = bytes.number(1, 12), la = columns + lda, lb = columns + ldb, lc = columns + ldc;
        const bool two = kernel == 28; // one factor, D in a matrix
        const int ldd = two ? bytes.number(0, 5) : 0;
        const double scalars[] = {-1.0, 1.0, 0.0, 0.5};
        const double alpha = bytes.choice(scalars), beta = bytes.choice(scalars);
        auto &a = c.array(extent(columns, k, la)), &b = c.array(extent(columns, k, lb)),
             &d = c.array((k - 1) * (ldd + 1) + 1), &result = c.array(extent(columns, columns, lc));
        auto plain = [&](auto at) {
            reference::dsyrk_scaled(nb, columns, k, alpha, at(a), la, two ? at(a) : at(b), two ? la : lb,
                                    beta, at(result), lc, at(d), ldd);
        };
        if (two)
            c.compare("blac_dsyrk_scaled2_", computed, plain, [&](auto at) {
                blac_dsyrk_scaled2_(&nb, &columns, &k, &alpha, at(a), &la, &beta, at(result), &lc, at(d),
                                    &ldd);
            });
        else
            c.compare("blac_dsyrk_scaled_", computed, plain, [&](auto at) {
                blac_dsyrk_scaled_(&nb, &columns, &k, &alpha, at(a), &la, at(b), &lb, &beta, at(result), &lc,
                                   at(d));
            });
        return true;
    }
    case 29:
    case 30: {
        const double tols[] = {1e-12, 0.5, 1.0, 0.0, -1.0, double(NAN), 1e-300};
        const double tol = bytes.choice(tols);
        const int la = columns + lda;
        auto &a = c.array(extent(n, n, la)), &d = c.array(n), &dinv = c.array(n);
        const bool symmetric = kernel == 29;
        c.compare(
            symmetric ? "blac_selim_small_" : "blac_uelim_small_", computed,
            [&](auto at) {
                (symmetric ? reference::selim_small : reference::uelim_small)(n, at(a), la, at(d), at(dinv),
                                                                              tol);
            },
            [&](auto at) {
                (symmetric ? blac_selim_small_ : blac_uelim_small_)(&n, at(a), &la, at(d), at(dinv), &tol);
            });
        return true;
    }
    case 31:
    case 32: {
        const int la = columns + lda;
        auto &a = c.array(extent(n, n, la)), &d = c.array(n), &dinv = c.array(n), &tol = c.array(n),
             &reg = c.array(n), &dcorr = c.array(n);
        std::vector<int> negpiv(static_cast<std::size_t>(columns));
        for (int& flag : negpiv)
            flag = bytes.number(-1, 2);
        const bool symmetric = kernel == 31;
        c.compare(
            symmetric ? "blac_selim_small_reg_" : "blac_uelim_small_reg_", computed,
            [&](auto at) {
                (symmetric ? reference::selim_small_reg : reference::uelim_small_reg)(
                    n, at(a), la, at(d), at(dinv), at(tol), negpiv.data(), at(reg), at(dcorr));
            },
            [&](auto at) {
                (symmetric ? blac_selim_small_reg_ : blac_uelim_small_reg_)(
                    &n, at(a), &la, at(d), at(dinv), at(tol), negpiv.data(), at(reg), at(dcorr));
            });
        return true;
    }
    case 33: {
        const char job = bytes.letter("PNpnX");
        const int order = n < 0 ? 0 : n, nlead = bytes.number(0, 41), ncol = bytes.number(-1, order),
                  la = columns + lda;
        const double tols[] = {0.0, 1e-8, 0.5, -1.0};
        const double tol = bytes.choice(tols);
        auto &l = c.array(extent(order, order, la)), &x = c.array(order), &info = c.array(1);
        for (int j = 0; j < order; ++j) // mostly a factor that can be downdated
            if (bytes.byte() % 8)
                l.before.set(j + std::int64_t{j} * la, 1.0 + 20.0 * bytes.byte());
        l.reset(l.expected);
        c.compare(
            "blac_cholupd_", computed,
            [&](auto at) {
                c.put(at(info), reference::cholupd(job, order, nlead, ncol, at(l), la, at(x), tol));
            },
            [&](auto at) {
                int refused;
                blac_cholupd_(&job, &order, &nlead, &ncol, at(l), &la, at(x), &tol, &refused);
                c.put(at(info), refused);
            });
        return true;
    }
    case 34:
    case 35: {
        const int order = n < 1 ? 1 : n, la = columns + lda;
        auto &l = c.array(extent(order, order, la)), &x = c.array(order), &cosine = c.array(order),
             &sine = c.array(order), &info = c.array(1);
        for (int j = 0; j < order; ++j)
            if (bytes.byte() % 8)
                l.before.set(j + std::int64_t{j} * la, 1.0 + 20.0 * bytes.byte());
        l.reset(l.expected);
        if (kernel == 34)
            c.compare(
                "blac_dchud_", computed,
                [&](auto at) { reference::dchud(at(l), la, order, at(x), at(cosine), at(sine)); },
                [&](auto at) { blac_dchud_(at(l), &la, &order, at(x), at(cosine), at(sine)); });
        else
            c.compare(
                "blac_dchdd_", computed,
                [&](auto at) {
                    c.put(at(info), reference::dchdd(at(l), la, order, at(x), at(cosine), at(sine)));
                },
                [&](auto at) {
                    int refused;
                    blac_dchdd_(at(l), &la, &order, at(x), at(cosine), at(sine), &refused);
                    c.put(at(info), refused);
                });
        return true;
    }
    case 36:
    case 37:
    case 38: {
        const int nrhs = bytes.number(0, 20), height = m < 0 ? 0 : m, width = columns;
        std::vector<int> ia(1, bytes.number(0, 2)), ja, list;
        for (int i = 0; i < height; ++i) { // one row in eight ends before it starts
            const int entries = bytes.byte() % 8 ? bytes.number(0, 6) : -1;
            ia.push_back(std::max(0, ia.back() + entries));
        }
        for (int p = *std::max_element(ia.begin(), ia.end()); p > 0; --p)
            ja.push_back(bytes.number(0, std::min(width, 255) - 1));
        for (int r = height ? bytes.number(0, 12) : 0; r > 0; --r)
            list.push_back(bytes.number(0, std::min(height, 255) - 1));
        const int nl = static_cast<int>(list.size());
        auto& a = c.array(static_cast<std::int64_t>(ja.size()));
        auto& x = c.array(std::int64_t{nrhs} * (kernel == 36 ? width : kernel == 37 ? height : nl));
        auto& y = c.array(std::int64_t{nrhs} * (kernel == 36 ? height : width));
        if (kernel == 36)
            c.compare(
                "blac_sparse_umv_", computed,
                [&](auto at) {
                    reference::sparse_umv(at(a), at(x), ia.data(), ja.data(), at(y), height, width, nrhs);
                },
                [&](auto at) {
                    blac_sparse_umv_(at(a), at(x), ia.data(), ja.data(), at(y), &height, &width, &nrhs);
                });
        else if (kernel == 37)
            c.compare(
                "blac_sparse_umtv_", computed,
                [&](auto at) {
                    reference::sparse_umtv(at(a), at(x), ia.data(), ja.data(), at(y), height, width, nrhs);
                },
                [&](auto at) {
                    blac_sparse_umtv_(at(a), at(x), ia.data(), ja.data(), at(y), &height, &width, &nrhs);
                });
        else
            c.compare(
                "blac_sparse_sparse_umtv_", computed,
                [&](auto at) {
                    reference::sparse_sparse_umtv(at(a), at(x), ia.data(), ja.data(), at(y), nl, width, nrhs,
                                                  list.data());
                },
                [&](auto at) {
                    blac_sparse_sparse_umtv_(at(a), at(x), ia.data(), ja.data(), at(y), &nl, &width, &nrhs,
                                             list.data());
                });
        return true;
    }
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool alone = [] {
        blaC_set_num_threads(1);
        return true;
    }();
    static_cast<void>(alone);
    fuzz::Bytes bytes(data, size);
    judge(bytes.number(0, 38), bytes);
    return 0;
}
