// Runs conversations with the plug-in. CONTRIBUTING.md lists the commands. A command for the
// plug-in is a request. Other commands configure the device. A process has one device and one
// plug-in.
#ifndef TESTS_CONVERSATION_H
#define TESTS_CONVERSATION_H

#include <string>

// Starts a conversation with a new device. The plug-in is not loaded.
void Begin();

// Runs a command. Returns the plug-in's log lines, then its answer; each item has its own line. A
// command for the device has no answer. A request loads the plug-in if necessary.
std::string Say(const std::string& command);

// Sends a request to the loaded plug-in. Returns only the answer. May be called from any thread.
// The plug-in's allocations can fail.
std::string Ask(const std::string& request);

#endif
