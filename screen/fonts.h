// The installed fonts, by fontconfig.
#ifndef SCREEN_FONTS_H
#define SCREEN_FONTS_H

#include <memory>
#include <string>

#include <fontconfig/fontconfig.h>

struct FontconfigDeleter {
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
  void operator()(FcCharSet* letters) const { FcCharSetDestroy(letters); }
};
using FontSet = std::unique_ptr<FcFontSet, FontconfigDeleter>;
using Letters = std::unique_ptr<FcCharSet, FontconfigDeleter>;

// The font for the language of `locale`, of the form "ko_KR" or "ko", as Evas takes it: such as
// "Noto Sans Khmer:lang=km". Where no font says that it is for the language, any that is "Sans".
std::string FontFor(const std::string& locale);

// The letters that some font has.
Letters InstalledLetters();

#endif
