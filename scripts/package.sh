#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds the three Debian packages into build-package/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test
build build-package -DBLA_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/usr
cd build-package
cpack -G DEB >cpack.log || { cat cpack.log; exit 1; }
ls "$PWD"/*.deb
