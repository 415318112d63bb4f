#include <algorithm>
#include <cstdio>

#include "report.h"
#include "terminal_text.h"

namespace {

using Row = std::vector<std::string>;

void Print(const std::string& line) { std::printf("%s\n", line.c_str()); }

void PrintColumns(const std::vector<Row>& rows) {
  for (const std::string& line : AlignColumns(rows)) {
    Print(line);
  }
}

Row SettingRow(const Setting& setting) {
  const std::string name = Printable(setting.name);
  if (!setting.value) {
    return {name, "(not set)"};
  }
  return {name, setting.text ? Printable(*setting.text) : "(none of the choices)",
          Printable(*setting.value)};
}

class TextReport : public Report {
 public:
  void Page(const PageHead& head, const Setting& language, const Setting& type) override {
    Print(Printable(head.title));
    Print("  " + Printable(head.help));
    Print("  " + Printable(head.help_image));
    Print("");
    const std::vector<std::string> lines = AlignColumns({SettingRow(language), SettingRow(type)});
    Print(lines[0]);
    Print("  " + Printable(language.help));
    Print(lines[1]);
    Print("  " + Printable(type.help));
  }

  void Choices(const std::vector<Choice>& choices, const Setting& setting) override {
    std::vector<Row> rows;
    for (const Choice& choice : choices) {
      const char* mark = choice.value == setting.value ? "* " : "  ";
      rows.push_back({mark + Printable(choice.text), Printable(choice.value)});
    }
    PrintColumns(rows);
    if (setting.value && !setting.text) {
      Print("stored: '" + Printable(*setting.value) + "', none of the choices");
    }
  }

  void Value(const Setting& setting) override {
    if (setting.value) {
      Print(Printable(*setting.value));
    }
  }

  void Stored(const Setting& language, const Setting& type) override {
    PrintColumns({SettingRow(language), SettingRow(type)});
  }

  void Info(const Sources& sources, const ProviderInfo& info) override {
    PrintColumns({{"plug-in", Printable(sources.plugin)},
                  {"root", Printable(sources.root)},
                  {"device profile", Printable(sources.profile)},
                  {"registry", Printable(sources.registry)},
                  {"owner", Printable(info.owner)},
                  {"main component", Printable(info.main_component)},
                  {"sub component", Printable(info.sub_component)},
                  {"languages", std::to_string(info.languages)},
                  {"keyboard types", std::to_string(info.types)},
                  {"help picture", Printable(info.help_image)}});
  }

  void Devices(const std::vector<DeviceProfile>& profiles, const std::string& in_use) override {
    std::vector<Row> rows;
    for (const DeviceProfile& profile : profiles) {
      const char* mark = profile.path == in_use ? "* " : "  ";
      rows.push_back({mark + Printable(profile.name), Printable(profile.path)});
    }
    PrintColumns(rows);
    if (std::ranges::find(profiles, in_use, &DeviceProfile::path) == profiles.end()) {
      Print("in use: " + Printable(in_use));
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
