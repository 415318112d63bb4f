// The conversations that are written down in conversations/*.txt take place as written.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "conversation.h"

// A line that begins with '#' begins a new conversation, "> " an order; what follows it, up to a
// blank line or the next order, is the answer.
TEST(Conversations, TakePlaceAsWritten) {
  for (const auto& entry : std::filesystem::directory_iterator(TEST_CONVERSATIONS)) {
    std::ifstream file(entry.path());
    std::string written;
    std::string heard;
    auto conversation = std::make_unique<Conversation>();
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("#")) {
        conversation.reset();
        conversation = std::make_unique<Conversation>();
        heard += line + "\n";
      } else if (line.starts_with("> ")) {
        heard += line + "\n" + conversation->Say(line.substr(2));
      }
      written += line.empty() ? "" : line + "\n";
    }
    EXPECT_EQ(heard, written) << entry.path();
  }
}
