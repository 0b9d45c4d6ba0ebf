#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the library and the digest program with several compilers and levels of optimisation and holds each against
# tests/digest/expected.txt, on every tier of this processor, and each library against the checks of its instructions
# and names. Warnings are errors.
#
#     scripts/compilers.sh                              g++ and clang++ at -O1, -O2, -O3
#     scripts/compilers.sh clang++:-O2 g++:-O1          these
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test long

[ $# -gt 0 ] || set -- {g++,clang++}:-O{1,2,3}
failed=0
for configuration in "$@"; do
    compiler=${configuration%%:*} flags=${configuration#*:}
    directory=build/compilers/$compiler$flags
    mkdir -p "$directory"
    log=$directory/build.log
    if ! {
        cmake -S . -B "$directory" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="$flags -DNDEBUG" \
            -DCMAKE_C_COMPILER="$(case $compiler in clang*) echo "clang${compiler#clang++}" ;; *) echo gcc ;; esac)" \
            -DCMAKE_CXX_COMPILER="$compiler" -DBLA_BUILD_PROGRAMS=OFF -DBLA_BUILD_EXAMPLES=OFF -DBLA_BUILD_TESTS=ON -DBLA_WERROR=ON &&
            cmake --build "$directory" --target digest ZEFTOVBlaModule
    } >"$log" 2>&1; then
        grep -E -A5 'error|warning' "$log" | head -40 || tail -n 20 "$log"
        echo "$configuration: the build failed, see $log"
        failed=1
    elif ctest --test-dir "$directory" -R '^(digest|binary)[.]' --no-tests=error --output-on-failure >"$log" 2>&1; then
        echo "$configuration: the same digest ($("$directory/bin/digest" | sed -n 's/^# compiler //p'))"
    else
        tail -n 40 "$log"
        echo "$configuration: FAILED"
        failed=1
    fi
done
exit $failed
