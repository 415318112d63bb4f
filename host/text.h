// Text for messages and terminals.
#ifndef HOST_TEXT_H
#define HOST_TEXT_H

#include <string>
#include <vector>

// Returns "a, b, c", or "none" if `words` is empty.
std::string Join(const std::vector<std::string>& words);

std::string Quoted(const std::string& text);

// Replaces each control character and each byte that is not UTF-8 with U+FFFD. A terminal could
// interpret them as commands.
std::string Printable(const std::string& text);

#endif
