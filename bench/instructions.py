#!/usr/bin/python3
"""Counts the instructions of each request under callgrind, and fails if one takes over 5 percent
more than is kept in instructions.json. Arguments: the folder of the build; --accept keeps them."""

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
ACCEPT = "scripts/bench --instructions --accept"

# Of the C library's string functions, it takes those that suit the processor, and what they do
# depends on where the texts happen to lie: they do not count, the calls of them do.
STRING_FUNCTION = "/multiarch/"

CONSTRUCTOR = r":_GLOBAL__sub_I_\S+ \[.*/libmorvith_dataprovider\.so\]$"


def count(build):
    """Instructions by the request's name, with "/floor" those of its floor; and of the static
    set-up, which is a part of loading."""
    counts = {}
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["valgrind", "--quiet", "--tool=callgrind",
                        f"--callgrind-out-file={folder}/out", f"{build}/bin/measure",
                        "--benchmark_format=json", "--benchmark_min_time=0",
                        "--benchmark_repetitions=2"],
                       env={"PATH": os.environ["PATH"]}, stdout=subprocess.DEVNULL, check=True)
        dumps = pathlib.Path(folder).glob("out.*")
        for dump in sorted(dumps, key=lambda file: int(file.suffix[1:])):
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", dump.read_text(), re.M)[1]
            counts[name] = total(dump, "PROGRAM TOTALS") - total(dump, STRING_FUNCTION)
            if name == "unload and load":
                counts["static set-up"] = total(dump, CONSTRUCTOR, "--inclusive=yes")
    return counts


def total(dump, function, *options):
    """What the functions took that a pattern finds."""
    listing = subprocess.run(["callgrind_annotate", "--threshold=100", *options, dump],
                             capture_output=True, check=True, text=True).stdout
    figures = re.findall(rf"^ *([\d,]+) \([ \d.]+%\)  .*{function}", listing, re.M)
    return sum(int(figure.replace(",", "")) for figure in figures)


def main(build, *options):
    found = {name: figure for name, figure in count(build).items() if not name.endswith("/floor")}
    if "--accept" in options:
        KEPT.write_text(json.dumps(found, indent=2) + "\n")
        return 0
    kept = json.loads(KEPT.read_text())
    failed = False
    for name in {**kept, **found}:
        before, now = kept.get(name, 0), found.get(name, 0)
        change = now / before - 1 if before and now else math.inf
        remark = " TOO MANY" if change > TOLERANCE else " fewer" if change < -TOLERANCE else ""
        print(f"{name}: {now} instructions, {before} kept ({change:+.1%}){remark}")
        failed = failed or change > TOLERANCE
    if failed:
        print(f"Profile {build}/bin/measure with callgrind; if it has to be so: {ACCEPT}",
              file=sys.stderr)
    return int(failed)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
