"""xkb-data: what its rules list of layouts, the keymaps these make, and what one types.

A keymap is asked through libxkbcommon, what a dead key makes of a letter through its compose table.
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
COMPOSE_LOCALE = "en_US.UTF-8"  # its table is the one of nearly all locales
NO_DEFAULT_INCLUDES, NO_ENVIRONMENT_NAMES = 1, 2  # flags of xkb_context_new()
LOG_LEVEL_CRITICAL = 10
FORMAT_TEXT_V1 = 1
COMPOSED = 2  # of xkb_compose_state_get_status()
SHIFT_AND_LOCK = 3  # the modifiers that each board has; AltGr and Num Lock are others
DEAD_KEYSYMS = range(0xFE50, 0xFE94)
FUNCTION_KEYSYMS = range(0xFE00, 0x10000)  # and the keypad's, which not each board has
ISO_KEY = "LSGT"  # between Shift and Z, on no ANSI board


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
    """What dead keys make of a character."""

    def __init__(self, context):
        table = library().xkb_compose_table_new_from_locale(context, COMPOSE_LOCALE.encode(), 0)
        if not table:
            raise FileNotFoundError(f"there is no compose table of {COMPOSE_LOCALE}")
        self._state = ctypes.c_void_p(library().xkb_compose_state_new(ctypes.c_void_p(table), 0))
        self._text = ctypes.create_string_buffer(16)

    def __call__(self, character, *dead):
        """Another character, or None."""
        xkb = library()
        xkb.xkb_compose_state_reset(self._state)
        for keysym in (*dead, xkb.xkb_utf32_to_keysym(ord(character))):
            xkb.xkb_compose_state_feed(self._state, keysym)
        if xkb.xkb_compose_state_get_status(self._state) != COMPOSED:
            return None
        xkb.xkb_compose_state_get_utf8(self._state, self._text, len(self._text))
        return self._text.value.decode()


class Keymap:
    """A compiled keymap; `symbols` is the symbols of each key as text, equal for equal keymaps."""

    def __init__(self, handle, model, compose):
        self._compose = compose
        address = library().xkb_keymap_get_as_string(handle, FORMAT_TEXT_V1)
        text = ctypes.string_at(address).decode()
        ctypes.CDLL(None).free(ctypes.c_void_p(address))
        section = text[text.index("xkb_symbols"):]
        self.symbols = re.sub(r'^(xkb_symbols|\s*name\[\w+\]=).*$', "", section, flags=re.M)

        self.plain, self._reached, self._dead = set(), set(), set()  # without AltGr, with it too
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
        """Whether its keys make the text, a character or a mark at a time."""
        return any(all(map(self._types_character, unicodedata.normalize(form, text)))
                   for form in ("NFC", "NFD"))


class XkbData:
    def __init__(self):
        root = pathlib.Path(os.environ.get("XKB_CONFIG_ROOT", "/usr/share/X11/xkb"))
        self.variants, self.countries, self.languages = {}, {}, {}  # of each layout
        for listing in (f"{RULES}.xml", f"{RULES}.extras.xml"):
            rules = xml.etree.ElementTree.parse(root / "rules" / listing)
            for layout in rules.iterfind("layoutList/layout"):
                for known, path in ((self.variants, "variantList/variant/configItem/name"),
                                    (self.countries, "configItem/countryList/iso3166Id"),
                                    (self.languages, ".//iso639Id")):
                    found = known.setdefault(layout.findtext("configItem/name"), set())
                    found |= {element.text for element in layout.iterfind(path)}

        self._context = ctypes.c_void_p(
            library().xkb_context_new(NO_DEFAULT_INCLUDES | NO_ENVIRONMENT_NAMES))
        library().xkb_context_set_log_level(self._context, LOG_LEVEL_CRITICAL)
        if not library().xkb_context_include_path_append(self._context, os.fsencode(root)):
            raise FileNotFoundError(f"{root} is no folder of xkb-data")
        self._compose = Compose(self._context)

    def unlisted(self, layout, variant):
        """What the rules do not list, as "layout 'xx'", if there is anything."""
        if layout not in self.variants:
            return f"layout {layout!r}"
        if variant and variant not in self.variants[layout]:
            return f"variant {variant!r} of layout {layout!r}"
        return None

    @functools.cache
    def keymap(self, layout, variant, model):
        """None if the rules do not list it, or it does not compile."""
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
