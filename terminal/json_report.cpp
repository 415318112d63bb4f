#include <cstdio>

#include <nlohmann/json.hpp>

#include "report.h"

namespace {

using Json = nlohmann::ordered_json;

Json OrNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

Json Document(const Setting& setting) {
  return {{"key", KeyOf(setting.id)},
          {"name", setting.name},
          {"help", setting.help},
          {"value", OrNull(setting.value)},
          {"text", OrNull(setting.CurrentText())}};
}

// The provider may have cut a text in the middle of a UTF-8 character, which JSON does not allow.
void Print(const Json& document) {
  const std::string text = document.dump(2, ' ', false, Json::error_handler_t::replace);
  std::printf("%s\n", text.c_str());
}

class JsonReport : public Report {
 public:
  void Page(const PageHead& head, const std::string& help_image, const Setting& language,
            const Setting& type) override {
    Print({{"title", head.title},
           {"help", head.help},
           {"help_image", help_image},
           {"language", Document(language)},
           {"type", Document(type)}});
  }

  void Choices(const Setting& setting) override {
    Json listed = Json::array();
    for (const Choice& choice : setting.choices) {
      listed.push_back({{"value", choice.value},
                        {"text", choice.text},
                        {"current", choice.value == setting.value}});
    }
    Print({{"setting", Document(setting)}, {"choices", listed}});
  }

  void Value(const Setting& setting) override { Print(Document(setting)); }

  void Stored(const Setting& language, const Setting& type) override {
    Print({{"language", Document(language)}, {"type", Document(type)}});
  }

  void Info(const Sources& sources, const ProviderInfo& info) override {
    Print({{"plugin", sources.plugin},
           {"root", sources.root},
           {"profile", sources.profile},
           {"registry", sources.registry},
           {"ui_language", sources.ui_language.locale},
           {"ui_language_reason", sources.ui_language.reason},
           {"owner", info.owner},
           {"main_component", info.main_component},
           {"sub_component", info.sub_component},
           {"languages", info.languages},
           {"types", info.types},
           {"help_image", info.help_image}});
  }

  void Devices(const std::vector<DeviceProfile>& profiles, const std::string& in_use) override {
    Json listed = Json::array();
    for (const DeviceProfile& profile : profiles) {
      listed.push_back({{"name", profile.name}, {"path", profile.path}});
    }
    Print({{"devices", listed}, {"in_use", in_use}});
  }

  void Findings(const std::vector<Finding>& findings) override {
    Json listed = Json::array();
    for (const Finding& finding : findings) {
      listed.push_back({{"where", finding.where},
                        {"item", finding.item},
                        {"problem", finding.problem},
                        {"remedy", finding.remedy}});
    }
    Print({{"findings", listed}});
  }
};

}  // namespace

std::unique_ptr<Report> MakeJsonReport() { return std::make_unique<JsonReport>(); }
