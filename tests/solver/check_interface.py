#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""check_interface.py HEADER EXPORTS FORTRAN

The solver's interface is written down three times: the functions of the header are those of the export map and of the
Fortran module, with the same arguments in the same order, passed in the way that C takes them, and the same constants.
"""
import re
import sys

# (type, pointer, const) in C: what may be written in Fortran
PASSED = {
    ("bla_solver", 1, False): {"type(c_ptr), value"}, ("bla_solver", 1, True): {"type(c_ptr), value"},
    ("bla_solver", 2, False): {"type(c_ptr), intent(out)"},
    ("char", 1, True): {"character(kind=c_char), intent(in)"},
    ("void", 1, False): {"type(c_ptr), value"}, ("function", 1, False): {"type(c_funptr), value"},
}
for c, fortran in (("int", "integer(c_int)"), ("int32_t", "integer(c_int32_t)"), ("int64_t", "integer(c_int64_t)"),
                   ("double", "real(c_double)")):
    PASSED[c, 0, False] = {fortran + ", value"}
    PASSED[c, 1, True] = {fortran + ", intent(in)"}
    PASSED[c, 1, False] = {fortran + ", intent(out)", fortran + ", intent(inout)"}
PASSED["bla_solver_task", 1, False] = {"type(bla_solver_task), intent(out)"}
MEMBERS = {"const char*": "type(c_ptr)", "int32_t": "integer(c_int32_t)", "double": "real(c_double)"}
RESULTS = {"int": "integer(c_int) function", "const char*": "type(c_ptr) function", "void": "subroutine"}


def members(header, fortran):
    """[(member, type)] of bla_solver_task in either"""
    text = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
    body = re.search(r"typedef struct bla_solver_task\s*\{(.*?)\} bla_solver_task;", text, re.S)[1]
    ours = [(word, MEMBERS[kind]) for kind, word in re.findall(r"(\w[\w ]*?\*?) (\w+);", body)]
    body = re.search(r"type, bind\(c\) :: bla_solver_task\n(.*?)end type", fortran, re.S)[1]
    return ours, [(word, kind) for kind, words in re.findall(r"^\s*(\S.*?) :: (.*)$", body, re.M)
                  for word in words.split(", ")]


def in_header(text):
    """{name: (result, [(argument, (type, pointer, const))])} and the lists of constants"""
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    functions = {}
    for result, name, arguments in re.findall(r"^(int|void|const char\*) (bla_solver_\w+)\((.*?)\);", text, re.M | re.S):
        arguments = re.sub(r"int \(\*(\w+)\)\([^()]*\)", r"function* \1", arguments)
        parsed = []
        for argument in arguments.split(","):
            const, kind, stars, word = re.fullmatch(r"(const )?(\w+)(\**) (\w+)", argument.strip()).groups()
            parsed.append((word.lower(), (kind, len(stars), bool(const))))
        functions[name] = result, parsed
    return functions, [re.findall(r"BLA_SOLVER_\w+", body) for body in re.findall(r"^enum \{(.*?)\};", text, re.M | re.S)]


def in_fortran(text):
    text = re.sub(r"^\s*!.*$", "", text, flags=re.M)
    text = re.sub(r"&\s*\n\s*", "", text)
    functions = {}
    for result, name, arguments, body in re.findall(
            r"^[ ]*([^\n]*?(?:function|subroutine)) (bla_solver_\w+)\((.*?)\) bind\(c\)\n(.*?)^\s*end ", text, re.M | re.S):
        declared = {}
        for how, words in re.findall(r"^\s*(\S.*?) :: (.*)$", body, re.M):
            for word in re.findall(r"(\w+)(?:\([^)]*\))?", words):
                declared[word] = how
        functions[name] = result, [(word.strip(), declared[word.strip()]) for word in arguments.split(",")]
    return functions, [[word.upper() for word in re.findall(r"bla_solver_\w+", body)]
                       for body in re.findall(r"enum, bind\(c\)(.*?)end enum", text, re.S)]


def main():
    header, exports, fortran = (open(path).read() for path in sys.argv[1:])
    functions, constants = in_header(header)
    others, other_constants = in_fortran(fortran)
    exported = re.findall(r"^\s+(bla_solver_\w+);", exports, re.M)
    failures = []
    if len(functions) < 18 or sorted(functions) != sorted(exported):
        failures.append(f"the header has {sorted(functions)}, the export map {sorted(exported)}")
    if sorted(functions) != sorted(others):
        failures.append(f"the header has {sorted(functions)}, the Fortran module {sorted(others)}")
    if constants != other_constants or len(constants) != 2:
        failures.append(f"constants: {constants} and {other_constants}")
    ours, theirs = members(header, fortran)
    if len(ours) < 9 or ours != theirs:
        failures.append(f"bla_solver_task: {ours} and {theirs}")
    for name in sorted(set(functions) & set(others)):
        (result, arguments), (other, theirs) = functions[name], others[name]
        if RESULTS[result] != other:
            failures.append(f"{name}: {result} and {other}")
        if [word for word, _ in arguments] != [word for word, _ in theirs]:
            failures.append(f"{name}: {arguments} and {theirs}")
            continue
        for (word, c), (_, how) in zip(arguments, theirs):
            if how not in PASSED[c]:
                failures.append(f"{name}: {word} is {c} and {how}")
    print("\n".join(failures) or f"{len(functions)} functions")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
