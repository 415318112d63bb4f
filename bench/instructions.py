#!/usr/bin/env python3
"""Counts the instructions of each request under callgrind, and fails if one takes more than 5
percent over the figure kept in instructions.json. Arguments: the folder of the build; --accept keeps
the new figures."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).with_name("instructions.json")
TOLERANCE = 1.05

# Of the C library's string functions, it takes those that suit the processor, and what they do depends
# on where the texts happen to lie: they do not count, the calls of them do.
STRING_FUNCTION = "/multiarch/"

CONSTRUCTOR = r":_GLOBAL__sub_I_\S+ \[.*/libmorvith_dataprovider\.so\]$"
STATIC_SETUP = "static set-up"


def count(build):
    """Instructions by "request/configuration/side", side being request or floor; of the static
    set-up, which is a part of loading, too."""
    counts = {}
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--collect-atstart=no",
             f"--callgrind-out-file={folder}/out", f"{build}/bin/count_requests"],
            env={"PATH": os.environ["PATH"], "TEST_TMPDIR": folder}, check=True)
        for dump in pathlib.Path(folder).glob("out.*"):
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", dump.read_text(), re.M)
            if name:
                counts[name[1]] = total(dump, "PROGRAM TOTALS") - total(dump, STRING_FUNCTION)
                if name[1] == "load and unload/shipped/request":
                    counts[f"{STATIC_SETUP}/shipped/request"] = total(dump, CONSTRUCTOR, "--inclusive=yes")
    return counts


def total(dump, function, *options):
    """What the functions took that a pattern finds."""
    listing = subprocess.run(["callgrind_annotate", "--threshold=100", *options, dump],
                             capture_output=True, check=True, text=True).stdout
    figures = re.findall(rf"^ *([\d,]+) \([ \d.]+%\)  .*{function}", listing, re.M)
    return sum(int(figure.replace(",", "")) for figure in figures)


def main(build, *options):
    found = {name.removesuffix("/request"): figure for name, figure in sorted(count(build).items())
             if name.endswith("/request")}
    if "--accept" in options:
        KEPT.write_text(json.dumps(found, indent=2) + "\n")
        return 0
    kept = json.loads(KEPT.read_text())
    over = 0
    for name in sorted({*found, *kept}):
        before, now = kept.get(name), found.get(name)
        excess = bool(now) and (not before or now > before * TOLERANCE)
        over += excess or not now
        share = f" ({100 * now / before - 100:+.1f} %)" if before and now else ""
        print(f"{name}: {now} instructions, {before} kept{share}{' TOO MANY' if excess else ''}")
    if over:
        print(f"{over} too many by more than 5 percent, or not in both. Profile "
              f"{build}/bin/count_requests with callgrind; if it has to be so:\n"
              "    scripts/bench --instructions --accept", file=sys.stderr)
    return min(over, 1)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
