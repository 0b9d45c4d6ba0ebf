#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what is missing, builds, and runs bla_solve: without arguments on a cantilever beam, else as asked
# (./run.sh FILE.mtx, ./run.sh --help).
set -euo pipefail
arguments=()
for argument in "$@"; do # paths are relative to where the caller stands
    [ -e "$argument" ] && argument=$(realpath "$argument")
    arguments+=("$argument")
done
cd "$(dirname "$0")"
. scripts/prepare.sh
install_packages build >&2
build build -DBLA_BUILD_TESTS=OFF -DBLA_WERROR=ON >&2
exec build/bin/bla_solve "${arguments[@]}"
