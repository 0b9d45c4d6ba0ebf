// SPDX-License-Identifier: BSD-3-Clause
// A count below 1 ends a call before anything but counts is looked at: every other argument is a null pointer
// here, increments, leading dimensions and scalars included.
#include "TOVBlaModule.h"
#include "bits.h"
#include "tiers.h"

#include <gtest/gtest.h>

using namespace support;

namespace {

double* const nowhere = nullptr;
const int* const no_integer = nullptr;
const double* const no_scalar = nullptr;
constexpr int Three = 3;

/// Calls body(n) on every tier for each count that is none.
template <class Body>
void for_counts_below_one(Body body)
{
    on_every_tier([&] {
        for (int n : {0, -1, -4, -100, -2147483647 - 1})
            body(n);
    });
}

TEST(CountsBelowOne, OfVectorsEndTheCall)
{
    for_counts_below_one([](int n) {
        const std::int64_t n64 = n;
        tovbla_vdasn_(&n, nowhere, no_scalar);
        tovbla_bvdasn_(&n64, nowhere, no_scalar);
        tovbla_vdscale_(&n, nowhere, no_scalar);
        tovbla_bvdscale_(&n64, nowhere, no_scalar);
        tovbla_vdcopyi_(&n, nowhere, no_integer, nowhere, no_integer);
        tovbla_vdnegcopyi_(&n, nowhere, no_integer, nowhere, no_integer);
        tovbla_vdaddi_(&n, nowhere, no_integer, nowhere, no_integer, nowhere, no_integer);
        tovbla_vdnegaddi_(&n, nowhere, no_integer, nowhere, no_integer, nowhere, no_integer);
        tovbla_vzconj_(&n, nullptr, nullptr);
        blac_dset_(&n, no_scalar, nowhere, no_integer);
    });
}

TEST(CountsBelowOne, OfColumnsOrRowsEndTheCall)
{
    for_counts_below_one([](int n) {
        for (auto [rows, columns] : {std::pair{&Three, static_cast<const int*>(&n)},
                                     {static_cast<const int*>(&n), &Three},
                                     {static_cast<const int*>(&n), static_cast<const int*>(&n)}}) {
            blac_addrectblock_(rows, columns, nowhere, no_integer, nowhere, no_integer);
            blac_addrectblockt_(rows, columns, nowhere, no_integer, nowhere, no_integer);
            blac_datcpy_(rows, columns, nowhere, no_integer, nowhere, no_integer);
            blac_dlacpysc_(rows, columns, nowhere, no_integer, nowhere, nowhere, no_integer);
            blac_scale_(rows, columns, nowhere, nowhere, no_integer, nowhere, no_integer);
            blac_scale2_(rows, columns, nowhere, no_integer, nowhere);
            blac_scale2t_(rows, columns, nowhere, no_integer, nowhere);
        }
        // without columns the rows are of no interest, with a transposed array it is the other way round
        blac_addrectblock_(no_integer, &n, nowhere, no_integer, nowhere, no_integer);
        blac_addrectblockt_(no_integer, &n, nowhere, no_integer, nowhere, no_integer);
        blac_scale_(no_integer, &n, nowhere, nowhere, no_integer, nowhere, no_integer);
        blac_scale2_(no_integer, &n, nowhere, no_integer, nowhere);
        blac_scale2t_(&n, no_integer, nowhere, no_integer, nowhere);
        blaC_copyrect_intr(3, n, nowhere, 3, nowhere, 3);
        blaC_zerotriC(3, 0, n, nowhere, 3);
    });
}

TEST(CountsBelowOne, OfOrdersEndTheCall)
{
    for_counts_below_one([](int n) {
        blac_addtriblock_(&n, nowhere, no_integer, nowhere, no_integer);
        blac_copydiag_(&n, nowhere, no_integer, nowhere, nowhere);
        blac_zerotri_(&n, nowhere, no_integer);
        blac_scale_low_(&n, nowhere, no_integer, nowhere);
        blac_scale_low2_(&n, nowhere, no_integer);
        blac_reflect_("L", &n, nowhere, no_integer);
        blac_reflect_("U", &n, nowhere, no_integer);
        blac_selim_small_(&n, nowhere, no_integer, nowhere, nowhere, no_scalar);
        blac_uelim_small_(&n, nowhere, no_integer, nowhere, nowhere, no_scalar);
        blac_selim_small_reg_(&n, nowhere, no_integer, nowhere, nowhere, nowhere, nullptr, nowhere, nowhere);
        blac_uelim_small_reg_(&n, nowhere, no_integer, nowhere, nowhere, nowhere, nullptr, nowhere, nowhere);
    });
}

// The panel arithmetic makes a front of panel width of order 0, and nothing of -nb and below.
TEST(CountsBelowOne, OfFrontsEndTheCallOnceThereIsNoPanelLeft)
{
    on_every_tier([] {
        for (int n : {-3, -4, -100}) {
            blac_selim_(&n, &Three, no_scalar, nowhere, no_integer, nowhere, nowhere);
            blac_uelim_(&n, &Three, no_scalar, nowhere, no_integer, nowhere, nowhere);
            blac_selim_reg_(&n, &Three, nowhere, no_integer, nowhere, nowhere, nowhere, nullptr, nowhere,
                            nowhere);
            blac_uelim_reg_(&n, &Three, nowhere, no_integer, nowhere, nowhere, nowhere, nullptr, nowhere,
                            nowhere);
            blaC_selimC(n, 3, 0.0, nowhere);
        }
    });
}

TEST(CountsBelowOne, OfCholeskyFactorsEndTheCall)
{
    for_counts_below_one([](int n) {
        blac_dchud_(nowhere, no_integer, &n, nowhere, nowhere, nowhere);

        int info = -7;
        blac_cholupd_("P", &Three, &Three, &n, nowhere, no_integer, nowhere, no_scalar, &info);
        EXPECT_EQ(info, 0);
        info = -7;
        const int none = 0;
        blac_cholupd_("N", &n, &none, &Three, nowhere, no_integer, nowhere, no_scalar, &info);
        EXPECT_EQ(info, 0);
        blac_cholupd_("X", no_integer, no_integer, no_integer, nowhere, no_integer, nowhere, no_scalar,
                      &info);

        double l = 4.0, x = 1.0, s = 9.0; // the first element is formed whatever the order
        info = -7;
        blac_dchdd_(&l, no_integer, &n, &x, nowhere, &s, &info);
        EXPECT_EQ(info, 0);
        EXPECT_EQ(s, 0.25);
    });
}

TEST(CountsBelowOne, OfSparseRowsAndVectorsEndTheCall)
{
    for_counts_below_one([](int n) {
        blac_sparse_umv_(nowhere, nowhere, no_integer, no_integer, nowhere, &n, no_integer, no_integer);
        blac_sparse_umv_(nowhere, nowhere, no_integer, no_integer, nowhere, &Three, no_integer, &n);
        blac_sparse_umtv_(nowhere, nowhere, no_integer, no_integer, nowhere, no_integer, no_integer, &n);
        blac_sparse_sparse_umtv_(nowhere, nowhere, no_integer, no_integer, nowhere, no_integer, no_integer,
                                 &n, nullptr);

        Guarded<double> y(6); // cleared whatever the rows are
        const int two = 2;
        blac_sparse_umtv_(nowhere, nowhere, no_integer, no_integer, y, &n, &Three, &two);
        for (int i = 0; i < 6; ++i) {
            EXPECT_EQ(bits(y.get(i)), bits(0.0));
            y.set(i, 1.0);
        }
        blac_sparse_sparse_umtv_(nowhere, nowhere, no_integer, no_integer, y, &n, &Three, &two, nullptr);
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(bits(y.get(i)), bits(0.0));
    });
}

} // namespace
