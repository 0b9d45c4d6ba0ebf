#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""check_interfaces.py HEADER EXPORTS MODULE

Holds the Fortran module against the header and the export map: every exported routine is there under its
name, with the arguments of the header in order, type, intent and way of passing; and nothing else is.
"""
import re
import sys

KINDS = {
    "int": {"integer(4)", "integer(c_int)", "logical(4)"},
    "int64_t": {"integer(8)"},
    "double": {"real(8)", "real(c_double)"},
    "float": {"real(4)"},
    "blac_complex": {"complex(8)"},
    "char": {"character", "character(6)", "character(*)"},
}


def header_routines(text):
    """name -> (result type, [(type, passing, name)]) with passing one of in, out, value"""
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    text = re.sub(r"^\s*#.*$", "", text, flags=re.M)
    routines = {}
    for result, name, arguments in re.findall(r"(\w+)\s+(\w+)\(([^()]*)\)\s*;", text):
        parsed = []
        for argument in arguments.split(","):
            argument = argument.strip()
            if argument in ("", "void"):
                continue
            const, kind, reference, word = re.fullmatch(r"(const\s+)?(\w+)\s*([*&]?)\s*(\w+)", argument).groups()
            parsed.append((kind, "value" if not reference else "in" if const else "out", word.lower()))
        routines[name] = (result, parsed)
    return routines


def fortran_routines(text):
    """symbol -> (result type, [(type, passing, name)])"""
    text = re.sub(r"^\s*!.*$|\s!\s.*$", "", text, flags=re.M)
    text = re.sub(r"&\s*\n\s*", "", text)
    routines = {}
    for kind, name, arguments, binding, body in re.findall(
        r"^\s*(\w+(?:\(\w+\))? function|subroutine) (\w+)\((.*?)\)(?: bind\(c, name='(\w+)'\))?\s*\n(.*?)^\s*end (?:function|subroutine)",
        text, flags=re.M | re.S,
    ):
        declared = {}
        for head, names in re.findall(r"^\s*(\S.*?) :: (.*)$", body, flags=re.M):
            if head == "import":
                continue
            kind_of, attribute = re.fullmatch(r"(\w+(?:\([\w*]+\))?), (intent\(\w+\)|value)", head).groups()
            passing = {"intent(in)": "in", "value": "value"}.get(attribute, "out")
            for word in re.findall(r"(\w+)(?:\([^)]*\))?", names):
                declared[word] = (kind_of, passing, word)
        words = [word.strip() for word in arguments.split(",") if word.strip()]
        undeclared = [word for word in words if word not in declared]
        assert not undeclared, f"{name}: {undeclared} not declared"
        result = kind.split()[0] if kind.endswith("function") else "void"
        routines[binding or name + "_"] = (result, [declared[word] for word in words])
    return routines


def main():
    header = header_routines(open(sys.argv[1], encoding="utf-8").read())
    exports = set(re.findall(r"^\s*(\w+);", open(sys.argv[2], encoding="utf-8").read(), flags=re.M))
    module = fortran_routines(open(sys.argv[3], encoding="utf-8").read())
    complaints = []

    # The header's name of a symbol: C++ symbols begin with _Z and the length of the name.
    def plain(symbol):
        mangled = re.match(r"_Z(\d+)", symbol)
        return symbol[mangled.end() : mangled.end() + int(mangled.group(1))] if mangled else symbol

    wanted = {plain(symbol) for symbol in exports}
    complaints += [f"{name}: exported, not in the header" for name in sorted(wanted - header.keys())]
    complaints += [f"{name}: in the header, not exported" for name in sorted(header.keys() - wanted)]
    complaints += [f"{symbol}: in the module, not exported" for symbol in sorted(module.keys() - exports)]
    by_name = {plain(symbol): routine for symbol, routine in module.items()}
    complaints += [f"{name}: not in the module" for name in sorted(wanted - by_name.keys())]

    for name in sorted(header.keys() & by_name.keys()):
        c_result, c_arguments = header[name]
        f_result, f_arguments = by_name[name]
        if name == "blac_ilaenv_":
            c_arguments = c_arguments[:-2]  # the hidden lengths, which Fortran adds by itself
        if (c_result == "void") != (f_result == "void") or f_result not in KINDS.get(c_result, {"void"}):
            complaints.append(f"{name}: result {f_result} for {c_result}")
        if len(c_arguments) != len(f_arguments):
            complaints.append(f"{name}: {len(f_arguments)} arguments for {len(c_arguments)}")
            continue
        for c, f in zip(c_arguments, f_arguments):
            if c[1:] != f[1:] or f[0] not in KINDS[c[0]]:
                complaints.append(f"{name}: argument {f} for {c}")

    print("\n".join(complaints) or f"{len(by_name)} routines agree")
    return 1 if complaints or len(by_name) < 150 else 0


sys.exit(main())
