#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# The tests under sanitizers, each in a build of its own under build/sanitizers.
#
#     scripts/sanitizers.sh [--short] [address|clang|thread|valgrind|all]
#
# address    GCC's address and undefined-behaviour sanitizers, all tests, those of the solver and of bla_solve too
# clang      clang's undefined-behaviour sanitizer, which has more checks (alignment of what is loaded, among others)
# thread     GCC's thread sanitizer, the frame, the stress tests with several threads, and the solver's tasks
# valgrind   memcheck, the frame and a short run of the kernels and of the solver
#
# In each of them the test sanitizer.is_on shows that the sanitizer reports what it is there to report.
# --short leaves out the tests that hold everything over once more.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
short= # or a blank
if [ "${1-}" = --short ]; then
    short=' '
    shift
fi
install_packages build test long
export BLA_TEST_SEED=${BLA_TEST_SEED:-random}

# leg NAME FLAGS TARGETS TESTS [CMAKE OPTION...]
leg() {
    local name=$1 flags=$2 targets=$3 tests=$4 directory=build/sanitizers/$1
    shift 4
    BLA_TARGETS=$targets build "$directory" -DCMAKE_BUILD_TYPE=Debug -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON \
        -DCMAKE_CXX_FLAGS="-O1 -g1 $flags" "$@"
    ctest --test-dir "$directory" -R "$tests" --no-tests=error --output-on-failure -j "$(nproc)" \
        >"$directory/tests.log" || {
        tail -n 60 "$directory/tests.log"
        echo "$name: FAILED"
        return 1
    }
    echo "$name: $(grep 'tests passed' "$directory/tests.log")"
}

fuzz="fuzz_kernels fuzz_matrix_market fuzz_wrong_kernel"

address() {
    leg address "-fsanitize=address,undefined -fno-sanitize-recover=all" \
        "sanitizer_probe frame_tests call_tests $fuzz elimination_call_tests fuzz_solver solver_interface_tests
        ${short:-solver_tests bla_solve bla_info kernel_tests property_tests stress_tests facade_forwarding facade_registers facade_hidden
            facade_blas_hidden facade_lapack_hidden facade_daxpby facade_edges facade_numbers}" \
        "^(sanitizer|frame|calls|fuzz|solver[.]interface$([ "$short" ] || echo '|solver[.]rooms|solve|kernels|properties|stress|facade[.].*'))[.]"
}

clang() {
    local tests='^(sanitizer|fuzz|kernels|solver[.]interface)[.]'
    [ -z "$short" ] || tests='^(sanitizer|fuzz[.](kernels|matrix_market|finds_a_wrong_kernel))'
    leg clang "-fsanitize=undefined -fno-sanitize-recover=all" \
        "sanitizer_probe $fuzz ${short:-kernel_tests fuzz_solver solver_interface_tests}" "$tests" \
        -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
}

# The BLAS is not instrumented: what its own threads do to one another cannot be judged. See tests/sanitizers. Nor is
# oneTBB, whose hand-over of a task from one thread to the other would pass for a race. So the solver's tasks are judged
# where plain threads execute them (tests/solver/disorder.cpp), which order nothing but by the tasks' dependencies, and
# over a BLAS of plain loops, so that every access is seen.
thread() {
    TSAN_OPTIONS="suppressions=$PWD/tests/sanitizers/thread.supp" \
        leg thread "-fsanitize=thread" "sanitizer_probe stress_tests frame_tests solver_race_tests" \
            "^(sanitizer|frame)[.]|^stress[.].*(Threads|FirstCall|Stack)|^solver[.]races[.].*Delays"
}

# Debian's valgrind does not know the AVX-512 instructions that OpenBLAS would choose.
valgrind() {
    local directory=build/sanitizers/valgrind
    BLA_TARGETS="sanitizer_probe frame_tests fuzz_kernels ${short:-fuzz_solver}" build $directory -DCMAKE_BUILD_TYPE=Debug \
        -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON -DCMAKE_CXX_FLAGS="-O1 -g1"
    local memcheck=(env OPENBLAS_CORETYPE=Haswell OPENBLAS_NUM_THREADS=1 valgrind --quiet --error-exitcode=99
        --leak-check=full --errors-for-leak-kinds=definite)
    local status=0
    "${memcheck[@]}" $directory/bin/sanitizer_probe memory >/dev/null 2>&1 || status=$?
    if [ $status -ne 99 ]; then
        echo "valgrind: FAILED, it does not report an uninitialised value"
        return 1
    fi
    # Under valgrind the processor tells of other caches than the system's list has.
    "${memcheck[@]}" $directory/bin/frame_tests --gtest_filter=-Caches.TheLastOneIsTheLargestThatTheSystemSees \
        >$directory/frame.log 2>&1 || { cat $directory/frame.log && return 1; }
    "${memcheck[@]}" $directory/bin/fuzz_kernels --runs "$([ "$short" ] && echo 50 || echo 1000)" tests/fuzz/corpus/kernels
    [ "$short" ] || "${memcheck[@]}" $directory/bin/fuzz_solver --runs 300 tests/fuzz/corpus/solver
    echo "valgrind: no error"
}

checks=${*:-all}
for check in ${checks/all/address clang thread valgrind}; do
    case $check in
    address | clang | thread | valgrind) $check ;;
    *) echo "unknown: $check" >&2 && exit 2 ;;
    esac
done
