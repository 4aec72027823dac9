#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Prints the tables of what the library's work costs.

usage: measure.py BUILD [--small] [--only WORD] [--count | --time | --memory] [--page FILE]

BUILD is a build folder with bench/bench_count and bench/qmodel_bench. Instructions are
counted by callgrind in the second run of each case, times are taken by the benchmark;
each stands beside libxml2's parse of the same bytes in the same program. --small takes
the sizes of the guard, --only the cases with that word in their name; --count, --time and
--memory leave the other tables out. --page writes the tables into a page that has places
for them.
"""
import argparse
import json
import subprocess

import callgrind
import page


def figure(number):
    """A number with three digits that count."""
    if number is None:
        return ""
    if number >= 1000:
        return f"{number:,.0f}"
    return f"{number:.3g}" if number >= 100 else f"{number:.2f}"


def nanoseconds(seconds):
    if seconds is None:
        return ""
    for limit, unit, factor in ((1e-6, "ns", 1e9), (1e-3, "µs", 1e6), (1, "ms", 1e3)):
        if seconds < limit:
            return f"{figure(seconds * factor)} {unit}"
    return f"{figure(seconds)} s"


def ratio(of, by):
    return f"{of / by:.2f}" if by else ""


def instructions(program, words):
    counts = callgrind.count(program, "cases", *words)
    parses = {one.name: one for one in counts if one.kind == "parse"}
    rows = []
    for one in counts:
        if one.kind != "run":
            continue
        parse = parses.get(one.name)
        total = parse.total if parse else None
        rows.append((one.name, f"{one.units:,} × {one.unit}", figure(one.total / one.units),
                     figure(one.own / one.units), figure(total and total / one.units),
                     ratio(one.total, total)))
    return page.table(("instructions", "units", "per unit", "in libqmodel", "parse", "× parse"),
                      rows)


def benchmark(program, only):
    """Seconds and units of each benchmark, by name; the threads' ones by name and threads."""
    chosen = f"--benchmark_filter={only or '.*'}"
    done = subprocess.run([program, chosen, "--benchmark_format=json"],
                          stdout=subprocess.PIPE, text=True, check=True)
    return {one["name"].split("/iterations:")[0]: one for one in json.loads(done.stdout)["benchmarks"]
            if not one.get("error_occurred")}


def times(found):
    rows = []
    for name, one in found.items():
        if not name.endswith("/run"):
            continue
        parse = found.get(name[:-len("run")] + "parse")
        run_time = one["cpu_time"] * 1e-9
        parse_time = parse["cpu_time"] * 1e-9 if parse else None
        units = one["units"]
        per_second = one.get("bytes_per_second", 0) / 1e6
        rows.append((name[:-len("/run")], nanoseconds(run_time), nanoseconds(run_time / units),
                     nanoseconds(parse_time and parse_time / units), ratio(run_time, parse_time),
                     figure(per_second) if per_second else ""))
    return page.table(("time", "a run", "per unit", "parse", "× parse", "MB/s"), rows)


def threads(found):
    """How long each thread's request takes beside that of one thread alone."""
    found = [one for name, one in found.items() if name.startswith("validation side")]
    if not found:
        return ""
    alone = found[0]["real_time"] * found[0]["threads"]
    rows = [(str(one["threads"]), nanoseconds(one["real_time"] * one["threads"] * 1e-9),
             ratio(one["real_time"] * one["threads"], alone)) for one in found]
    return page.table(("threads side by side", "one request", "× alone"), rows)


def memory(program, only):
    done = subprocess.run([program, "memory", only], stdout=subprocess.PIPE, text=True, check=True)
    rows = []
    for line in done.stdout.splitlines()[1:]:
        name, *words = line.split("\t")
        unit = words.pop(1)
        units, allocations, size, peak, held, xml_peak, read, xml_held = map(int, words)
        rows.append((name, figure(allocations / units), figure(size / units),
                     figure(held / units) if held else "", f"{units:,} × {unit}",
                     f"{peak / 1024:,.0f} KiB", f"{xml_peak / 1024:,.0f} KiB",
                     f"{read / 1024:,.0f} KiB", ratio(peak + xml_peak, read),
                     f"{xml_held / 1024:,.0f} KiB" if xml_held >= 1024 else ""))
    return page.table(("memory", "allocations per unit", "bytes per unit", "held per unit", "units",
                 "peak", "of libxml2", "input", "peaks / input", "held by libxml2"), rows)


def main():
    parser = argparse.ArgumentParser(description="prints what the library's work costs")
    parser.add_argument("build")
    parser.add_argument("--small", action="store_true")
    parser.add_argument("--only", default="")
    parser.add_argument("--page")
    for column in ("count", "time", "memory"):
        parser.add_argument(f"--{column}", action="store_true")
    options = parser.parse_args()
    everything = not (options.count or options.time or options.memory)
    counter = f"{options.build}/bench/bench_count"
    tables = {}
    if everything or options.count:
        words = (["small"] if options.small else []) + ([options.only] if options.only else [])
        tables["instructions"] = instructions(counter, words)
    if everything or options.time:
        found = benchmark(f"{options.build}/bench/qmodel_bench", options.only)
        tables["times"] = times(found)
        tables["threads"] = threads(found)
    if everything or options.memory:
        tables["memory"] = memory(counter, options.only)
    page.show(tables, options.page)


if __name__ == "__main__":
    main()
