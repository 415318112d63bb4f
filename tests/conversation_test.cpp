// Runs the conversations in conversations/*.txt.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "conversation.h"

// A line that begins with "#" starts a new conversation. A line that begins with "> " is an order.
// The lines below an order are its answer. Blank lines are ignored.
TEST(Conversations, HaveTheWrittenAnswers) {
  for (const auto& entry : std::filesystem::directory_iterator(TEST_CONVERSATIONS)) {
    std::ifstream file(entry.path());
    std::string expected;
    std::string actual;
    const auto compare = [&] {  // one conversation at a time, for a short message
      EXPECT_EQ(actual, expected) << entry.path();
      actual.clear();
      expected.clear();
    };
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("#")) {
        compare();
        Begin();
        actual += line + "\n";
      } else if (line.starts_with("> ")) {
        actual += line + "\n" + Say(line.substr(2));
      }
      expected += line.empty() ? "" : line + "\n";
    }
    compare();
  }
}
