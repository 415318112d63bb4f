"""What the checks of data share: the library's languages, and what a text of the page may be."""

import pathlib
import re

import wcwidth

SOURCE = pathlib.Path(__file__).resolve().parent.parent
LANGUAGE_TABLE = SOURCE / "src/LanguageConfigManager.cpp"
BOUNDARY = SOURCE / "platform/data_provider/data_provider.h"

# Bytes: what is longer the library cuts, or does not fit a menu.
LONGEST_TEXT = int(re.search(r"DATA_PROVIDER_TYPE_LENGTH (\d+)", BOUNDARY.read_text())[1])
NAME_COLUMNS = 36  # of a terminal, for a line of the menu
HELP_COLUMNS = 70  # for the line or two beside it
DIRECTIVE = re.compile(r"%[-+#'\d.$*]*[A-Za-z%]")
UNREADABLE = "\\\ufffd"  # an escape that polib does not know, a byte that was not UTF-8
INVISIBLE = "\u200c\u200d\u00a0\u202f"  # joiners within words, and the spaces that do not break


def languages():
    """The message id of the name, and the locale, of each language."""
    rows = re.findall(r'^\s*\{\d+, "(\w+)", "(\w+)"\},$', LANGUAGE_TABLE.read_text(), re.M)
    if not rows:
        raise ValueError(f"{LANGUAGE_TABLE} holds no table of languages")
    return rows


def message_ids():
    """The message ids that the library uses."""
    code = "".join(source.read_text() for source in SOURCE.glob("src/*.cpp"))
    return set(re.findall(r'"((?:COM_|SID_|IDS_|TV_)\w+)"', code))


def columns(text):
    """How wide a text is; negative where faults() finds a control character."""
    return wcwidth.wcswidth(text)


def faults(text, invisible=INVISIBLE):
    """What is wrong with a text that a viewer reads, and what to do, in pairs of at most one."""
    hidden = next((c for c in text
                   if c in UNREADABLE or not c.isprintable() and c not in invisible), None)
    if hidden:
        yield f"U+{ord(hidden):04X} is no character to read", "remove it"
    elif text != text.strip():
        yield "a blank at an end", "remove it"
    elif text and all(columns(character) <= 0 for character in text):
        yield "nothing in it can be seen", "write a text"
    elif directive := DIRECTIVE.search(text):
        yield f"{directive[0]} is a directive of a format string, which no text is", "remove it"
