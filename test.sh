#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what is missing, builds, and runs all tests. Arguments go to ctest: ./test.sh -R Scale
set -euo pipefail
cd "$(dirname "$0")"
. scripts/prepare.sh
install_packages build test petsc
build build -DBLA_BUILD_TESTS=ON -DBLA_BUILD_PETSC=ON -DBLA_WERROR=ON -DCMAKE_INSTALL_PREFIX=/usr
exec ctest --test-dir build --output-on-failure -j "$(nproc)" "$@"
