#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# renew-abi.sh [BUILD_DIRECTORY]: writes down what the built library exports, names and argument types, as the
# interface that it promises from now on, and the version of the packages that has each name first. The tests
# packaging.abi and packaging.release hold every build against these files, so this is run on purpose only: after
# adding a routine, or with a new major version.
set -euo pipefail
cd "$(dirname "$0")/.."
abidw --no-corpus-path --no-show-locs --no-comp-dir-path --no-elf-needed \
    --drop-private-types --exported-interfaces-only \
    "${1:-build}/lib/libZEFTOVBlaModule.so.1" | sed "s|path='[^']*/|path='|" >abi/libZEFTOVBlaModule.abi
version=$(dpkg-parsechangelog -S Version | sed 's/-[^-]*$//')
for symbols in debian/lib*.symbols; do
    dpkg-gensymbols -q -c0 -p"$(basename "$symbols" .symbols)" -v"$version" -I"$symbols" -O"$symbols" \
        -e"${1:-build}/lib/$(sed -n '1s/ .*//p' "$symbols")"
done
git --no-pager diff --stat -- abi debian
