#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# The tests under sanitizers, each in a build of its own under build/sanitizers.
#
#     scripts/sanitizers.sh [--short] [address|clang|thread|valgrind|all]
#
# address    GCC's address and undefined-behaviour sanitizers, all tests
# clang      clang's undefined-behaviour sanitizer, which has more checks (alignment of what is loaded, among others)
# thread     GCC's thread sanitizer, the stress tests and the frame
# valgrind   memcheck, the frame and a short run of the kernels
#
# In each of them the test sanitizer.is_on shows that the sanitizer reports what it is there to report.
# --short leaves out the tests that hold everything over once more.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
short=
if [ "${1-}" = --short ]; then
    short=1
    shift
fi
install_packages build test long
source=$PWD

# leg NAME FLAGS TESTS [CMAKE OPTION...]
leg() {
    local name=$1 flags=$2 tests=$3 directory=build/sanitizers/$1
    shift 3
    build "$directory" -DCMAKE_BUILD_TYPE=Debug -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON \
        -DCMAKE_CXX_FLAGS="-O1 -g1 $flags" ${BLA_LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER=$BLA_LAUNCHER} "$@"
    echo "$name: $tests"
    ctest --test-dir "$directory" -R "$tests" --no-tests=error --output-on-failure -j "$(nproc)" \
        >"$directory/tests.log" || {
        tail -n 60 "$directory/tests.log"
        echo "$name: FAILED"
        return 1
    }
    tail -n 4 "$directory/tests.log"
}

address() {
    leg address "-fsanitize=address,undefined -fno-sanitize-recover=all" \
        "^(sanitizer|kernels|calls|frame|threads_|fuzz${short:-|properties|library|facade})[._]"
}

clang() {
    leg clang "-fsanitize=undefined -fno-sanitize-recover=all" "^(sanitizer|kernels|fuzz)[._]" \
        -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
}

# The BLAS is not instrumented: what its own threads do to one another cannot be judged. See tests/sanitizers.
thread() {
    TSAN_OPTIONS="suppressions=$source/tests/sanitizers/thread.supp" \
        leg thread "-fsanitize=thread -fno-sanitize-recover=all" "^(sanitizer|stress|frame|threads_)[._]"
}

# Debian's valgrind does not know the AVX-512 instructions that OpenBLAS would choose.
valgrind() {
    build build/sanitizers/valgrind -DCMAKE_BUILD_TYPE=Debug -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON \
        -DCMAKE_CXX_FLAGS="-O1 -g1" ${BLA_LAUNCHER:+-DCMAKE_CXX_COMPILER_LAUNCHER=$BLA_LAUNCHER}
    echo valgrind
    local bin=build/sanitizers/valgrind/bin
    local memcheck=(env OPENBLAS_CORETYPE=Haswell OPENBLAS_NUM_THREADS=1 valgrind --quiet --error-exitcode=99
        --leak-check=full --errors-for-leak-kinds=definite)
    local status=0
    "${memcheck[@]}" "$bin/sanitizer_probe" memory >/dev/null 2>&1 || status=$?
    if [ $status -ne 99 ]; then
        echo "valgrind does not report an uninitialised value"
        return 1
    fi
    "${memcheck[@]}" "$bin/frame_tests"
    "${memcheck[@]}" "$bin/kernel_tests" --gtest_filter='-*PlainLoop*:*Large*:*2147*:*Huge*:*Bits*:*Every*'
    "${memcheck[@]}" "$bin/fuzz_kernels" --runs 300
}

for check in "${@:-all}"; do
    case $check in
    all) for each in address clang thread valgrind; do $each; done ;;
    address | clang | thread | valgrind) $check ;;
    *) echo "unknown: $check" >&2 && exit 2 ;;
    esac
done
