// What a check has found.
#ifndef HOST_FINDING_H
#define HOST_FINDING_H

#include <string>
#include <vector>

#include "error.h"
#include "printable.h"

// Reads as a sentence: "keyboard ko_KR: type list has no choices; add keyboard_types for 'ko_KR'".
struct Finding {
  std::string where;  // "profile" and its file, "page", "interface" or "keyboard" and its language
  std::string item;
  std::string problem;
  std::string remedy;
};

inline std::string Line(const Finding& finding) {
  return Printable(finding.where + ": " + finding.item + " " + finding.problem + "; " +
                   finding.remedy);
}

// Throws HostError, with their number, if there are any.
inline void ThrowIfAny(const std::vector<Finding>& findings) {
  if (!findings.empty()) {
    throw HostError("findings: " + std::to_string(findings.size()));
  }
}

inline std::string Quoted(const std::string& text) { return "'" + text + "'"; }

#endif
