#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# configure_test.sh SOURCE_DIRECTORY
# What configuring says and sets, without building: for whom the library is, what is refused and in which words, which
# flags win, and that by hand the packages marked "build" in packages.txt are enough.
set -euo pipefail
source=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
unset CXXFLAGS CFLAGS

configure() { # configure [OPTION...]: the library alone, into $scratch/build, words into $scratch/log
    rm -rf "$scratch/build"
    cmake -S "$source" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER_WORKS=1 -DCMAKE_C_COMPILER_WORKS=1 \
        -DBLA_BUILD_PROGRAMS=OFF -DBLA_BUILD_EXAMPLES=OFF -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "$@" >"$scratch/log" 2>&1
}
refused() { # refused WORDS [OPTION...]: does not configure, and says these words, however the lines are broken
    local words=$1
    shift
    ! configure "$@" || fail "configured with $*"
    tr -s ' \n' ' ' <"$scratch/log" | grep -F "$words" >/dev/null || { cat "$scratch/log"; fail "not a word of '$words'"; }
    echo "refused, $words: $*"
}
commands() { grep '"command".*[.]cpp' "$scratch/build/compile_commands.json"; }

echo "== flags that change roundings"
for flag in -ffast-math -Ofast -funsafe-math-optimizations -ffinite-math-only; do
    refused "cannot be compiled with $flag" -DCMAKE_CXX_FLAGS="-g $flag"
done
refused "cannot be compiled with -ffast-math" -DCMAKE_CXX_FLAGS_RELEASE="-O2 -ffast-math"
sed 's/^set(CMAKE_RUNTIME.*/add_compile_options(-ffast-math)/' "$source/tests/packaging/parent/CMakeLists.txt" \
    >"$scratch/CMakeLists.txt"
! cmake -S "$scratch" -B "$scratch/parent" -G Ninja -DSOURCE="$source" >"$scratch/log" 2>&1 || fail "a parent's -ffast-math"
grep 'cannot be compiled with -ffast-math' "$scratch/log" >/dev/null || fail "no word of a parent's -ffast-math"

echo "== processors, systems, compilers"
refused "is for 64-bit x86-64 Linux, not for 64-bit aarch64 Linux" \
    -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64
refused "is for 64-bit x86-64 Linux, not for 64-bit x86_64 FreeBSD" \
    -DCMAKE_SYSTEM_NAME=FreeBSD -DCMAKE_SYSTEM_PROCESSOR=x86_64
for compiler in "old -U__GNUC__ -D__GNUC__=10" "other -D__INTEL_COMPILER=2021"; do
    read -r name flags <<<"$compiler"
    printf '#!/bin/sh\nexec g++ -Wno-builtin-macro-redefined %s "$@"\n' "$flags" >"$scratch/$name"
    chmod +x "$scratch/$name"
done
refused "needs GCC 11 or clang 13, or newer; $scratch/old is GNU 10." -DCMAKE_CXX_COMPILER="$scratch/old"
refused "is compiled by GCC 11 or clang 13, or newer, not by $scratch/other" -DCMAKE_CXX_COMPILER="$scratch/other"

echo "== contraction stays off, whatever else is asked for; warnings stop nobody"
configure -DCMAKE_CXX_FLAGS="-ffp-contract=fast" || { cat "$scratch/log"; fail "a user's flags"; }
[ "$(commands | grep -c 'ffp-contract=fast')" -gt 100 ] || fail "a user's flags are lost"
! commands | grep -v 'ffp-contract=fast .*-ffp-contract=off' || fail "contraction"
! commands | grep -- '-Werror' || fail "warnings are errors"
grep -x 'WARN_AS_ERROR *= NO' "$scratch/build/Doxyfile" || fail "the manual's warnings are errors"
! grep WERROR "$source/run.sh" || fail "warnings are errors in run.sh"
configure -DBLA_WERROR=ON
! commands | grep -v -- '-Werror' || fail "warnings are not errors with BLA_WERROR"
grep -x 'WARN_AS_ERROR *= FAIL_ON_WARNINGS' "$scratch/build/Doxyfile" || fail "the manual's warnings are no errors"

echo "== by hand, with the programs and CMake packages that packages.txt needs for building"
mkdir "$scratch/bin"
ln -s /usr/bin/* "$scratch/bin"
for package in $(grep -v '^#' "$source/packages.txt" | sort -k 2 | awk '{ s[$2] = s[$2] " " $1 } END { for (p in s) if (s[p] !~ /build/) print p }'); do
    (dpkg -L "$package" 2>/dev/null || true) | sed -n 's,^/usr/bin/,,p' | (cd "$scratch/bin" && xargs -r rm -f)
done
rm -f "$scratch"/bin/{ccache,git}
command=$(sed -n 's/^By hand: `\(cmake[^`&]*[^ `&]\) .*/\1/p' "$source/README.md")
[ -n "$command" ] || fail "no command in README.md"
(cd "$source" && env -u CMAKE_C_COMPILER_LAUNCHER -u CMAKE_CXX_COMPILER_LAUNCHER PATH="$scratch/bin" \
    bash -euxc "${command/-B build/-B $scratch/by-hand} -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON") >"$scratch/log" 2>&1 ||
    { cat "$scratch/log"; fail "by hand"; }
[ -e "$scratch/by-hand/build.ninja" ] || fail "not configured by hand"
