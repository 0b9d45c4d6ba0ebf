# SPDX-License-Identifier: BSD-3-Clause
"""Runs the benchmarks line by line and compares rates within each line.

usage: report.py BENCHMARK... [--families REGEX] [--repetitions N] [--threads N] [--behind BYTES]
                 [--json FILE] [--markdown FILE] [--svg FILE] [--panel FILE] [--ratios FILE] [--rates FILE]
       report.py BENCHMARK --small-calls [--families REGEX]

A line is one family and size. Its variants run in one process of their own, several times, interleaved at random where
the BLAS has one thread; the best of each counts. Prints every line with the ratios kernel/peer, the targets of
targets.txt for this family of processors and whether they are reached. --json keeps the rates, which --rates judges
again instead of measuring; --svg draws them over the size, --panel the ratios of a few lines beside those that --ratios
has kept of other families in docs/speed-FAMILY.json. --small-calls compares calls on tiny blocks with the plain loops
behind the same interface.
"""
import argparse
import collections
import datetime
import glob
import json
import os
import re
import subprocess
import sys

import machine

HERE = os.path.dirname(os.path.abspath(__file__))


def read_targets():
    """(families of processors, {family or None for all: {line: {peer: ratio}}})"""
    families, targets, sections = [], collections.defaultdict(collections.OrderedDict), [None]
    for text in open(os.path.join(HERE, "targets.txt"), encoding="utf-8"):
        words = text.split("#")[0].split()
        if not words:
            continue
        if words[0] == "family":
            families.append(machine.Family(words[1], words[2], float(words[3]), int(words[4])))
        elif words[0] == "only":
            sections = words[1:]
        else:
            for section in sections:
                targets[section].setdefault(words[0], {}).update(
                    (peer, float(ratio)) for peer, ratio in zip(words[1::2], words[2::2]))
    return families, targets


def targets_of(targets, family):
    """{line: {peer: ratio}}: those for all, changed by those of the family; a ratio of 0 takes a target away."""
    merged = collections.OrderedDict((line, dict(wanted)) for line, wanted in targets[None].items())
    for line, wanted in targets[family].items():
        merged.setdefault(line, {}).update(wanted)
    merged = {line: {peer: ratio for peer, ratio in wanted.items() if ratio > 0} for line, wanted in merged.items()}
    return {line: wanted for line, wanted in merged.items() if wanted}


def list_lines(programs, families):
    """{line: its program}, in the order of the programs."""
    lines = collections.OrderedDict()
    for program in programs:
        names = subprocess.run([program, "--benchmark_list_tests"], check=True, capture_output=True, text=True).stdout
        for name in names.split():
            family, size = name.split("/")[:2]
            wanted = re.search(families, f"{family}/{size}") if families else size != "8000"
            if family != "limits" and wanted:
                lines[f"{family}/{size}"] = program
    return lines


def measure(program, line, repetitions, threads, behind):
    """{variant: best rate}"""
    # With two threads most rates fell to those of one when the variants were interleaved.
    output = subprocess.run(
        [program, f"--threads={threads}", f"--behind={behind}", f"--benchmark_filter=^{line}/", "--benchmark_min_time=0.01",
         f"--benchmark_repetitions={repetitions}",
         f"--benchmark_enable_random_interleaving={'true' if threads == 1 else 'false'}",
         "--benchmark_format=json"],
        check=True, capture_output=True, text=True, env=os.environ | {"OMP_NUM_THREADS": "1"}).stdout
    rates = {}
    for run in json.loads(output)["benchmarks"]:
        if run["run_type"] == "iteration":
            variant = run["name"].split("/")[2]
            rates[variant] = max(rates.get(variant, 0.0), run["rate"])
    return rates


def best_variant(rates):
    """The best panel width of a blocked driver, or the kernel."""
    widths = {v: r for v, r in rates.items() if v.startswith("nb")}
    return max(widths, key=widths.get) if widths else "kernel"


def describe(line, rates, targets):
    """(row of the table, all targets reached)"""
    best = best_variant(rates)
    ours = rates[best]
    others = {v: r for v, r in rates.items() if v != best and not v.startswith("nb") and v != "vector"}
    ratios = "  ".join(f"{v} {ours / r:.2f}" for v, r in sorted(others.items()))
    wanted = targets.get(line, {})
    missed = [f"{peer} {ratio:g}" for peer, ratio in wanted.items() if ours / rates[peer] < ratio]
    verdict = "" if not wanted else "reached" if not missed else "MISSED " + ", ".join(missed)
    name = "" if best == "kernel" else best
    goal = "  ".join(f"{peer} {ratio:g}" for peer, ratio in wanted.items())
    return (line, f"{ours / 1e9:.2f}", name, ratios, goal, verdict), not missed


HEADER = ("line", "G/s", "nb", "kernel / peer", "target", "")


def print_row(row):
    print("{:38} {:>8} {:6} {:62} {:34} {}".format(*row), flush=True)


def write_markdown(path, rows, machine):
    with open(path, "w", encoding="utf-8") as out:
        out.write(f"{machine}. Written by `./bench.sh`.\n\n"
                  "| " + " | ".join(HEADER) + " |\n|---|--:|---|---|---|---|\n")
        for row in rows:
            out.write("| " + " | ".join(row) + " |\n")


def draw(path, results):
    """One panel a family: rates over the size, a curve a variant."""
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    matplotlib.rcParams["svg.fonttype"] = "none"

    families = collections.OrderedDict()
    for line, rates in results.items():
        family, size = line.split("/")
        families.setdefault(family, collections.OrderedDict())[size] = rates
    families = {f: sizes for f, sizes in families.items() if len(sizes) > 2}
    columns = 3
    rows = -(-len(families) // columns)
    figure, axes = plt.subplots(rows, columns, figsize=(15, 3.6 * rows), squeeze=False)
    for axis in axes.flat[len(families):]:
        axis.set_visible(False)
    for axis, (family, sizes) in zip(axes.flat, families.items()):
        labels = list(sizes)
        curves = collections.OrderedDict()
        for position, rates in enumerate(sizes.values()):
            best = best_variant(rates)
            for variant, rate in rates.items():
                if variant.startswith("nb") and variant != best or variant == "vector":
                    continue
                curves.setdefault("kernel" if variant == best else variant, []).append((position, rate / 1e9))
        for variant, points in curves.items():
            axis.plot(*zip(*points), marker="o", markersize=3, label=variant,
                      linewidth=2.4 if variant == "kernel" else 1, color="black" if variant == "kernel" else None)
        axis.set_xticks(range(len(labels)), labels, rotation=45, ha="right", fontsize=7)
        axis.set_title(family)
        axis.set_ylim(bottom=0)
        axis.set_ylabel("G/s", fontsize=7)
        axis.legend(fontsize=7)
    figure.tight_layout()
    figure.savefig(path)


# What a reader wants to know first: a kernel at a size, and the peers of which the best counts.
PANEL = (("selim_small/32", "blac_selim_small_, 32"), ("selim_small/128", "blac_selim_small_, 128"),
         ("uelim_small/32", "blac_uelim_small_, 32"), ("uelim_small/128", "blac_uelim_small_, 128"),
         ("selim/1000", "blac_selim_, 1000"), ("selim/4000", "blac_selim_, 4000"), ("uelim/1000", "blac_uelim_, 1000"),
         ("cholupd/256", "blac_cholupd_, 256"), ("cholupd/1000", "blac_cholupd_, 1000"),
         ("dchud/256", "blac_dchud_, 256"), ("dchdd/256", "blac_dchdd_, 256"),
         ("sparse_umv/elasticity_42MB_nrhs2", "blac_sparse_umv_, 2 vectors"),
         ("sparse_umv/elasticity_42MB_nrhs8", "blac_sparse_umv_, 8 vectors"),
         ("sparse_umtv/elasticity_42MB_nrhs1", "blac_sparse_umtv_, 1 vector"),
         ("sparse_umtv/elasticity_42MB_nrhs8", "blac_sparse_umtv_, 8 vectors"),
         ("datcpy/200_ld200", "blac_datcpy_, 200"), ("datcpy/6000_ld6000", "blac_datcpy_, 6000"))
BOUNDS = ("limit", "copy", "add", "dgemm", "memset")  # what nothing passes, and plain copies: no peers
OTHER_BITS = {"cholupd": ("eigen",)}  # peers that compute something else


def over_best_peer(line, ratios):
    """The kernel over the best peer that does its work, or None."""
    out = BOUNDS + OTHER_BITS.get(line.split("/")[0], ())
    peers = [ratio for peer, ratio in ratios.items() if peer not in out]
    return min(peers) if peers else None


def ratios_of(rates):
    best = best_variant(rates)
    return {v: rates[best] / r for v, r in rates.items() if v != best and not v.startswith("nb") and v != "vector"}


def kept_families(but):
    """(label, {line: {peer: ratio}}) of each family but one whose ratios are kept, in the order of their names."""
    kept = []
    for path in sorted(glob.glob(os.path.join(HERE, "..", "docs", "speed-*.json"))):
        if os.path.basename(path) != f"speed-{but}.json":
            with open(path, encoding="utf-8") as file:
                other = json.load(file)
            kept.append((f"{other['label']}, {other['date']}", other["ratios"]))
    return kept


def keep_ratios(path, results, family):
    with open(path, "w", encoding="utf-8") as out:
        json.dump({"label": label_of(family), "machine": machine.name(), "date": str(datetime.date.today()),
                   "ratios": {line: {v: round(r, 2) for v, r in ratios_of(results[line]).items()}
                              for line, _ in PANEL if line in results}}, out, indent=1)
        out.write("\n")


def label_of(family):
    return re.sub(r"(\d)", r" \1", family.replace("_", " ")).title()


def draw_panel(path, results, family):
    """Kernel over best peer, a row a kernel, a mark a family of processors."""
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    matplotlib.rcParams["svg.fonttype"] = "none"

    here = {line: ratios_of(rates) for line, rates in results.items()}
    series = [(f"{label_of(family)}, {datetime.date.today()}", here), *kept_families(family)]
    styles = ({"marker": "o", "color": "black"}, {"marker": "s", "facecolors": "none", "edgecolors": "tab:blue"},
              {"marker": "o", "facecolors": "none", "edgecolors": "tab:red"})
    figure, axis = plt.subplots(figsize=(8, 5))
    for (label, ratios), style in zip(series, styles):
        points = [(over_best_peer(line, ratios[line]), -row) for row, (line, _) in enumerate(PANEL) if line in ratios]
        axis.scatter(*zip(*[p for p in points if p[0]]), s=28, label=label, **style)
    axis.axvline(1.0, color="gray", linewidth=0.8)
    axis.set_xscale("log")
    ticks = (0.5, 0.7, 1, 1.5, 2, 3, 4)
    axis.set_xticks(ticks, [f"{t:g}" for t in ticks])
    axis.minorticks_off()
    axis.set_yticks([-row for row in range(len(PANEL))], [label for _, label in PANEL])
    axis.set_xlabel("times as fast as the best peer (plain loop, OpenBLAS, Eigen, CHOLMOD, qrupdate)", loc="right")
    axis.set_ylabel("kernel, size")
    axis.grid(axis="y", linewidth=0.3)
    axis.legend(loc="lower center", bbox_to_anchor=(0.35, 1.0), ncols=3, frameon=False, fontsize=8)
    figure.tight_layout()
    figure.savefig(path)


def compare_small_calls(benchmark, families):
    """Runs the comparison of calls on tiny blocks and returns its exit status."""
    program = os.path.join(os.path.dirname(benchmark), "bla_small_calls")
    return subprocess.run([program] + ([f"--families={families}"] if families else [])).returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("programs", nargs="+")
    parser.add_argument("--families", help="only lines that match this expression (else all but orders of 8000, "
                        "which take minutes)")
    parser.add_argument("--repetitions", type=int, default=7)
    parser.add_argument("--threads", type=int, default=1, help="threads of the BLAS")
    parser.add_argument("--behind", type=int, default=16, help="bytes between the start of a page and an array: 16 "
                        "(default) is where malloc places large ones, 0 where a careful caller does")
    parser.add_argument("--small-calls", action="store_true", help="compare calls on tiny blocks")
    parser.add_argument("--json", help="write the rates to this file")
    parser.add_argument("--markdown", help="write the table to this file")
    parser.add_argument("--svg", help="draw the curves into this file")
    parser.add_argument("--panel", help="draw kernel over best peer into this file, beside the other families' figures")
    parser.add_argument("--ratios", help="keep the ratios of those lines for the panels of other families in this file")
    parser.add_argument("--rates", help="judge the rates that --json has kept in this file")
    arguments = parser.parse_args()

    if arguments.small_calls:
        sys.exit(compare_small_calls(arguments.programs[0], arguments.families))

    if "OPENBLAS_CORETYPE" not in os.environ:
        mistaken = machine.better_core(arguments.programs[0])
        if mistaken:
            print(f"OpenBLAS takes this processor for a {mistaken[0]}: OPENBLAS_CORETYPE={mistaken[1]}")
            os.environ["OPENBLAS_CORETYPE"] = mistaken[1]
    families, all_targets = read_targets()
    facts = (machine.processor("vendor_id"), machine.pairs_a_cycle(arguments.programs[0]), machine.first_cache())
    family, agrees = machine.choose_family(families, *facts)
    targets = targets_of(all_targets, family.name)
    judged = (f"targets of {family.name}{'' if agrees else ', the nearest'}: {facts[0]}, {facts[1]:.2f} pairs of product and "
              f"difference a cycle, first cache of {facts[2]} KB")
    print(f"{machine.name()}\n{judged}")
    lines = list_lines(arguments.programs, arguments.families)
    unknown = [line for line in targets if not arguments.families and line not in lines]
    if unknown:
        sys.exit(f"targets without a line: {', '.join(unknown)}")

    kept = None
    if arguments.rates:
        with open(arguments.rates, encoding="utf-8") as file:
            kept = json.load(file)
        lines = {line: program for line, program in lines.items() if line in kept}
    results = collections.OrderedDict()
    rows, reached, wanted = [], 0, 0
    print_row(HEADER)
    for line, program in lines.items():
        results[line] = kept[line] if kept else measure(program, line, arguments.repetitions, arguments.threads,
                                                       arguments.behind)
        row, good = describe(line, results[line], targets)
        print_row(row)
        rows.append(row)
        wanted += line in targets
        reached += line in targets and good
    print(f"\n{reached} of {wanted} lines with a target reach all of it ({family.name}, "
          f"BLAS threads: {arguments.threads})")
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as out:
            json.dump(results, out, indent=1)
    if arguments.markdown:
        write_markdown(arguments.markdown, rows, f"{machine.name()}; {judged}")
    if arguments.svg:
        draw(arguments.svg, results)
    if arguments.panel:
        draw_panel(arguments.panel, results, family.name)
    if arguments.ratios:
        keep_ratios(arguments.ratios, results, family.name)


if __name__ == "__main__":
    main()
