#include "fonts.h"

#include <algorithm>
#include <cctype>

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

// As fontconfig names the language of fonts: "zh-tw" where the country decides, otherwise "ko".
std::string FontLanguage(const std::string& locale) {
  std::string language = locale;
  std::ranges::transform(language, language.begin(), [](unsigned char letter) {
    return letter == '_' ? '-' : std::tolower(letter);
  });
  const bool is_known = FcLangGetCharSet(FcString(language)) != nullptr;
  return is_known ? language : locale.substr(0, locale.find('_'));
}

}  // namespace

std::string FontFor(const std::string& locale) {
  const std::string language = ":lang=" + FontLanguage(locale);
  FcResult result = FcResultMatch;
  const FontPattern font(FcFontMatch(nullptr, Sans(language).get(), &result));
  FcChar8* family = nullptr;
  const bool is_named =
      font && FcPatternGetString(font.get(), FC_FAMILY, 0, &family) == FcResultMatch;
  return (is_named ? reinterpret_cast<const char*>(family) : "Sans") + language;
}

Letters InstalledLetters() {
  FcCharSet* letters = nullptr;
  FcResult result = FcResultMatch;
  FcFontSetDestroy(FcFontSort(nullptr, Sans("").get(), FcTrue, &letters, &result));
  return Letters(letters);
}
