// What menu_host was asked to do.
#ifndef TERMINAL_COMMAND_LINE_H
#define TERMINAL_COMMAND_LINE_H

#include <string>

#include "KeyboardPage.h"
#include "host_options.h"

enum class Command { kPage, kList, kGet, kSet, kReset, kInfo, kDevices, kCheck };

struct Options : HostOptions {
  bool json = false;

  Command command = Command::kPage;
  SettingId setting = SettingId::kLanguage;
  std::string value;
  bool force = false;
};

// Returns whether there is anything left to do: not when the help or the version was asked for, and
// shown. Throws UsageError for what cannot be understood.
bool ParseCommandLine(int argc, const char* const* argv, Options& options);

#endif
