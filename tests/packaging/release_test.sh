#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# release_test.sh SOURCE_DIRECTORY BUILD_DIRECTORY VERSION
# What is written down twice agrees: the version, the symbols of each library and their first version, the licence.
set -euo pipefail
source=$1 build=$2 version=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
cd "$source"

echo "== version $version"
for part in MAJOR MINOR PATCH; do echo "BLA_VERSION_$part"; done |
    cc -E -P -include TOVBla/TOVBlaModule.m/TOVBlaModule.h -x c - | tail -n 3 | paste -s -d . >"$scratch/header"
grep -x "$version" "$scratch/header" || fail "TOVBlaModule.h has another version"
[ "$(dpkg-parsechangelog -S Version | sed 's/-[^-]*$//')" = "$version" ] || fail "debian/changelog has another version"

for symbols in debian/lib*.symbols; do
    package=$(basename "$symbols" .symbols) soname=$(sed -n '1s/ .*//p' "$symbols")
    echo "== symbols of $soname"
    dpkg-gensymbols -c4 -p"$package" -v"$version" -e"$build/lib/$soname" -I"$symbols" -O/dev/null ||
        fail "$symbols is not what $soname exports: scripts/renew-abi.sh"
done

echo "== licence"
sed -n '/^License: BSD-3-Clause/,$p' debian/copyright | sed '1d; s/^ //; s/^\.$//' >"$scratch/packages"
sed '1,2d' LICENSE | diff - "$scratch/packages" || fail "debian/copyright has another text than LICENSE"
