#!/usr/bin/python3
"""Counts the instructions of each request under callgrind, those of a page on arm64 as well, and
what is held of the heap afterwards. Fails if one takes over 5 percent more than is kept in
instructions.json, or more than its bound. Arguments: the folders of this machine's build and of that
for arm64; --accept keeps the figures."""

import json
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).with_name("instructions.json")
TOLERANCE = 0.05
BOUNDS = {"static set-up": 45_000,
          "heap of the library, bytes": 50 * 1024, "heap of the library on arm64, bytes": 50 * 1024}
ACCEPT = "scripts/bench --instructions --accept"

# Of the C library's string functions, it takes those that suit the processor, and what they do
# depends on where the texts happen to lie: they do not count, the calls of them do.
STRING_FUNCTION = "/multiarch/"

EMULATOR = ["qemu-aarch64", "-cpu", "cortex-a53"]  # a common processor of televisions
# No more than that: to look a variable up costs more, the more there are. With any G_SLICE, GLib does
# under valgrind what it does without.
ENVIRONMENT = {"PATH": os.environ["PATH"], "G_SLICE": "as-ever"}

CONSTRUCTOR = r":_GLOBAL__sub_I_\S+ \[.*/libmorvith_dataprovider\.so\]$"


def count(build):
    """Instructions by the request's name, with "/floor" those of its floor; of the static set-up,
    which is a part of loading; and of each step of a page."""
    counts = {}
    for name, dump in callgrind(f"{build}/bin/measure", "--benchmark_format=json",
                                "--benchmark_min_time=0", "--benchmark_repetitions=2"):
        counts[name] = whole(dump)
        if name == "unload and load":
            counts["static set-up"] = total(dump, CONSTRUCTOR, "--inclusive=yes")
    for step, dump in callgrind(f"{build}/bin/page"):
        counts[f"page, {step}"] = whole(dump)
    return counts


def callgrind(*command):
    """Runs a program, and gives the name and the file of each dump that it asks for."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["valgrind", "--quiet", "--tool=callgrind",
                        f"--callgrind-out-file={folder}/out", *command],
                       env=ENVIRONMENT, stdout=subprocess.DEVNULL, check=True)
        dumps = pathlib.Path(folder).glob("out.*")
        for dump in sorted(dumps, key=lambda file: int(file.suffix[1:])):
            yield re.search(r"^desc: Trigger: Client Request: (.*)$", dump.read_text(), re.M)[1], dump


def count_on_arm64(build, arm64_build):
    """Instructions of each step of a page, counted by a plug-in of the emulator."""
    counter = f"{build}/lib/libinstruction_counter.so"
    page = subprocess.run([*EMULATOR, "-plugin", counter, f"{arm64_build}/bin/page"],
                          env=ENVIRONMENT, capture_output=True, check=True, text=True)
    counts = [int(line) for line in page.stderr.splitlines()]
    return {f"page on arm64, {step}": end - begin for step, begin, end
            in zip(json.loads(page.stdout), counts[::2], counts[1::2], strict=True)}


def heap(*page):
    """What is held of the heap, in bytes, when a page has been shown: unloading gives back what is
    the library's own."""
    # Else the heap takes blocks that it has free for its threads for held.
    exact = {**ENVIRONMENT, "GLIBC_TUNABLES": "glibc.malloc.tcache_count=0"}
    held = json.loads(subprocess.run(page, env=exact, capture_output=True, check=True).stdout)
    return {"heap of the library": held["later page"] - held["unload"],
            "heap of what it calls": held["unload"]}


def whole(dump):
    """What everything took that counts."""
    return total(dump, "PROGRAM TOTALS") - total(dump, STRING_FUNCTION)


def total(dump, function, *options):
    """What the functions took that a pattern finds."""
    listing = subprocess.run(["callgrind_annotate", "--threshold=100", *options, dump],
                             capture_output=True, check=True, text=True).stdout
    figures = re.findall(rf"^ *([\d,]+) \([ \d.]+%\)  .*{function}", listing, re.M)
    return sum(int(figure.replace(",", "")) for figure in figures)


def main(build, arm64_build, *options):
    found = {name: figure for name, figure in count(build).items() if not name.endswith("/floor")}
    found |= count_on_arm64(build, arm64_build)
    found |= {f"{name}, bytes": size for name, size in heap(f"{build}/bin/page").items()}
    found |= {f"{name} on arm64, bytes": size
              for name, size in heap(*EMULATOR, f"{arm64_build}/bin/page").items()}
    if "--accept" in options:
        KEPT.write_text(json.dumps(found, indent=2) + "\n")
        return 0
    kept = json.loads(KEPT.read_text())
    failed = False
    for name in {**kept, **found}:
        before, now = kept.get(name, 0), found.get(name, 0)
        change = now / before - 1 if before and now else math.inf
        is_too_many = change > TOLERANCE or now > BOUNDS.get(name, math.inf)
        remark = " TOO MANY" if is_too_many else " fewer" if change < -TOLERANCE else ""
        print(f"{name}: {now}, {before} kept ({change:+.1%}){remark}")
        failed = failed or is_too_many
    if failed:
        print(f"Profile {build}/bin/measure or page with callgrind; if it has to be so: {ACCEPT}",
              file=sys.stderr)
    return int(failed)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
