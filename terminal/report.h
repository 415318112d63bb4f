// The output of menu_host, as text for people or as JSON for scripts.
#ifndef TERMINAL_REPORT_H
#define TERMINAL_REPORT_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "KeyboardPage.h"
#include "finding.h"
#include "host_options.h"
#include "platform_setup.h"

struct ProviderInfo {
  std::string owner;
  std::string main_component;
  std::string sub_component;
  std::string help_image;
  std::size_t languages;
  std::size_t types;  // of all languages; a type of several languages counts once
};

// Each function prints to standard output.
class Report {
 public:
  virtual ~Report() = default;

  virtual void Page(const PageHead& head, const std::string& help_image, const Setting& language,
                    const Setting& type) = 0;
  virtual void Choices(const Setting& setting) = 0;
  virtual void Value(const Setting& setting) = 0;
  virtual void Stored(const Setting& language, const Setting& type) = 0;
  virtual void Info(const Sources& sources, const ProviderInfo& info) = 0;
  // `in_use` is the path of the profile in use, which need not be one of `profiles`.
  virtual void Devices(const std::vector<DeviceProfile>& profiles, const std::string& in_use) = 0;
  virtual void Findings(const std::vector<Finding>& findings) = 0;
};

// Aligned lines; control characters are replaced, because a terminal could take them for commands.
std::unique_ptr<Report> MakeTextReport();

// One JSON document for each call.
std::unique_ptr<Report> MakeJsonReport();

#endif
