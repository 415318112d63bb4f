#include "fonts.h"

#include <array>
#include <utility>

namespace {

constexpr char kPageFamily[] = "MenuScreen";  // only these rules know this name
constexpr char kLatin[] = "Noto Sans";        // also for Cyrillic and Greek

// The fonts of other scripts. Without this table, a letter can come from a font that lacks the
// marks of its script, such as vowel signs.
constexpr std::array kScripts = std::to_array<std::pair<const char*, const char*>>({
    {"am", "Noto Sans Ethiopic"},
    {"ar", "Noto Sans Arabic"},
    {"fa", "Noto Sans Arabic"},
    {"he", "Noto Sans Hebrew"},
    {"hi", "Noto Sans Devanagari"},
    {"ja", "WenQuanYi Micro Hei"},
    {"km", "Noto Sans Khmer"},
    {"ko", "WenQuanYi Micro Hei"},
    {"my", "Noto Sans Myanmar"},
    {"ta", "Noto Sans Tamil"},
    {"th", "Noto Sans Thai"},
    {"ur", "Noto Sans Arabic"},  // lines of Nastaliq would be twice as high
    {"zh", "WenQuanYi Micro Hei"},
});

const FcChar8* FcString(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

std::string Family(const std::string& name) { return "<string>" + name + "</string>"; }

// Returns a rule of fontconfig: the page's family begins with these families.
std::string Rule(const std::string& condition, const std::string& families) {
  return "<match><test name='family'>" + Family(kPageFamily) + "</test>" + condition +
         "<edit name='family' mode='prepend_first' binding='strong'>" + families +
         "</edit></match>";
}

}  // namespace

void SetFontOrder() {
  std::string rules = "<fontconfig>" + Rule("", Family(kLatin));
  for (const auto& [language, family] : kScripts) {
    rules += Rule("<test name='lang' compare='contains'>" + Family(language) + "</test>",
                  Family(family));
  }
  FcConfigParseAndLoadFromMemory(FcConfigGetCurrent(), FcString(rules + "</fontconfig>"), FcTrue);
}

std::string FontFor(const std::string& locale) {
  return kPageFamily + (":lang=" + locale.substr(0, locale.find('_')));
}

Fonts FontsOf(const std::string& font) {
  FcPattern* pattern = FcNameParse(FcString(font));
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
