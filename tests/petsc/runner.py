# SPDX-License-Identifier: BSD-3-Clause
"""Runs PETSc programs with the plug-in on a number of processes, and tells what each process did with it."""
import glob
import os
import re
import shutil
import subprocess
import tempfile

PLUGIN = os.environ.get("BLA_PETSC_PLUGIN", "")    # without .so, as -dll_append wants it
INSTEAD = os.environ.get("BLA_PETSC_INSTEAD", "")
SECONDS = 120
OWN = re.compile(r"Mat(?:LU|Cholesky)FactorSymbolic_Seq\w+\(\): .*Reallocs")

# One thread a process, no terminal, and no process that spins while another works; several on one processor.
ENVIRONMENT = {"OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1", "OPENBLAS_NUM_THREADS": "1",
               "OMPI_MCA_mpi_yield_when_idle": "1", "OMPI_MCA_rmaps_base_oversubscribe": "1",
               "OMPI_MCA_btl_vader_single_copy_mechanism": "none", "OMPI_MCA_plm_rsh_agent": "/bin/false",
               "OMPI_MCA_hwloc_base_binding_policy": "none"}


class Result:
    """Output, status, and for every process the lines that the plug-in, and PETSc's own solvers, wrote with -info."""

    def __init__(self, status, output, said):
        self.status, self.output, self.said = status, output, said

    def factorised(self):
        """By process, how many matrices were factorised by tovbla."""
        return [sum("tovbla: factorised" in line for line in lines) for lines in self.said]

    def own(self):
        """By process, how many were analysed by PETSc's own LU and Cholesky; its ILU and ICC are not counted."""
        return [sum(bool(OWN.search(line)) for line in lines) for lines in self.said]


def run(program, processes, *arguments, plugin=True, instead=False, environment=(), launcher=("mpirun",), info=True):
    """Runs a program; a process that hangs is an error of its own, TimeoutExpired."""
    folder = tempfile.mkdtemp()
    try:
        command = [*launcher, "-n", str(processes), program, *map(str, arguments)]
        if info:
            command += ["-info", os.path.join(folder, "info") + ":mat"]
        libraries = [PLUGIN] * plugin + [INSTEAD] * instead
        if libraries: # the option counts once
            command += ["-dll_append", ",".join(libraries)]
        with subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, errors="replace", cwd=folder, start_new_session=True,
                              env={**os.environ, **ENVIRONMENT, "TMPDIR": folder, **dict(environment)}) as process:
            try:
                output, _ = process.communicate(timeout=SECONDS)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, 9)
                raise
        said = []
        for rank in range(processes):
            lines = []
            for name in glob.glob(os.path.join(folder, f"info.{rank}")):
                with open(name, errors="replace") as file:
                    lines = [line for line in file if "tovbla" in line or OWN.search(line)]
            said.append(lines)
        return Result(process.returncode, output, said)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


def iterations(output):
    """The reason and number of iterations that -ksp_converged_reason prints."""
    found = re.search(r"solve (converged|did not converge) due to (\w+)\s+iterations (\d+)", output)
    return (found.group(2), int(found.group(3))) if found else (None, None)
