#include "fonts.h"

namespace {

const FcChar8* FcString(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

FontPattern Sans(const std::string& properties) {
  FontPattern pattern(FcNameParse(FcString("Sans" + properties)));
  FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

}  // namespace

std::string FontFor(const std::string& locale) {
  FcChar8* name = FcLangNormalize(FcString(locale));  // keeps the country if fonts depend on it
  const std::string language = std::string(":lang=") + reinterpret_cast<const char*>(name);
  FcStrFree(name);
  FcResult result = FcResultMatch;
  const FontPattern font(FcFontMatch(nullptr, Sans(language).get(), &result));
  FcChar8* family = nullptr;
  const bool is_named =
      font && FcPatternGetString(font.get(), FC_FAMILY, 0, &family) == FcResultMatch;
  return (is_named ? reinterpret_cast<const char*>(family) : "Sans") + language;
}

Characters InstalledCharacters() {
  FcCharSet* characters = nullptr;
  FcResult result = FcResultMatch;
  FcFontSetDestroy(FcFontSort(nullptr, Sans("").get(), FcTrue, &characters, &result));
  return Characters(characters);
}
