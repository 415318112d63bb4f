#ifndef HOST_JOIN_H
#define HOST_JOIN_H

#include <string>
#include <vector>

// "a, b, c"; "none" when there is nothing to join.
inline std::string Join(const std::vector<std::string>& words) {
  std::string joined;
  for (const std::string& word : words) {
    joined += (joined.empty() ? "" : ", ") + word;
  }
  return joined.empty() ? "none" : joined;
}

#endif
