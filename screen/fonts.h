// The installed fonts, from fontconfig.
#ifndef SCREEN_FONTS_H
#define SCREEN_FONTS_H

#include <memory>
#include <string>

#include <fontconfig/fontconfig.h>

// Tells fontconfig the order of the page's fonts, for each language and for this process.
void SetFontOrder();

// Returns the font for the language of `locale`, in the form "ko_KR" or "ko", as Evas expects it:
// "MenuScreen:lang=ko". It has no space, because a space would end it in a text block's style.
std::string FontFor(const std::string& locale);

// The fonts that Evas uses for a line of text: a character comes from the first one that has it.
class LineFonts {
 public:
  enum class Fault {
    kNone,
    kMissing,    // no installed font has the character
    kMarkAlone,  // the mark, such as a vowel sign, and its letter come from two fonts
  };

  explicit LineFonts(const std::string& font);  // see FontFor()

  // Returns the fault of the next character of a text.
  Fault FaultOf(FcChar32 character, bool is_mark);

 private:
  struct Deleter {
    void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
  };

  int IndexOf(FcChar32 character) const;  // negative if no font has it

  std::unique_ptr<FcFontSet, Deleter> m_fonts;
  int m_letter = 0;  // the font of the last character that is not a mark
};

#endif
