# SPDX-License-Identifier: BSD-3-Clause
"""check_info.py PROGRAM VERSION: what bla_info says, held against EXPECT_... and /proc/cpuinfo."""
import json
import os
import subprocess
import sys

program, version = sys.argv[1:]


def run(*arguments, status=0):
    done = subprocess.run([program, *arguments], capture_output=True, text=True)
    assert done.returncode == status, (arguments, done)
    return done


def must(condition, what):
    if not condition:
        sys.exit(f"{what}\n{text}")


text = run("--json").stdout
info = json.loads(text)
expect = {name[len("EXPECT_"):]: value for name, value in os.environ.items() if name.startswith("EXPECT_")}

must(info["version"] == version, "version")
must("libZEFTOVBlaModule.so." + version in info["file"], "the module's file")
for part in ("blas", "lapack"):
    must("/" + expect[part.upper()] in info[part]["file"], part + " file")
    must(info[part]["complex_results"] == expect["COMPLEX"], part + " convention")
must(info["blas"]["daxpby"] == ("daxpby" not in expect["WITHOUT"]), "daxpby_")
must((info["threads"]["set_by"] or "") == expect["CONTROL"], "thread control")
must(info["threads"]["count"] >= 1, "thread count")
if expect["THREADS"] == "fixed":
    must(info["threads"]["count"] == 1, "thread count")

# The kernel's own names of the features.
with open("/proc/cpuinfo") as file:
    flags = set(next(line for line in file if line.startswith("flags")).split(":")[1].split())
names = {"SSE3": "pni", "SSE4.1": "sse4_1", "SSE4.2": "sse4_2", "BMI": "bmi1", "LZCNT": "abm"}
features = info["processor"]["features"]
every = ["FPU", "CMOV", "MMX", "FXSR", "SSE", "SSE2", "SSE3", "SSSE3", "SSE4.1", "SSE4.2", "POPCNT", "F16C", "AVX",
         "FMA", "BMI", "LZCNT", "AVX2"]
must(features == [f for f in every if names.get(f, f.lower()) in flags], "features")
avx = set(every[:11] + ["AVX"]) <= set(features)
must(info["processor"]["tier"] == ("V" if features == every else "R" if avx else "A"), "tier")
must(info["processor"]["tier_of_two"] == ("V" if features == every else "A"), "tier of two")

words = run().stdout
must(all(info[part]["file"] in words for part in ("blas", "lapack")) and info["file"] in words, "the text")
must(run("--version").stdout == f"bla_info {version}\n", "--version")
must("usage: bla_info" in run("--help").stdout, "--help")
must("--nonsense" in run("--nonsense", status=2).stderr, "an option that is none")
