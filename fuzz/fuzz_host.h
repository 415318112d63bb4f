// What the fuzzers' hosts have in common. A check that fails ends the process, be it here or in the
// fake platform.
#ifndef FUZZ_FUZZ_HOST_H
#define FUZZ_FUZZ_HOST_H

#include <optional>
#include <string>
#include <vector>

#include "data_provider.h"
#include "plugin.h"

long LiveHeapBlocks();

// Begins and ends with a new platform. Ends the process when more blocks were allocated than freed
// in its lifetime, and some are lost. (libFuzzer's own check gives up after some false alarms.)
class LeakCheck {
 public:
  LeakCheck();
  ~LeakCheck();
  LeakCheck(const LeakCheck&) = delete;
  LeakCheck& operator=(const LeakCheck&) = delete;

 private:
  long m_before;
};

struct Choice {
  std::string value;
  std::string text;
  bool operator==(const Choice&) const = default;
};
using Choices = std::vector<Choice>;

// A list that the host has not given back.
struct OpenList {
  void** items;
  int count;
};

// Without a list, checks that the count was left alone.
std::optional<OpenList> OpenChoices(const data_provider_cbs& cbs, const char* key);

// Checks that every position has an item, and every item its strings.
Choices ReadChoices(const data_provider_cbs& cbs, const OpenList& list);

// Opens, reads and gives back.
std::optional<Choices> GetChoices(const data_provider_cbs& cbs, const char* key);

// Checks that these are types of the language, cut where they are long.
void CheckTypes(const Choices& types, const std::string& language);

// Checks the type that was stored with a language, whose types these are.
void CheckStoredType(const Choices& types, const std::string& language, const std::string& stored);

#endif
