#include "fonts.h"

std::string FontFor(const std::string& locale) {
  return "MenuScreen:lang=" + locale.substr(0, locale.find('_'));
}

Fonts FontsOf(const std::string& font) {
  FcPattern* pattern = FcNameParse(reinterpret_cast<const FcChar8*>(font.c_str()));
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultMatch;
  Fonts fonts(FcFontSort(nullptr, pattern, FcTrue, nullptr, &result));
  FcPatternDestroy(pattern);
  return fonts;
}

const FcPattern* FontWith(const Fonts& fonts, FcChar32 character) {
  for (int i = 0; fonts && i < fonts->nfont; ++i) {
    FcCharSet* characters = nullptr;
    FcPatternGetCharSet(fonts->fonts[i], FC_CHARSET, 0, &characters);
    if (characters != nullptr && FcCharSetHasChar(characters, character) != FcFalse) {
      return fonts->fonts[i];
    }
  }
  return nullptr;
}
