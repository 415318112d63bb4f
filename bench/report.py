#!/usr/bin/python3
"""Runs the measurements of scripts/bench. The first argument is the build folder."""

import itertools
import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import xml.etree.ElementTree

import icu

RULES = "/usr/share/X11/xkb/rules/evdev.xml"
CONFIGURATION = "usr/share/lib-morvith-tv/res/config/hw_kbd_lang_config.json"
COMMANDS = {  # in the build folder
    "page": "bin/steps root",
    "library at real size": "bin/steps bench/real_x1 answers",
    "library at 10 times real size": "bin/steps bench/real_x10 answers",
    "bare parse at real size": "bin/peer_parse bench/real_x1",
    "bare parse at 10 times real size": "bin/peer_parse bench/real_x10",
    "libxkbregistry": "bin/peer_xkbregistry",
    "GnomeXkbInfo": "bin/peer_gnome",
}
# These programs answer the same question.
ANSWERS = ["library at real size", "libxkbregistry", "GnomeXkbInfo"]
COLUMNS = ["time", "instructions", "since start", "peak memory"]
REPETITIONS = 61
BASELINES = pathlib.Path(__file__).resolve().with_name("instructions.json")
ACCEPT = "scripts/bench --instructions --accept"
# Counts differ between releases, because the compiler and the libraries differ.
SYSTEM = platform.freedesktop_os_release()["PRETTY_NAME"]
TOLERANCE = 1.05
BOUNDS = {"static set-up": 45_000, "heap of the library, bytes": 50 * 1024}

# The C library picks a string function for the processor, and its cost depends on the alignment of
# the text. So only the calls of these functions are counted, not their instructions.
STRING_FUNCTION = "/multiarch/"
CONSTRUCTORS = "_GLOBAL__sub_I_*"

# Only these variables are set, because getenv() costs more with more variables. Under valgrind,
# GLib turns off its own allocator unless G_SLICE is set.
ENVIRONMENT = {"PATH": os.environ["PATH"], "G_SLICE": "default"}


def write_configuration(root, size):
    """Writes a configuration with a type for each layout and variant of xkb-data, and a list for
    each locale for which xkb-data lists these layouts. Writes everything `size` times, each time
    under other names."""
    layouts = xml.etree.ElementTree.parse(RULES).findall("layoutList/layout")
    names, locales = [], {}
    for suffix, layout in itertools.product(["", *range(1, size)], layouts):
        base = layout.find("configItem")
        for item in layout.iter("configItem"):
            parts = [part.findtext("name") for part in dict.fromkeys((base, item))]
            keyboard_type = "_".join([*parts, f"ibm105{suffix}"])
            names.append({"name": keyboard_type, "display_name": item.findtext("description")})
            # A variant that lists no languages or countries inherits those of its layout.
            languages, countries = (
                [element.text for element in item.findall(path) or base.findall(path)]
                for path in ("languageList/iso639Id", "countryList/iso3166Id"))
            for language, country in itertools.product(languages, countries or [""]):
                # The rules use language codes of three letters; ICU knows those of two letters.
                locale = icu.Locale(language, country).getName() + str(suffix)
                locales.setdefault(locale, []).append(keyboard_type)

    document = {"keyboard_name_map": names,
                "lang_local_keyboard_type_table": [
                    {"lang_local": locale, "keyboard_types": types}
                    for locale, types in locales.items()]}
    file = pathlib.Path(root, CONFIGURATION)
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps(document, ensure_ascii=False, separators=(",", ":")))


def run(name, *prefix, **variables):
    """Returns the figures of each step of a program."""
    command = [*prefix, *COMMANDS[name].split()]
    output = subprocess.check_output(command, env=ENVIRONMENT | variables)
    return {step.pop("step"): step for step in map(json.loads, output.splitlines())}


def count(name, *options):
    """Returns the instructions of each step of a program."""
    dumps = f"bench/{name}.callgrind"
    # Without LD_BIND_NOW, the first step in which a library calls a function would include the
    # search for its symbol. The C library of Debian 12 also searches for its own symbols at the first
    # call only.
    steps = run(name, "valgrind", "--quiet", "--tool=callgrind", f"--callgrind-out-file={dumps}",
                *options, LD_BIND_NOW="1")
    counts = {}
    for number, step in enumerate(steps, 1):
        listing = subprocess.check_output(
            ["callgrind_annotate", "--threshold=100", f"{dumps}.{number}"], text=True)
        counts[step] = total(listing, "PROGRAM TOTALS") - total(listing, STRING_FUNCTION)
    return counts


def total(listing, function):
    figures = re.findall(rf"^ *([\d,]+) \([ \d.]+%\)  .*{function}", listing, re.M)
    return sum(int(figure.replace(",", "")) for figure in figures)


def report():
    rounds = [{name: run(name) for name in COMMANDS} for _ in range(REPETITIONS)]
    counts = {name: count(name) for name in COMMANDS}

    def cost(name, step, column):
        times = (each[name][step][column] for each in rounds)
        return counts[name][step] if column == "instructions" else statistics.median(times)

    found = {name: cost(name, "first answer", "found") for name in ANSWERS}
    if len(set(found.values())) > 1:
        sys.exit(f"error: the numbers of types differ: {found}")
    print(f"| program | step | {' | '.join(COLUMNS)} |\n|---|---|---:|---:|---:|---:|")
    for name in COMMANDS:
        for step in rounds[0][name]:
            unit = ("page", "later page") if name == "page" else (ANSWERS[0], step)
            columns = COLUMNS if step == "first answer" else COLUMNS[:2]
            ratios = [f"{cost(name, step, each) / cost(*unit, each):.3g}" for each in columns]
            print(" | ".join([f"| {name} | {step}", *ratios]), "|")


def compare(accepts):
    figures = {"static set-up": count("page", f"--toggle-collect={CONSTRUCTORS}")["load"]}
    figures |= count("page")
    for name in ("library at real size", "library at 10 times real size"):
        figures[f"first answer of the {name}"] = count(name)["first answer"]
    # Without this setting, mallinfo2() counts free blocks in the caches of threads as used.
    held = run("page", GLIBC_TUNABLES="glibc.malloc.tcache_count=0")
    figures["heap of the library, bytes"] = held["set language"]["heap"] - held["unload"]["heap"]
    figures["heap of its dependencies, bytes"] = held["unload"]["heap"]

    baselines = json.loads(BASELINES.read_text())
    if accepts:
        baselines[SYSTEM] = figures
        BASELINES.write_text(json.dumps(baselines, indent=2) + "\n")
    if SYSTEM not in baselines:
        sys.exit(f"error: {BASELINES} has no baseline for {SYSTEM}; run {ACCEPT}")
    bad = []
    for name, figure in figures.items():
        baseline = baselines[SYSTEM].get(name, 0)
        limit = min(baseline * TOLERANCE, BOUNDS.get(name, baseline * TOLERANCE))
        print(f"{name}: {figure}, baseline {baseline}, limit {limit:.0f}")
        bad += [] if 0 < figure <= limit else [name]
    if bad:
        sys.exit(f"error: these figures are 0 or above their limit: {', '.join(bad)}; see the "
                 f"callgrind dumps in {os.getcwd()}/bench, or run {ACCEPT}")


def main(build, *options):
    os.chdir(build)
    for size in (1, 10):
        write_configuration(f"bench/real_x{size}", size)
    if options:
        compare(accepts="--accept" in options)
    else:
        report()


if __name__ == "__main__":
    main(*sys.argv[1:])
