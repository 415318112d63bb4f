// The command line of menu_host.
#ifndef TERMINAL_COMMAND_LINE_H
#define TERMINAL_COMMAND_LINE_H

#include <string>

#include "KeyboardPage.h"
#include "host_options.h"

enum class Command { kPage, kList, kGet, kSet, kReset, kInfo, kDevices, kCheck };

struct Options : HostOptions {
  bool json = false;

  Command command = Command::kPage;
  SettingId setting = SettingId::kLanguage;  // of list, get and set
  std::string value;                         // of set
  bool force = false;
};

// Fills `options`. Returns false if the help or the version was printed, and nothing else is to be
// done. Throws UsageError if an argument is unknown, missing or invalid.
bool ParseCommandLine(int argc, const char* const* argv, Options& options);

#endif
