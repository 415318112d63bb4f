#include "suggestion.h"

#include <algorithm>
#include <cstddef>
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

// Returns 0 if the choice contains the words of `wanted`, otherwise 1 plus the edit distance.
std::size_t Rank(const std::string& wanted, const Choice& choice) {
  const std::string words = Printable(choice.value + " " + choice.text);
  if (g_str_match_string(wanted.c_str(), words.c_str(), TRUE) != FALSE) {
    return 0;
  }
  return 1 + std::min({Distance(wanted, choice.value), Distance(wanted, TypeIdOf(choice.value)),
                       Distance(wanted, choice.text)});
}

}  // namespace

std::string DidYouMean(const std::string& word, const std::vector<Choice>& choices) {
  std::vector<std::string> similar;
  std::size_t best = kMaxDistance + 1;
  for (const Choice& choice : choices) {
    const std::size_t rank = Rank(Printable(word), choice);
    if (rank < best) {
      similar.clear();
    }
    if (rank <= best && std::ranges::find(similar, choice.value) == similar.end()) {
      similar.push_back(choice.value);
      best = rank;
    }
  }
  if (similar.empty() || similar.size() > kMaxSuggestions) {
    return "";
  }
  std::string text = "did you mean " + similar.front();
  for (std::size_t i = 1; i < similar.size(); ++i) {
    text += (i + 1 == similar.size() ? " or " : ", ") + similar[i];
  }
  return text + "? ";
}
