// SPDX-License-Identifier: BSD-3-Clause
// The loops as documented behind the kernels' own interface: in a shared library, arguments by reference,
// options asked of lsame_. What a caller would have who had written them, not what a compiler makes of a loop
// whose size it sees.
#pragma once

#include "TOVBlaModule.h"

#pragma GCC visibility push(default)
extern "C" {
decltype(blac_scale_) plain_scale_;
decltype(blac_scale2_) plain_scale2_;
decltype(blac_scale2t_) plain_scale2t_;
decltype(blac_scale_low_) plain_scale_low_;
decltype(blac_scale_low2_) plain_scale_low2_;
decltype(blac_addrectblock_) plain_addrectblock_;
decltype(blac_addrectblockt_) plain_addrectblockt_;
decltype(blac_addtriblock_) plain_addtriblock_;
decltype(blac_datcpy_) plain_datcpy_;
decltype(blac_dlacpysc_) plain_dlacpysc_;
decltype(blaC_copyrect_intr) plain_copyrect_;
decltype(blac_zerotri_) plain_zerotri_;
decltype(blac_copydiag_) plain_copydiag_;
decltype(blac_reflect_) plain_reflect_;
decltype(blac_cholupd_) plain_cholupd_;
decltype(blac_dchud_) plain_dchud_;
decltype(blac_dchdd_) plain_dchdd_;
decltype(blac_selim_small_) plain_selim_small_;
decltype(blac_uelim_small_) plain_uelim_small_;
decltype(blac_selim_small_reg_) plain_selim_small_reg_;
decltype(blac_uelim_small_reg_) plain_uelim_small_reg_;
decltype(blac_selim_) plain_selim_;
decltype(blac_uelim_) plain_uelim_;
decltype(blac_sparse_umv_) plain_sparse_umv_;
decltype(blac_sparse_umtv_) plain_sparse_umtv_;
decltype(blac_dset_) plain_dset_;
decltype(tovbla_vdasn_) plain_vdasn_;
decltype(tovbla_vdscale_) plain_vdscale_;
decltype(tovbla_vdcopyi_) plain_vdcopyi_;
decltype(tovbla_vdnegcopyi_) plain_vdnegcopyi_;
decltype(tovbla_vdaddi_) plain_vdaddi_;
decltype(tovbla_vdnegaddi_) plain_vdnegaddi_;
decltype(tovbla_vzconj_) plain_vzconj_;
}
#pragma GCC visibility pop
