#!/usr/bin/env python3
"""Writes a keyboard configuration of real size: every layout and variant that the evdev rules of
xkb-data list, and every locale that one of them is for; only the members that the library reads.
With a factor, that many copies of it.
Arguments: the file to write, and the factor, 1 if there is none."""

import json
import pathlib
import sys
import xml.etree.ElementTree

RULES = pathlib.Path("/usr/share/X11/xkb/rules/evdev.xml")
LANGUAGES = pathlib.Path("/usr/share/iso-codes/json/iso_639-3.json")
BOARD = "ibm105"


def texts(item, path):
    return [element.text for element in item.iterfind(path)]


def read_rules():
    """A row of keyboard_name_map for each layout and variant, and the ids of types by locale."""
    # The rules name a language by three letters, a locale by two where there are two.
    codes = {language["alpha_3"]: language["alpha_2"]
             for language in json.loads(LANGUAGES.read_text())["639-3"] if "alpha_2" in language}
    names, locales = [], {}
    for layout in xml.etree.ElementTree.parse(RULES).iterfind("layoutList/layout"):
        base = layout.find("configItem")
        for item in [base, *layout.iterfind("variantList/variant/configItem")]:
            parts = dict.fromkeys((base, item))
            stem = "_".join(part.findtext("name") for part in parts).lower().replace("-", "_")
            type_id = f"{stem}_{BOARD}"
            names.append({"name": type_id, "display_name": item.findtext("description")})
            # A variant is for the languages and countries of its layout unless it has its own.
            languages, countries = (
                texts(item, path) or texts(base, path)
                for path in ("languageList/iso639Id", "countryList/iso3166Id"))
            for language in (codes.get(each, each) for each in languages):
                for locale in [f"{language}_{country}" for country in countries] or [language]:
                    locales.setdefault(locale, []).append(type_id)
    return names, locales


def copy(names, locales, number):
    """The rows again, for another board and other locales with names of about the same length, so
    that ten copies are ten times the text."""
    def renamed(type_id):
        return type_id.replace(BOARD, f"ibm{105 + number}")
    rows = [{**row, "name": renamed(row["name"])} for row in names]
    lists = [{"lang_local": f"{locale}{number or ''}",
              "keyboard_types": [renamed(each) for each in types]}
             for locale, types in locales.items()]
    return rows, lists


def lines(rows):
    """A row on each line, as people write the file."""
    return ",\n".join("    " + json.dumps(row, ensure_ascii=False) for row in rows)


def main(output, factor="1"):
    rules = read_rules()
    copies = [copy(*rules, number) for number in range(int(factor))]
    names, locales = ([row for each in copies for row in each[part]] for part in (0, 1))
    file = pathlib.Path(output)
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(
        f'{{\n  "keyboard_name_map": [\n{lines(names)}\n  ],\n'
        f'  "lang_local_keyboard_type_table": [\n{lines(locales)}\n  ]\n}}\n', encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
