#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# renew-abi.sh [BUILD_DIRECTORY]: writes down what the built libraries export, names and argument types, as the
# interface that they promise from now on, and the version of the packages that has each name first. The tests
# packaging.abi and packaging.release hold every build against these files, so this is run on purpose only: after
# adding a routine, or with a new major version.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
# describe LIBRARY SOVERSION [ABIDW OPTION...]
describe() {
    local library=$1 soversion=$2
    shift 2
    abidw --no-corpus-path --no-show-locs --no-comp-dir-path --no-elf-needed \
        --drop-private-types --exported-interfaces-only "$@" \
        "$build/lib/$library.so.$soversion" | sed "s|path='[^']*/|path='|" >"abi/$library.abi"
}
describe libZEFTOVBlaModule 1
# What is not in the solver's header is its own; of a header given by itself abidw takes no structures.
headers=$(mktemp -d)
trap 'rm -r "$headers"' EXIT
cp solver/TOVBlaSolver.h "$headers"
describe libZEFTOVBlaSolver 0 --headers-dir "$headers"
version=$(dpkg-parsechangelog -S Version | sed 's/-[^-]*$//')
for symbols in debian/lib*.symbols; do
    dpkg-gensymbols -q -c0 -p"$(basename "$symbols" .symbols)" -v"$version" -I"$symbols" -O"$symbols" \
        -e"$build/lib/$(sed -n '1s/ .*//p' "$symbols")"
done
git --no-pager diff --stat -- abi debian
