#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what is missing, builds, and runs bla_solve where the caller stands: without arguments on a cantilever
# beam, else as asked (./run.sh FILE.mtx, ./run.sh --help).
set -euo pipefail
caller=$PWD
cd "$(dirname "$0")"
project=$PWD
. scripts/prepare.sh
install_packages build >&2
if [ ! -e build/build.ninja ] || ! ninja -C build -n 2>/dev/null | grep 'no work to do' >/dev/null; then
    echo "Building (once; a few minutes) ..." >&2
fi
build build -DBLA_BUILD_TESTS=OFF >&2
cd "$caller"
exec "$project/build/bin/bla_solve" "$@"
