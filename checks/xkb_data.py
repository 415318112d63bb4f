"""Reads xkb-data: the layouts that its rules list, and the characters that a keymap types.

libxkbcommon compiles the keymaps. Its compose table says which characters dead keys produce.
"""

import ctypes
import functools
import itertools
import os
import pathlib
import re
import unicodedata
import xml.etree.ElementTree

RULES = "evdev"
COMPOSE_LOCALE = "en_US.UTF-8"  # nearly all locales use its table
NO_DEFAULT_INCLUDES, NO_ENVIRONMENT_NAMES = 1, 2  # flags of xkb_context_new()
LOG_LEVEL_CRITICAL = 10
FORMAT_TEXT_V1 = 1
COMPOSED = 2  # result of xkb_compose_state_get_status()
SHIFT_AND_LOCK = 3  # the mask of Shift and Caps Lock
DEAD_KEYSYMS = range(0xFE50, 0xFE94)
FUNCTION_KEYSYMS = range(0xFE00, 0x10000)  # includes the keypad; some boards have none
ISO_KEY = "LSGT"  # between Shift and Z; ANSI boards do not have it


class RuleNames(ctypes.Structure):
    _fields_ = [(name, ctypes.c_char_p)
                for name in ("rules", "model", "layout", "variant", "options")]


@functools.cache
def library():
    xkb = ctypes.CDLL("libxkbcommon.so.0")
    for function in ("context_new", "keymap_new_from_names", "keymap_get_as_string",
                     "compose_table_new_from_locale", "compose_state_new"):
        getattr(xkb, f"xkb_{function}").restype = ctypes.c_void_p
    return xkb


class Compose:
    """The characters that dead keys produce."""

    def __init__(self, context):
        table = library().xkb_compose_table_new_from_locale(context, COMPOSE_LOCALE.encode(), 0)
        if not table:
            raise FileNotFoundError(f"no compose table for {COMPOSE_LOCALE} found")
        self._state = ctypes.c_void_p(library().xkb_compose_state_new(ctypes.c_void_p(table), 0))
        self._text = ctypes.create_string_buffer(16)

    def __call__(self, character, *dead):
        """Returns what the dead keys and then the character produce, or None."""
        xkb = library()
        xkb.xkb_compose_state_reset(self._state)
        for keysym in (*dead, xkb.xkb_utf32_to_keysym(ord(character))):
            xkb.xkb_compose_state_feed(self._state, keysym)
        if xkb.xkb_compose_state_get_status(self._state) != COMPOSED:
            return None
        xkb.xkb_compose_state_get_utf8(self._state, self._text, len(self._text))
        return self._text.value.decode()


class Keymap:
    """A compiled keymap.

    `symbols` is the text of all symbols, equal for equal keymaps. `plain` is the set of characters
    that need no AltGr.
    """

    def __init__(self, handle, model, compose):
        self._compose = compose
        address = library().xkb_keymap_get_as_string(handle, FORMAT_TEXT_V1)
        text = ctypes.string_at(address).decode()
        ctypes.CDLL(None).free(ctypes.c_void_p(address))
        section = text[text.index("xkb_symbols"):]
        self.symbols = re.sub(r'^(xkb_symbols|\s*name\[\w+\]=).*$', "", section, flags=re.M)

        self.plain, self._reached, self._dead = set(), set(), set()
        iso_key = library().xkb_keymap_key_by_name(handle, ISO_KEY.encode())
        for key in range(library().xkb_keymap_min_keycode(handle),
                         library().xkb_keymap_max_keycode(handle) + 1):
            if key != iso_key or model != "pc104":
                self._read_key(handle, key)

    def _read_key(self, handle, key):
        xkb = library()
        keysyms, masks = ctypes.POINTER(ctypes.c_uint32)(), (ctypes.c_uint32 * 16)()
        for level in range(xkb.xkb_keymap_num_levels_for_key(handle, key, 0)):
            count = xkb.xkb_keymap_key_get_mods_for_level(handle, key, 0, level, masks, len(masks))
            plain = any(mask | SHIFT_AND_LOCK == SHIFT_AND_LOCK for mask in masks[:count])
            if count == 0 or xkb.xkb_keymap_key_get_syms_by_level(
                    handle, key, 0, level, ctypes.byref(keysyms)) != 1:
                continue
            character = chr(xkb.xkb_keysym_to_utf32(keysyms[0]))
            if keysyms[0] in DEAD_KEYSYMS:
                self._dead.add(keysyms[0])
            elif keysyms[0] not in FUNCTION_KEYSYMS and character != "\0":
                self._reached.add(character)
                self.plain |= {character} if plain else set()

    @functools.cached_property
    def _typed(self):
        return self._reached | {self._compose(character, dead)
                                for dead in self._dead for character in self._reached}

    def _types_character(self, character):
        base = unicodedata.normalize("NFD", character)[0]
        pairs = itertools.permutations(self._dead if base in self._reached else (), 2)
        return character in self._typed or any(
            self._compose(base, *pair) == character for pair in pairs)

    @functools.cache
    def types(self, text):
        """Returns whether its keys type the text, as whole characters or with separate marks."""
        return any(all(map(self._types_character, unicodedata.normalize(form, text)))
                   for form in ("NFC", "NFD"))


class XkbData:
    """The installed xkb-data. Maps each layout to its variants, countries and languages."""

    def __init__(self):
        root = pathlib.Path(os.environ.get("XKB_CONFIG_ROOT", "/usr/share/X11/xkb"))
        self.variants, self.countries, self.languages = {}, {}, {}
        for listing in (f"{RULES}.xml", f"{RULES}.extras.xml"):
            rules = xml.etree.ElementTree.parse(root / "rules" / listing)
            for layout in rules.iterfind("layoutList/layout"):
                self._read_layout(layout)

        self._context = ctypes.c_void_p(
            library().xkb_context_new(NO_DEFAULT_INCLUDES | NO_ENVIRONMENT_NAMES))
        library().xkb_context_set_log_level(self._context, LOG_LEVEL_CRITICAL)
        if not library().xkb_context_include_path_append(self._context, os.fsencode(root)):
            raise FileNotFoundError(f"{root} is not a folder of xkb-data")
        self._compose = Compose(self._context)

    def _read_layout(self, layout):
        name = layout.findtext("configItem/name")
        for table, path in ((self.variants, "variantList/variant/configItem/name"),
                            (self.countries, "configItem/countryList/iso3166Id"),
                            (self.languages, ".//iso639Id")):
            table.setdefault(name, set()).update(
                element.text for element in layout.iterfind(path))

    def unlisted(self, layout, variant):
        """Returns the part that the rules do not list, such as "layout 'xx'", or None."""
        if layout not in self.variants:
            return f"layout '{layout}'"
        if variant and variant not in self.variants[layout]:
            return f"variant '{variant}' of layout '{layout}'"
        return None

    @functools.cache
    def keymap(self, layout, variant, model):
        """Returns None if the rules do not list the keymap or it does not compile."""
        if self.unlisted(layout, variant):
            return None
        names = RuleNames(*(name.encode() for name in (RULES, model, layout, variant, "")))
        handle = ctypes.c_void_p(
            library().xkb_keymap_new_from_names(self._context, ctypes.byref(names), 0))
        if not handle:
            return None
        try:
            return Keymap(handle, model, self._compose)
        finally:
            library().xkb_keymap_unref(handle)
