#!/usr/bin/python3
"""Prints one table, in Markdown, of ratios: each request to its floor, and what other libraries and
the bare parse take to what the library takes. Times are the processor's, and all figures medians.
The argument is the folder of the build."""

import json
import statistics
import subprocess
import sys

import instructions

REPETITIONS = 61
PEERS = {"libxkbregistry": "answer_xkbregistry", "GnomeXkbInfo": "answer_gnome"}
FIGURES = {"first": "first answer", "since_start": "first answer, from the start of the process",
           "repeated": "repeated answer", "peak": "peak memory"}


def output(*command):
    return json.loads(subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout)


def time_requests(build):
    """Nanoseconds by the request's name, with "/floor" those of its floor."""
    runs = output(f"{build}/bin/measure", f"--benchmark_repetitions={REPETITIONS}",
                  "--benchmark_min_time=0.005", "--benchmark_enable_random_interleaving=true",
                  "--benchmark_report_aggregates_only=true", "--benchmark_format=json")
    return {run["label"]: run["cpu_time"] for run in runs["benchmarks"]
            if run["aggregate_name"] == "median"}


def answer(programs):
    """Runs each program in turn, again and again; the median of each figure that it says, and the
    instructions of its first answer."""
    rounds = [[output(program) for program in programs] for _ in range(REPETITIONS)]
    figures = [{key: statistics.median(each[key] for each in said) for key in said[0]}
               for said in zip(*rounds)]
    for program, said in zip(programs, figures):
        said["counted"] = next(instructions.whole(dump)
                               for _, dump in instructions.callgrind(program))
    return figures


def print_row(what, ratio, counted=None):
    print(f"| {what} | {ratio:.2f} | {f'{counted:.2f}' if counted else ''} |")


def main(build):
    programs = ["answer_library", "answer_parse", *PEERS.values()]
    ours, parse, *peers = answer([f"{build}/bin/{program}" for program in programs])
    if any(peer["types"] != ours["types"] for peer in peers):
        sys.exit(f"not the same answers: {ours}, {peers}")
    counts, times = instructions.count(build), time_requests(build)

    print("| what | ratio | in instructions |\n|---|---:|---:|")
    for name in counts:
        floor = f"{name}/floor"
        if floor in counts:
            print_row(name, times[name] / times[floor], counts[name] / counts[floor])
    small, large = "first type list, real size", "first type list, 10 times real size"
    print_row("10 times real size to real size", times[large] / times[small],
              counts[large] / counts[small])
    print_row("first answer, the bare parse", parse["first"] / ours["first"],
              parse["counted"] / ours["counted"])
    for name, peer in zip(PEERS, peers):
        for key, what in FIGURES.items():
            print_row(f"{what}, {name}", peer[key] / ours[key],
                      peer["counted"] / ours["counted"] if key == "first" else None)


if __name__ == "__main__":
    main(*sys.argv[1:])
