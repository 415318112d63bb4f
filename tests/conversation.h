// Scripted tests of the plug-in. A command goes to the device or to the plug-in and returns a text.
// CONTRIBUTING.md lists the commands. A process has one device and one plug-in.
#ifndef TESTS_CONVERSATION_H
#define TESTS_CONVERSATION_H

#include <string>

// Starts a conversation with a new device. The plug-in is not loaded.
void Begin();

// Follows an order. Returns what the plug-in logged, then what it answered, one item a line. An
// order to the device has no answer. A request loads the plug-in if necessary.
std::string Say(const std::string& order);

// Sends a request to the loaded plug-in. Returns only the answer. May be called from threads. The
// plug-in's allocations may be refused.
std::string Ask(const std::string& request);

#endif
