#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what is missing, builds, and measures every kernel beside the plain loop, other libraries and the machine's
# limits. Arguments go to benchmarks/report.py: ./bench.sh --families selim_small --svg curves.svg
# Whole solutions beside other solvers (options: benchmarks/solvers/table.py): ./bench.sh --end-to-end
# Calls on tiny blocks beside the plain loops: ./bench.sh --small-calls
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
install_packages build bench
build build-bench -DBLA_BUILD_TESTS=OFF -DBLA_BUILD_BENCHMARKS=ON
case " $* " in
*" --end-to-end "*)
    [ -e "${BLA_MKL:-build/mkl}/version" ] || echo "MKL is not here (scripts/fetch_mkl.sh): without PARDISO"
    exec python3 benchmarks/solvers/table.py build-bench/bin "$@"
    ;;
esac
# The Python that Debian's matplotlib belongs to.
exec /usr/bin/python3 benchmarks/report.py build-bench/bin/bla_bench build-bench/bin/bla_bench_tiers "$@"
