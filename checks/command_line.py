"""What the programs here do before they import what may not be installed: --help needs nothing."""

import argparse
import contextlib
import sys


def arguments(docstring, name):
    parser = argparse.ArgumentParser(
        description=docstring, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument(name, nargs="*")
    return getattr(parser.parse_args(), name)


@contextlib.contextmanager
def imports():
    try:
        yield
    except ModuleNotFoundError as missing:
        sys.exit(f"the module {missing.name} is missing: run scripts/install-dependencies")
