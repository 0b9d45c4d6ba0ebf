#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the library and the digest program with several compilers and levels of optimisation and holds each against
# tests/digest/expected.txt, on every tier of this processor, and each library against the checks of its instructions
# and names. Warnings are errors. The forwarders are joined, which takes a minute off each; those that the digest does
# not call may then miss their BLAS in it.
#
#     scripts/compilers.sh                              every compiler of Debian 12 at -O1, -O2, -O3
#     scripts/compilers.sh --short                      each once
#     scripts/compilers.sh clang++-19:-O2 g++-11:-O1    these
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test long

if [ $# -eq 0 ]; then
    set -- {g++-{11,12},clang++-{13,14,15,16,19}}:-O{1,2,3}
elif [ "$1" = --short ]; then
    set -- {g++-12,clang++-{13,15,16,19}}:-O1 {g++-11,clang++-14}:-O2
fi
failed=0
for configuration in "$@"; do
    compiler=${configuration%%:*} flags=${configuration#*:}
    directory=build/compilers/$compiler$flags
    mkdir -p "$directory"
    log=$directory/build.log
    if ! {
        cmake -S . -B "$directory" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="$flags -DNDEBUG" \
            -DCMAKE_C_COMPILER="$(sed 's/clang++/clang/; s/g++/gcc/' <<<"$compiler")" \
            -DCMAKE_CXX_COMPILER="$compiler" -DBLA_BUILD_PROGRAMS=OFF -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON -DBLA_WERROR=ON \
            -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=50 \
            -DCMAKE_EXE_LINKER_FLAGS=-Wl,--unresolved-symbols=ignore-all &&
            cmake --build "$directory" --target digest ZEFTOVBlaModule
    } >"$log" 2>&1; then
        grep -E -A5 'error|warning' "$log" | head -40 || tail -n 20 "$log"
        echo "$configuration: the build failed, see $log"
        failed=1
    elif ctest --test-dir "$directory" -R '^(digest|binary)[.]' -E plain_loops --no-tests=error --output-on-failure >"$log" 2>&1; then
        echo "$configuration: the same digest ($("$directory/bin/digest" | sed -n 's/^# compiler //p')), $SECONDS s"
    else
        tail -n 40 "$log"
        echo "$configuration: FAILED"
        failed=1
    fi
done
exit $failed
