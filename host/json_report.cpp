#include <cstdio>

#include "glib_ptr.h"
#include "report.h"

namespace {

// A document whose root is an object, printed when it is complete.
class Document {
 public:
  Document() : m_builder(json_builder_new()) { json_builder_begin_object(m_builder.get()); }

  void Add(const char* name, const std::optional<std::string>& text) {
    json_builder_set_member_name(m_builder.get(), name);
    if (!text) {
      json_builder_add_null_value(m_builder.get());
      return;
    }
    // JSON is UTF-8; a text that the provider cut may end within a character.
    const GlibPtr<gchar> valid(g_utf8_make_valid(text->data(), static_cast<gssize>(text->size())));
    json_builder_add_string_value(m_builder.get(), valid.get());
  }

  void Add(const char* name, bool value) {
    json_builder_set_member_name(m_builder.get(), name);
    json_builder_add_boolean_value(m_builder.get(), value ? TRUE : FALSE);
  }

  template <typename Members>
  void AddObject(const char* name, Members add_members) {
    json_builder_set_member_name(m_builder.get(), name);
    AddElement(add_members);
  }

  template <typename Elements>
  void AddArray(const char* name, Elements add_elements) {
    json_builder_set_member_name(m_builder.get(), name);
    json_builder_begin_array(m_builder.get());
    add_elements();
    json_builder_end_array(m_builder.get());
  }

  template <typename Members>
  void AddElement(Members add_members) {
    json_builder_begin_object(m_builder.get());
    add_members();
    json_builder_end_object(m_builder.get());
  }

  void Print() {
    json_builder_end_object(m_builder.get());
    const GlibPtr<JsonNode> root(json_builder_get_root(m_builder.get()));
    const GlibPtr<gchar> text(json_to_string(root.get(), TRUE));
    std::printf("%s\n", text.get());
  }

 private:
  GlibPtr<JsonBuilder> m_builder;
};

void AddSetting(Document& document, const char* name, const Setting& setting) {
  document.AddObject(name, [&] {
    document.Add("key", setting.key);
    document.Add("name", setting.name);
    document.Add("help", setting.help);
    document.Add("value", setting.value);
    document.Add("text", setting.text);
  });
}

class JsonReport : public Report {
 public:
  void Page(const PageHead& head, const Setting& language, const Setting& type) override {
    Document document;
    document.Add("title", head.title);
    document.Add("help", head.help);
    document.Add("help_image", head.help_image);
    AddSetting(document, "language", language);
    AddSetting(document, "type", type);
    document.Print();
  }

  void Choices(const std::vector<Choice>& choices, const Setting& setting) override {
    Document document;
    AddSetting(document, "setting", setting);
    document.AddArray("choices", [&] {
      for (const Choice& choice : choices) {
        document.AddElement([&] {
          document.Add("value", choice.value);
          document.Add("text", choice.text);
          document.Add("current", choice.value == setting.value);
        });
      }
    });
    document.Print();
  }

  void Stored(const Setting& language, const Setting& type) override {
    Document document;
    AddSetting(document, "language", language);
    AddSetting(document, "type", type);
    document.Print();
  }

  void Module(const ModuleNames& info) override {
    Document document;
    document.Add("owner", info.owner);
    document.Add("main_component", info.main_component);
    document.Add("sub_component", info.sub_component);
    document.Print();
  }

  void Findings(const std::vector<Finding>& findings) override {
    Document document;
    document.AddArray("findings", [&] {
      for (const Finding& finding : findings) {
        document.AddElement([&] {
          document.Add("where", finding.where);
          document.Add("item", finding.item);
          document.Add("problem", finding.problem);
          document.Add("remedy", finding.remedy);
        });
      }
    });
    document.Print();
  }
};

}  // namespace

std::unique_ptr<Report> MakeJsonReport() { return std::make_unique<JsonReport>(); }
