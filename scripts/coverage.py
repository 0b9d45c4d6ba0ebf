#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Sums up what gcov says of all objects of a build.

    coverage.py BUILD SOURCES        BUILD was compiled with --coverage and its tests were run

Prints the lines of every file under SOURCES that hold a statement which no test reached, and a total. Exit status 1
unless all were reached, 2 if there is nothing to judge: no data, or a source that no object was built from.
"""
import collections
import json
import os
import subprocess
import sys


def executions(build, name):
    """{file: {line: how often}} of the sources in directories of this name, summed over all that were made of a line:
    the instances of a template, the objects that share a header, the programs that compile a source again."""
    count = collections.defaultdict(lambda: collections.defaultdict(int))
    notes = [os.path.join(d, f) for d, _, files in os.walk(build) for f in files
             if f.endswith(".gcno") and name in d]
    for first in range(0, len(notes), 50):
        report = subprocess.run(["gcov", "--json-format", "--stdout", *notes[first:first + 50]], check=True,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        for text in report.splitlines():
            for file in json.loads(text)["files"] if text.strip() else []:
                for line in file["lines"]:
                    count[os.path.realpath(file["file"])][line["line_number"]] += line["count"]
    return count


def ranges(numbers):
    """[1, 2, 3, 7] as 1-3, 7."""
    parts = []
    for n in sorted(numbers):
        if parts and parts[-1][1] == n - 1:
            parts[-1][1] = n
        else:
            parts.append([n, n])
    return ", ".join(f"{a}-{b}" if b > a else str(a) for a, b in parts)


def main(build, sources):
    root = os.path.realpath(sources)
    count = {f: lines for f, lines in executions(build, os.path.basename(root)).items() if f.startswith(root + os.sep)}
    built = {f for f, lines in count.items() if f.endswith(".cpp")}
    missing = {os.path.join(d, f) for d, _, files in os.walk(root) for f in files if f.endswith(".cpp")} - built
    for file in sorted(missing):
        print(f"{os.path.relpath(file)}: not in any object")
    total = reached = 0
    for file, lines in sorted(count.items()):
        total += len(lines)
        reached += sum(1 for n in lines.values() if n)
        never = [line for line, n in lines.items() if not n]
        if never:
            print(f"{os.path.relpath(file)}: {ranges(never)}")
    if not total or missing:
        return 2
    print(f"{reached} of {total} statements in {len(count)} files reached, {100.0 * reached / total:.2f} %")
    return 0 if reached == total else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
