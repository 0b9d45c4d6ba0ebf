#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# The long checks of the solver type of PETSc: all cases, memcheck, two hosts, eigenfrequencies, FEniCSx. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/prepare.sh
install_packages build test petsc petsc-long
BLA_TARGETS="petsc_tovbla petsc_tovbla_instead petsc_other_flavour petsc_faults petsc_indefinite petsc_operations petsc_values beam_frequencies" build build/with_petsc \
    -DBLA_BUILD_TESTS=ON -DBLA_BUILD_PETSC=ON -DBLA_PETSC_LONG=ON -DBLA_WERROR=ON -DCMAKE_INSTALL_PREFIX=/usr
exec ctest --test-dir build/with_petsc --output-on-failure -R '^petsc\.' "$@"
