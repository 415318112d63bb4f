#!/usr/bin/env python3
"""Counts the instructions of each request under callgrind, those of the tests' platform included,
and fails if one takes more than 5 percent over the figure kept in instructions.json; says which
takes more than 5 percent under it. On another machine, or below a longer path, the counts are
nearly the same, not exactly. Arguments: the folder of the build; --accept keeps the new figures."""

import json
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
                    counts[f"{STATIC_SETUP}/shipped/request"] = total(
                        dump, CONSTRUCTOR, "--inclusive=yes")
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
    wrong = 0
    for name in sorted({*found, *kept}):
        before, now = kept.get(name), found.get(name)
        change = now / before - 1 if before and now else None
        if change is None:
            remark = "NOT IN BOTH"
        elif change > TOLERANCE:
            remark = f"{change:+.1%}, TOO MANY"
        elif change < -TOLERANCE:
            remark = f"{change:+.1%}, fewer: to guard it, {ACCEPT}"
        else:
            remark = f"{change:+.1%}"
        wrong += change is None or change > TOLERANCE
        print(f"{name}: {now} instructions, {before} kept ({remark})")
    if wrong:
        print(f"{wrong} too many by more than 5 percent, or not in both. Profile "
              f"{build}/bin/count_requests with callgrind; if it has to be so:\n"
              f"    {ACCEPT}", file=sys.stderr)
    return min(wrong, 1)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
