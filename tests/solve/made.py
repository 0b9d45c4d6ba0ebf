# SPDX-License-Identifier: BSD-3-Clause
"""Matrix Market text of small systems that no file of tests/data stands for."""


def matrix_market(n, entries, kind="symmetric"):
    """{(row, column): value}, counted from 0; of a symmetric matrix the lower triangle."""
    lines = [f"%%MatrixMarket matrix coordinate real {kind}", f"{n} {n} {len(entries)}"]
    lines += [f"{i + 1} {j + 1} {value!r}" for (i, j), value in sorted(entries.items(), key=lambda e: e[0][::-1])]
    return "\n".join(lines) + "\n"


class Flow:
    """Stokes flow in a closed square of m by m cells, velocities on the faces between them, pressures inside:

        A   B^T      A: five-point Laplacian of each velocity (walls at rest), positive definite
        B   0        B: what flows out of each cell

    The constant pressure is in the kernel, unless the last cell's pressure is left out (`pinned`).
    """

    def __init__(self, m, pinned=True):
        across = [(0, i, j) for i in range(m - 1) for j in range(m)]  # between cells (i, j) and (i + 1, j)
        upward = [(1, i, j) for i in range(m) for j in range(m - 1)]
        faces = {face: number for number, face in enumerate(across + upward)}
        self.velocities = len(faces)
        self.pressures = m * m - pinned
        self.unknowns = self.velocities + self.pressures
        self.entries = {}
        for (direction, i, j), row in faces.items():
            self.entries[row, row] = 4.0
            for neighbour in ((direction, i - 1, j), (direction, i, j - 1)):
                if neighbour in faces:
                    self.entries[row, faces[neighbour]] = -1.0
            from_cell = i * m + j
            to_cell = from_cell + (m if direction == 0 else 1)
            for cell, outflow in ((from_cell, 1.0), (to_cell, -1.0)):
                if cell < self.pressures:
                    self.entries[self.velocities + cell, row] = outflow

    def text(self):
        return matrix_market(self.unknowns, self.entries)


def flow_with_wind(m, wind):
    """The same with a wind that carries the velocities across: unsymmetric, with zeros on the diagonal."""
    flow = Flow(m)
    both = dict(flow.entries)
    both.update({(j, i): value for (i, j), value in flow.entries.items()})
    for (i, j), value in flow.entries.items():
        if i < flow.velocities and i != j:
            both[i, j] = value - wind
            both[j, i] = value + wind
    return matrix_market(flow.unknowns, both, "general")


def hollow_pairs(n, pairs):
    """A chain of n unknowns with 4 on the diagonal, and beside it pairs of unknowns that only hold each other: each
    pair has one eigenvalue of either sign, and no order gives its first pivot a value."""
    entries = {(i, i): 4.0 for i in range(n)}
    entries.update({(i, i - 1): -1.0 for i in range(1, n)})
    for k in range(pairs):
        entries[n + 2 * k + 1, n + 2 * k] = 1.0 + k
    return matrix_market(n + 2 * pairs, entries)


COMPLEX = "%%MatrixMarket matrix coordinate complex general\n2 2 2\n1 1 1.0 0.5\n2 2 2.0 -0.5\n"
