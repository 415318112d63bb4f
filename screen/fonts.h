// The installed fonts, from fontconfig.
#ifndef SCREEN_FONTS_H
#define SCREEN_FONTS_H

#include <memory>
#include <string>

#include <fontconfig/fontconfig.h>

struct FontconfigDeleter {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcCharSet* characters) const { FcCharSetDestroy(characters); }
};
using FontPattern = std::unique_ptr<FcPattern, FontconfigDeleter>;
using Characters = std::unique_ptr<FcCharSet, FontconfigDeleter>;

// Returns the best font for the language of `locale`, in the form "ko_KR" or "ko", as Evas expects
// it: "Noto Sans Khmer:lang=km". With "Sans" alone, Evas takes the line height from another font
// and cuts deep characters.
std::string FontFor(const std::string& locale);

// Returns the characters that at least one installed font has.
Characters InstalledCharacters();

#endif
