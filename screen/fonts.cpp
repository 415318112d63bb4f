#include "fonts.h"

#include <algorithm>
#include <cctype>

namespace {

const FcChar8* FcString(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

// The fonts that match, the best first, and the letters that they have together.
FontSet SortedFonts(const std::string& pattern_text, Letters& letters) {
  FcPattern* pattern = FcNameParse(FcString(pattern_text));
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcCharSet* all_letters = nullptr;
  FcResult result = FcResultMatch;
  FontSet fonts(FcFontSort(nullptr, pattern, FcTrue, &all_letters, &result));
  FcPatternDestroy(pattern);
  letters.reset(all_letters);
  return fonts;
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

// Evas gives a line the height of its first font: unless that is one of the language's own, deep
// letters are cut.
std::string FontFor(const std::string& locale) {
  const std::string language = FontLanguage(locale);
  const std::string sans = "Sans:lang=" + language;
  Letters letters;
  const FontSet fonts = SortedFonts(sans, letters);
  for (int i = 0; i < fonts->nfont; ++i) {
    FcLangSet* languages = nullptr;
    FcChar8* family = nullptr;
    if (FcPatternGetLangSet(fonts->fonts[i], FC_LANG, 0, &languages) == FcResultMatch &&
        FcLangSetHasLang(languages, FcString(language)) == FcLangEqual &&
        FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch) {
      return reinterpret_cast<const char*>(family) + (":lang=" + language);
    }
  }
  return sans;
}

Letters InstalledLetters() {
  Letters letters;
  SortedFonts("Sans", letters);
  return letters;
}
