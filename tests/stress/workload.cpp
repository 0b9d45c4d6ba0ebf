// SPDX-License-Identifier: BSD-3-Clause
#include "workload.h"

#include "TOVBlaModule.h"

#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <random>
#include <vector>

namespace stress {
namespace {

using Vector = std::vector<double>;

struct Data
{
    std::mt19937_64 random;
    std::uint64_t hash = 1469598103934665603u;

    double number() { return static_cast<double>(static_cast<std::int64_t>(random() >> 11)) * 0x1p-52 - 1.0; }
    Vector vector(int n)
    {
        Vector v(static_cast<std::size_t>(n));
        for (double& x : v)
            x = number();
        return v;
    }
    Vector front(int n)
    {
        Vector a = vector(n * n);
        for (int k = 0; k < n; ++k)
            a[static_cast<std::size_t>(k * (n + 1))] += k % 3 ? 2.0 * n : -2.0 * n;
        return a;
    }
    void take(const Vector& v)
    {
        for (double x : v) {
            std::uint64_t bits;
            std::memcpy(&bits, &x, 8);
            hash = (hash ^ bits) * 1099511628211u;
            hash ^= hash >> 31;
        }
    }
};

} // namespace

void* linked(const char* name)
{
    return dlsym(RTLD_DEFAULT, name);
}

#define ROUTINE(name) const auto name = reinterpret_cast<decltype(&::name)>(lookup(#name))

std::uint64_t workload(std::uint64_t seed, Lookup lookup)
{
    ROUTINE(blac_selim_);
    ROUTINE(blac_selim_reg_);
    ROUTINE(blaC_selimC);
    ROUTINE(blac_uelim_);
    ROUTINE(blac_uelim_reg_);
    ROUTINE(blac_dgemm_scaled_);
    ROUTINE(blac_dgemm_scaled2_);
    ROUTINE(blac_dsyrk_scaled_);
    ROUTINE(blac_dsyrk_scaled2_);
    ROUTINE(blac_dhamm_);
    ROUTINE(blac_scale_);
    ROUTINE(blac_datcpy_);
    ROUTINE(blac_addtriblock_);
    ROUTINE(blac_cholupd_);
    ROUTINE(blac_dchud_);
    ROUTINE(blac_dchdd_);
    ROUTINE(blac_sparse_umv_);
    ROUTINE(blac_sparse_umtv_);
    ROUTINE(blac_zdotc_);
    ROUTINE(blac_dpotrf_);

    Data data{std::mt19937_64(seed)};
    // Mostly small; now and then large enough for the BLAS to use its threads.
    const int n = seed % 16 == 3 ? 250 : 40 + static_cast<int>(seed % 30),
              nb = 8 + static_cast<int>(seed % 9);
    const double tol = 1e-10, one = 1.0;
    Vector d(static_cast<std::size_t>(n)), dinv(d), dcorr(d), tols(d.size(), 1e-10), reg(d.size(), 1.0);
    const std::vector<int> negpiv(d.size());

    Vector a = data.front(n);
    blac_selim_(&n, &nb, &tol, a.data(), &n, d.data(), dinv.data());
    data.take(a), data.take(d);
    a = data.front(n);
    blac_selim_reg_(&n, &nb, a.data(), &n, d.data(), dinv.data(), tols.data(), negpiv.data(), reg.data(),
                    dcorr.data());
    data.take(a), data.take(dcorr);
    a = data.front(n);
    blac_uelim_(&n, &nb, &tol, a.data(), &n, d.data(), dinv.data());
    data.take(a), data.take(dinv);
    a = data.front(n);
    blac_uelim_reg_(&n, &nb, a.data(), &n, d.data(), dinv.data(), tols.data(), negpiv.data(), reg.data(),
                    dcorr.data());
    data.take(a), data.take(dcorr);
    Vector packed = data.vector(n * n + 2 * n + nb * nb); // block columns, each from its diagonal block down
    for (int q = 0, column = 0; q * nb < n; column += (n - q * nb) * nb, ++q)
        for (int i = 0; i < nb && q * nb + i < n; ++i)
            packed[static_cast<std::size_t>(column + i * (n - q * nb + 1))] += 2.0 * n;
    blaC_selimC(n, nb, tol, packed.data());
    data.take(packed);

    const Vector x = data.vector(n * n), y = data.vector(n * n);
    Vector z = data.vector(n * n);
    blac_dgemm_scaled_("N", "T", &n, &n, &n, &one, x.data(), &n, y.data(), &n, &one, z.data(), &n, x.data(),
                       &n);
    blac_dgemm_scaled2_("T", "N", &n, &n, &n, &one, x.data(), &n, y.data(), &n, &one, z.data(), &n, d.data());
    blac_dsyrk_scaled_(&nb, &n, &n, &one, x.data(), &n, y.data(), &n, &one, z.data(), &n, d.data());
    blac_dsyrk_scaled2_(&nb, &n, &n, &one, x.data(), &n, &one, z.data(), &n, y.data(), &n);
    blac_dhamm_(&nb, &n, &n, &one, x.data(), &n, y.data(), &n, &one, z.data(), &n);
    data.take(z);
    blac_scale_(&n, &n, d.data(), x.data(), &n, z.data(), &n);
    data.take(z);
    blac_datcpy_(&n, &n, x.data(), &n, z.data(), &n);
    blac_addtriblock_(&n, z.data(), &n, y.data(), &n);
    data.take(z);

    Vector l = data.front(n), v = data.vector(n), c(d), s(d);
    for (int k = 0; k < n; ++k)
        l[static_cast<std::size_t>(k * (n + 1))] = n;
    int info = 0;
    blac_cholupd_("P", &n, &n, &n, l.data(), &n, v.data(), &one, &info);
    data.take(l), data.take(v);
    blac_dchud_(l.data(), &n, &n, v.data(), c.data(), s.data());
    blac_dchdd_(l.data(), &n, &n, v.data(), c.data(), s.data(), &info);
    data.take(l), data.take(c);

    std::vector<int> ia{0}, ja;
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < 5; ++k)
            ja.push_back(static_cast<int>(data.random() % static_cast<unsigned>(n)));
        ia.push_back(static_cast<int>(ja.size()));
    }
    const Vector entries = data.vector(static_cast<int>(ja.size()));
    const int nrhs = 9;
    blac_sparse_umv_(entries.data(), x.data(), ia.data(), ja.data(), z.data(), &n, &n, &nrhs);
    data.take(z);
    blac_sparse_umtv_(entries.data(), x.data(), ia.data(), ja.data(), z.data(), &n, &n, &nrhs);
    data.take(z);

    const int half = n / 2, step = 1;
    blac_complex dot;
    blac_zdotc_(&dot, &half, reinterpret_cast<const blac_complex*>(x.data()), &step,
                reinterpret_cast<const blac_complex*>(y.data()), &step);
    data.take({dot.real(), dot.imag()});
    a = data.front(n);
    for (int k = 0; k < n; ++k)
        a[static_cast<std::size_t>(k * (n + 1))] = 3.0 * n;
    blac_dpotrf_("L", &n, a.data(), &n, &info);
    data.take(a);
    return data.hash;
}

std::uint64_t first_call(Lookup lookup)
{
    ROUTINE(blac_scale_);
    Data data{std::mt19937_64(1)};
    const int n = 21;
    const Vector a = data.vector(n * n), d = data.vector(n);
    Vector b(a);
    blac_scale_(&n, &n, d.data(), a.data(), &n, b.data(), &n);
    data.take(b);
    return data.hash;
}

} // namespace stress
