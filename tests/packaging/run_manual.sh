#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# run_manual.sh GETTING_STARTED: does what the manual's first page says, word for word: writes its programs to
# files, runs its shell lines, and compares what they print with the numbers in the text.
set -euo pipefail
text=$(realpath "$1")
cd "$(mktemp -d)"
trap 'rm -rf "$PWD"' EXIT
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/p" "$text" | sed '/^```/d'; } # all code blocks of a language
block cpp >solve.cpp
block fortran >solve.f90
block c >sparse.c
[ -s solve.cpp ] && [ -s solve.f90 ] && [ -s sparse.c ] || { echo "no programs in $text"; exit 1; }
block sh >commands
[ "$(grep -c '^\./solve$' commands)" -eq 2 ] || { echo "two programs were to be run"; exit 1; }
bash -euxc "$(cat commands)" >printed
cat printed
grep -qx 'x = 1 2 3, pivots 4 2 8' printed
grep -qx 'x      =  1.000  2.000  3.000' printed
grep -qx 'x = 1 2 3 4, to 14 digits' printed
grep -qx 'pivots =  4.000  2.000  8.000' printed
