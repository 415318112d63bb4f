// Runs the conversations in conversations/*.txt. CONTRIBUTING.md describes their format.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "conversation.h"

TEST(Conversations, HaveTheWrittenAnswers) {
  for (const auto& entry : std::filesystem::directory_iterator(TEST_CONVERSATIONS)) {
    std::ifstream file(entry.path());
    std::string expected;
    std::string actual;
    const auto compare = [&] {  // after each conversation, so that a failure message is short
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
