// What menu_host tells of the page, in a form for people or for scripts.
#ifndef TERMINAL_REPORT_H
#define TERMINAL_REPORT_H

#include <memory>
#include <string>
#include <vector>

#include "KeyboardPage.h"
#include "finding.h"
#include "host_options.h"
#include "platform_setup.h"
#include "provider_info.h"

class Report {
 public:
  virtual ~Report() = default;

  virtual void Page(const PageHead& head, const Setting& language, const Setting& type) = 0;
  virtual void Choices(const std::vector<Choice>& choices, const Setting& setting) = 0;
  // What is stored of one setting, for scripts to read.
  virtual void Value(const Setting& setting) = 0;
  // What is stored now, after it was changed.
  virtual void Stored(const Setting& language, const Setting& type) = 0;
  virtual void Info(const Sources& sources, const ProviderInfo& info) = 0;
  // `in_use` is the path of a profile, one of these or another.
  virtual void Devices(const std::vector<DeviceProfile>& profiles, const std::string& in_use) = 0;
  virtual void Findings(const std::vector<Finding>& findings) = 0;
};

// Lines of aligned text on standard output.
std::unique_ptr<Report> MakeTextReport();

// One JSON document on standard output.
std::unique_ptr<Report> MakeJsonReport();

#endif
