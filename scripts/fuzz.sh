#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Fuzzes the kernels, the reader of Matrix Market files and the solver with libFuzzer (clang), address and
# undefined-behaviour sanitizers on. The tests run the same targets for seconds; this is the long run.
#
#     scripts/fuzz.sh [SECONDS] [kernels|matrix_market|solver]      each target so long (600), or one of them
#
# New inputs are collected under build/fuzz; a finding is written to the root of the tree, and its program runs it again:
# build/fuzz/bin/libfuzzer_kernels finding-kernels-crash-...
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test long

seconds=${1:-600} targets=${2:-kernels matrix_market solver} directory=build/fuzz
# shellcheck disable=SC2086
BLA_TARGETS=$(printf 'libfuzzer_%s ' $targets) build "$directory" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS="-O1 -g1 -fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all" \
    -DBLA_BUILD_PROGRAMS=ON -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON -DBLA_FUZZERS=ON
for target in $targets; do
    mkdir -p "$directory/corpus/$target"
    longest=512
    [ "$target" != matrix_market ] || longest=2048
    OPENBLAS_NUM_THREADS=1 "$directory/bin/libfuzzer_$target" -max_total_time="$seconds" -max_len=$longest \
        -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="finding-$target-" \
        "$directory/corpus/$target" "tests/fuzz/corpus/$target" \
        2>&1 | grep -vE 'NEW|REDUCE|pulse|RELOAD'
done
