// The conversations that are written down in conversations/*.txt take place as written.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "conversation.h"

namespace fs = std::filesystem;

namespace {

class ConversationTest : public testing::TestWithParam<fs::path> {};

std::vector<fs::path> Files() {
  return {fs::directory_iterator(TEST_CONVERSATIONS), fs::directory_iterator()};
}

std::string Name(const testing::TestParamInfo<fs::path>& info) { return info.param.stem(); }

}  // namespace

// A line that begins with '#' begins a new conversation, "> " an order; what follows it, up to a
// blank line or the next order, is the answer.
TEST_P(ConversationTest, TakesPlaceAsWritten) {
  std::ifstream file(GetParam());
  std::string written;
  std::string heard;
  auto conversation = std::make_unique<Conversation>();
  const auto compare = [&] { EXPECT_EQ(heard, written); };
  for (std::string line; std::getline(file, line);) {
    if (line.rfind('#', 0) == 0) {
      compare();
      written = heard = line + "\n";
      conversation.reset();
      conversation = std::make_unique<Conversation>();
    } else if (line.rfind("> ", 0) == 0) {
      written += line + "\n";
      heard += line + "\n" + conversation->Say(line.substr(2));
    } else if (!line.empty()) {
      written += line + "\n";
    }
  }
  compare();
  EXPECT_FALSE(written.empty()) << "an empty file";
}

INSTANTIATE_TEST_SUITE_P(Conversations, ConversationTest, testing::ValuesIn(Files()), Name);
