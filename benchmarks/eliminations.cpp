// SPDX-License-Identifier: BSD-3-Clause
// The small eliminations over many independent blocks in the second-level cache, beside the loops as
// documented, the factorisations of the BLAS/LAPACK library and of Eigen, and multiplications and
// subtractions on registers.
#include "bench.h"

#include "TOVBlaModule.h"
#include "blocks.h"
#include "peers.h"
#include "reference.h"

namespace bench {
namespace {

void add_limit(const std::string& name)
{
    add(name, 2000 * limit::FlopsPerRound, [] { return Job{[] {}, [] { limit::multiply_subtract(2000); }}; });
}

const double Tolerance = 1e-10;

} // namespace

void add_eliminations()
{
    for (int n : {4, 6, 8, 12, 16, 21, 24, 32, 48, 64, 96, 128, 256, 512}) {
        const std::string size = std::to_string(n);
        const double symmetric = n * (n * 1.0 * n) / 3, unsymmetric = 2 * symmetric;

        const std::string s = "selim_small/" + size + '/';
        add_variant(s + "kernel", n, n, symmetric, [](Blocks& b, double* a) {
            blac_selim_small_(&b.n, a, &b.lda, b.d, b.dinv, &Tolerance);
        });
        add_variant(s + "loop", n, n, symmetric, [](Blocks& b, double* a) {
            reference::selim_small(b.n, a, b.lda, b.d, b.dinv, Tolerance);
        });
        add_variant(s + "dpotrf", n, n, symmetric, [](Blocks& b, double* a) {
            int info;
            dpotrf_("L", &b.n, a, &b.lda, &info, 1);
        });
        add_variant(s + "eigen_llt", n, n, symmetric, [](Blocks& b, double* a) { eigen_llt(b.n, a, b.lda); });
        add_limit(s + "limit");

        const std::string r = "selim_small_reg/" + size + '/';
        add_variant(r + "kernel", n, n, symmetric, [](Blocks& b, double* a) {
            blac_selim_small_reg_(&b.n, a, &b.lda, b.d, b.dinv, b.tol, b.negpiv.data(), b.reg, b.dcorr);
        });
        add_variant(r + "loop", n, n, symmetric, [](Blocks& b, double* a) {
            reference::selim_small_reg(b.n, a, b.lda, b.d, b.dinv, b.tol, b.negpiv.data(), b.reg, b.dcorr);
        });
        add_variant(r + "dpotrf", n, n, symmetric, [](Blocks& b, double* a) {
            int info;
            dpotrf_("L", &b.n, a, &b.lda, &info, 1);
        });

        const std::string u = "uelim_small/" + size + '/';
        add_variant(u + "kernel", n, n, unsymmetric, [](Blocks& b, double* a) {
            blac_uelim_small_(&b.n, a, &b.lda, b.d, b.dinv, &Tolerance);
        });
        add_variant(u + "loop", n, n, unsymmetric, [](Blocks& b, double* a) {
            reference::uelim_small(b.n, a, b.lda, b.d, b.dinv, Tolerance);
        });
        add_variant(u + "dgetrf", n, n, unsymmetric, [](Blocks& b, double* a) {
            std::vector<int>& pivots = b.negpiv;
            int info;
            dgetrf_(&b.n, &b.n, a, &b.lda, pivots.data(), &info);
        });
        add_variant(u + "eigen_lu", n, n, unsymmetric, [](Blocks& b, double* a) { eigen_lu(b.n, a, b.lda); });
        add_limit(u + "limit");

        const std::string v = "uelim_small_reg/" + size + '/';
        add_variant(v + "kernel", n, n, unsymmetric, [](Blocks& b, double* a) {
            blac_uelim_small_reg_(&b.n, a, &b.lda, b.d, b.dinv, b.tol, b.negpiv.data(), b.reg, b.dcorr);
        });
        add_variant(v + "loop", n, n, unsymmetric, [](Blocks& b, double* a) {
            reference::uelim_small_reg(b.n, a, b.lda, b.d, b.dinv, b.tol, b.negpiv.data(), b.reg, b.dcorr);
        });
        add_variant(v + "dgetrf", n, n, unsymmetric, [](Blocks& b, double* a) {
            std::vector<int> pivots(b.negpiv);
            int info;
            dgetrf_(&b.n, &b.n, a, &b.lda, pivots.data(), &info);
        });
    }
}

} // namespace bench
