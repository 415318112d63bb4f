#!/usr/bin/python3
"""Compiles a message catalogue and adds the names of the keyboard types to it.

A name such as "Portuguese (Brazil, no dead keys)" consists of the name of a language and of words.
The catalogue translates these words in the context "keyboard name". If it has a translation of the
complete name, without a context, that translation is used.

Arguments: CONFIGURATION ENGLISH_CATALOGUE CATALOGUE OUTPUT
"""

import gettext
import io
import json
import pathlib
import re
import subprocess
import sys

CONTEXT = "keyboard name"
PATTERN = "{language} ({words})"
SEPARATOR = ", "


def run(*command, text=None):
    return subprocess.run(command, input=text, stdout=subprocess.PIPE, check=True).stdout


def read(catalogue):
    return gettext.GNUTranslations(io.BytesIO(run("msgfmt", "--output-file=-", catalogue)))


def display_names(configuration):
    """Yields (name, language, words) for each display name; `words` may be empty."""
    document = json.loads(pathlib.Path(configuration).read_text("utf-8"))
    for name in sorted({row["display_name"] for row in document["keyboard_name_map"]}):
        language, words = re.fullmatch(r"(.*?)(?: \((.+)\))?", name).groups()
        yield name, language, words.split(SEPARATOR) if words else []


def language_ids(english_catalogue):
    """Returns a dictionary from the English name of a language to its message id."""
    ids = re.findall(r'^msgid "(\w+_\w+)"$', pathlib.Path(english_catalogue).read_text("utf-8"), re.M)
    english = read(english_catalogue)
    return {english.gettext(message_id): message_id for message_id in ids}


def translate(catalogue, ids, name, language, words):
    """Returns the name in the language of the catalogue. `ids` comes from language_ids()."""
    def word_text(word):
        return catalogue.pgettext(CONTEXT, word)

    if (text := catalogue.gettext(name)) != name:
        return text
    text = catalogue.gettext(ids[language]) if language in ids else word_text(language)
    if not words:
        return text
    joined = word_text(SEPARATOR).join(map(word_text, words))
    return word_text(PATTERN).format(language=text, words=joined)


def entry(name, text):
    name, text = (json.dumps(value, ensure_ascii=False) for value in (name, text))
    return f"\nmsgid {name}\nmsgstr {text}\n"


def main(configuration, english_catalogue, catalogue_file, output):
    catalogue, ids = read(catalogue_file), language_ids(english_catalogue)
    names = "".join(
        entry(name, translate(catalogue, ids, name, language, words))
        for name, language, words in display_names(configuration)
        if catalogue.gettext(name) == name)  # otherwise the catalogue has the complete name
    without_words = run("msggrep", "--invert-match", "--msgctxt", "--fixed-strings",
                        f"--regexp={CONTEXT}", catalogue_file)
    # A hash table takes one more disk block in most catalogues, and does not make gettext faster.
    run("msgfmt", "--check-format", "--check-domain", "--no-hash", f"--output-file={output}", "-",
        text=without_words + names.encode())


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except subprocess.CalledProcessError as failed:  # the program has printed the cause
        sys.exit(f"{sys.argv[3]}: {failed.cmd[0]} failed; run checks/check-texts")
