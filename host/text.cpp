#include "text.h"

#include <glib.h>

namespace {

constexpr gunichar kReplacement = 0xFFFD;

}  // namespace

std::string Join(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) {
    joined += (joined.empty() ? "" : ", ") + word;
  }
  return joined.empty() ? "none" : joined;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

std::string Printable(const std::string& text) {
  g_autofree gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string printable;
  for (const gchar* at = valid; *at != '\0'; at = g_utf8_next_char(at)) {
    const gunichar character = g_utf8_get_char(at);
    char encoded[6];
    const int length = g_unichar_to_utf8(
        g_unichar_iscntrl(character) != FALSE ? kReplacement : character, encoded);
    printable.append(encoded, static_cast<std::size_t>(length));
  }
  return printable;
}
