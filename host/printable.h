// Text as a terminal can print it.
#ifndef HOST_PRINTABLE_H
#define HOST_PRINTABLE_H

#include <string>

// `text` with what a terminal would not print as it stands (control characters, bytes that are not
// UTF-8) replaced by U+FFFD.
std::string Printable(const std::string& text);

#endif
