#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Linear elasticity with FEniCSx: a steel cantilever under its end load, solved by tovbla through PETSc.

    export PETSC_OPTIONS="-dll_append /usr/lib/x86_64-linux-gnu/libpetsc_tovbla"
    python3 elasticity_fenicsx.py               one process, direct
    mpirun -n 4 python3 elasticity_fenicsx.py   conjugate gradients, tovbla on the subdomains of additive Schwarz

Prints the deflection of the end beside MUMPS's, which is direct on any number of processes. With --picture FILE.png one
process draws the deformed shape.
"""
import sys

import numpy as np
import ufl
from dolfinx import fem, mesh
from dolfinx.fem.petsc import LinearProblem
from mpi4py import MPI
from petsc4py import PETSc

YOUNG, POISSON, TRACTION = 210e9, 0.3, 1e6   # Pa, -, Pa
world = MPI.COMM_WORLD
beam = mesh.create_box(world, [[0, 0, 0], [1, 0.1, 0.1]], [40, 4, 4], mesh.CellType.hexahedron)
space = fem.VectorFunctionSpace(beam, ("Lagrange", 1))
clamped = fem.locate_dofs_geometrical(space, lambda x: np.isclose(x[0], 0))
fixed = fem.dirichletbc(np.zeros(3), clamped, space)
end = mesh.locate_entities_boundary(beam, 2, lambda x: np.isclose(x[0], 1))
marks = mesh.meshtags(beam, 2, np.sort(end), np.ones(len(end), dtype=np.int32))
surface = ufl.Measure("ds", domain=beam, subdomain_data=marks)(1)

u, v = ufl.TrialFunction(space), ufl.TestFunction(space)


def stress(w):
    lame, shear = YOUNG * POISSON / ((1 + POISSON) * (1 - 2 * POISSON)), YOUNG / (2 * (1 + POISSON))
    return lame * ufl.div(w) * ufl.Identity(3) + 2 * shear * ufl.sym(ufl.grad(w))


stiffness = ufl.inner(stress(u), ufl.sym(ufl.grad(v))) * ufl.dx
load = ufl.dot(fem.Constant(beam, np.array([0.0, 0.0, -TRACTION])), v) * surface

DIRECT = {"ksp_type": "preonly", "pc_type": "cholesky"}
ours = {**DIRECT, "pc_factor_mat_solver_type": "tovbla"} if world.size == 1 else {
    "ksp_type": "cg", "ksp_rtol": 1e-12, "pc_type": "asm", "pc_asm_type": "basic", "pc_asm_overlap": 2,
    "sub_pc_type": "cholesky", "sub_pc_factor_mat_solver_type": "tovbla"}
answers = {}
for name, options in {"tovbla": ours, "mumps": {**DIRECT, "pc_factor_mat_solver_type": "mumps"}}.items():
    problem = LinearProblem(stiffness, load, bcs=[fixed], petsc_options=options)
    solution = problem.solve()
    deflection = world.allreduce(fem.assemble_scalar(fem.form(-solution[2] * surface))) / 0.01
    answers[name] = (solution, deflection)
    if world.rank == 0:
        print(f"{name}: deflection {deflection * 1e3:.9f} mm, {problem.solver.getIterationNumber()} iterations, "
              f"reason {problem.solver.getConvergedReason()}")

difference = answers["tovbla"][0].vector.copy()
difference.axpy(-1.0, answers["mumps"][0].vector)
relative = difference.norm(PETSc.NormType.NORM_2) / answers["mumps"][0].vector.norm(PETSc.NormType.NORM_2)
if world.rank == 0:
    print(f"relative difference {relative:.1e}")

if "--picture" in sys.argv and world.size == 1:
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plot
    x = space.tabulate_dof_coordinates()
    w = answers["tovbla"][0].x.array.reshape(-1, 3)
    factor = 0.15 / np.abs(w).max()
    axes = plot.figure(figsize=(8, 3)).add_subplot(projection="3d")
    at = x + factor * w
    axes.scatter(x[:, 0], x[:, 1], x[:, 2], s=1, color="lightgrey")
    shown = axes.scatter(at[:, 0], at[:, 1], at[:, 2], s=3, c=-w[:, 2] * 1e3)
    axes.set_box_aspect((4, 1, 1.2))
    axes.set(xlabel="x, m", yticks=[], zlabel="z, m")
    plot.colorbar(shown, label="deflection, mm", shrink=0.6)
    plot.savefig(sys.argv[sys.argv.index("--picture") + 1], bbox_inches="tight")
sys.exit(relative > 1e-8)
