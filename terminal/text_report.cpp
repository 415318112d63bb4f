#include <algorithm>
#include <cstdio>

#include <glib.h>

#include "report.h"
#include "text.h"

namespace {

using Row = std::vector<std::string>;

constexpr std::size_t kGap = 2;  // columns

// Wide characters take two columns of the terminal, combining characters none.
std::size_t Width(const std::string& text) {
  const std::string printable = Printable(text);
  std::size_t width = 0;
  for (const gchar* at = printable.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
    const gunichar character = g_utf8_get_char(at);
    if (g_unichar_iszerowidth(character) == FALSE) {
      width += g_unichar_iswide(character) != FALSE ? 2 : 1;
    }
  }
  return width;
}

std::vector<std::size_t> ColumnWidths(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], Width(row[i]));
    }
  }
  return widths;
}

// Each column is as wide as its widest cell. The last cell of a row is not padded.
std::vector<std::string> AlignColumns(const std::vector<Row>& rows) {
  const std::vector<std::size_t> widths = ColumnWidths(rows);
  std::vector<std::string> lines;
  for (const Row& row : rows) {
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

void Print(const std::string& line) { std::printf("%s\n", Printable(line).c_str()); }

void PrintColumns(const std::vector<Row>& rows) {
  for (const std::string& line : AlignColumns(rows)) {
    Print(line);
  }
}

Row SettingRow(const Setting& setting) {
  if (!setting.value) {
    return {setting.name, "(not set)"};
  }
  return {setting.name, setting.CurrentText().value_or("(not one of the choices)"), *setting.value};
}

class TextReport : public Report {
 public:
  void Page(const PageHead& head, const std::string& help_image, const Setting& language,
            const Setting& type) override {
    Print(head.title);
    Print("  " + head.help);
    Print("  " + help_image);
    Print("");
    const std::vector<std::string> lines = AlignColumns({SettingRow(language), SettingRow(type)});
    Print(lines[0]);
    Print("  " + language.help);
    Print(lines[1]);
    Print("  " + type.help);
  }

  void Choices(const Setting& setting) override {
    std::vector<Row> rows;
    for (const Choice& choice : setting.choices) {
      const char* mark = choice.value == setting.value ? "* " : "  ";
      rows.push_back({mark + choice.text, choice.value});
    }
    PrintColumns(rows);
    if (setting.value && !setting.current) {
      Print("stored: " + Quoted(*setting.value) + ", not one of the choices");
    }
  }

  void Value(const Setting& setting) override {
    if (setting.value) {
      Print(*setting.value);
    }
  }

  void Stored(const Setting& language, const Setting& type) override {
    PrintColumns({SettingRow(language), SettingRow(type)});
  }

  void Info(const Sources& sources, const ProviderInfo& info) override {
    const UiLanguage& language = sources.ui_language;
    const std::string ui_language = language.locale + " (" + language.reason + ")";
    PrintColumns({{"plug-in", sources.plugin},
                  {"root", sources.root},
                  {"device profile", sources.profile},
                  {"registry", sources.registry},
                  {"UI language", ui_language},
                  {"owner", info.owner},
                  {"main component", info.main_component},
                  {"sub component", info.sub_component},
                  {"languages", std::to_string(info.languages)},
                  {"keyboard types", std::to_string(info.types)},
                  {"help image", info.help_image}});
  }

  void Devices(const std::vector<DeviceProfile>& profiles, const std::string& in_use) override {
    std::vector<Row> rows;
    for (const DeviceProfile& profile : profiles) {
      const char* mark = profile.path == in_use ? "* " : "  ";
      rows.push_back({mark + profile.name, profile.path});
    }
    PrintColumns(rows);
    if (std::ranges::find(profiles, in_use, &DeviceProfile::path) == profiles.end()) {
      Print("in use: " + in_use);
    }
  }

  void Findings(const std::vector<Finding>& findings) override {
    for (const Finding& finding : findings) {
      Print(Line(finding));
    }
  }
};

}  // namespace

std::unique_ptr<Report> MakeTextReport() { return std::make_unique<TextReport>(); }
