#include "json_nesting.h"

#include <algorithm>

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

// The end of the string that begins with the quote at `begin`; npos if it is no JSON string.
std::size_t EndOfString(std::string_view json, std::size_t begin) {
  constexpr std::size_t kUnicodeEscape = 5;  // u and four digits
  std::size_t at = begin + 1;
  while (at < json.size() && json[at] != '"') {
    if (json[at] != '\\') {
      ++at;
    } else if (json.substr(at + 1, 1) != "u") {
      at += 2;
    } else if (json.substr(at + 2, 4).find_first_not_of(kHexDigits) == std::string_view::npos) {
      at += 1 + kUnicodeEscape;
    } else {
      return std::string_view::npos;
    }
  }
  return at < json.size() ? at + 1 : std::string_view::npos;
}

std::size_t CountOpenings(std::string_view json) {
  return static_cast<std::size_t>(
      std::count_if(json.begin(), json.end(), [](char c) { return c == '[' || c == '{'; }));
}

}  // namespace

bool NestsDeeperThan(std::string_view json, std::size_t limit) {
  constexpr std::string_view kTokensOfNote = "[]{}\"'/";
  std::size_t depth = 0;
  std::size_t at = 0;
  while ((at = json.find_first_of(kTokensOfNote, at)) != std::string_view::npos) {
    const char token = json[at];
    if (token == '[' || token == '{') {
      if (++depth > limit) {
        return true;
      }
      ++at;
    } else if (token == ']' || token == '}') {
      depth -= depth > 0 ? 1 : 0;
      ++at;
    } else {
      const std::size_t end = token == '"' ? EndOfString(json, at) : std::string_view::npos;
      if (end == std::string_view::npos) {
        return depth + CountOpenings(json.substr(at)) > limit;
      }
      at = end;
    }
  }
  return false;
}
