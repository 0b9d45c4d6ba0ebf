#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# renew-abi.sh [BUILD_DIRECTORY]: writes down what the built library exports, names and argument types, as the
# interface that it promises from now on. The test packaging.abi holds every build against that file, so this
# is run on purpose only: after adding a routine, or with a new major version.
set -euo pipefail
cd "$(dirname "$0")/.."
abidw --no-corpus-path --no-show-locs --no-comp-dir-path --no-elf-needed \
    --drop-private-types --exported-interfaces-only \
    "${1:-build}/lib/libZEFTOVBlaModule.so.1" | sed "s|path='[^']*/|path='|" >abi/libZEFTOVBlaModule.abi
git --no-pager diff --stat -- abi
