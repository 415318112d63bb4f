// The installed fonts, from fontconfig. fonts.conf has their order.
#ifndef SCREEN_FONTS_H
#define SCREEN_FONTS_H

#include <memory>
#include <string>

#include <fontconfig/fontconfig.h>

// Returns the font for the language of `locale`, in the form "ko_KR" or "ko", as Evas expects it:
// "MenuScreen:lang=ko". It has no space, because a space would end it in a text block's style.
std::string FontFor(const std::string& locale);

struct FontSetDeleter {
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
using Fonts = std::unique_ptr<FcFontSet, FontSetDeleter>;

// Returns the fonts that Evas tries for each character, in this order. `font` is as above.
Fonts FontsOf(const std::string& font);

// Returns the first font that has the character; null if no font has it.
const FcPattern* FontWith(const Fonts& fonts, FcChar32 character);

#endif
