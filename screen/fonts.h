// The installed fonts, by fontconfig.
#ifndef SCREEN_FONTS_H
#define SCREEN_FONTS_H

#include <memory>
#include <string>

#include <fontconfig/fontconfig.h>

struct FontconfigDeleter {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcCharSet* letters) const { FcCharSetDestroy(letters); }
};
using FontPattern = std::unique_ptr<FcPattern, FontconfigDeleter>;
using Letters = std::unique_ptr<FcCharSet, FontconfigDeleter>;

// The best font for the language of `locale`, of the form "ko_KR" or "ko", as Evas takes it: such
// as "Noto Sans Khmer:lang=km". Named, it is the first of its line and gives the line its height:
// deep letters are cut otherwise.
std::string FontFor(const std::string& locale);

// The letters that some font has.
Letters InstalledLetters();

#endif
