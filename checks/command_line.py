"""The command line of the checks: their arguments, their findings and modules that are missing."""

import argparse
import contextlib
import pathlib
import sys


def arguments(docstring, name):
    """Returns the arguments. Needs no other module, so that --help always works."""
    parser = argparse.ArgumentParser(
        description=docstring, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument(name, nargs="*")
    return getattr(parser.parse_args(), name)


@contextlib.contextmanager
def imports():
    """Makes the modules in res/ importable too. Ends the program with a hint if an import fails."""
    sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "res"))
    try:
        yield
    except ModuleNotFoundError as missing:
        sys.exit(f"module '{missing.name}' is missing; run scripts/install-dependencies")


def report(findings, files):
    """Prints the findings. Returns the exit status: 1 if there are any."""
    sys.stdout.reconfigure(errors="backslashreplace")
    status = 0
    for finding in findings:
        print(finding)
        status = 1
    if status == 0 and sys.stderr.isatty():
        print(f"{len(files)} files, no findings", file=sys.stderr)
    return status
