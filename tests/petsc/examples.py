# SPDX-License-Identifier: BSD-3-Clause
"""PETSc's examples as they are installed: the test cases that each source ends with, and their expected outputs."""
import itertools
import os
import re
import shlex
import subprocess

FOLDER = os.environ.get("BLA_PETSC_EXAMPLES", "")


class Missing(Exception):
    """An example, or a case of it, that this PETSc does not have."""


def entries(text):
    """(depth, key, value) of the lines between TEST marks; a line that ends in a backslash goes on."""
    block = re.search(r"/\*TEST(.*?)TEST\*/", text, re.S)
    if not block:
        raise Missing("the source has no test cases")
    for line in re.sub(r"\\\n\s*", " ", block.group(1)).splitlines():
        if line.strip() and not line.lstrip().startswith("#"):
            key, _, value = line.strip().partition(":")
            yield len(line) - len(line.lstrip()), key, value.strip()


def cases(text):
    """Name to settings (nsize, args, filter, output_file): those of a set hold for its tests, arguments add up."""
    found, shared, at, current = {}, {}, -1, None
    for depth, key, value in entries(text):
        if key in ("test", "testset"):
            if depth <= at or at < 0:
                shared = {}
            if key == "testset":
                shared, at = {}, depth
                current = shared
            else:
                at = -1 if depth <= at else at
                current = {"of": dict(shared)}
                found[id(current)] = current
        elif current is not None:
            current[key] = value
    named = {}
    for case in found.values():
        settings = {**case.pop("of"), **{k: v for k, v in case.items() if k != "args"}}
        settings["args"] = " ".join(filter(None, [settings.get("args"), case.get("args")]))
        named[settings.get("suffix", "")] = settings
    return named


def variants(args):
    """The argument lists that {{a b}...} stand for, each with the end that it gives the name of its output."""
    parts = re.split(r"(?:(\S+)\s+)?\{\{(.*?)\}([a-z ]*)\}", args)
    choices = []
    for key, values, how in zip(parts[1::4], parts[2::4], parts[3::4]):
        choices.append([(key, value, how.startswith("separate")) for value in values.split()])
    for picked in itertools.product(*choices):
        text, end = parts[0], ""
        for (key, value, separate), rest in zip(picked, parts[4::4]):
            text += f"{key} {value}{rest}"
            end += f"_{key.lstrip('-')}-{value}" if separate else ""
        yield shlex.split(text), end


class Case:
    """One case of one example."""

    def __init__(self, example, name):
        self.source = os.path.join(FOLDER, example + ".c")
        if not os.path.exists(self.source):
            raise Missing(f"{example}.c is not installed")
        with open(self.source) as file:
            known = cases(file.read())
        if name not in known:
            raise Missing(f"{example}.c has no case '{name}' but {' '.join(sorted(known))}")
        settings = known[name]
        self.processes = int(settings.get("nsize", "1").strip("{} ").split()[-1])
        self.variants = list(variants(settings["args"]))
        self.filters = [settings[key] for key in ("filter", "filter_output") if key in settings]
        stem = os.path.basename(example)
        self.outputs = os.path.join(os.path.dirname(self.source), "output")
        self.output = os.path.basename(settings.get("output_file", f"{stem}_{name or 1}.out"))

    def expected(self, end):
        """The outputs that this variant may have."""
        stem = (self.output[:-4] + end)
        texts = []
        for name in sorted(os.listdir(self.outputs)):
            if re.fullmatch(re.escape(stem) + r"(_alt(_\d+)?)?\.out", name):
                with open(os.path.join(self.outputs, name)) as file:
                    texts.append(file.read())
        if not texts:
            raise Missing(f"{stem}.out is not installed")
        return texts

    def filtered(self, text):
        """What the case's own filters leave of an output; they are lines of shell."""
        for command in self.filters:
            if command.startswith("Error:"):
                command = command[len("Error:"):]
            text = subprocess.run(command, shell=True, input=text, capture_output=True, text=True).stdout
        return text


def build(source, folder):
    """The program of a source, built once."""
    program = os.path.join(folder, os.path.basename(os.path.dirname(source)) + "_" + os.path.basename(source)[:-2])
    if not os.path.exists(program):
        flags = subprocess.run(["pkg-config", "--cflags", "--libs", "petsc"], check=True, capture_output=True,
                               text=True).stdout.split()
        subprocess.run(["mpicc", "-w", "-O1", source, "-o", program + ".new", *flags, "-lm"], check=True)
        os.rename(program + ".new", program)
    return program
