#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Pictures of the tasks of a factorisation, as docs/parallel.md shows them.

    draw_tasks.py trace TRACE.json PICTURE.svg    what bla_solve --trace wrote: a row for each thread
    draw_tasks.py curve REPORT.json PICTURE.svg   what bla_solve --json --simulate LIST printed
    draw_tasks.py table REPORT.json TABLE.md      the same as a table
"""
import collections
import json
import math
import sys

COLOURS = {"branch": "#8fb8de", "assemble": "#c9c9c9", "keep": "#9c755f", "eliminate": "#d62728", "lower": "#f2a541",
           "upper": "#b07aa1", "update": "#59a14f", "finish": "#000000"}
WIDTH, LEFT, COLUMNS, ROW = 1000, 80, 900, 46  # a column of a row shows what took most of its time


def text(x, y, words, anchor="start"):
    return f'<text x="{x:g}" y="{y:g}" text-anchor="{anchor}">{words}</text>'


def line(points, colour, dashes="none"):
    where = " ".join(f"{x:g},{y:g}" for x, y in points)
    return f'<polyline points="{where}" fill="none" stroke="{colour}" stroke-width="1.5" stroke-dasharray="{dashes}"/>'


def picture(path, height, parts):
    with open(path, "w", encoding="utf-8") as file:
        file.write(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" font-family="sans-serif" '
                   'font-size="13">\n<rect width="100%" height="100%" fill="white"/>\n' + "\n".join(parts) + "\n</svg>\n")


def dominant(tasks, seconds):
    """Of each column the name of the task that took most of it, None: nothing did."""
    shares = [collections.Counter() for _ in range(COLUMNS)]
    for task in tasks:
        begin, end = task["ts"] / seconds * COLUMNS, (task["ts"] + task["dur"]) / seconds * COLUMNS
        for column in range(int(begin), min(math.ceil(end), COLUMNS)):
            shares[column][task["name"]] += min(end, column + 1) - max(begin, column)
    for share in shares:
        share[None] = 1.0 - sum(share.values())
    return [share.most_common(1)[0][0] for share in shares]


def trace(source, target):
    with open(source, encoding="utf-8") as file:
        tasks = [event for event in json.load(file) if event["ph"] == "X"]
    seconds = max(task["ts"] + task["dur"] for task in tasks)  # microseconds, rather
    sums = collections.Counter()
    for task in tasks:
        sums[task["name"]] += task["dur"]
    threads = max(task["tid"] for task in tasks) + 1
    boxes = collections.defaultdict(list)
    parts = []
    for thread in range(threads):
        parts.append(text(LEFT - 8, 40 + (thread + 0.5) * ROW, f"thread {thread}", "end"))
        names = dominant([task for task in tasks if task["tid"] == thread], seconds) + ["end"]
        first = 0
        for column, name in enumerate(names):
            if name != names[first]:
                boxes[names[first]].append((LEFT + first, 40 + thread * ROW, column - first))
                first = column
    for name, colour in COLOURS.items():
        where = "".join(f"M{x} {y}h{width}v{ROW - 6}h-{width}z" for x, y, width in boxes[name])
        if where:
            parts.append(f'<path fill="{colour}" d="{where}"/>')
    x = LEFT
    for name, took in sums.most_common():
        if took >= 0.001 * sum(sums.values()):
            parts.append(f'<rect x="{x}" y="12" width="12" height="12" fill="{COLOURS[name]}"/>')
            parts.append(text(x + 17, 23, f"{name} {100.0 * took / sum(sums.values()):.1f} %"))
            x += 140
    bottom = 40 + threads * ROW
    for tick in range(5):
        parts.append(text(LEFT + COLUMNS * tick / 4, bottom + 16, f"{seconds * tick / 4e6:.2f} s", "middle"))
    picture(target, bottom + 26, parts)


def simulated(source):
    """The report, and seconds by the number of workers."""
    with open(source, encoding="utf-8") as file:
        report = json.load(file)
    return report, {int(key.split("_")[-1]): value for key, value in report.items()
                    if key.startswith("simulated_seconds_")}


def table(source, target):
    report, seconds = simulated(source)
    total = report["task_seconds"]
    with open(target, "w", encoding="utf-8") as file:
        file.write("| workers | seconds | times as fast | efficiency |\n|--:|--:|--:|--:|\n")
        for workers, value in seconds.items():
            file.write(f"| {workers} | {value:.3f} | {total / value:.2f} | {100 * total / value / workers:.0f} % |\n")
        file.write(f"| critical path | {report['critical_path_seconds']:.3f} | "
                   f"{total / report['critical_path_seconds']:.1f} | |\n")


def curve(source, target):
    report, seconds = simulated(source)
    total, critical = report["task_seconds"], report["critical_path_seconds"]
    speedup = {workers: total / value for workers, value in seconds.items()}
    most = max(speedup)
    height, bottom, right = 460, 420, LEFT + 620

    def x(workers):
        return LEFT + (right - LEFT) * math.log(workers) / math.log(most)

    def y(times):
        return bottom - (bottom - 30) * math.log(times) / math.log(most)

    ticks = [2 ** k for k in range(int(math.log2(most)) + 1)]
    parts = [line([(LEFT, y(t)), (right, y(t))], "#dddddd") for t in ticks]
    parts += [text(LEFT - 8, y(t) + 4, t, "end") for t in ticks]
    parts += [text(x(t), bottom + 18, t, "middle") for t in ticks]
    limit = total / critical
    parts.append(line([(x(1), y(1)), (x(most), y(most))], "#999999", "4 4"))
    if limit < most:
        parts.append(line([(x(1), y(limit)), (x(most), y(limit))], "#d62728", "4 4"))
        parts.append(text(right + 8, y(limit) + 4, f"all over the critical path: {limit:.1f}"))
    parts.append(text(right + 8, y(most) + 4, "no time lost"))
    parts.append(line([(x(w), y(s)) for w, s in speedup.items()], "#000000"))
    for workers, times in speedup.items():
        parts.append(f'<circle cx="{x(workers):g}" cy="{y(times):g}" r="3.5"/>')
        if workers > 1:
            parts.append(text(x(workers) - 6, y(times) - 8, f"{times:.1f}", "end"))
    parts.append(text((LEFT + right) / 2, bottom + 36, "workers", "middle"))
    parts.append(text(LEFT, 18, "times as fast as one worker, simulated"))
    picture(target, height, parts)


def main():
    kinds = {"trace": trace, "curve": curve, "table": table}
    if len(sys.argv) != 4 or sys.argv[1] not in kinds:
        sys.exit(__doc__)
    kinds[sys.argv[1]](sys.argv[2], sys.argv[3])


if __name__ == "__main__":
    main()
