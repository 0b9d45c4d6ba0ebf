#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Fetches MKL into build/mkl and runs the tests over it, which ./test.sh reports as skipped without.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test
build build -DBLA_BUILD_TESTS=ON
scripts/fetch_mkl.sh
log=$(mktemp)
trap 'rm -f "$log"' EXIT
ctest --test-dir build --output-on-failure -R '^backend\.mkl\.' | tee "$log"
! grep -q Skipped "$log" # the library is there: nothing has a reason to be skipped
