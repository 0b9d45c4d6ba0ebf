// SPDX-License-Identifier: BSD-3-Clause
// Eigenfrequencies of the cantilever beam of bla_solve in an interval: K·x = (2·pi·f)²·M·x by spectrum
// slicing of SLEPc. The factorisations K - s·M = L·D·Lᵀ are made by tovbla, which also counts: as many
// eigenvalues lie below s as D has negative pivots. Beside them, what Euler and Bernoulli's theory says of
// bending.
//
//     beam_frequencies -eps_interval 1e5,1e8 [-mesh 40,8,8]
#include "beam.h"

#include <petsc_tovbla.h>
#include <slepceps.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double density = 7850.0; // kg/m³

// The consistent mass of every element: volume·density times a product of {1/3, 1/6} for each axis.
PetscErrorCode addMass(const BeamMesh& mesh, Mat mass)
{
    const double element = density * mesh.size[0] * mesh.size[1] * mesh.size[2] / mesh.elementCount();
    PetscFunctionBegin;
    for (int e = 0; e < mesh.elementCount(); ++e) {
        const std::array<int, 8> corner = mesh.corners(e);
        for (int a : corner)
            for (int b : corner) {
                const std::array<double, 3> p = mesh.position(a), q = mesh.position(b);
                double value = element;
                for (int axis = 0; axis < 3; ++axis)
                    value *= std::abs(p[axis] - q[axis]) < 1e-12 ? 1.0 / 3.0 : 1.0 / 6.0;
                if (a >= mesh.clampedNodes() && b >= mesh.clampedNodes())
                    for (int k = 0; k < 3; ++k)
                        PetscCall(MatSetValue(mass, 3 * (a - mesh.clampedNodes()) + k,
                                              3 * (b - mesh.clampedNodes()) + k, value, ADD_VALUES));
            }
    }
    PetscCall(MatAssemblyBegin(mass, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(mass, MAT_FINAL_ASSEMBLY));
    PetscFunctionReturn(0);
}

// That of bla_solve.
PetscErrorCode makeStiffness(const BeamMesh& mesh, Mat* made)
{
    const Matrix k = beamStiffness(mesh);
    PetscFunctionBegin;
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, k.n, k.n, 81, nullptr, made));
    for (PetscInt row = 0; row < k.n; ++row)
        PetscCall(MatSetValues(*made, 1, &row, static_cast<PetscInt>(k.start[row + 1] - k.start[row]),
                               k.column.data() + k.start[row], k.value.data() + k.start[row], INSERT_VALUES));
    PetscCall(MatAssemblyBegin(*made, MAT_FINAL_ASSEMBLY));
    PetscCall(MatAssemblyEnd(*made, MAT_FINAL_ASSEMBLY));
    PetscFunctionReturn(0);
}

// Bending of a slender cantilever: f = (beta·L)²/(2·pi)·sqrt(E·I/(rho·A·L⁴)), a pair for a square section.
double bending(const BeamMesh& mesh, int mode)
{
    constexpr double roots[] = {1.8751040687, 4.6940911330, 7.8547574382};
    const double length = mesh.size[0], section = mesh.size[1] * mesh.size[2],
                 inertia = mesh.size[1] * std::pow(mesh.size[2], 3) / 12.0;
    return roots[mode] * roots[mode] / (2.0 * std::numbers::pi) *
           std::sqrt(mesh.young * inertia / (density * section * std::pow(length, 4)));
}

PetscErrorCode frequencies()
{
    BeamMesh mesh;
    Mat stiffness, mass;
    EPS eps;
    ST st;
    KSP ksp;
    PC pc;
    PetscInt found;

    PetscFunctionBegin;
    PetscInt elements[] = {40, 8, 8}, three = 3;
    PetscCall(PetscOptionsGetIntArray(nullptr, nullptr, "-mesh", elements, &three, nullptr));
    for (int axis = 0; axis < 3; ++axis)
        mesh.elements[axis] = static_cast<int>(elements[axis]);
    PetscCall(makeStiffness(mesh, &stiffness));
    PetscCall(MatCreateSeqAIJ(PETSC_COMM_SELF, mesh.unknowns(), mesh.unknowns(), 27, nullptr, &mass));
    PetscCall(addMass(mesh, mass));
    PetscCall(EPSCreate(PETSC_COMM_SELF, &eps));
    PetscCall(EPSSetOperators(eps, stiffness, mass));
    PetscCall(EPSSetProblemType(eps, EPS_GHEP));
    PetscCall(EPSSetWhichEigenpairs(eps, EPS_ALL));
    PetscCall(EPSGetST(eps, &st));
    PetscCall(STSetType(st, STSINVERT));
    PetscCall(EPSSetFromOptions(eps));
    PetscCall(EPSKrylovSchurGetKSP(eps, &ksp)); // that of the slices
    PetscCall(KSPSetType(ksp, KSPPREONLY));
    PetscCall(KSPGetPC(ksp, &pc));
    PetscCall(PCSetType(pc, PCCHOLESKY));
    PetscCall(PCFactorSetMatSolverType(pc, MATSOLVERTOVBLA));
    PetscCall(EPSSolve(eps));

    PetscInt shifts, *counts;
    PetscReal* shift;
    PetscCall(EPSKrylovSchurGetInertias(eps, &shifts, &shift, &counts));
    for (PetscInt k = 0; k < shifts; ++k)
        PetscCall(PetscPrintf(PETSC_COMM_SELF, "%" PetscInt_FMT " frequencies below %.2f Hz\n", counts[k],
                              std::sqrt(std::max(shift[k], 0.0)) / (2.0 * std::numbers::pi)));
    PetscCall(PetscFree(shift));
    PetscCall(PetscFree(counts));
    PetscCall(EPSGetConverged(eps, &found));
    for (PetscInt k = 0; k < found; ++k) {
        PetscScalar value;
        PetscReal error;
        PetscCall(EPSGetEigenvalue(eps, k, &value, nullptr));
        PetscCall(EPSComputeError(eps, k, EPS_ERROR_RELATIVE, &error));
        PetscCall(PetscPrintf(PETSC_COMM_SELF, "%2" PetscInt_FMT "  %10.3f Hz  error %.1e\n", k + 1,
                              std::sqrt(value) / (2.0 * std::numbers::pi), error));
    }
    for (int mode = 0; mode < 3; ++mode)
        PetscCall(PetscPrintf(PETSC_COMM_SELF, "theory of slender beams, bending %d: %.3f Hz\n", mode + 1,
                              bending(mesh, mode)));
    PetscCall(EPSDestroy(&eps));
    PetscCall(MatDestroy(&stiffness));
    PetscCall(MatDestroy(&mass));
    PetscFunctionReturn(0);
}

} // namespace

int main(int count, char** words)
{
    PetscCall(SlepcInitialize(&count, &words, nullptr, nullptr));
    PetscCall(MatSolverTypeRegister_TOVBla());
    PetscCall(frequencies());
    PetscCall(SlepcFinalize());
    return 0;
}
