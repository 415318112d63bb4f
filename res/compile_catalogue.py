#!/usr/bin/python3
"""Compiles a message catalogue and adds the names of the keyboard types to it.

A name such as "Portuguese (Brazil, no dead keys)" is composed of the language's name and of translated
words. The catalogue has these words in the context "keyboard name". If it translates a whole name,
without context, that translation is used. Arguments: CONFIGURATION ENGLISH_CATALOGUE CATALOGUE OUTPUT
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
    """The display names that consist of a language and perhaps words, as (name, language, words)."""
    document = json.loads(pathlib.Path(configuration).read_text("utf-8"))
    for name in sorted({row["display_name"] for row in document["keyboard_name_map"]}):
        language, words = re.fullmatch(r"(.*?)(?: \((.+)\))?", name).groups()
        yield name, language, words.split(SEPARATOR) if words else []


def language_ids(english_catalogue):
    """The message id of each language's name, by its name in English."""
    ids = re.findall(r'^msgid "(\w+)"$', pathlib.Path(english_catalogue).read_text("utf-8"), re.M)
    english = read(english_catalogue)
    return {english.gettext(message_id): message_id for message_id in ids}


def quoted(text):
    return json.dumps(text, ensure_ascii=False)


def compose(catalogue, ids, language, words):
    def translate(word):
        return catalogue.pgettext(CONTEXT, word)

    text = catalogue.gettext(ids[language]) if language in ids else translate(language)
    if not words:
        return text
    words = translate(SEPARATOR).join(map(translate, words))
    return translate(PATTERN).format(language=text, words=words)


def main(configuration, english_catalogue, catalogue_file, output):
    catalogue, ids = read(catalogue_file), language_ids(english_catalogue)
    names = "".join(
        f"\nmsgid {quoted(name)}\nmsgstr {quoted(compose(catalogue, ids, language, words))}\n"
        for name, language, words in display_names(configuration)
        if catalogue.gettext(name) == name)
    without_words = run("msggrep", "--invert-match", "--msgctxt", "--fixed-strings",
                        f"--regexp={CONTEXT}", catalogue_file)
    # A hash table would take another disk block in most catalogues, and would not make gettext faster.
    run("msgfmt", "--check-format", "--check-domain", "--no-hash", f"--output-file={output}", "-",
        text=without_words + names.encode())


if __name__ == "__main__":
    main(*sys.argv[1:])
