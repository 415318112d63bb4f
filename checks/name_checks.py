"""Checks the names of keyboard types, which the build composes in every language."""

import functools
import string

import compile_catalogue
import page_texts

CONFIG = page_texts.SOURCE / "res/config/hw_kbd_lang_config.json"
PROPER_NOUNS = page_texts.SOURCE / "res/config/proper_nouns.txt"
ENGLISH = page_texts.SOURCE / "res/locale/en.po"
CONTEXT = compile_catalogue.CONTEXT
COMPOSED_COLUMNS = 48  # of a terminal; some languages need more than English


@functools.cache
def names():
    return list(compile_catalogue.display_names(CONFIG))


def whole_names():
    """Returns the names, which a catalogue can translate as a whole."""
    return {name for name, _, _ in names()}


@functools.cache
def language_ids():
    return compile_catalogue.language_ids(ENGLISH)


@functools.cache
def words():
    """Returns the words that catalogues translate for the names, and the punctuation."""
    proper_nouns = PROPER_NOUNS.read_text("utf-8").splitlines()
    used = {compile_catalogue.PATTERN, compile_catalogue.SEPARATOR}
    for _, language, qualifiers in names():
        used |= {language} - language_ids().keys()
        used |= set(qualifiers) - set(proper_nouns)
    return used


def check_template(present):
    for word in sorted(words() - present):
        yield (f"{word}: used in a display_name; add it with the context "
               f"'{CONTEXT}', or to {PROPER_NOUNS.name} if it stays as it is")
    for word in sorted(present - words()):
        yield f"{word}: no display_name uses it; remove it"


def check_catalogue(file, invisible):
    """Finds names that a viewer could not read or tell apart."""
    catalogue = compile_catalogue.read(file)
    pattern = catalogue.pgettext(CONTEXT, compile_catalogue.PATTERN)
    fields = [field for _, field, _, _ in string.Formatter().parse(pattern) if field is not None]
    if sorted(fields) != ["language", "words"]:
        yield f"{compile_catalogue.PATTERN}: its text needs {{language}} and {{words}}, once each"
        return
    first = {}
    for name, language, qualifiers in names():
        text = compile_catalogue.translate(catalogue, language_ids(), name, language, qualifiers)
        for fault in page_texts.faults(text, COMPOSED_COLUMNS, invisible):
            yield f"{name}: '{text}': {fault}, or write a shorter translation of the whole name"
        if first.setdefault(text, name) != name:
            yield f"{name}: same text as {first[text]}; change one of them"
