"""Prints the figures of a Google Benchmark JSON file beside their bounds (bench/MurnBench.h).

Exits with 1 when a figure is out of its bounds.
"""

import json
import re
import sys

# What Google Benchmark appends to a name for the way it was run.
WAY = re.compile(r"/(real_time|process_time|manual_time|(iterations|repeats|threads|min_time|"
                 r"min_warmup_time):[^/]*)")
BASELINE = "baseline"
TO_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


class Run:
    def __init__(self, record):
        self.record = record
        # By the clock that the benchmark chose, as its items a second are.
        wall = re.search("/(real|manual)_time", record["run_name"])
        clock = "real_time" if wall else "cpu_time"
        self.seconds = record[clock] * TO_SECONDS[record["time_unit"]]
        self.items = record.get("items_per_second")

    def speed_ratio(self, baseline):
        if self.items and baseline.items:
            return self.items / baseline.items
        return baseline.seconds / self.seconds


def medians(report):
    """The median of each benchmark; the only run where it was not repeated."""
    runs = {}
    # A benchmark that also runs on more threads has one figure for each number of them.
    alone = {WAY.sub("", r["run_name"]) for r in report["benchmarks"] if r["threads"] == 1}
    for record in report["benchmarks"]:
        name = WAY.sub("", record["run_name"])
        if record["threads"] > 1 and name in alone:
            name += f" ({record['threads']} threads)"
        if record.get("error_occurred"):
            sys.exit(f"{name}: {record['error_message']}")
        if record["run_type"] != "aggregate":
            runs.setdefault(name, Run(record))
        elif record["aggregate_name"] == "median":
            runs[name] = Run(record)
    return runs


def split_baselines(runs):
    """(the figures, the baseline of each); "x/baseline/4" is the baseline of "x/4"."""
    figures, baselines = {}, {}
    for name, run in sorted(runs.items()):
        parts = name.split("/")
        if BASELINE in parts:
            parts.remove(BASELINE)
            baselines["/".join(parts)] = run
        else:
            figures[name] = run
    for name in baselines.keys() - figures.keys():
        sys.exit(f"{name}: a baseline of nothing")
    return figures, baselines


def rate(items):
    """Items a second in words: (number, unit)."""
    return (f"{items / 1e6:.2f}", "million/s") if items >= 1e5 else (f"{items:.4g}", "a second")


def figure(run, baseline):
    """(figure, its unit, bound in words, whether it holds or None) of one benchmark."""
    record = run.record
    if "value" in record:
        value, most = record["value"], record["value_at_most"]
        return f"{value:.1f}", "", f"at most {most:g}", value <= most
    if "items_at_least" in record:
        least = record["items_at_least"]
        return *rate(run.items), f"at least {rate(least)[0]}", run.items >= least
    if baseline is None:
        return *(rate(run.items) if run.items else (f"{run.seconds * 1e3:.4g}", "ms")), "", None
    if "speed_at_least" in record:
        ratio, least = run.speed_ratio(baseline), record["speed_at_least"]
        return f"{ratio:.2f}", "x the speed", f"at least {least:g}", ratio >= least
    ratio, most = run.seconds / baseline.seconds, record.get("time_at_most")
    if most is None:
        return f"{ratio:.2f}", "x the time", "", None
    return f"{ratio:.2f}", "x the time", f"at most {most:g}", ratio <= most


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        figures, baselines = split_baselines(medians(json.load(file)))
    failed = False
    print(f"{'figure':<44}{'measured':>10} {'':<12}{'bound':<16}")
    for name, run in figures.items():
        value, unit, bound, holds = figure(run, baselines.get(name))
        verdict = {True: "ok", False: "TOO SLOW", None: ""}[holds]
        if holds is False and "value" in run.record:
            verdict = "TOO MUCH"
        failed = failed or holds is False
        print(f"{name:<44}{value:>10} {unit:<12}{bound:<16}{verdict}")
    sys.exit(1 if failed else 0)


main()
