// A host and a platform that take orders by the line, so that what passes between them and the
// plug-in can be written down and read like a conversation. CONTRIBUTING.md lists the orders.
#ifndef TESTS_CONVERSATION_H
#define TESTS_CONVERSATION_H

#include <memory>
#include <string>

#include "Provider.h"

// The library that ships, or the one that $MORVITH_PLUGIN names.
std::string PluginUnderTest();

class Conversation {
 public:
  Conversation();
  ~Conversation();  // sees that the library is gone
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  // Follows one order. Returns what came of it, a line each: what the plug-in logged, then what it
  // answered. Orders to the platform have no answer.
  std::string Say(const std::string& order);

  // The answer alone to a request, of a plug-in that is loaded: for threads that ask at once. The
  // library's allocations may be refused within it.
  std::string Ask(const std::string& order) const;

 private:
  bool SetUp(const std::string& command, const std::string& rest);
  std::string AskEach(const std::string& command, const std::string& keys) const;
  std::string List(const char* key) const;
  std::string Create() const;
  void Unload();

  std::unique_ptr<Provider> m_provider;
};

#endif
