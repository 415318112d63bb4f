#!/usr/bin/env python3
"""Measures the library and prints one table, in Markdown; writes the same as JSON into the folder
of the build, which is the argument. All times are the processor's, and medians."""

import collections
import itertools
import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile

import instructions

REPETITIONS = 61
REPETITIONS_OF_GROWTH = 15
PEERS = {"answer_xkbregistry": "libxkbregistry", "answer_gnome": "GnomeXkbInfo"}

# The request, the configuration, and how often its floor it may cost.
REQUESTS = [
    ("first type list", "real_x1", 1.15),
    ("first type list", "shipped", 1.2),
    ("language list", "shipped", 1.1),
    ("type list", "shipped", 1.3),
    ("names", "shipped", 1.15),
    ("help texts", "shipped", 1.15),
    ("value", "shipped", 1.8),
    ("help image", "shipped", 1.8),
    ("set language", "shipped", 2.5),
    ("load and unload", "shipped", None),
]
SIZES = {1: "real size", 10: "10 times the real size", 100: "100 times the real size"}
CONFIG = "lib-morvith-tv/res/config/hw_kbd_lang_config.json"
UNCHANGED = ["language list", "set language"]  # however large the configuration is

Row = collections.namedtuple("Row", "what ours beside ratio instructions goal met",
                             defaults=[None] * 6)


def output(*command):
    return subprocess.run(command, capture_output=True, check=True, text=True).stdout


def machine():
    cpu = re.search(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(), re.M)
    packages = ["libc6", "libstdc++6", "libglib2.0-0", "libjson-glib-1.0-0", "xkb-data"]
    versions = output("dpkg-query", "--show", "--showformat=${Package} ${Version}, ", *packages)
    compiler = output("c++", "--version").splitlines()[0]
    return {"processor": f"{cpu[1] if cpu else platform.machine()}, {os.cpu_count()} cores",
            "system": f"Linux {platform.release()}, {versions}{compiler}",
            "load": "{:.1f} before, {{:.1f}} after".format(os.getloadavg()[0])}


def time_requests(build, pattern, repetitions):
    """Nanoseconds by "request/configuration/side"."""
    with tempfile.NamedTemporaryFile() as file:
        output(f"{build}/bin/time_requests", f"--benchmark_filter=^({pattern})/",
               f"--benchmark_repetitions={repetitions}", "--benchmark_min_time=0.005",
               "--benchmark_enable_random_interleaving=true",
               "--benchmark_report_aggregates_only=true",
               "--benchmark_out_format=json", f"--benchmark_out={file.name}")
        runs = json.load(file)["benchmarks"]
    return {run["run_name"]: run["cpu_time"] for run in runs if run["aggregate_name"] == "median"}


def answer(commands, repetitions):
    """Runs each command in turn, again and again; the median of each figure that it says."""
    said = {command: [] for command in commands}
    for _ in range(repetitions):
        for command, answers in said.items():
            answers.append(json.loads(output(*command)))
    return {command: {key: statistics.median(each[key] for each in answers) for key in answers[0]}
            for command, answers in said.items()}


def duration(nanoseconds):
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2f} {unit}"
    return f"{nanoseconds:.0f} ns"


def at_most(limit, ratio):
    return {} if limit is None else {"goal": f"at most {limit:g}", "met": ratio <= limit}


def at_least(limit, ratio):
    return {} if limit is None else {"goal": f"at least {limit:g}", "met": ratio >= limit}


def request_rows(build, counts):
    pattern = "|".join(f"{name}/{configuration}" for name, configuration, _ in REQUESTS)
    times = time_requests(build, pattern, REPETITIONS)
    for name, configuration, limit in REQUESTS:
        ours, floor = (times[f"{name}/{configuration}/{side}"] for side in ("request", "floor"))
        counted = [counts[f"{name}/{configuration}/{side}"] for side in ("request", "floor")]
        yield Row(f"{name}, {'real size' if configuration == 'real_x1' else configuration}",
                  duration(ours), duration(floor), ours / floor, counted[0] / counted[1],
                  **at_most(limit, ours / floor))
    setup = counts[f"{instructions.STATIC_SETUP}/shipped/request"]
    yield Row("static set-up of the language table, in instructions", f"{setup}",
              goal="at most 60000", met=setup <= 60000)


def commands(build, factor):
    """For the library's answer at so many times the real size, and for its floor, the parse."""
    return ((f"{build}/bin/answer_provider", f"real_x{factor}"),
            (f"{build}/bin/answer_parse",
             f"{build}/bench/roots/real_x{factor}/usr/share/{CONFIG}"))


def peer_rows(build, _):
    ours, floor = commands(build, 1)
    peers = {(f"{build}/bin/{program}",): name for program, name in PEERS.items()
             if os.path.exists(f"{build}/bin/{program}")}
    answers = answer([ours, floor, *peers], REPETITIONS)
    if len({answers[each]["types"] for each in (ours, *peers)}) != 1:
        sys.exit(f"not the same answers: {answers}")
    goals = {("libxkbregistry", "first"): 2.4, ("GnomeXkbInfo", "first"): 6.3,
             ("libxkbregistry", "repeated"): 20}
    for peer, name in peers.items():
        for key, what in (("first", "first answer"),
                          ("since_start", "the same with the start of its process"),
                          ("repeated", "repeated answer")):
            ratio = answers[peer][key] / answers[ours][key]
            yield Row(f"{what}, {name} beside", duration(answers[ours][key]),
                      duration(answers[peer][key]), ratio,
                      **at_least(goals.get((name, key)), ratio))
        yield Row(f"the bare parse, {name} beside", duration(answers[floor]["first"]),
                  duration(answers[peer]["first"]),
                  answers[peer]["first"] / answers[floor]["first"])
        memory = [answers[each]["peak_kib"] for each in (ours, peer)]
        yield Row(f"peak memory, {name} beside", *(f"{each:.0f} KiB" for each in memory),
                  memory[1] / memory[0], goal="more than 1", met=memory[1] > memory[0])


def growth_rows(build, counts):
    """First answers beside their floor, then multiples of the real size beside the real size."""
    sizes = {factor: commands(build, factor) for factor in (1, 10, 100)}
    answers = answer(itertools.chain(*sizes.values()), REPETITIONS_OF_GROWTH)
    first = {factor: [answers[each]["first"] for each in pair]
             for factor, pair in sizes.items()}
    for factor, (ours, floor) in first.items():
        yield Row(f"first answer, {SIZES[factor]}, the bare parse beside", duration(ours),
                  duration(floor), ours / floor)
    for factor in (10, 100):
        for side, what in enumerate(("first answer", "the bare parse")):
            many, once = first[factor][side], first[1][side]
            counted = [counts.get(f"first type list/real_x{each}/{('request', 'floor')[side]}")
                       for each in (factor, 1)]
            yield Row(f"{what}, {SIZES[factor]}, the real size beside", duration(many),
                      duration(once), many / once, counted[0] and counted[0] / counted[1],
                      **at_most(None if side else 1.1 * factor, many / once))
    many, once = (answers[sizes[factor][0]]["repeated"] for factor in (100, 1))
    yield Row(f"repeated answer, {SIZES[100]}, the real size beside", duration(many),
              duration(once), many / once, **at_most(1.1, many / once))
    pattern = "|".join(f"{name}/{size}" for name in UNCHANGED for size in ("real_x1", "real_x100"))
    times = time_requests(build, pattern, REPETITIONS_OF_GROWTH)
    for name in UNCHANGED:
        many, once = (times[f"{name}/{size}/request"] for size in ("real_x100", "real_x1"))
        yield Row(f"{name}, {SIZES[100]}, the real size beside", duration(many), duration(once),
                  many / once, **at_most(1.1, many / once))


def size_rows(build, _):
    library = f"{build}/lib/libmorvith_dataprovider.so"
    with tempfile.NamedTemporaryFile() as stripped:
        output("strip", f"--output-file={stripped.name}", library)
        size = os.path.getsize(stripped.name) / 1024
    sections = re.findall(r"contains (\d+) entr", output("readelf", "-rW", library))
    footprint = json.loads(output(f"{build}/bin/footprint"))
    yield Row("stripped library", f"{size:.1f} KiB", goal="under 48 KiB", met=size < 48)
    yield Row("relocations", f"{sum(map(int, sections))}")
    yield Row("its pages written to by loading", f"{footprint['written_kib']} KiB")
    yield Row("of these still writable", f"{footprint['writable_kib']} KiB")
    yield Row("heap held after the first page", f"{footprint['heap_first'] / 1024:.0f} KiB")
    yield Row("of this the library's own", f"{footprint['heap_library'] / 1024:.0f} KiB")


def text(cell):
    if cell is None:
        return ""
    if isinstance(cell, bool):
        return "yes" if cell else "NO"
    return f"{cell:.2f}" if isinstance(cell, float) else cell


def main(build):
    facts = machine()
    counts = instructions.count(build)
    rows = [row for part in (request_rows, peer_rows, growth_rows, size_rows)
            for row in part(build, counts)]
    facts["load"] = facts["load"].format(os.getloadavg()[0])
    table = {"machine": facts, "rows": [row._asdict() for row in rows]}
    pathlib.Path(build, "bench.json").write_text(
        json.dumps(table, indent=2, ensure_ascii=False) + "\n")
    for fact in facts.items():
        print("{}: {}  ".format(*fact))
    print("\n| what | the library | beside it | ratio | in instructions | goal | met |")
    print("|---|---:|---:|---:|---:|---|---|")
    for row in rows:
        print(f"| {' | '.join(map(text, row))} |")


if __name__ == "__main__":
    main(*sys.argv[1:])
