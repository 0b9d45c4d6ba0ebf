#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Which statements of the library do the tests reach? Builds with gcov, runs the tests, lists for every source and
# header under TOVBla what was never executed, and a total. Fails unless that is 100 %.
#
#     scripts/coverage.sh              in build/coverage
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test

directory=build/coverage
programs=(frame_tests call_tests kernel_tests elimination_call_tests facade_{forwarding,registers,hidden}
    facade_{blas_hidden,lapack_hidden,daxpby,edges,numbers} threads_{none,mkl,openblas,blis,mkl_openblas_blis,openblas_blis})
BLA_TARGETS=${programs[*]} build "$directory" -DCMAKE_BUILD_TYPE=Debug -DBLA_BUILD_PROGRAMS=OFF -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON \
    -DCMAKE_CXX_FLAGS="-O0 --coverage -fprofile-update=atomic"
find "$directory" -name '*.gcda' -delete
# The kernels' tests, but for those of gigabytes, in one process for each processor: every process adds its counts to
# hundreds of files.
kernel_tests() {
    local shard shards failed=0
    shards=$(nproc)
    for ((shard = 0; shard < shards; ++shard)); do
        GTEST_TOTAL_SHARDS=$shards GTEST_SHARD_INDEX=$shard \
            "$directory/bin/kernel_tests" --gtest_brief=1 --gtest_filter='-*TwoToThe31*' &
    done
    for ((shard = 0; shard < shards; ++shard)); do wait -n || failed=1; done
    return $failed
}
{
    kernel_tests &&
        ctest --test-dir "$directory" -R '^(frame|calls|facade)[.]|^threads_' -E '^facade.interface$' \
            --no-tests=error --output-on-failure -j "$(nproc)"
} >"$directory/tests.log" 2>&1 || {
    tail -n 40 "$directory/tests.log"
    exit 1
}
exec python3 -B scripts/coverage.py "$directory" TOVBla
