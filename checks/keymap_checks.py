"""Compares keyboard types with xkb-data, and default types with the Unicode CLDR, read by ICU.

The default of a locale is its first type. The library stores it together with the language.
"""

import functools
import itertools
import re
import textwrap

import icu

BOARDS = {"ibm104": "pc104", "ibm105": "pc105", "ibm106": "pc105", "abnt2": "pc105"}  # to models
LAYOUTS = {"ibm106": ("jp", "kr"), "abnt2": ("br",)}  # the other boards are for any layout
FALLBACK = "us_intl_ibm103i"  # fixed in the library; does not follow the rule for ids
FALLBACK_KEYMAP = ("us", "intl", "pc104")
NEEDED_LATIN = set("abcdefghijklmnopqrstuvwxyz0123456789./@")  # in addresses and passwords
ENGLISH = icu.Locale("en")  # the language of display names


def keymap_names(row):
    """Yields layout and variant, then their names in another version of xkb-data, if renamed."""
    xkb = row["xkb"]
    yield xkb["layout"], xkb.get("variant", "")
    if "renamed" in xkb:
        layout, _, variant = xkb["renamed"].rstrip(")").partition("(")
        yield layout, variant


def keymap_of(row, xkb_data):
    """Returns layout, variant and model as the installed xkb-data names them."""
    names = list(keymap_names(row))
    listed = (name for name in names if not xkb_data.unlisted(*name))
    return *next(listed, names[0]), row["xkb"]["model"]


def fitting_ids(layout, variant, model):
    """Yields the ids that a keymap can have. Some variants only repeat the board: kr(kr104)."""
    for board in BOARDS:
        if BOARDS[board] == model and layout in LAYOUTS.get(board, (layout,)):
            stems = [f"{layout}_{variant}" if variant else layout]
            if variant == layout + board.removeprefix("ibm"):
                stems.append(layout)
            yield from (f"{stem}_{board}".lower().replace("-", "_") for stem in stems)
    if (layout, variant, model) == FALLBACK_KEYMAP:
        yield FALLBACK


@functools.cache
def language_names(codes):
    return {icu.Locale(code).getDisplayLanguage(ENGLISH) for code in codes}


def foreign_language(name, layout, xkb_data):
    """Returns a language that a display name contains, or None.

    Returns None if the name also contains a language or country of the layout.
    """
    words = set(re.findall(r"\w+", name))
    countries = {icu.Locale("", code).getDisplayCountry(ENGLISH)
                 for code in xkb_data.countries[layout]}
    if words & (countries | language_names(frozenset(xkb_data.languages[layout]))):
        return None
    all_languages = frozenset().union(*xkb_data.languages.values())
    return min(words & language_names(all_languages), default=None)


def check_keymap(row, xkb_data):
    layout, variant, model = keymap_of(row, xkb_data)
    unlisted = xkb_data.unlisted(layout, variant)
    if unlisted:
        yield f"{row.place}: unknown {unlisted}; use one that 'xkbcli list' prints"
        return
    if xkb_data.keymap(layout, variant, model) is None:
        yield f"{row.place}: keymap does not compile; use another variant"
    foreign = foreign_language(row["display_name"], layout, xkb_data)
    if foreign:
        yield f"{row.place}: layout '{layout}' is not for {foreign}; correct display_name or xkb"
    ids = [type_id for name in keymap_names(row) for type_id in fitting_ids(*name, model)]
    if row["name"] not in ids:
        yield f"{row.place}: id does not match xkb; rename it to {' or '.join(ids)}, or correct xkb"


def check_choices(locale, types, names, keymaps):
    """Finds types that a viewer cannot tell apart in the list of a locale."""
    for one, other in itertools.combinations(types, 2):
        if names[one]["display_name"] == names[other]["display_name"]:
            yield (f"{locale.place}: '{one}' and '{other}' have the same display_name; "
                   "change one of them")
        if keymaps[one].symbols == keymaps[other].symbols:
            yield f"{locale.place}: '{one}' and '{other}' have the same keymap; remove one of them"


def check_country(locale, default, xkb_data):
    """Most Latin keyboards type the same characters, so the country has to match too."""
    countries = xkb_data.countries[keymap_of(default, xkb_data)[0]]
    own = locale["lang_local"].split("_")[1]
    exception = locale.get("exceptions", {}).get("country")
    if (exception or own) not in countries:
        yield (f"{locale.place}: default '{default['name']}' is not a keyboard of "
               f"{exception or own}; change the default, or add exceptions.country")
    elif exception and own in countries:
        yield (f"{locale.place}: default '{default['name']}' is a keyboard of {own}; "
               "remove exceptions.country")


@functools.cache
def letters_of(locale):
    return frozenset(icu.LocaleData(locale).getExemplarSet())


def behind_altgr(locale, default, others):
    """Returns the Latin characters that need AltGr in the default, but not in another type."""
    if icu.Locale(locale).addLikelySubtags().getScript() != "Latn":
        return set()
    plain = set().union(*(keymap.plain for keymap in others)) - default.plain
    return set(filter(default.types, NEEDED_LATIN & plain))


def shown(characters):
    return textwrap.shorten(" ".join(sorted(characters)), 32, placeholder=" ...")


def check_characters(locale, types, keymaps):
    """Finds characters of the language that are hard or impossible to type with the default."""
    default = keymaps[types[0]]
    letters = letters_of(locale["lang_local"])
    missing = {letter for letter in letters if not default.types(letter)}
    altgr = behind_altgr(locale["lang_local"], default,
                         [keymaps[name] for name in types[1:] if name != FALLBACK])
    pattern = locale.get("exceptions", {}).get("characters", "[]")
    try:
        exceptions = set(filter(icu.UnicodeSet(pattern).contains, letters | NEEDED_LATIN))
    except icu.ICUError:
        yield f"{locale.place}: exceptions.characters is not a set; write one such as [abc{{ch}}]"
        return
    remedy = "change the default, or add exceptions.characters"
    if missing - exceptions:
        yield (f"{locale.place}: default '{types[0]}' cannot type {shown(missing - exceptions)}; "
               f"{remedy}")
    if altgr - exceptions:
        yield (f"{locale.place}: default '{types[0]}' needs AltGr for "
               f"{shown(altgr - exceptions)}, but another type does not; {remedy}")
    if pattern != "[]" and not exceptions & (missing | altgr):
        yield f"{locale.place}: exceptions.characters is not needed for '{types[0]}'; remove it"


def check_lists(names, locales, xkb_data):
    first_rows = {row["name"]: row for row in reversed(names)}
    keymaps = {name: xkb_data.keymap(*keymap_of(row, xkb_data))
               for name, row in first_rows.items()}
    for locale in locales:
        types = [name for name in locale["keyboard_types"] if keymaps.get(name)]
        yield from check_choices(locale, types, first_rows, keymaps)
        if types[:1] == locale["keyboard_types"][:1]:
            yield from check_country(locale, first_rows[types[0]], xkb_data)
            yield from check_characters(locale, types, keymaps)


def check(names, locales, xkb_data):
    for row in names:
        yield from check_keymap(row, xkb_data)
    yield from check_lists(names, locales, xkb_data)
