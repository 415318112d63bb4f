// Scripted tests of the plug-in. An order goes to the device or to the plug-in, and its answer is
// text. CONTRIBUTING.md lists the orders. A process has one device and one plug-in.
#ifndef TESTS_CONVERSATION_H
#define TESTS_CONVERSATION_H

#include <string>

// The plug-in of this build, or the one that $MORVITH_PLUGIN names.
std::string PluginUnderTest();

// Starts a conversation with a new device. The plug-in is not loaded.
void Begin();

// Follows an order. Returns what the plug-in logged, then what it answered, one item a line. An
// order to the device has no answer. A request loads the plug-in if necessary.
std::string Say(const std::string& order);

// Sends a request to the loaded plug-in. Returns only the answer. May be called from threads. The
// plug-in's allocations may be refused.
std::string Ask(const std::string& request);

#endif
