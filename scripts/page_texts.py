"""What the checks of data share: the library's languages, and what a text of the page may be."""

import pathlib
import re

LANGUAGE_TABLE = pathlib.Path(__file__).resolve().parent.parent / "src/LanguageConfigManager.cpp"
LONGEST_TEXT = 253  # bytes: the library cuts a type's after 254, and one of 254 may have been cut
JOINERS = "\u200c\u200d"  # Persian and Indian scripts need them within words


def languages():
    """The message id of the name, and the locale, of each language."""
    rows = re.findall(r'^\s*\{\d+, "(\w+)", "(\w+)"\},$', LANGUAGE_TABLE.read_text(), re.M)
    if not rows:
        raise ValueError(f"{LANGUAGE_TABLE} holds no table of languages")
    return rows


def faults(text, invisible=JOINERS):
    """What is wrong with a text that a viewer reads, and what to do, in pairs of at most one."""
    hidden = next((c for c in text if not c.isprintable() and c not in invisible), None)
    if hidden:
        yield f"U+{ord(hidden):04X} is no character to read", "remove it"
    elif text != text.strip():
        yield "a blank at an end", "remove it"
