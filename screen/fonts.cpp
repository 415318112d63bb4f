#include "fonts.h"

#include <array>

namespace {

constexpr char kPageFamily[] = "MenuScreen";  // only these rules know this name
constexpr char kLatin[] = "Noto Sans";        // also for Cyrillic and Greek

struct Script {
  const char* language;
  const char* family;
  bool follows_latin = false;
};

// Evas takes the height of a label from the first font and cuts what is higher or deeper. So the
// font of a script comes first, except if it is lower than Latin letters with accents. Without this
// table, letters can come from a font that lacks the script's marks.
constexpr std::array kScripts = std::to_array<Script>({
    {"am", "Noto Sans Ethiopic", true},
    {"ar", "Noto Sans Arabic"},
    {"fa", "Noto Sans Arabic"},
    {"he", "Noto Sans Hebrew", true},
    {"hi", "Noto Sans Devanagari"},
    {"ja", "WenQuanYi Micro Hei"},
    {"km", "Noto Sans Khmer"},
    {"ko", "WenQuanYi Micro Hei"},
    {"my", "Noto Sans Myanmar"},
    {"ta", "Noto Sans Tamil", true},
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
  for (const Script& script : kScripts) {
    rules += Rule("<test name='lang' compare='contains'>" + Family(script.language) + "</test>",
                  (script.follows_latin ? Family(kLatin) : "") + Family(script.family));
  }
  FcConfigParseAndLoadFromMemory(FcConfigGetCurrent(), FcString(rules + "</fontconfig>"), FcTrue);
}

std::string FontFor(const std::string& locale) {
  FcChar8* name = FcLangNormalize(FcString(locale));  // keeps the country if fonts depend on it
  std::string font = kPageFamily + std::string(":lang=") + reinterpret_cast<const char*>(name);
  FcStrFree(name);
  return font;
}

LineFonts::LineFonts(const std::string& font) {
  FcPattern* pattern = FcNameParse(FcString(font));
  FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
  FcDefaultSubstitute(pattern);
  FcResult result = FcResultMatch;
  m_fonts.reset(FcFontSort(nullptr, pattern, FcTrue, nullptr, &result));
  FcPatternDestroy(pattern);
  FT_Init_FreeType(&m_library);
}

LineFonts::~LineFonts() { FT_Done_FreeType(m_library); }

LineFonts::Fault LineFonts::FaultOf(FcChar32 character, bool is_mark) {
  const int index = IndexOf(character);
  if (index < 0) {
    return Fault::kMissing;
  }
  const bool is_alone = is_mark && index != m_letter;
  m_letter = is_mark ? m_letter : index;
  if (is_alone) {
    return Fault::kMarkAlone;
  }
  return index > 0 && IsCut(Face(index), character) ? Fault::kCut : Fault::kNone;
}

int LineFonts::IndexOf(FcChar32 character) const {
  for (int i = 0; m_fonts && i < m_fonts->nfont; ++i) {
    FcCharSet* characters = nullptr;
    FcPatternGetCharSet(m_fonts->fonts[i], FC_CHARSET, 0, &characters);
    if (characters != nullptr && FcCharSetHasChar(characters, character) != FcFalse) {
      return i;
    }
  }
  return -1;
}

FT_Face LineFonts::Face(int index) {
  if (!m_faces.contains(index)) {
    FcChar8* file = nullptr;
    int face = 0;
    FcPatternGetString(m_fonts->fonts[index], FC_FILE, 0, &file);
    FcPatternGetInteger(m_fonts->fonts[index], FC_INDEX, 0, &face);
    m_faces[index] = nullptr;
    FT_New_Face(m_library, reinterpret_cast<const char*>(file), face, &m_faces[index]);
  }
  return m_faces[index];
}

// Compares a character of `face` with the height that the first font gives to the line.
bool LineFonts::IsCut(FT_Face face, FcChar32 character) {
  const FT_Face first = Face(0);
  if (face == nullptr || first == nullptr ||
      FT_Load_Char(face, character, FT_LOAD_NO_SCALE) != FT_Err_Ok) {
    return false;
  }
  const FT_Glyph_Metrics& glyph = face->glyph->metrics;
  const FT_Pos top = glyph.horiBearingY * first->units_per_EM / face->units_per_EM;
  const FT_Pos bottom =
      (glyph.horiBearingY - glyph.height) * first->units_per_EM / face->units_per_EM;
  return top > first->bbox.yMax || bottom < first->bbox.yMin;
}
