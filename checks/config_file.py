"""Reads a keyboard configuration: strict JSON that matches the schema."""

import json
import pathlib
import re

import jsonschema

import text_file

CONFIG_FOLDER = pathlib.Path(__file__).resolve().parent.parent / "res/config"
SCHEMA = json.loads((CONFIG_FOLDER / "hw_kbd_lang_config.schema.json").read_text("utf-8"))
NAMES, LOCALES = "keyboard_name_map", "lang_local_keyboard_type_table"
KEYS = {NAMES: "name", LOCALES: "lang_local"}
SURROGATE = re.compile("[\ud800-\udfff]")
LONGEST_MESSAGE = 80  # longer ones contain a long value


class Object(dict):
    """A JSON object that knows its line in the file. A row of a table also knows its place."""

    line = place = None


class Decoder(json.JSONDecoder):
    """Also refuses repeated members and halves of surrogate pairs, which other parsers accept."""

    def __init__(self):
        # Python refuses an int of more than 4300 digits.
        super().__init__(object_pairs_hook=list, parse_int=float)
        self.parse_object = self._parse_object
        self.parse_string = self._parse_string
        # The default scanner is written in C and calls neither method.
        self.scan_once = json.scanner.py_make_scanner(self)

    @staticmethod
    def _parse_object(text_and_start, *context):
        members, end = json.decoder.JSONObject(text_and_start, *context)
        text, start = text_and_start
        parsed = Object(members)
        parsed.line = text.count("\n", 0, start) + 1
        if len(parsed) < len(members):
            names = [name for name, _ in members]
            repeated = next(name for name in names if names.count(name) > 1)
            raise json.JSONDecodeError(f"member '{repeated}' is repeated", text, start)
        return parsed, end

    @staticmethod
    def _parse_string(text, start, strict):
        parsed, end = json.decoder.scanstring(text, start, strict)
        if SURROGATE.search(parsed):
            raise json.JSONDecodeError("half of a surrogate pair in a string", text, start)
        return parsed, end


def line_of(document, path):
    """Returns "line N, " for the innermost object at the path, or "" if that is the document."""
    node, line = document, ""
    for part in path:
        node = node[part]
        line = f"line {node.line}, " if isinstance(node, Object) else line
    return line


def schema_findings(document):
    for error in jsonschema.Draft7Validator(SCHEMA).iter_errors(document):
        place = error.json_path.lstrip("$.") or "the document"
        end = "." if len(error.message) <= LONGEST_MESSAGE else "..."
        yield (f"{line_of(document, error.absolute_path)}{place}: "
               f"{error.message[:LONGEST_MESSAGE]}{end} {error.schema['description']}")


def syntax_finding(error):
    """A string must end in its line. So if a line has an odd number of quotes, one is missing."""
    for number, line in enumerate(error.doc.split("\n"), 1):
        if re.sub(r"\\.", "", line).count('"') % 2:
            return f"line {number}: a quote is missing; add it"
    return f"line {error.lineno}, column {error.colno}: not strict JSON: {error.msg}; fix the line"


def parse(file):
    """Returns the document. Raises FormatError if it does not match the schema."""
    try:
        document = Decoder().decode(text_file.read(file))
        findings = list(schema_findings(document))
    except json.JSONDecodeError as error:
        findings = [syntax_finding(error)]
    except RecursionError:
        findings = ["brackets are nested too deeply; the format needs four levels"]
    if findings:
        raise text_file.FormatError(*findings)
    return document


def read(file):
    """Returns the rows of both tables. Raises FormatError as parse() does."""
    document = parse(file)
    for table, key in KEYS.items():
        for index, row in enumerate(document[table]):
            row.place = f"line {row.line}, {table}[{index}] '{row[key]}'"
    return document[NAMES], document[LOCALES]
