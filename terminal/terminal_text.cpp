#include "terminal_text.h"

#include <algorithm>

#include <glib.h>

namespace {

constexpr std::size_t kGap = 2;

std::size_t Width(const std::string& printable) {
  std::size_t width = 0;
  for (const gchar* at = printable.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
    const gunichar character = g_utf8_get_char(at);
    if (g_unichar_iszerowidth(character) == FALSE) {
      width += g_unichar_iswide(character) != FALSE ? 2 : 1;
    }
  }
  return width;
}

std::vector<std::size_t> ColumnWidths(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const std::vector<std::string>& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], Width(row[i]));
    }
  }
  return widths;
}

}  // namespace

std::vector<std::string> AlignColumns(const std::vector<std::vector<std::string>>& rows) {
  const std::vector<std::size_t> widths = ColumnWidths(rows);
  std::vector<std::string> lines;
  for (const std::vector<std::string>& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) {
        line.append(widths[i] - Width(row[i]) + kGap, ' ');
      }
    }
    lines.push_back(line);
  }
  return lines;
}
