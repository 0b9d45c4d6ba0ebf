#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# All long checks, listed in tests/long/CMakeLists.txt. Arguments go to ctest.
#
#     scripts/long.sh                  in full: more than an hour
#     scripts/long.sh --short          the shortened forms, which CI runs behind ./test.sh: 20 minutes
#     scripts/long.sh -R mutations     one of them
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test long

short=OFF
if [ "${1-}" = --short ]; then
    short=ON
    shift
fi
cmake -S tests/long -B build/long -G Ninja -DBLA_SHORT=$short >/dev/null
exec ctest --test-dir build/long --output-on-failure "$@"
