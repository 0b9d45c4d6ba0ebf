# SPDX-License-Identifier: BSD-3-Clause
"""Processes in two network namespaces, as on two hosts, and processes that see each other over TCP alone get the answer of
those that share memory; and a run under memcheck, which finds nothing of ours."""
import os
import shutil
import subprocess
import tempfile
import unittest

import runner

FAULTS = os.environ["BLA_PETSC_FAULTS"]
BLOCKS = ["-pc_type", "bjacobi", "-sub_pc_type", "cholesky", "-sub_pc_factor_mat_solver_type", "tovbla", "-m", "40",
          "-ksp_rtol", "1e-12", "-ksp_type", "cg", "-ksp_monitor"]


class TwoHosts:
    """Two namespaces joined by a wire; the second is reached by a script in the place of a remote shell."""

    def __enter__(self):
        self.names = [f"bla{os.getpid()}{side}" for side in "ab"]
        a, b = self.names
        self.folder = tempfile.TemporaryDirectory()
        self.agent = os.path.join(self.folder.name, "agent")
        with open(self.agent, "w") as file:
            file.write(f'#!/bin/sh\nshift\nexec ip netns exec {b} /bin/sh -c "$*"\n')
        os.chmod(self.agent, 0o755)
        try:
            for command in (f"netns add {a}", f"netns add {b}",
                            f"link add blaw0 netns {a} type veth peer name blaw1 netns {b}",
                            f"-n {a} addr add 10.77.0.1/24 dev blaw0", f"-n {b} addr add 10.77.0.2/24 dev blaw1",
                            f"-n {a} link set lo up", f"-n {b} link set lo up",
                            f"-n {a} link set blaw0 up", f"-n {b} link set blaw1 up"):
                subprocess.run(["ip", *command.split()], check=True, capture_output=True)
        except (OSError, subprocess.CalledProcessError) as error:
            self.__exit__()
            raise unittest.SkipTest(f"no network namespaces here: {error}") from error
        net = "10.77.0.0/24"
        self.launcher = ("ip", "netns", "exec", a, "mpirun", "--mca", "plm_rsh_agent", self.agent, "--mca", "btl", "tcp,self",
                  "--mca", "pml", "ob1", "--mca", "btl_tcp_if_include", net, "--mca", "oob_tcp_if_include", net,
                  "-H", "10.77.0.1:2,10.77.0.2:2")
        return self

    def sent(self):
        """Bytes that the first host has sent over the wire."""
        path = "/sys/class/net/blaw0/statistics/tx_bytes"
        return int(subprocess.run(["ip", "netns", "exec", self.names[0], "cat", path], check=True, capture_output=True).stdout)

    def __exit__(self, *_):
        for name in self.names:
            subprocess.run(["ip", "netns", "del", name], capture_output=True)
        self.folder.cleanup()


class Hosts(unittest.TestCase):
    def test_two_hosts(self):
        with TwoHosts() as hosts:
            far = runner.run(FAULTS, 4, *BLOCKS, plugin=False, launcher=hosts.launcher, environment={"TMPDIR": "/tmp"})
            self.assertGreater(hosts.sent(), 40 * 8 * far.output.count("KSP Residual norm")) # a row of the grid for each
        self.same(runner.run(FAULTS, 4, *BLOCKS, plugin=False), far)

    def test_tcp_alone(self):
        near = runner.run(FAULTS, 4, *BLOCKS, plugin=False)
        far = runner.run(FAULTS, 4, *BLOCKS, plugin=False,
                         environment={"OMPI_MCA_btl": "tcp,self", "OMPI_MCA_pml": "ob1", "OMPI_MCA_btl_tcp_if_include": "lo"})
        self.same(near, far)

    def same(self, near, far):
        self.assertIn("CONVERGED_RTOL, right", near.output)
        self.assertIn("CONVERGED_RTOL, right", far.output)
        self.assertEqual((near.factorised(), far.factorised()), ([1] * 4, [1] * 4))
        numbers = [[float(line.split()[4]) for line in run.output.splitlines() if "KSP Residual norm" in line]
                   for run in (near, far)]
        self.assertEqual(len(numbers[0]), len(numbers[1]), far.output[-1000:])
        self.assertGreater(len(numbers[0]), 5)
        for one, two in zip(*numbers): # sums over processes may be formed in another order
            self.assertAlmostEqual(one, two, delta=1e-6 * max(one, 1e-6))


class Memcheck(unittest.TestCase):
    @unittest.skipUnless(shutil.which("valgrind"), "valgrind is not installed")
    def test_operations(self):
        done = runner.run("valgrind", 1, "--leak-check=full", "--show-leak-kinds=definite", "--keep-debuginfo=yes",
                          FAULTS, "-m", "6", "-ksp_type", "preonly", "-pc_type", "cholesky",
                          "-pc_factor_mat_solver_type", "tovbla", "-fault", "nan", plugin=False)
        self.assertIn("CONVERGED_ITS, right", done.output)
        blocks = [text for text in done.output.split("== \n") if "TOVBla" in text or "bla_solver" in text]
        self.assertEqual(blocks, [])


if __name__ == "__main__":
    unittest.main()
