// A guard for recursive JSON parsers: how deep a text nests, found without recursion.
#ifndef MORVITH_JSON_NESTING_H
#define MORVITH_JSON_NESTING_H

#include <cstddef>
#include <cstdint>
#include <string_view>

// Reads a text part by part and keeps nothing of it. Exact for plain JSON. Where the text leaves
// that (comments, single quotes, broken escapes, lone surrogates), a lenient parser may read it
// otherwise, so from there on nothing closes: the text may nest less deep than is found, never
// deeper.
class JsonNesting {
 public:
  void Read(std::string_view part);

  // How many arrays and objects were open at once, at most, in what was read.
  std::size_t deepest() const { return m_deepest; }

 private:
  enum class State { kStructure, kString, kEscape, kCode, kPartner, kPartnerCode, kNotPlain };

  void Open();
  State Next(char c);
  State ReadStructure(char c);
  State ReadCode(char digit);

  State m_state = State::kStructure;
  std::size_t m_depth = 0;
  std::size_t m_deepest = 0;
  std::uint16_t m_code = 0;       // the last four hexadecimal digits of escapes
  unsigned m_digits = 0;          // how many of them are of this escape
  bool m_awaits_partner = false;  // the escape before was the first of a surrogate pair
};

#endif
