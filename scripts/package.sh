#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the Debian packages from what is committed, into build-package/. Arguments go to dpkg-buildpackage, which
# else builds the binary packages only; --build=full makes the source package too.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test petsc package

upstream=$(dpkg-parsechangelog -S Version | sed 's/-[^-]*$//')
name=zeftovblamodule-$upstream
rm -rf build-package
mkdir build-package
git archive --prefix="$name/" -o "build-package/zeftovblamodule_$upstream.orig.tar.gz" HEAD . ':!debian'
tar -xzf "build-package/zeftovblamodule_$upstream.orig.tar.gz" -C build-package
git archive HEAD debian | tar -x -C "build-package/$name"
cd "build-package/$name"
# debhelper hides the caller's home, and with it the cache of ccache.
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache -k cache_dir)
    export CCACHE_DIR
fi
dpkg-buildpackage -us -uc "${@:---build=binary}" >../log 2>&1 || { tail -n 40 ../log; exit 1; }
find "${PWD%/*}" -maxdepth 1 -name '*.deb' -o -maxdepth 1 -name '*.dsc' | sort
