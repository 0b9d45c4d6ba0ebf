// SPDX-License-Identifier: BSD-3-Clause
// The small eliminations in the tiers below the best: tier R beside tier V, tier A beside the loop as
// documented, compiled for the same instructions. Linked with the library's objects, where the tier can be
// forced.
#include "TOVBlaModule.h"
#include "blocks.h"
#include "processor.h"
#include "reference.h"

namespace bench {
namespace {

const double Tolerance = 1e-10;

template <std::uint32_t Mask>
void symmetric(Blocks& b, double* a)
{
    bla_feature_word = Mask;
    blac_selim_small_(&b.n, a, &b.lda, b.d, b.dinv, &Tolerance);
}

template <std::uint32_t Mask>
void unsymmetric(Blocks& b, double* a)
{
    bla_feature_word = Mask;
    blac_uelim_small_(&b.n, a, &b.lda, b.d, b.dinv, &Tolerance);
}

} // namespace

void add_families()
{
    for (int n : {8, 16, 32, 64, 128, 256}) {
        const std::string size = "_small/" + std::to_string(n) + '/';
        const double third = n * (n * 1.0 * n) / 3;

        add_variant("tier_R_selim" + size + "kernel", n, n, third, symmetric<tier::R>);
        add_variant("tier_R_selim" + size + "tier_V", n, n, third, symmetric<tier::V>);
        add_variant("tier_A_selim" + size + "kernel", n, n, third, symmetric<tier::A>);
        add_variant("tier_A_selim" + size + "loop", n, n, third, [](Blocks& b, double* a) {
            reference::selim_small(b.n, a, b.lda, b.d, b.dinv, Tolerance);
        });

        add_variant("tier_R_uelim" + size + "kernel", n, n, 2 * third, unsymmetric<tier::R>);
        add_variant("tier_R_uelim" + size + "tier_V", n, n, 2 * third, unsymmetric<tier::V>);
        add_variant("tier_A_uelim" + size + "kernel", n, n, 2 * third, unsymmetric<tier::A>);
        add_variant("tier_A_uelim" + size + "loop", n, n, 2 * third, [](Blocks& b, double* a) {
            reference::uelim_small(b.n, a, b.lda, b.d, b.dinv, Tolerance);
        });
    }
}

} // namespace bench
