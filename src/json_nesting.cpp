#include "json_nesting.h"

#include <algorithm>

#include <glib.h>

void JsonNesting::Read(std::string_view part) {
  while (!part.empty()) {
    if (m_state == State::kString) {
      // Most of a text are strings, and their ends are found faster than read.
      const std::string_view string = part.substr(0, part.find('"'));
      part.remove_prefix(std::min(string.size(), string.find('\\')));
      if (part.empty()) {
        return;
      }
    }
    m_state = Next(part.front());
    part.remove_prefix(1);
  }
}

JsonNesting::State JsonNesting::Next(char c) {
  switch (m_state) {
    case State::kStructure:
      return ReadStructure(c);
    case State::kString:  // at the quote or backslash that Read() found
      return c == '"' ? State::kStructure : State::kEscape;
    case State::kEscape:
      return c == 'u' ? State::kCode : State::kString;
    case State::kCode:
      return ReadCode(c);
    // A lenient parser reads on after a surrogate that has no partner, past a quote too.
    case State::kPartner:
      return c == '\\' ? State::kPartnerCode : State::kNotPlain;
    case State::kPartnerCode:
      return c == 'u' ? State::kCode : State::kNotPlain;
    case State::kNotPlain:
      break;
  }
  if (c == '[' || c == '{') {
    Open();
  }
  return State::kNotPlain;
}

void JsonNesting::Open() { m_deepest = std::max(m_deepest, ++m_depth); }

JsonNesting::State JsonNesting::ReadStructure(char c) {
  switch (c) {
    case '[':
    case '{':
      Open();
      return State::kStructure;
    case ']':
    case '}':
      m_depth -= m_depth > 0 ? 1 : 0;
      return State::kStructure;
    case '"':
      return State::kString;
    case '\'':
    case '/':
      return State::kNotPlain;
    default:
      return State::kStructure;
  }
}

JsonNesting::State JsonNesting::ReadCode(char digit) {
  const int value = g_ascii_xdigit_value(digit);
  if (value < 0) {
    return State::kNotPlain;
  }
  m_code = static_cast<std::uint16_t>(m_code << 4 | value);
  m_digits = (m_digits + 1) % 4;
  if (m_digits > 0) {
    return State::kCode;
  }
  const bool is_surrogate = m_code >= 0xD800 && m_code <= 0xDFFF;
  m_awaits_partner = is_surrogate && !m_awaits_partner;
  return m_awaits_partner ? State::kPartner : State::kString;
}
