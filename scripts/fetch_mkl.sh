#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Fetches the MKL run-time library and libirc.so into build/mkl, for the tests over MKL and for
# scripts/with_blas.sh mkl. About 310 MB of Python wheels are downloaded once; nothing is installed.
#   scripts/fetch_mkl.sh [FOLDER]
# Status 77: the package index cannot be reached.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
folder=${1:-$root/build/mkl}
version=2026.2.0

# The single dynamic library, what it loads by name with its default interface and threads (those of libgomp where the
# process has that already, as bla_solve does through METIS), one kernel library per generation of processors, and the
# run-time support library.
wanted=(libmkl_rt libmkl_core libmkl_intel_lp64 libmkl_intel_thread libmkl_gnu_thread libmkl_def libmkl_mc3 libmkl_avx2 libmkl_avx512
    libmkl_avx10 libiomp5 libirc)

if [ "$(cat "$folder/version" 2>/dev/null)" = "$version" ]; then
    echo "$folder has MKL $version"
    exit 0
fi
if ! python3 -m pip --version >/dev/null 2>&1; then
    cd "$root"
    . scripts/prepare.sh
    install_packages wheels
fi

rm -rf "$folder"
mkdir -p "$folder/wheels"
if ! python3 -m pip download --quiet --disable-pip-version-check --no-deps --only-binary :all: --dest "$folder/wheels" \
    mkl==$version intel-openmp==$version intel-cmplr-lib-rt==$version 2>"$folder/log"; then
    cat "$folder/log" >&2
    # Without an answer pip knows of no version at all; a version that is gone, or a file cut off, is another matter.
    if grep -q 'connection broken by' "$folder/log" && grep -q '(from versions: none)' "$folder/log"; then
        echo "skipped: the package index cannot be reached"
        exit 77
    fi
    exit 1
fi
python3 - "$folder" "${wanted[@]}" <<'PYTHON'
import pathlib, sys, zipfile
folder, wanted = pathlib.Path(sys.argv[1]), set(sys.argv[2:])
for wheel in (folder / "wheels").glob("*.whl"):
    with zipfile.ZipFile(wheel) as archive:
        for member in archive.namelist():
            name = pathlib.PurePosixPath(member).name
            if name.split(".so")[0] in wanted and ".so" in name:
                (folder / name).write_bytes(archive.read(member))
PYTHON
rm -rf "$folder/wheels" "$folder/log"
# Our binary asks for the first two names, which the dynamic linker matches by file name; a build that names MKL asks
# for the third.
library=$(basename "$folder"/libmkl_rt.so.*)
ln -s "$library" "$folder/libblas.so.3"
ln -s "$library" "$folder/liblapack.so.3"
ln -s "$library" "$folder/libmkl_rt.so"
echo "$version" >"$folder/version"
echo "$folder has MKL $version"
