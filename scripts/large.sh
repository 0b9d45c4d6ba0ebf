#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Analyses systems whose factors have more than 2^31 entries, in the orders that the solver finds for them. The tests do
# so in a given order; this takes a minute and 2 GB.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test

BLA_TARGETS=solver_large_tests build build -DBLA_BUILD_TESTS=ON -DBLA_WERROR=ON -DCMAKE_INSTALL_PREFIX=/usr # as test.sh builds
exec build/bin/solver_large_tests
