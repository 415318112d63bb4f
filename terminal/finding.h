// What `menu_host check` has found.
#ifndef TERMINAL_FINDING_H
#define TERMINAL_FINDING_H

#include <string>

// Reads as a sentence: "keyboard ko_KR: type list has no choices; add keyboard_types for 'ko_KR'".
struct Finding {
  std::string where;  // "profile" and its file, "page", "interface" or "keyboard" and its language
  std::string item;
  std::string problem;
  std::string remedy;
};

inline std::string Quoted(const std::string& text) { return "'" + text + "'"; }

#endif
