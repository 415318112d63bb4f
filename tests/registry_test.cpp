// The registry's stand-in, which several processes use at once, and a provider over it whose
// process is killed.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
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

std::optional<std::string> Read(const char* key) {
  const std::unique_ptr<char, void (*)(void*)> value(kvreg_get_str(key), std::free);
  return value ? std::optional<std::string>(value.get()) : std::nullopt;
}

// Starts a process that ends with whether its task went well.
pid_t InChild(const std::function<bool()>& task) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(task() ? 0 : 1);
  }
  return child;
}

bool WentWell(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && status == 0;
}

bool WriteWithoutSpace() {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit = {16384, 16384};
  setrlimit(RLIMIT_FSIZE, &limit);
  return kvreg_set_str("key", std::string(80000, 'x').c_str()) == 0;
}

bool WriteAsAStranger() {
  constexpr uid_t kNobody = 65534;
  return (geteuid() != 0 || seteuid(kNobody) == 0) && kvreg_set_str("key", "lost") == 0;
}

class Registry : public testing::Test {
 protected:
  Registry() {
    fs::permissions(m_folder, fs::perms(0755));  // a stranger can enter
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

  std::string m_template = "/tmp/registry.XXXXXX";
  std::string m_folder = mkdtemp(m_template.data());
};

}  // namespace

TEST_F(Registry, KeepsValues) {
  EXPECT_EQ(Read("key"), std::nullopt);
  for (const char* value : {"ko_KR", "", "한국어 'quoted' \"%s\"", "last"}) {
    EXPECT_EQ(kvreg_set_str("key", value), 0);
    EXPECT_EQ(Read("key"), value);
  }
  EXPECT_EQ(Read("Key"), std::nullopt);
}

TEST_F(Registry, ReportsWhatItCannotDo) {
  std::ofstream(m_folder + "/text") << std::string(4096, 'x');
  for (const char* file : {"none/registry.db", "text", ""}) {
    setenv("KVREG_FILE", (m_folder + "/" + file).c_str(), 1);
    EXPECT_LT(kvreg_set_str("key", "value"), 0);
    ExpectLogged("error KVREG: cannot write 'key'");
  }
  EXPECT_EQ(Read("key"), std::nullopt);
  ExpectLogged("error KVREG: cannot read 'key'");
  EXPECT_LT(kvreg_set_str(nullptr, "value"), 0);
  ExpectLogged("a null key");
  unsetenv("KVREG_FILE");
  EXPECT_EQ(Read("key"), std::nullopt);
  ExpectLogged("KVREG_FILE is not set");
}

TEST_F(Registry, TellsANullValueFromMemoryThatRanOut) {
  sqlite3* database = nullptr;
  sqlite3_open(std::getenv("KVREG_FILE"), &database);
  sqlite3_exec(database,
               "CREATE TABLE registry (key, value); INSERT INTO registry VALUES ('key', NULL)",
               nullptr, nullptr, nullptr);
  sqlite3_close(database);
  EXPECT_EQ(Read("key"), std::nullopt);
  ExpectLogged("its value is NULL");
}

TEST_F(Registry, KeepsWhatItHasWhenItCannotWrite) {
  EXPECT_EQ(kvreg_set_str("key", "kept"), 0);
  EXPECT_FALSE(WentWell(InChild(WriteWithoutSpace)));
  ExpectLogged("disk");
  fs::permissions(m_folder + "/registry.db", fs::perms(0444));
  EXPECT_FALSE(WentWell(InChild(WriteAsAStranger)));
  ExpectLogged("readonly");
  EXPECT_EQ(Read("key"), "kept");
}

TEST_F(Registry, LosesNothingOfTwoWritersAtOnce) {
  const auto write = [](const char* key) {
    bool written = true;
    for (int i = 0; i < 100; ++i) {
      written = kvreg_set_str(key, std::to_string(i).c_str()) == 0 && written;
    }
    return written;
  };
  const pid_t first = InChild([&] { return write("1"); });
  const pid_t second = InChild([&] { return write("2"); });
  EXPECT_TRUE(WentWell(first));
  EXPECT_TRUE(WentWell(second));
  EXPECT_EQ(Read("1"), "99");
  EXPECT_EQ(Read("2"), "99");
}

TEST_F(Registry, HasWholeChoicesAfterTheirWritersWereKilled) {
  setenv("DEVINFO_PROFILE", TEST_ROOT "/usr/share/morvith-menu-host/devices/global.ini", 1);
  UseRoot(TEST_ROOT);
  const Provider provider(TEST_PLUGIN);
  const std::map<std::string, std::string> types = {{"ko_KR", "ko_KR.kr_ibm106"},
                                                    {"de_DE", "de_DE.de_ibm105"}};
  const auto store = [&](const std::string& language) {
    provider.SetValue(DATA_PROVIDER_LANGUAGE, language);
  };
  store("ko_KR");
  std::mt19937 random(std::random_device{}());
  int interrupted = 0;
  for (int round = 0; round < 500; ++round) {
    const pid_t writer = InChild([&] {
      for (;;) {
        store("ko_KR");
        store("de_DE");
      }
      return false;
    });
    usleep(std::uniform_int_distribution(0u, 8000u)(random));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    interrupted += fs::exists(m_folder + "/registry.db-journal") ? 1 : 0;
    const std::string language = Read(DATA_PROVIDER_LANGUAGE).value_or("");
    const std::string type = Read(DATA_PROVIDER_TYPE).value_or("");
    EXPECT_TRUE(types.contains(language)) << language;
    EXPECT_TRUE(type == types.at("ko_KR") || type == types.at("de_DE")) << type;
    store("de_DE");
    EXPECT_EQ(Read(DATA_PROVIDER_TYPE), types.at("de_DE"));
  }
  EXPECT_GT(interrupted, 50) << "in the middle of a write";
}
