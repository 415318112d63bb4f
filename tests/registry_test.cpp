// The registry's stand-in, and a provider over it whose process is killed.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Provider.h"
#include "kvreg.h"
#include "platform_setup.h"

namespace fs = std::filesystem;

namespace {

std::string Read(const char* key) {
  const std::unique_ptr<char, void (*)(void*)> value(kvreg_get_str(key), std::free);
  return value ? value.get() : "(null)";
}

// Starts a process that ends with its task.
pid_t InChild(const std::function<void()>& task) {
  const pid_t child = fork();
  if (child == 0) {
    task();
    _exit(0);
  }
  return child;
}

class Registry : public testing::Test {
 protected:
  Registry() {
    setenv("KVREG_FILE", (m_folder + "/registry.db").c_str(), 1);
    testing::internal::CaptureStderr();
  }

  ~Registry() override {
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    fs::remove_all(m_folder);
  }

  static void ExpectLogged(const std::string& words) {
    const std::string logged = testing::internal::GetCapturedStderr();
    EXPECT_NE(logged.find(words), std::string::npos) << words << ": " << logged;
    testing::internal::CaptureStderr();
  }

  std::string m_template = testing::TempDir() + "registry.XXXXXX";
  std::string m_folder = mkdtemp(m_template.data());
};

}  // namespace

TEST_F(Registry, TellsANullValueFromMemoryThatRanOut) {
  sqlite3* database = nullptr;
  sqlite3_open(std::getenv("KVREG_FILE"), &database);
  sqlite3_exec(database, "CREATE TABLE registry (key, value)", nullptr, nullptr, nullptr);
  sqlite3_exec(database, "INSERT INTO registry VALUES ('key', NULL)", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  EXPECT_EQ(Read("key"), "(null)");
  ExpectLogged("error KVREG: cannot read 'key': its value is NULL");
}

TEST_F(Registry, LosesNothingOfTwoWritersAtOnce) {
  const auto write = [](const char* key) {
    for (int i = 0; i < 50; ++i) {
      kvreg_set_str(key, std::to_string(i).c_str());
    }
  };
  const pid_t other = InChild([&] { write("theirs"); });
  write("ours");
  waitpid(other, nullptr, 0);
  EXPECT_EQ(Read("ours") + Read("theirs"), "4949");
}

TEST_F(Registry, KeepsWhatItHasOnAFullDisk) {
  EXPECT_EQ(kvreg_set_str("key", "kept"), 0);
  const pid_t writer = InChild([] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {16384, 16384};
    setrlimit(RLIMIT_FSIZE, &limit);
    kvreg_set_str("key", std::string(80000, 'x').c_str());
  });
  waitpid(writer, nullptr, 0);
  ExpectLogged("error KVREG: cannot write 'key': disk");
  EXPECT_EQ(Read("key"), "kept");
}

TEST_F(Registry, HasWholeChoicesAfterTheirWritersWereKilled) {
  setenv("DEVINFO_PROFILE", TEST_ROOT "/usr/share/morvith-menu-host/devices/global.ini", 1);
  UseRoot(TEST_ROOT);
  const Provider provider(TEST_PLUGIN);
  const auto store = [&](const std::string& language) {
    provider.SetValue(DATA_PROVIDER_LANGUAGE, language);
  };
  const std::set<std::string> languages = {"ko_KR", "de_DE"};
  const std::set<std::string> types = {"ko_KR.kr_ibm106", "de_DE.de_ibm105"};
  store("ko_KR");
  std::mt19937 random(std::random_device{}());
  int interrupted = 0;
  for (int round = 0; round < 500; ++round) {
    const pid_t writer = InChild([&] {
      for (;;) {
        store("ko_KR");
        store("de_DE");
      }
    });
    usleep(std::uniform_int_distribution(0U, 8000U)(random));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    interrupted += fs::exists(m_folder + "/registry.db-journal") ? 1 : 0;
    EXPECT_TRUE(languages.contains(Read(DATA_PROVIDER_LANGUAGE)));
    EXPECT_TRUE(types.contains(Read(DATA_PROVIDER_TYPE)));
    store("de_DE");
    EXPECT_EQ(Read(DATA_PROVIDER_TYPE), "de_DE.de_ibm105");
  }
  EXPECT_GT(interrupted, 50) << "in the middle of a write";
}
