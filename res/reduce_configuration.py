#!/usr/bin/python3
"""Writes the members of the keyboard configuration that the library reads.

The checks use the other members.

Arguments: CONFIGURATION OUTPUT
"""

import json
import pathlib
import sys

import text_file

MEMBERS = {
    "keyboard_name_map": ("name", "display_name"),
    "lang_local_keyboard_type_table": ("lang_local", "keyboard_types"),
}


def reduce(document):
    return {table: [{member: row[member] for member in members} for row in document[table]]
            for table, members in MEMBERS.items()}


def main(configuration, output):
    try:
        reduced = reduce(json.loads(text_file.read(configuration)))
        text = json.dumps(reduced, ensure_ascii=False, separators=(",", ":"))
        pathlib.Path(output).write_text(f"{text}\n", "utf-8")
    except (text_file.FormatError, ValueError, LookupError, TypeError) as error:
        sys.exit(f"{configuration}: {error}; run checks/check-data")


if __name__ == "__main__":
    main(*sys.argv[1:])
