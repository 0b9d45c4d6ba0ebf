#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Makes the Debian packages of what is committed, source and binary, checks them, unpacks them into a scratch root and
# works from there as a new user would.
set -euo pipefail
cd "$(dirname "$0")/../.."
source=$PWD
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

scripts/package.sh --build=full
version=$(dpkg-parsechangelog -S Version)
ls "$source/build-package/zeftovblamodule_$version.dsc"
cd "$scratch"
cp "$source"/build-package/*_"$version"_amd64.deb .
rm -f ./*-dbgsym_*
packages=(*.deb)
[ ${#packages[@]} -eq 6 ] || fail "six packages, not ${packages[*]}"
runtime=$(echo libzeftovblamodule1_*.deb) development=$(echo libzeftovblamodule-dev_*.deb)
solver=$(echo libzeftovblasolver0_*.deb) tools=$(echo zeftovblamodule-tools_*.deb)

echo "== dependencies"
for package in "${packages[@]}"; do
    echo "$(dpkg-deb -f "$package" Package): $(dpkg-deb -f "$package" Depends)"
done
for wanted in 'libblas3 | libblas.so.3' 'liblapack3 | liblapack.so.3' 'libc6 (>='; do
    dpkg-deb -f "$runtime" Depends | grep -F "$wanted" >/dev/null || fail "the library does not depend on $wanted"
done
! dpkg-deb -f "$runtime" Depends | grep 'openblas\|libstdc++\|libgfortran' ||
    fail "the library depends on one BLAS, or on a language's run time"
dpkg-deb -f "$development" Depends | grep -F "libzeftovblamodule1 (= $version)" >/dev/null ||
    fail "$development does not depend on its library"
dpkg-deb -f "$tools" Depends | grep -F "libzeftovblasolver0 (>= 1.0.0)" >/dev/null ||
    fail "$tools does not depend on the version of the solver's symbols"
dpkg-deb -f "$solver" Depends | grep -F "libzeftovblamodule1 (>= 1.0.0)" >/dev/null ||
    fail "$solver does not depend on the version of the library's symbols"

plugin=$(echo petsc-tovbla_*.deb)
for wanted in 'libpetsc-real3.18' 'libzeftovblasolver0 (>= 1.0.0)'; do
    dpkg-deb -f "$plugin" Depends | grep -F "$wanted" >/dev/null || fail "$plugin does not depend on $wanted"
done

echo "== what comes with them on a machine that has nothing"
touch status
apt-get -s -o Dir::State::status="$scratch/status" --install-recommends install "${packages[@]/#/./}" \
    >installed 2>apt.log || { cat apt.log; fail "cannot be installed"; }
echo "$(grep -c '^Inst' installed) packages"
! grep -E '^Inst (g?fortran|gcc-|g\+\+|clang|flang|llvm|libllvm)' installed | grep -v -- '-base ' || fail "a compiler comes with the packages"

echo "== contents"
mkdir root
for package in "${packages[@]}"; do
    dpkg-deb -x "$package" root
    dpkg-deb -e "$package" "control-$package"
    (cd root && md5sum --quiet -c "../control-$package/md5sums") || fail "md5sums of $package"
    name=$(dpkg-deb -f "$package" Package)
    for file in copyright changelog.Debian.gz; do
        [ -s "root/usr/share/doc/$name/$file" ] || fail "$name has no $file"
    done
done
grep '^libZEFTOVBlaModule 1 libzeftovblamodule1' "control-$runtime/shlibs" >/dev/null || fail "shlibs"
[ "$(grep -c '@Base 1.0.0$' "control-$runtime/symbols")" -ge 202 ] || fail "symbols"
grep -x 'activate-noawait ldconfig' "control-$runtime/triggers" >/dev/null || fail "triggers"
lib=root/usr/lib/x86_64-linux-gnu
[ -L "$lib/libZEFTOVBlaModule.so.1" ] || fail "the library is not in the distribution's directory"
! dpkg-deb -c "$runtime" | grep 'include\|\.so$\|/bin/.' || fail "development files in the runtime package"
for file in bin/bla_solve bin/bla_info share/man/man1/bla_solve.1.gz share/man/man1/bla_info.1.gz; do
    dpkg-deb --fsys-tarfile "$tools" | tar -t | grep -x "./usr/$file" >/dev/null || fail "the tools package has no $file"
done
! find root/usr/share/man ! -type d ! -name '*.gz' | grep . || fail "man pages that are not compressed"
! readelf -d root/usr/bin/* | grep -E 'RPATH|RUNPATH' || fail "run path"
! readelf -S "$lib/libZEFTOVBlaModule.so.1" | grep debug_info || fail "not stripped"
! grep -rlaF "$source" root || fail "these files name the source tree"

echo "== the library, before it was stripped, has the instructions, variants and names that the tests demand"
for check in instructions symbols; do
    python3 -B "$source/tests/library/${check}_check.py" "$source"/build-package/zeftovblamodule-*/build-debian/lib/libZEFTOVBlaModule.so.1
done

echo "== lintian"
lintian --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs \
    "$source/build-package/zeftovblamodule_${version}_amd64.changes" 2>"$scratch/lintian.err" || {
    cat "$scratch/lintian.err"
    fail "lintian"
}

echo "== as a new user"
export PKG_CONFIG_PATH=$scratch/$lib/pkgconfig LD_LIBRARY_PATH=$scratch/$lib
"$source/tests/packaging/run_manual.sh" "$source/docs/getting-started.md"
root/usr/bin/bla_solve --mesh 4x2x2 --no-vtk | tail -n 4
root/usr/bin/bla_info
