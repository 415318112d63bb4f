#include "qlog.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

struct Priority {
  int value;
  std::string_view name;
};

constexpr int kNothing = QLOG_PRIORITY_ERROR + 1;

constexpr std::array<Priority, 4> kPriorities = {{{QLOG_PRIORITY_INFO, "info"},
                                                  {QLOG_PRIORITY_WARNING, "warning"},
                                                  {QLOG_PRIORITY_ERROR, "error"},
                                                  {kNothing, "none"}}};

// A level that is misspelt hides nothing.
int Threshold() {
  const char* level = std::getenv("QLOG_LEVEL");
  if (level == nullptr) {
    return QLOG_PRIORITY_WARNING;
  }
  const auto* const found =
      std::find_if(kPriorities.begin(), kPriorities.end(),
                   [level](const Priority& priority) { return priority.name == level; });
  return found == kPriorities.end() ? QLOG_PRIORITY_INFO : found->value;
}

std::string_view PriorityName(int value) {
  const auto* const found =
      std::find_if(kPriorities.begin(), kPriorities.end(),
                   [value](const Priority& priority) { return priority.value == value; });
  return found == kPriorities.end() ? "log" : found->name;
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7f;
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

  char* const begin = text.data();
  char* end = begin + std::min<std::size_t>(static_cast<std::size_t>(length), text.size() - 1);
  if (end != begin && end[-1] == '\n') {
    *--end = '\0';
  }
  std::replace_if(begin, end, IsControl, '?');
  return std::fprintf(stderr, "%s %s: %s\n", PriorityName(priority).data(), tag, begin);
}
