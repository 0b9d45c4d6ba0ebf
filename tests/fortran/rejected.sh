#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# rejected.sh COMPILER MODULE_DIRECTORY: calls that the interfaces accept, and calls that they must refuse.
set -euo pipefail
compiler=$1 modules=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0

compiles() { # compiles STATEMENT [OPTION...]
    cat >"$scratch/call.f90" <<END
program call
    use tovbla
    implicit none
    integer :: n = 3, nb = 2, info, ipiv(3)
    real(8) :: a(3, 3), d(3), dinv(3), x(3), s
    complex(8) :: z(3), w
    $1
end program call
END
    "$compiler" "${@:2}" -I "$modules" -J "$scratch" -fsyntax-only "$scratch/call.f90" >"$scratch/log" 2>&1
}

accept() { compiles "$@" || { echo "refused: $1"; cat "$scratch/log"; status=1; }; }
refuse() {
    if compiles "${@:2}"; then
        echo "accepted ($1): $2"
        status=1
    elif ! grep -q '^Error:\|^Fatal' "$scratch/log"; then
        echo "failed otherwise ($1): $2"
        cat "$scratch/log"
        status=1
    fi
}

accept "call blac_selim_small(n, a, n, d, dinv, 1d-14)"
accept "call blac_selim(n, nb, 1d-14, a(1, 1), 3, d, dinv)"
accept "call blac_dtrsm('L', 'Lower', 'n', 'U', n, 1, 1d0, a, n, x, n)"
accept "call blac_zdotc(w, n, z, 1, z, 1)"
accept "s = blac_ddot(n, a(1, 2), 1, x, 1)"
accept "call blac_selimC(n, nb, 0d0, a)"
accept "if (blac_lsame('a', 'A')) call blac_xerbla('DGEMM ', 3)"
accept "info = blac_ilaenv(1, 'DGETRF', ' ', 3, 3, -1, -1)"

refuse "an argument missing"           "call blac_selim_small(n, a, n, d, dinv)"
refuse "an argument too many"          "call blac_selim_small(n, a, n, d, dinv, 1d-14, info)"
refuse "integer for real"              "call blac_selim_small(n, a, n, d, dinv, 0)"
refuse "single precision"              "call blac_selim_small(n, a, n, d, dinv, 1e-14)"
refuse "real for integer"              "call blac_dscal(3d0, 2d0, x, 1)"
refuse "64-bit integer"                "call blac_dscal(3_8, 2d0, x, 1)"
refuse "32-bit integer for a long one" "call tovbla_bvdasn(n, x, 2d0)"
refuse "array for scalar"              "call blac_dscal(n, d, x, 1)"
refuse "scalar for array"              "call blac_dscal(n, 2d0, s, 1)"
refuse "complex for real"              "call blac_dscal(n, 2d0, z, 1)"
refuse "integer for character"         "call blac_dpotrf(1, n, a, n, info)"
refuse "integer for logical"           "call blac_zlahqr(1, 1, n, 1, n, z, n, z, 1, n, z, n, info)"
refuse "constant for a result"         "call blac_dgetrf(n, n, a, n, ipiv, 0)"
refuse "order of blac_selim_reg"       "call blac_selim(n, nb, a, n, d, dinv, 1d-14)"
refuse "subroutine as a function"      "w = blac_zdotc(n, z, 1, z, 1)"
refuse "function as a subroutine"      "call blac_ddot(n, x, 1, x, 1)"
refuse "function of another type"      "if (blac_ddot(n, x, 1, x, 1)) n = 0"
refuse "array for a value"             "call blac_set_num_threads(ipiv)"
refuse "8-byte default integers"       "call blac_dscal(n, 2d0, x, 1)" -fdefault-integer-8

[ $status -eq 0 ] && echo "8 calls accepted, 19 refused"
exit $status
