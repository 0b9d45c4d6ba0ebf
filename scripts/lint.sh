#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Checks formatting and SPDX lines, builds everything with GCC and with clang, warnings being errors, and runs
# clang-tidy over the library, the solver, the programs and the examples.
#
#     scripts/lint.sh          everything
#     scripts/lint.sh quick    only what needs no build
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
[ "${1:-}" = quick ] || install_packages build test petsc long
failed=0

sources=$(git ls-files '*.c' '*.cpp' '*.h' '*.f90' '*.py' '*.sh' '*.cmake' '*CMakeLists.txt' '*.map' '*.in' .ci/run |
    grep -v '\.pc\.in')
for file in $sources; do
    head -n 2 "$file" | grep 'SPDX-License-Identifier: BSD-3-Clause' >/dev/null || { echo "$file: no SPDX line"; failed=1; }
done
# A reader that ends at its first match fails the writer, and with it the script.
if git grep -nE '\| *grep -[a-zA-Z]*q' -- '*.sh' .ci/run; then
    echo "a pipe into grep -q: read all of it, with >/dev/null"
    failed=1
fi
formatter=$(command -v clang-format-14 || command -v clang-format || true)
if [ -n "$formatter" ]; then
    # shellcheck disable=SC2046
    "$formatter" --dry-run --Werror $(git ls-files '*.c' '*.cpp' '*.h') || failed=1
else
    echo "skipped: clang-format is not installed, the formatting was not checked"
    [ $failed -ne 0 ] || failed=77
fi
[ "${1:-}" != quick ] || exit $failed

echo "== g++, warnings as errors"
build build -DBLA_BUILD_TESTS=ON -DBLA_BUILD_PETSC=ON -DBLA_WERROR=ON -DCMAKE_INSTALL_PREFIX=/usr || failed=1 # as test.sh builds
echo "== clang++, warnings as errors; none of them needs optimised code"
build build/clang -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DBLA_BUILD_TESTS=ON -DBLA_BUILD_PETSC=ON -DBLA_WERROR=ON \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON || failed=1
echo "== clang-tidy"
# The analyser gives a function up earlier than it would by itself: half of its time for the last paths of a few.
tidy() {
    local analyser=(-Xclang -analyzer-config -Xclang max-nodes=60000)
    clang-tidy -p build/clang --quiet "${analyser[@]/#/--extra-arg=}" "$@" 2>/dev/null
}
export -f tidy
# Of the wrappers, many and short, those that define nothing else go together: most of the time is what they include.
wrappers=$(grep -l '"facade.h"' TOVBla/TOVBlaCore.m/src/*.cpp | xargs grep -L '^static \|^namespace {$')
# shellcheck disable=SC2046,SC2086
tidy --checks=-bugprone-suspicious-include --header-filter='/TOVBla/.*\.(h|cpp)$' \
    $(printf -- "--extra-arg=-include$PWD/%s " ${wrappers#*$'\n'}) ${wrappers%%$'\n'*} || failed=1
# An example whose libraries are not installed is not built, so that nobody knows how to read it.
built=$(grep '"file": ' build/clang/compile_commands.json | cut -d '"' -f 4 | sed "s|^$PWD/||")
git ls-files 'TOVBla/*.cpp' 'solver/*.cpp' 'programs/*.cpp' 'examples/*.cpp' | grep -vxF "$wrappers" | grep -xF "$built" |
    xargs -P "$(nproc)" -n 1 bash -c 'tidy "$@"' tidy || failed=1
exit $failed
