"""The languages and message ids of the library, and the rules for every text of the page."""

import pathlib
import re

import wcwidth

SOURCE = pathlib.Path(__file__).resolve().parent.parent
LANGUAGE_TABLE = SOURCE / "src/LanguageConfigManager.cpp"
BOUNDARY = SOURCE / "platform/data_provider/data_provider.h"

# The library cuts longer texts. A text of exactly this length may have been cut.
CUT_LENGTH = int(re.search(r"DATA_PROVIDER_TYPE_LENGTH (\d+)", BOUNDARY.read_text("utf-8"))[1])
NAME_COLUMNS = 36  # of a terminal; one line of the menu
DIRECTIVE = re.compile(r"%[-+#'\d.$*]*[A-Za-z%]")
REFUSED = "\\\ufffd"  # an escape that polib does not know; a byte that was not UTF-8
INVISIBLE = "\u200c\u200d\u00a0\u202f"  # joiners and no-break spaces within words


def languages():
    """Returns the platform's id, the message id of the name, and the locale, of each language."""
    rows = re.findall(r'^\s*\{(\d+), "(\w+)", "(\w+)"\},$', LANGUAGE_TABLE.read_text("utf-8"), re.M)
    if not rows:
        raise ValueError(f"no table of languages found in {LANGUAGE_TABLE}")
    return rows


def message_ids():
    """Returns the message ids that the library uses."""
    code = "".join(source.read_text("utf-8") for source in SOURCE.glob("src/*.cpp"))
    return set(re.findall(r'"((?:COM_|SID_|IDS_|TV_)\w+)"', code))


def character_fault(text, invisible):
    for character in text:
        if character in REFUSED or not character.isprintable() and character not in invisible:
            return f"character U+{ord(character):04X} is not allowed; remove it"
    if text != text.strip():
        return "blank at the start or the end; remove it"
    if all(wcwidth.wcwidth(character) <= 0 for character in text):
        return "no visible character; write a text"
    return None


def length_fault(text, limit):
    size, columns = len(text.encode()), wcwidth.wcswidth(text)
    if columns > limit:
        return f"{columns} columns; shorten it to {limit}"
    if size >= CUT_LENGTH:
        return f"{size} bytes; shorten it to {CUT_LENGTH - 1}"
    return None


def faults(text, limit=NAME_COLUMNS, invisible=INVISIBLE):
    """Returns what is wrong with a text that viewers read. `limit` is its width in columns."""
    directive = DIRECTIVE.search(text)
    found = (character_fault(text, invisible), length_fault(text, limit),
             directive and f"{directive[0]} is a format directive; remove it")
    return filter(None, found)
