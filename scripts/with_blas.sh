#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Runs a program of this project over one of the BLAS/LAPACK libraries that are installed side by side:
#   scripts/with_blas.sh reference build/bin/bla_info
# Nothing of the system is changed; the choice holds for this one process. Status 77: that library is not here.
set -euo pipefail
debian=/usr/lib/x86_64-linux-gnu
mkl=${BLA_MKL:-$(dirname "$0")/../build/mkl}
preload=

case ${1:-} in
openblas-pthread) path=($debian/openblas-pthread) ;;
openblas-serial) path=($debian/openblas-serial) ;;
reference) path=($debian/blas $debian/lapack) ;;
blis) path=($debian/blis-pthread $debian/lapack) ;;
blis-threads)
    # The libblas.so.3 of BLIS 0.9.0 keeps its thread control to itself; libblis.so.4 has both that and the BLAS names.
    path=($debian/blis-pthread $debian/lapack)
    preload=$debian/blis-pthread/libblis.so.4
    ;;
mkl) path=("$mkl") ;; # made by scripts/fetch_mkl.sh
*)
    echo "usage: $0 openblas-pthread|openblas-serial|reference|blis|blis-threads|mkl PROGRAM [ARGUMENT...]" >&2
    exit 2
    ;;
esac

for name in libblas.so.3 liblapack.so.3; do
    found=
    for folder in "${path[@]}"; do [ ! -e "$folder/$name" ] || found=$folder/$name; done
    if [ -z "$found" ] || [ -n "$preload" -a ! -e "$preload" ]; then
        echo "skipped: $1 is not on this machine"
        exit 77
    fi
done
shift
joined=$(IFS=:; echo "${path[*]}")
[ -z "$preload" ] || export LD_PRELOAD=$preload${LD_PRELOAD:+:$LD_PRELOAD}
export LD_LIBRARY_PATH=$joined${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
exec "$@"
