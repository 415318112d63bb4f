// A problem that a check found.
#ifndef HOST_FINDING_H
#define HOST_FINDING_H

#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

#include "error.h"
#include "text.h"

struct Finding {
  std::string where;  // "page", "profile FILE", "interface LOCALE" or "keyboard LOCALE"
  std::string item;
  std::string problem;
  std::string remedy;
};

// Returns a line for a terminal, such as
// "keyboard ko_KR: type list has no choices; add keyboard_types for 'ko_KR'".
inline std::string Line(const Finding& finding) {
  return Printable(finding.where + ": " + finding.item + " " + finding.problem + "; " +
                   finding.remedy);
}

// Throws HostError with the number of findings if there are any. Otherwise prints "no findings",
// but only on a terminal: a program that reads the output gets nothing.
inline void Conclude(const std::vector<Finding>& findings) {
  if (!findings.empty()) {
    throw HostError("findings: " + std::to_string(findings.size()));
  }
  if (isatty(STDERR_FILENO) != 0) {
    std::fputs("no findings\n", stderr);
  }
}

#endif
