#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# debian_test.sh BUILD_DIRECTORY SOURCE_DIRECTORY
# Makes the Debian packages, checks them, unpacks them into a scratch root and works from there as a new user
# would. lintian has its say if it is installed.
set -euo pipefail
build=$1 source=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

(cd "$build" && cpack -G DEB -B "$scratch") >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
cd "$scratch"
runtime=$(echo libzeftovblamodule1_*.deb) development=$(echo libzeftovblamodule-dev_*.deb)
tools=$(echo zeftovblamodule-tools_*.deb)

echo "== dependencies"
for package in "$runtime" "$development" "$tools"; do
    echo "$(dpkg-deb -f "$package" Package): $(dpkg-deb -f "$package" Depends)"
done
for wanted in 'libblas3 | libblas.so.3' 'liblapack3 | liblapack.so.3' 'libc6 (>='; do
    dpkg-deb -f "$runtime" Depends | grep -qF "$wanted" || fail "the library does not depend on $wanted"
done
if dpkg-deb -f "$runtime" Depends | grep -q 'openblas\|libstdc++\|libgfortran'; then
    fail "the library depends on one BLAS, or on a language's run time"
fi
for package in "$development" "$tools"; do
    dpkg-deb -f "$package" Depends | grep -qF "libzeftovblamodule1 (= $(dpkg-deb -f "$runtime" Version))" ||
        fail "$package does not depend on its library"
done

echo "== contents"
mkdir root
for package in "$runtime" "$development" "$tools"; do
    dpkg-deb -x "$package" root
    dpkg-deb -e "$package" "control-$package"
    (cd root && md5sum --quiet -c "../control-$package/md5sums") || fail "md5sums of $package"
    name=$(dpkg-deb -f "$package" Package)
    for file in copyright changelog.Debian.gz; do
        [ -s "root/usr/share/doc/$name/$file" ] || fail "$name has no $file"
    done
done
grep -q '^libZEFTOVBlaModule 1 libzeftovblamodule1' "control-$runtime/shlibs" || fail "shlibs"
grep -qx 'activate-noawait ldconfig' "control-$runtime/triggers" || fail "triggers"
lib=root/usr/lib/x86_64-linux-gnu
[ -L "$lib/libZEFTOVBlaModule.so.1" ] || fail "the library is not in the distribution's directory"
if dpkg-deb -c "$runtime" | grep -q 'include\|\.so$\|/bin/.'; then fail "development files in the runtime package"; fi
for file in bin/bla_solve bin/bla_info share/man/man1/bla_solve.1.gz share/man/man1/bla_info.1.gz; do
    dpkg-deb --fsys-tarfile "$tools" | tar -t | grep -x "./usr/$file" >/dev/null || fail "the tools package has no $file"
done
if find root/usr/share/man ! -type d ! -name '*.gz' | grep .; then fail "man pages that are not compressed"; fi
if readelf -d root/usr/bin/* | grep -E 'RPATH|RUNPATH'; then fail "run path"; fi
if readelf -S "$lib/libZEFTOVBlaModule.so.1" | grep -q debug_info; then fail "not stripped"; fi

echo "== lintian"
if command -v lintian >/dev/null; then
    lintian --fail-on error "$runtime" "$development" "$tools" 2>"$scratch/lintian.err" || { cat "$scratch/lintian.err"; fail "lintian"; }
else
    echo "not installed"
fi

echo "== as a new user"
export PKG_CONFIG_PATH=$scratch/$lib/pkgconfig LD_LIBRARY_PATH=$scratch/$lib
"$source/tests/packaging/run_manual.sh" "$source/docs/getting-started.md"
root/usr/bin/bla_solve --mesh 4x2x2 --no-vtk | tail -n 4
root/usr/bin/bla_info
