#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# install_test.sh BUILD_DIRECTORY SOURCE_DIRECTORY
# Installs into a temporary prefix, moves that elsewhere, and builds and runs callers against it: by
# find_package, by pkg-config, and with the compiled Fortran module. Nothing may still point at the first place.
set -euo pipefail
build=$1 source=$2
here=$source/tests/packaging
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$scratch/first" >"$scratch/install.log" || { cat "$scratch/install.log"; exit 1; }
mkdir "$scratch/elsewhere"
mv "$scratch/first" "$scratch/elsewhere/moved"
prefix=$scratch/elsewhere/moved
lib=$(dirname "$(find "$prefix" -name libZEFTOVBlaModule.so)")

echo "== what is there"
(cd "$prefix" && find . ! -type d | sort)
for file in "$lib/libZEFTOVBlaModule.so.1" "$prefix/include/TOVBlaModule.h" "$prefix/include/tovbla.f90" \
    "$lib/cmake/ZEFTOVBlaModule/ZEFTOVBlaModuleConfig.cmake" "$lib/pkgconfig/zeftovblamodule.pc" \
    "$lib"/fortran/gfortran-mod-*/tovbla.mod "$prefix"/bin/bla_{solve,info} "$prefix"/share/man/man1/bla_{solve,info}.1; do
    [ -e "$file" ] || fail "not installed: $file"
done
objdump -p "$lib/libZEFTOVBlaModule.so" | grep 'SONAME *libZEFTOVBlaModule.so.1$' >/dev/null || fail "soname"
[ "$(readlink "$lib/libZEFTOVBlaModule.so.1")" = libZEFTOVBlaModule.so.1.0.0 ] || fail "version"
mkdir "$scratch/text" # compressed files, compiled Fortran modules among them, as what they hold
for file in $(LC_ALL=C grep -rlaP '^\x1f\x8b' "$prefix"); do zcat "$file" >"$scratch/text/$(basename "$file")"; done
if grep -rlaE "$source|$build|$scratch/first" "$prefix" "$scratch/text"; then
    fail "these files name the source tree, the build tree or the first prefix"
fi
# A cached object may name another directory than this one.
! readelf --debug-dump=info "$lib/libZEFTOVBlaModule.so" | grep 'DW_AT_comp_dir.*: /' || fail "a directory in the debug information"
[ -s "$scratch/text/tovbla.mod" ] || fail "the compiled module was not looked into"

export LD_LIBRARY_PATH=$lib PKG_CONFIG_PATH=$lib/pkgconfig

echo "== C++ and Fortran by find_package"
cmake -S "$here/consumer" -B "$scratch/consumer" -DEXAMPLES="$source/examples" \
    -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/cmake.log" || { cat "$scratch/cmake.log"; exit 1; }
grep -q "^ZEFTOVBlaModule_DIR:PATH=$lib/" "$scratch/consumer/CMakeCache.txt" || fail "found another installation"
cmake --build "$scratch/consumer" >"$scratch/build.log" || { cat "$scratch/build.log"; exit 1; }
"$scratch/consumer/cxx_consumer"
"$scratch/consumer/fortran_consumer"
for version in 0.9 2.0; do
    sed "s/ZEFTOVBlaModule 1.0/ZEFTOVBlaModule $version/" "$here/consumer/CMakeLists.txt" >"$scratch/CMakeLists.txt"
    if cmake -S "$scratch" -B "$scratch/v$version" -DEXAMPLES="$source/examples" \
        -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/version.log" 2>&1; then
        fail "version $version was asked for and 1.0 taken"
    fi
    grep -q "compatible with requested version \"$version\"" "$scratch/version.log" || fail "no word about versions"
done

echo "== C by pkg-config"
[ "$(pkg-config --modversion zeftovblamodule)" = 1.0.0 ] || fail "pkg-config --modversion"
cc -Wall -Wextra -Werror -o "$scratch/c_consumer" "$here/consumer/consumer.c" \
    $(pkg-config --cflags --libs zeftovblamodule)
"$scratch/c_consumer"

echo "== Fortran by pkg-config, with the compiled module and with its source"
gfortran -o "$scratch/f_consumer" "$source/examples/first_call.f90" $(pkg-config --cflags --libs zeftovblamodule)
"$scratch/f_consumer"
gfortran -J "$scratch" -o "$scratch/f_consumer2" "$prefix/include/tovbla.f90" "$source/examples/first_call.f90" \
    $(pkg-config --libs zeftovblamodule)
"$scratch/f_consumer2"

echo "== the solver, in C, C++ and Fortran by pkg-config"
cc -Wall -Wextra -Werror -o "$scratch/first_solve" "$source/examples/first_solve.c" $(pkg-config --cflags --libs zeftovblasolver)
c++ -Wall -Wextra -Werror -o "$scratch/first_solve_cpp" "$source/examples/first_solve.cpp" $(pkg-config --cflags --libs zeftovblasolver)
gfortran -o "$scratch/first_solve_f" "$source/examples/first_solve.f90" $(pkg-config --cflags --libs zeftovblasolver)
for program in first_solve first_solve_cpp first_solve_f; do "$scratch/$program"; done
objdump -p "$lib/libZEFTOVBlaSolver.so" | grep 'SONAME *libZEFTOVBlaSolver.so.0$' >/dev/null || fail "soname of the solver"

echo "== the manual's first page"
"$here/run_manual.sh" "$source/docs/getting-started.md"

if [ -e "$build/manual/done" ]; then
    echo "== a man page for every routine, the HTML manual"
    for name in $(sed -n 's/^ *\([A-Za-z]\w*\);.*/\1/p' "$source/cmake/exports.map"); do
        [ -e "$prefix/share/man/man3/$name.3" ] || fail "no man page $name(3)"
    done
    [ -z "$(man --warnings -l "$prefix/share/man/man3/bla_elimination.3" 2>&1 >/dev/null)" ] || fail "troff warnings"
    [ -e "$prefix/share/doc/ZEFTOVBlaModule/html/index.html" ] || fail "no HTML manual"
fi

echo "== the programs, without help from the environment"
(unset LD_LIBRARY_PATH && cd "$scratch" && "$prefix/bin/bla_solve" --mesh 4x2x2 --no-vtk)
(unset LD_LIBRARY_PATH && "$prefix/bin/bla_info") | tee "$scratch/info"
grep -qF "$(realpath "$lib/libZEFTOVBlaModule.so")" "$scratch/info" || fail "bla_info runs on another library"
