#include "qlog.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <glib.h>

namespace {

struct Priority {
  int value;
  const char* name;
};

constexpr int kNothing = QLOG_PRIORITY_ERROR + 1;

constexpr gunichar kLastCharacter = 0x10FFFF;  // GLib reports errors as greater values

constexpr std::array<Priority, 4> kPriorities = {{{QLOG_PRIORITY_INFO, "info"},
                                                  {QLOG_PRIORITY_WARNING, "warning"},
                                                  {QLOG_PRIORITY_ERROR, "error"},
                                                  {kNothing, "none"}}};

// An unknown level logs everything, so that a typing error hides no message.
int Threshold() {
  const char* level = std::getenv("QLOG_LEVEL");
  if (level == nullptr) {
    return QLOG_PRIORITY_WARNING;
  }
  const auto* const found =
      std::ranges::find(kPriorities, std::string_view(level), &Priority::name);
  return found == kPriorities.end() ? QLOG_PRIORITY_INFO : found->value;
}

const char* PriorityName(int value) {
  const auto* const found = std::ranges::find(kPriorities, value, &Priority::value);
  return found == kPriorities.end() ? "log" : found->name;
}

// Replaces invalid bytes and control characters, including those outside ASCII, with '?'. GLib's
// decoder is used because it does not allocate.
void MakePrintable(char* text) {
  char* end = text;
  for (const char* at = text; *at != '\0';) {
    const gunichar character = g_utf8_get_char_validated(at, -1);
    const bool is_text = character <= kLastCharacter;
    const char* next = is_text ? g_utf8_next_char(at) : at + 1;
    if (is_text && g_unichar_iscntrl(character) == FALSE) {
      end = std::copy(at, next, end);
    } else {
      *end++ = '?';
    }
    at = next;
  }
  *end = '\0';
}

}  // namespace

int __qlog_print(int /*log_id*/, int priority, const char* tag, const char* format, ...) {
  if (priority < Threshold()) {
    return 0;
  }
  std::array<char, 4096> text;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  if (length < 0) {
    return length;
  }

  const std::size_t end = std::strlen(text.data());
  if (end > 0 && text[end - 1] == '\n') {
    text[end - 1] = '\0';
  }
  MakePrintable(text.data());
  return std::fprintf(stderr, "%s %s: %s\n", PriorityName(priority), tag, text.data());
}
