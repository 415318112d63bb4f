#include "suggestion.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>

#include <glib.h>

#include "text.h"

namespace {

constexpr std::size_t kMaxSuggestions = 6;
constexpr std::size_t kMaxDistance = 2;

std::string Folded(const std::string& text) {
  g_autofree gchar* folded = g_utf8_casefold(Printable(text).c_str(), -1);
  return folded;
}

// Levenshtein distance in bytes, regardless of case.
std::size_t Distance(const std::string& one, const std::string& other) {
  const std::string to = Folded(other);
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), 0);
  for (const char letter : Folded(one)) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (letter == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

std::vector<std::string> ValuesWhere(const std::vector<Choice>& choices,
                                     const std::function<bool(const Choice&)>& is_meant) {
  std::vector<std::string> values;
  for (const Choice& choice : choices) {
    if (is_meant(choice)) {
      values.push_back(choice.value);
    }
  }
  return values.size() <= kMaxSuggestions ? values : std::vector<std::string>();
}

std::vector<std::string> Suggest(const std::string& word, const std::vector<Choice>& choices) {
  const std::string wanted = Printable(word);
  std::vector<std::string> matching = ValuesWhere(choices, [&](const Choice& choice) {
    const std::string words = Printable(choice.value + " " + choice.text);
    return g_str_match_string(wanted.c_str(), words.c_str(), TRUE) != FALSE;
  });
  if (!matching.empty()) {
    return matching;
  }
  const auto distance = [&](const Choice& choice) {
    return std::min({Distance(wanted, choice.value), Distance(wanted, TypeIdOf(choice.value)),
                     Distance(wanted, choice.text)});
  };
  std::size_t closest = kMaxDistance;
  for (const Choice& choice : choices) {
    closest = std::min(closest, distance(choice));
  }
  return ValuesWhere(choices, [&](const Choice& choice) { return distance(choice) == closest; });
}

}  // namespace

std::string DidYouMean(const std::string& word, const std::vector<Choice>& choices) {
  const std::vector<std::string> similar = Suggest(word, choices);
  std::string text;
  for (const std::string& value : similar) {
    text += text.empty() ? "did you mean " : &value == &similar.back() ? " or " : ", ";
    text += value;
  }
  return similar.empty() ? "" : text + "? ";
}
