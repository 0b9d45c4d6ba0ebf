#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# parent_test.sh SOURCE_DIRECTORY
# The module as a part of another project, parent/: by add_subdirectory and by FetchContent. Callers are built and run,
# and nothing of the other project is changed. Without a build type, which is the fastest to compile.
set -euo pipefail
source=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

cd "$source"
if [ -e .git ]; then git ls-files; else find . -type f -not -path './build*'; fi |
    tar --ignore-failed-read --transform 's,^,module/,' -czf "$scratch/module.tar.gz" -T - 2>"$scratch/tar.log"
mkdir "$scratch/unpacked"
tar -xzf "$scratch/module.tar.gz" -C "$scratch/unpacked"

for method in "-DSOURCE=$scratch/unpacked/module" "-DARCHIVE=file://$scratch/module.tar.gz"; do
    echo "== $method"
    build=$scratch/build-${method:2:1}
    cmake -S tests/packaging/parent -B "$build" -G Ninja "$method" -DFETCHCONTENT_QUIET=OFF \
        >"$scratch/log" 2>&1 || { cat "$scratch/log"; fail "configuring"; }
    cmake --build "$build" >"$scratch/log" 2>&1 || { tail -n 40 "$scratch/log"; fail "building"; }
    ! grep -i 'warning' "$scratch/log" || fail "warnings"
    "$build/programs/consumer"
    [ ! -e "$build/programs/fortran_consumer" ] || "$build/programs/fortran_consumer"

    [ ! -e "$build/lib" ] && [ ! -e "$build/bin" ] || fail "folders that the parent did not ask for"
    if grep -E '^CMAKE_(BUILD_TYPE|RUNTIME_OUTPUT_DIRECTORY|LIBRARY_OUTPUT_DIRECTORY):[A-Z]*=.' "$build/CMakeCache.txt"; then
        fail "settings of the parent in the cache"
    fi
    cmake --install "$build" --prefix "$scratch/prefix" >"$scratch/log"
    [ "$(cd "$scratch/prefix" && find . -type f)" = ./bin/consumer ] || { cat "$scratch/log"; fail "installed more than the parent's"; }
done
[ -e "$build/programs/fortran_consumer" ] || fail "no Fortran caller"
