# SPDX-License-Identifier: BSD-3-Clause
"""The cases of cases.txt: the same output as PETSc expects, and every process that factorised did it with tovbla: where
tovbla is in the place of PETSc's own solver, nothing else; else (a coarse problem may be PETSc's) tovbla too.

    test_examples.py quick|long|all [PART OF A LINE]
"""
import os
import sys
import tempfile

import compare
import examples
import runner

HERE = os.path.dirname(os.path.abspath(__file__))


def table():
    """Lines of cases.txt in words."""
    with open(os.path.join(HERE, "cases.txt")) as file:
        return [line.split() for line in file if line.strip() and not line.startswith("#")]


def options(how):
    """Of a line's last words: keywords of runner.run, options of ours, and options of both runs."""
    if how[0].startswith("instead"):
        name = how[0].partition("=")[2]
        return {"instead": True}, ["-instead", name] if name else [], how[1:]
    ours = [word for name in how if name.startswith("@")
            for word in (f"-{name[1:]}pc_factor_mat_solver_type", "tovbla")]
    return {}, ours, [word for word in how if not word.startswith("@") and word != "beside"]


def check(example, name, how, folder):
    """'' or what is wrong with one case, and by whom how many matrices were factorised."""
    case = examples.Case(example, "" if name == "-" else name)
    program = examples.build(case.source, folder)
    keywords, ours, both = options(how)
    factorised = []
    for arguments, end in case.variants:
        result = runner.run(program, case.processes, *arguments, *both, *ours, **keywords)
        if result.status:
            return f"status {result.status}\n{result.output[-3000:]}", factorised
        factorised = result.factorised()
        if not any(factorised):
            return "tovbla was not used", factorised
        if any(own for own, ours in zip(result.own(), factorised) if how[0] == "instead" or not ours):
            return f"PETSc's own solver was used, by process {result.own()}", factorised
        if how[0] == "beside":
            expected = [runner.run(program, case.processes, *arguments, *both, plugin=False).output]
        else:
            expected = case.expected(end)
        differences = [compare.difference(text, case.filtered(result.output)) for text in expected]
        if all(differences):
            return min(differences, key=len), factorised
    return "", factorised


def main():
    group, part = sys.argv[1], " ".join(sys.argv[2:])
    failed = ran = 0
    with tempfile.TemporaryDirectory() as folder:
        for example, name, speed, *how in table():
            line = " ".join([example, name, *how])
            if (group != "all" and speed != group) or part not in line:
                continue
            ran += 1
            try:
                wrong, factorised = check(example, name, how, folder)
            except (examples.Missing, OSError, ValueError) as error:
                wrong, factorised = str(error), []
            except runner.subprocess.TimeoutExpired:
                wrong, factorised = f"hangs, more than {runner.SECONDS} seconds", []
            print(f"{'FAILED' if wrong else 'ok'}  {line}: {sum(factorised)} by tovbla on "
                  f"{sum(map(bool, factorised))} of {len(factorised)} processes", wrong, sep="\n" if wrong else "",
                  flush=True)
            failed += bool(wrong)
    print(f"{ran} cases, {failed} failed")
    return failed > 0 or ran == 0


if __name__ == "__main__":
    sys.exit(main())
