#include "json_nesting.h"

#include <algorithm>

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

// The escape of a UTF-16 surrogate, but for its backslash.
bool IsSurrogate(std::string_view escape) {
  return escape.size() == 5 && (escape[1] == 'd' || escape[1] == 'D') && escape[2] > '7';
}

// The end of the string that begins with the quote at `begin`; npos if it is no JSON string. A
// lenient parser reads on after a surrogate that has no partner, past a quote too.
std::size_t EndOfString(std::string_view json, std::size_t begin) {
  // Most strings have no escape, and are found faster than read.
  const std::size_t quote = json.find('"', begin + 1);
  if (json.substr(begin, quote - begin).find('\\') == std::string_view::npos) {
    return quote == std::string_view::npos ? quote : quote + 1;
  }
  std::size_t at = begin + 1;
  bool paired = false;  // the escape before was the first of a pair
  while (at < json.size() && json[at] != '"') {
    if (json[at] != '\\') {
      ++at;
      continue;
    }
    if (json.substr(at + 1, 1) != "u") {
      at += 2;
      continue;
    }
    const std::string_view escape = json.substr(at + 1, 5);
    at += 1 + escape.size();
    paired = IsSurrogate(escape) && !paired;
    const bool lone = paired && json.substr(at, 2) != "\\u";
    if (lone || escape.find_first_not_of(kHexDigits, 1) != std::string_view::npos) {
      return std::string_view::npos;
    }
  }
  return at < json.size() ? at + 1 : std::string_view::npos;
}

std::size_t CountOpenings(std::string_view json) {
  return static_cast<std::size_t>(
      std::ranges::count_if(json, [](char c) { return c == '[' || c == '{'; }));
}

}  // namespace

bool NestsDeeperThan(std::string_view json, std::size_t limit) {
  std::size_t depth = 0;
  std::size_t at = 0;
  while (at < json.size()) {
    switch (json[at]) {
      case '[':
      case '{':
        if (++depth > limit) {
          return true;
        }
        ++at;
        break;
      case ']':
      case '}':
        depth -= depth > 0 ? 1 : 0;
        ++at;
        break;
      case '"':
      case '\'':
      case '/': {
        const std::size_t end = json[at] == '"' ? EndOfString(json, at) : std::string_view::npos;
        if (end == std::string_view::npos) {
          return depth + CountOpenings(json.substr(at)) > limit;
        }
        at = end;
        break;
      }
      default:
        ++at;
    }
  }
  return false;
}
