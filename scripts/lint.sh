#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Checks formatting and SPDX lines, builds everything with GCC and with clang, warnings being errors, and runs
# clang-tidy over the library and the examples.
#
#     scripts/lint.sh          everything
#     scripts/lint.sh quick    only what needs no build
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0

sources=$(git ls-files '*.c' '*.cpp' '*.h' '*.f90' '*.py' '*.sh' '*.cmake' '*CMakeLists.txt' '*.map' '*.in' .ci/run |
    grep -v 'packaging/debian/c\|\.pc\.in')
for file in $sources; do
    head -n 2 "$file" | grep -q 'SPDX-License-Identifier: BSD-3-Clause' || { echo "$file: no SPDX line"; failed=1; }
done
formatter=$(command -v clang-format-14 || command -v clang-format || true)
if [ -n "$formatter" ]; then
    # shellcheck disable=SC2046
    "$formatter" --dry-run --Werror $(git ls-files '*.c' '*.cpp' '*.h') || failed=1
else
    echo "clang-format is not installed: formatting not checked"
fi
[ "${1:-}" != quick ] || exit $failed

. scripts/prepare.sh
install_packages build test long
for compiler in g++ clang++; do
    echo "== $compiler, warnings as errors"
    build "build/lint/$compiler" -DCMAKE_CXX_COMPILER="$compiler" -DBLA_WERROR=ON -DCMAKE_EXPORT_COMPILE_COMMANDS=ON ||
        failed=1
done
echo "== clang-tidy"
git ls-files 'TOVBla/*.cpp' 'examples/*.cpp' |
    xargs -P "$(nproc)" -n 8 clang-tidy -p build/lint/clang++ --quiet 2>/dev/null || failed=1
exit $failed
