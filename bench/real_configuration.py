#!/usr/bin/python3
"""Writes a keyboard configuration of real size: every layout and variant that the evdev rules of
xkb-data list, and every locale that one of them is for. It has the form in which one is installed.
Arguments: the file to write, and how many times to write it all, for other boards and locales."""

import itertools
import json
import pathlib
import sys
import xml.etree.ElementTree

RULES = "/usr/share/X11/xkb/rules/evdev.xml"
LANGUAGES = pathlib.Path("/usr/share/iso-codes/json/iso_639-3.json")


def read_rules():
    """The name of each layout and variant, and those of each locale."""
    # The rules name a language by three letters, a locale by two where there are two.
    codes = {language["alpha_3"]: language["alpha_2"]
             for language in json.loads(LANGUAGES.read_text())["639-3"] if "alpha_2" in language}
    names, locales = {}, {}
    for layout in xml.etree.ElementTree.parse(RULES).iterfind("layoutList/layout"):
        base = layout.find("configItem")
        for item in [base, *layout.iterfind("variantList/variant/configItem")]:
            stem = "_".join(part.findtext("name") for part in dict.fromkeys((base, item)))
            names[stem] = item.findtext("description")
            # A variant is for the languages and countries of its layout unless it has its own.
            languages, countries = (
                [element.text for element in item.findall(path) or base.findall(path)]
                for path in ("languageList/iso639Id", "countryList/iso3166Id"))
            for language, country in itertools.product(languages, countries or [""]):
                locale = f"{codes.get(language, language)}_{country}".rstrip("_")
                locales.setdefault(locale, []).append(stem)
    return names, locales


def main(output, copies):
    names, locales = read_rules()
    suffixes = ["", *map(str, range(1, int(copies)))]
    name_rows = [{"name": f"{stem}_ibm105{suffix}", "display_name": name}
                 for suffix in suffixes for stem, name in names.items()]
    locale_rows = [{"lang_local": f"{locale}{suffix}",
                    "keyboard_types": [f"{stem}_ibm105{suffix}" for stem in stems]}
                   for suffix in suffixes for locale, stems in locales.items()]
    document = {"keyboard_name_map": name_rows, "lang_local_keyboard_type_table": locale_rows}
    installed = json.dumps(document, ensure_ascii=False, separators=(",", ":"))
    pathlib.Path(output).write_text(installed, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
