"""xkb-data: the layouts and variants that its rules list, and the keymaps they make."""

import ctypes
import functools
import os
import pathlib
import re
import xml.etree.ElementTree


class RuleNames(ctypes.Structure):
    _fields_ = [(name, ctypes.c_char_p)
                for name in ("rules", "model", "layout", "variant", "options")]


class XkbData:
    RULES = "evdev"
    NO_DEFAULT_INCLUDES, NO_ENVIRONMENT_NAMES = 1, 2  # flags of xkb_context_new()
    LOG_LEVEL_CRITICAL = 10
    FORMAT_TEXT_V1 = 1

    def __init__(self):
        root = pathlib.Path(os.environ.get("XKB_CONFIG_ROOT", "/usr/share/X11/xkb"))
        self.variants = {}
        for listing in (f"{self.RULES}.xml", f"{self.RULES}.extras.xml"):
            rules = xml.etree.ElementTree.parse(root / "rules" / listing)
            for layout in rules.iterfind("layoutList/layout"):
                variants = self.variants.setdefault(layout.findtext("configItem/name"), set())
                names = layout.iterfind("variantList/variant/configItem/name")
                variants |= {name.text for name in names}

        self._library = ctypes.CDLL("libxkbcommon.so.0")
        for function in ("context_new", "keymap_new_from_names", "keymap_get_as_string"):
            getattr(self._library, f"xkb_{function}").restype = ctypes.c_void_p
        self._context = ctypes.c_void_p(self._library.xkb_context_new(
            self.NO_DEFAULT_INCLUDES | self.NO_ENVIRONMENT_NAMES))
        self._library.xkb_context_set_log_level(self._context, self.LOG_LEVEL_CRITICAL)
        if not self._library.xkb_context_include_path_append(self._context, os.fsencode(root)):
            raise FileNotFoundError(f"{root} is no folder of xkb-data")

    def unlisted(self, layout, variant):
        """What the rules do not list, as "layout 'xx'", if there is anything."""
        if layout not in self.variants:
            return f"layout {layout!r}"
        if variant and variant not in self.variants[layout]:
            return f"variant {variant!r} of layout {layout!r}"
        return None

    @functools.cache
    def symbols(self, layout, variant, model):
        """The symbols of each key as text, equal for equal keymaps; None if it does not compile."""
        names = RuleNames(*(name.encode() for name in (self.RULES, model, layout, variant, "")))
        keymap = ctypes.c_void_p(
            self._library.xkb_keymap_new_from_names(self._context, ctypes.byref(names), 0))
        if not keymap:
            return None
        address = self._library.xkb_keymap_get_as_string(keymap, self.FORMAT_TEXT_V1)
        text = ctypes.string_at(address).decode()
        ctypes.CDLL(None).free(ctypes.c_void_p(address))
        self._library.xkb_keymap_unref(keymap)
        section = text[text.index("xkb_symbols"):]
        return re.sub(r'^(xkb_symbols|\s*name\[\w+\]=).*$', "", section, flags=re.M)
