// What menu_host tells of the page, in a form for people or for scripts.
#ifndef TERMINAL_REPORT_H
#define TERMINAL_REPORT_H

#include <memory>
#include <string>
#include <vector>

#include "KeyboardPage.h"
#include "finding.h"

struct ProviderInfo {
  std::string owner;
  std::string main_component;
  std::string sub_component;
  std::string help_image;
};

class Report {
 public:
  virtual ~Report() = default;

  virtual void Page(const PageHead& head, const Setting& language, const Setting& type) = 0;
  virtual void Choices(const std::vector<Choice>& choices, const Setting& setting) = 0;
  // What is stored now, after a choice was handed to the provider.
  virtual void Stored(const Setting& language, const Setting& type) = 0;
  virtual void Info(const ProviderInfo& info) = 0;
  virtual void Findings(const std::vector<Finding>& findings) = 0;
};

// Lines of aligned text on standard output.
std::unique_ptr<Report> MakeTextReport();

// One JSON document on standard output.
std::unique_ptr<Report> MakeJsonReport();

#endif
