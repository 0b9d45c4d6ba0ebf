# SPDX-License-Identifier: BSD-3-Clause
"""What objdump, readelf and nm say about a library."""
import re
import subprocess
from collections import namedtuple

Instruction = namedtuple("Instruction", "address mnemonic operands target")


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def functions(path):
    """{first address: (size, [names])} of all functions in the symbol table."""
    table = {}
    for line in run("readelf", "-sW", path).splitlines():
        field = line.split()
        if len(field) < 8 or field[3] not in ("FUNC", "IFUNC", "NOTYPE") or field[6] in ("UND", "ABS"):
            continue
        if field[3] == "NOTYPE" and field[7].startswith((".", "_", "$")):
            continue
        address, size, name = int(field[1], 16), int(field[2], 0), field[7].split("@")[0]
        old_size, names = table.get(address, (0, []))
        if name not in names:
            table[address] = (max(size, old_size), names + [name])
    return table


PREFIX = {"bnd", "notrack", "lock", "rep", "repz", "repnz", "repe", "repne", "data16", "cs", "ds", "es", "ss",
          "fs", "gs", "addr32", "{vex}", "{vex2}", "{vex3}"}
LINE = re.compile(r"^\s*([0-9a-f]+):\t(.*)$")


def instructions(path):
    """All instructions of the executable sections, in the order of their addresses."""
    found = []
    for line in run("objdump", "-d", "--no-show-raw-insn", path).splitlines():
        match = LINE.match(line)
        if not match:
            continue
        words = match.group(2).split("#")[0].split()
        while words and (words[0] in PREFIX or words[0].startswith("rex")):
            words.pop(0)
        if not words:
            continue
        mnemonic, operands = words[0].split(",")[0], " ".join(words[1:])
        target = re.match(r"^([0-9a-f]+)( <|$)", operands)
        is_branch = mnemonic.startswith(("j", "call", "loop", "xbegin"))
        found.append(Instruction(int(match.group(1), 16), mnemonic, operands,
                                 int(target.group(1), 16) if is_branch and target else None))
    return sorted(found)


def undefined(path):
    """Names that the library takes from others, without their versions; weak ones as well."""
    return sorted({line.split()[-1].split("@")[0] for line in run("nm", "-D", "--undefined-only", path).splitlines()})


def exported(path):
    return sorted({line.split()[-1].split("@")[0] for line in run("nm", "-D", "--defined-only", path).splitlines()
                   if line.split()[-2] in "TWi"})


def needed(path):
    return re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "-dW", path))


def section_size(path, name):
    match = re.search(r"\s%s\s+\S+\s+\S+\s+\S+\s+([0-9a-f]+)\s" % re.escape(name), run("readelf", "-SW", path))
    return int(match.group(1), 16) if match else 0
