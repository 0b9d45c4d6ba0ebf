# SPDX-License-Identifier: BSD-3-Clause
"""Holds an output against the expected one: words are equal, numbers nearly, and what views tell of a factor is not
compared, because that is where the solvers differ."""
import re

# Lines of views that speak of the factorisation or of what it was chosen from.
FACTOR = re.compile(r"tolerance for zero pivot|out-of-place factorization|matrix ordering: |factor fill ratio|"
                    r"using diagonal shift|package used to perform|I-node|variant HERMITIAN|"
                    r"total: nonzeros=.*allocated|tovbla: |  fronts |  pivots: |"
                    r"^\s*package used|MUMPS run parameters|mallocs used during MatSetValues")
NUMBER = re.compile(r"[-+]?(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?")


def significant(text):
    """The lines to compare: without factors, each from 'Factored matrix follows' on, as deep as that goes."""
    kept, depth = [], None
    for line in text.splitlines():
        indent = len(line) - len(line.lstrip())
        if depth is not None and line.strip() and indent <= depth:
            depth = None
        if "Factored matrix follows" in line or "factored matrix follows" in line:
            depth = indent
        elif depth is None and line.strip() and not FACTOR.search(line):
            kept.append(" ".join(line.split()))
    return kept


def near(a, b, relative, tiny):
    return abs(a - b) <= relative * max(abs(a), abs(b)) or max(abs(a), abs(b)) <= tiny


def difference(expected, got, relative=1e-4, tiny=1e-9):
    """'' if they agree, else the first line where they do not."""
    one, two = significant(expected), significant(got)
    for k in range(max(len(one), len(two))):
        a, b = (lines[k] if k < len(lines) else "(nothing)" for lines in (one, two))
        numbers = zip(NUMBER.findall(a), NUMBER.findall(b))
        if NUMBER.sub("#", a) != NUMBER.sub("#", b) or \
                not all(near(float(x), float(y), relative, tiny) for x, y in numbers):
            return f"expected: {a}\n     got: {b}"
    return ""
