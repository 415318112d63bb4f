// Text for messages and terminals.
#ifndef HOST_TEXT_H
#define HOST_TEXT_H

#include <string>
#include <vector>

// Returns "a, b, c", or "none" if `words` is empty.
std::string Join(const std::vector<std::string>& words);

std::string Quoted(const std::string& text);

// Returns `text` with U+FFFD in place of each control character and each byte that is not UTF-8.
// A terminal could take them for commands.
std::string Printable(const std::string& text);

#endif
