// Text for a terminal, in any script: wide characters take two columns, combining ones none.
#ifndef TERMINAL_TERMINAL_TEXT_H
#define TERMINAL_TERMINAL_TEXT_H

#include <string>
#include <vector>

#include "printable.h"

// Rows of printable cells as lines, each column as wide as its widest cell, two spaces between
// columns and none at the end of a line.
std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>>& rows);

#endif
