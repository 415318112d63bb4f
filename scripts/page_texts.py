"""What the checks of data share: the library's languages, and what a text of the page may be."""

import pathlib
import re

LANGUAGE_TABLE = pathlib.Path(__file__).resolve().parent.parent / "src/LanguageConfigManager.cpp"
LONGEST_TEXT = 254  # bytes: what is longer the library cuts, or does not fit a menu
INVISIBLE = "\u200c\u200d\u00a0\u202f"  # joiners within words, and the spaces that do not break


def languages():
    """The message id of the name, and the locale, of each language."""
    rows = re.findall(r'^\s*\{\d+, "(\w+)", "(\w+)"\},$', LANGUAGE_TABLE.read_text(), re.M)
    if not rows:
        raise ValueError(f"{LANGUAGE_TABLE} holds no table of languages")
    return rows


def faults(text, invisible=INVISIBLE):
    """What is wrong with a text that a viewer reads, and what to do, in pairs of at most one."""
    hidden = next((c for c in text if not c.isprintable() and c not in invisible), None)
    if hidden:
        yield f"U+{ord(hidden):04X} is no character to read", "remove it"
    elif text != text.strip():
        yield "a blank at an end", "remove it"
