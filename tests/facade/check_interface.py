#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Holds against each other: the list of forwarded routines, the sources, CMake's source lists, the public header, the
export map, and the built library with what it needs from others. Prints every disagreement."""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

PREFIX = re.compile(r"\b((?:blac_|blaC_|tovbla_|TOVBlaModule_|TOVBlaCore_)\w+)\s*\(([^()]*)\)\s*;")

# Called by the kernels without a forwarder of their own.
KERNEL_TARGETS = {"drotg_"}
# Thread control of whichever library has it, and an extension that not every BLAS has.
WEAK = {"MKL_Set_Num_Threads", "MKL_Get_Max_Threads", "openblas_set_num_threads", "openblas_get_num_threads",
        "bli_thread_set_num_threads", "bli_thread_get_num_threads", "daxpby_"}
# What the C start files refer to.
START_FILES = {"__gmon_start__", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__cxa_finalize"}
# From the C library: block copies and fills, scratch memory.
C_LIBRARY = {"memcpy", "memset", "memmove", "malloc", "free", "__stack_chk_fail"}

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def agree(left, right, left_name, right_name):
    for name in sorted(set(left) - set(right)):
        failures.append(f"{name} is in {left_name} and not in {right_name}")
    for name in sorted(set(right) - set(left)):
        failures.append(f"{name} is in {right_name} and not in {left_name}")


def run(*command, text=None):
    return subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout


def routines(path):
    rows = re.findall(r"^ROUTINE\((\w+), (\d+), (\d+), (\w+)\)$", path.read_text(), re.M)
    check(len(rows) == path.read_text().count("\nROUTINE("), "routines.def has lines of another form")
    return {name: (int(arguments), int(characters), result) for name, arguments, characters, result in rows}


def header(path, compiler):
    """Name -> parameter list of everything that the header declares, comments gone."""
    text = run(compiler, "-x", "c++", "-std=c++20", "-E", "-P", str(path))
    text = text[text.index("TOVBlaModule_initialize") - 20:]
    declared = {}
    for name, parameters in PREFIX.findall(text):
        check(name not in declared, f"{name} is declared twice")
        declared[name] = [p.strip() for p in parameters.split(",") if p.strip()]
    return declared


def plain(symbol):
    """The name in the source of an exported symbol, mangled or not."""
    mangled = re.match(r"_Z(\d+)", symbol)
    if not mangled:
        return symbol
    return symbol[mangled.end():mangled.end() + int(mangled.group(1))]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--source", type=pathlib.Path, required=True)
    parser.add_argument("--library", type=pathlib.Path, required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--beneath", default="", help="BLAS and LAPACK libraries, separated by semicolons")
    options = parser.parse_args()
    core = options.source / "TOVBla/TOVBlaCore.m/src"

    facade = routines(options.source / "tests/facade/routines.def")
    declared = header(options.source / "TOVBla/TOVBlaModule.m/TOVBlaModule.h", options.compiler)
    export_map = re.sub(r"/\*.*?\*/", "", (options.source / "cmake/exports.map").read_text(), flags=re.S)
    mapped = re.findall(r"^\s+(\w+);$", export_map, re.M)
    symbols = [line.split() for line in run("nm", "-D", str(options.library)).splitlines()]
    exported = {row[-1] for row in symbols if row[-2] not in "Uwv"}
    undefined = {row[-1].split("@")[0]: row[-2] for row in symbols if row[-2] in "Uwv"}

    # What is exported: the export map, the header and the library name the same.
    check(len(mapped) == len(set(mapped)), "a name stands twice in the export map")
    agree(mapped, exported, "the export map", "the library")
    agree(declared, {plain(symbol) for symbol in exported}, "the header", "the library")
    for symbol in exported:
        check(symbol.startswith(("blac_", "blaC_", "tovbla_", "TOVBla", "_Z")), f"{symbol} has no prefix of ours")
        if symbol.startswith("_Z") and plain(symbol).startswith("blaC_"):
            check(plain(symbol) in exported, f"{symbol} has no plain name beside it")

    # The header's declarations are those of the library, C++ linkage included: a program that takes the address
    # of each links.
    with tempfile.TemporaryDirectory() as directory:
        program = pathlib.Path(directory) / "program.cpp"
        program.write_text('#include "TOVBlaModule.h"\n'
                           + "int main() {\n    const void* volatile p;\n"
                           + "".join(f"    p = reinterpret_cast<const void*>(&{name});\n" for name in declared)
                           + "    (void)p;\n}\n")
        result = subprocess.run(
            [options.compiler, "-std=c++20", f"-I{options.source / 'TOVBla/TOVBlaModule.m'}", str(program), "-o",
             str(program.with_suffix("")), str(options.library), "-Wl,--unresolved-symbols=ignore-in-shared-libs"],
            capture_output=True, text=True)
        check(result.returncode == 0, "the header's names do not all link:\n" + result.stderr)

    # One source per routine, named after it; every source is in CMake's lists.
    own = {name for name in declared if not name.startswith("TOVBla")}
    own -= {"blaC_get_num_threads", "blaC_set_num_threads", "blaC_formalize"}
    stems = {path.stem.lower(): path.name for path in core.glob("*.cpp")}
    agree({name.lower().removesuffix("_") for name in own}, stems, "the header", "the sources")
    cmake = (options.source / "CMakeLists.txt").read_text()
    agree(re.findall(r"\$\{core\}/src/(\w+\.cpp)", cmake), stems.values(), "CMakeLists.txt", "the sources")
    lists = {group: re.findall(r"/src/blaC_(\w+)\.cpp", re.search(rf"set\({group}_sources([^)]*)\)", cmake).group(1))
             for group in ("blas", "lapack")}
    agree(lists["blas"] + lists["lapack"], list(facade) + ["hdmcon"], "CMake's facade lists", "routines.def")
    check(len(lists["blas"]) == 50 and len(lists["lapack"]) == 92, "the facade has not 50 BLAS, 91 LAPACK members")

    # The forwarders' arguments in the header are those of the list; a complex result comes first, and one routine
    # takes its lengths.
    for name, (arguments, characters, result) in facade.items():
        parameters = declared.get(f"blac_{name}_", [])
        count = arguments + (result.startswith("Complex")) + (characters if name == "ilaenv" else 0)
        check(len(parameters) == count, f"blac_{name}_ declares {len(parameters)} arguments instead of {count}")
        options_declared = sum(parameter.startswith("const char*") for parameter in parameters)
        check(options_declared == characters, f"blac_{name}_ declares {options_declared} characters, not {characters}")

    # What the library needs: the routines beneath, by name at load time, and next to nothing of the C library.
    targets = {f"{name}_" for name in facade} | KERNEL_TARGETS
    agree(targets - set(undefined) - KERNEL_TARGETS, [], "routines.def", "the library's undefined symbols")
    for symbol, kind in undefined.items():
        check(symbol in targets | WEAK | START_FILES | C_LIBRARY or symbol.startswith(("__asan_", "__ubsan_", "__tsan_")),
              f"the library needs {symbol}")
        if symbol in targets | WEAK:
            check((kind == "U") == (symbol not in WEAK), f"{symbol} is bound {'strongly' if kind == 'U' else 'weakly'}")
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "-d", str(options.library)))
    beneath = set()
    for path in options.beneath.split(";"):
        if pathlib.Path(path).exists():
            beneath.update(re.findall(r"\(SONAME\).*\[(.*)\]", run("readelf", "-d", path)))
    for name in needed:
        check(name in beneath or re.match(r"lib(c|m|asan|ubsan|tsan)\.so", name), f"the library needs {name}")

    print("\n".join(failures) or f"{len(exported)} exported names and {len(facade)} forwarders agree")
    return bool(failures)


if __name__ == "__main__":
    sys.exit(main())
