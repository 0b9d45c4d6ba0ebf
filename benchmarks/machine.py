# SPDX-License-Identifier: BSD-3-Clause
"""What the benchmarks ask of the machine: its name, what limits it, and whether OpenBLAS knows it."""
import collections
import datetime
import json
import os
import subprocess

# vendor: as the processor tells; pairs: products with their differences that registers alone allow a cycle, in vectors
# of four; first: KB of the first cache.
Family = collections.namedtuple("Family", "name vendor pairs first")


def processor(key):
    for text in open("/proc/cpuinfo", encoding="utf-8"):
        if text.startswith(key):
            return text.split(":")[1].strip()
    return "unknown"


def name():
    return (f"{processor('model name')} (family {processor('cpu family')}, model {processor('model')}), "
            f"{os.cpu_count()} processors, {datetime.date.today()}")


def first_cache():
    """KB of the first cache for data; 0 if the system does not tell."""
    said = subprocess.run(["getconf", "LEVEL1_DCACHE_SIZE"], capture_output=True, text=True).stdout.strip()
    if said.isdigit() and int(said) > 0:
        return int(said) // 1024
    said = subprocess.run(["lscpu", "-B", "-C=NAME,ONE-SIZE"], capture_output=True, text=True).stdout
    return next((int(line.split()[1]) // 1024 for line in said.splitlines() if line.startswith("L1d")), 0)


def pairs_a_cycle(benchmark):
    output = subprocess.run([benchmark, "--benchmark_filter=^limits/registers/", "--benchmark_repetitions=5",
                             "--benchmark_format=json"], check=True, capture_output=True, text=True).stdout
    rates = collections.defaultdict(float)
    for run in json.loads(output)["benchmarks"]:
        if run["run_type"] == "iteration":
            variant = run["name"].split("/")[2]
            rates[variant] = max(rates[variant], run["rate"])
    return rates["multiply_subtract"] / 8 / rates["cycles"]


def choose_family(families, vendor, pairs, first):
    """(the family most like this processor, whether all of it agrees)"""
    def agreement(family):
        return (family.vendor == vendor) + (abs(family.pairs - pairs) < 0.25) + (family.first == first)
    best = max(families, key=agreement)
    return best, agreement(best) == 3


def better_core(benchmark):
    """What OPENBLAS_CORETYPE should be where OpenBLAS takes a newer processor for an old one, or None."""
    said = subprocess.run([benchmark, "--benchmark_list_tests"], env=os.environ | {"OPENBLAS_VERBOSE": "2"},
                          capture_output=True, text=True).stderr
    core = said.partition("Core: ")[2].split("\n")[0].strip()
    flags = processor("flags").split()
    if core in ("Prescott", "Core2", "Nehalem") and "avx2" in flags:
        return core, "SkylakeX" if "avx512vl" in flags else "Haswell"
    return None
