// The stand-ins themselves, in the processes that use them.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "devinfo.h"
#include "kvreg.h"
#include "qlog.h"

namespace fs = std::filesystem;

namespace {

class StandInTest : public testing::Test {
 protected:
  StandInTest() : m_folder(testing::TempDir() + "stand_ins." + std::to_string(getpid())) {
    fs::create_directories(m_folder);
    setenv("KVREG_FILE", (m_folder / "registry.db").c_str(), 1);
    setenv("QLOG_LEVEL", "warning", 1);
    testing::internal::CaptureStderr();
  }
  ~StandInTest() override { fs::remove_all(m_folder); }

  static std::string Logged() {
    std::string log = testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    return log;
  }

  void UseProfile(const std::string& contents) const {
    const fs::path file = m_folder / "profile.ini";
    std::ofstream(file) << contents;
    setenv("DEVINFO_PROFILE", file.c_str(), 1);
  }

  fs::path m_folder;
};

std::string Read(const char* key) {
  char* value = kvreg_get_str(key);
  const std::string copy = value == nullptr ? "(null)" : value;
  std::free(value);
  return copy;
}

std::vector<int> LanguageIds() {
  devinfo_int_array array = {};
  EXPECT_EQ(devinfo_get_value_int_array(DEVINFO_KEY_SYS_LANG_IDS, &array), 0);
  std::vector<int> ids(array.values, array.values + array.count);
  std::free(array.values);
  return ids;
}

// Runs `work` in a process of its own.
template <typename Work>
pid_t Spawn(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(work() ? 0 : 1);
  }
  return child;
}

int Wait(pid_t child) {
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

}  // namespace

TEST_F(StandInTest, RegistryKeepsValues) {
  EXPECT_EQ(Read("key"), "(null)");
  for (const std::string value : {"ko_KR", "", "한국어 'quoted' \"%s\"", "second"}) {
    EXPECT_EQ(kvreg_set_str("key", value.c_str()), 0);
    EXPECT_EQ(Read("key"), value);
  }
  EXPECT_EQ(Read("Key"), "(null)");
  EXPECT_EQ(Logged(), "");
}

TEST_F(StandInTest, RegistryReportsWhatItCannotDo) {
  const struct {
    const char* name;
    std::string file;
    const char* key;
    bool read_is_silent;  // what was never written is no failure
  } cases[] = {
      {"no folder", m_folder / "none" / "registry.db", "key", true},
      {"a folder", m_folder, "key", false},
      {"no database", m_folder / "text", "key", false},
      {"null key", m_folder / "registry.db", nullptr, false},
  };
  std::ofstream(m_folder / "text") << std::string(4096, 'x');
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    setenv("KVREG_FILE", c.file.c_str(), 1);
    EXPECT_EQ(Read(c.key), "(null)");
    EXPECT_EQ(Logged().rfind("error KVREG: cannot read", 0) == 0, !c.read_is_silent);
    EXPECT_LT(kvreg_set_str(c.key, "value"), 0);
    EXPECT_EQ(Logged().rfind("error KVREG: cannot write", 0), 0u);
  }
  unsetenv("KVREG_FILE");
  EXPECT_LT(kvreg_set_str("key", "value"), 0);
  EXPECT_NE(Logged().find("KVREG_FILE is not set"), std::string::npos);
}

TEST_F(StandInTest, RegistryTakesTwoWritersAtOnce) {
  const auto write = [](const char* key) {
    return Spawn([key] {
      bool stored = true;
      for (int i = 0; i < 100; ++i) {
        stored = stored && kvreg_set_str(key, std::to_string(i).c_str()) == 0;
      }
      return stored;
    });
  };
  const pid_t writers[] = {write("one"), write("two")};
  EXPECT_EQ(Wait(writers[0]), 0);
  EXPECT_EQ(Wait(writers[1]), 0);
  EXPECT_EQ(Read("one") + Read("two"), "9999");
}

TEST_F(StandInTest, RegistrySurvivesAKilledWriter) {
  const std::string values[] = {std::string(20'000, 'a'), std::string(20'000, 'b')};
  kvreg_set_str("key", values[0].c_str());
  for (int round = 0; round < 20; ++round) {
    const pid_t writer = Spawn([&values] {
      for (int i = 0;; ++i) {
        kvreg_set_str("key", values[i % 2].c_str());
      }
      return true;
    });
    usleep(2'000 + 1'700 * round);
    kill(writer, SIGKILL);
    Wait(writer);
    const std::string value = Read("key");
    EXPECT_TRUE(value == values[0] || value == values[1]) << value.size();
    EXPECT_EQ(kvreg_set_str("key", values[0].c_str()), 0);
  }
  EXPECT_EQ(Logged(), "");
}

TEST_F(StandInTest, DeviceSkipsABadIdAndKeepsTheRest) {
  UseProfile("[device]\nsystem_language_ids = 1; x7;;99999999999; -3 ;0\n");
  EXPECT_EQ(LanguageIds(), (std::vector<int>{1, -3, 0}));
  const std::string log = Logged();
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3) << log;
  EXPECT_NE(log.find("entry 2, 'x7', skipped"), std::string::npos) << log;
}

TEST_F(StandInTest, DeviceFailsWithoutAnAnswer) {
  devinfo_int_array array = {};
  bool value = true;
  for (const char* profile : {"", "[device]\n[custom_bool]\nkey=maybe\n", "no key file"}) {
    UseProfile(profile);
    EXPECT_NE(devinfo_get_value_int_array(DEVINFO_KEY_SYS_LANG_IDS, &array), 0) << profile;
    EXPECT_NE(devinfo_get_custom_bool("key", &value), 0) << profile;
  }
  UseProfile("[device]\nsystem_language_ids=1\n[custom_bool]\nkey=false\n");
  EXPECT_NE(devinfo_get_value_int_array(228, &array), 0);
  EXPECT_NE(devinfo_get_value_int_array(DEVINFO_KEY_SYS_LANG_IDS, nullptr), 0);
  EXPECT_NE(devinfo_get_custom_bool(nullptr, &value), 0);
  EXPECT_TRUE(array.count == 0 && array.values == nullptr && value) << "written on failure";
  EXPECT_EQ(devinfo_get_custom_bool("key", &value), 0);
  EXPECT_FALSE(value);
}

TEST_F(StandInTest, LogWritesOneLineAMessageFromTheThresholdUp) {
  const struct {
    const char* level;
    std::string lines;
  } cases[] = {
      {"info", "info T: a\nwarning T: b\nerror T: c?d\n"},
      {"warning", "warning T: b\nerror T: c?d\n"},
      {"error", "error T: c?d\n"},
      {"none", ""},
      {"misspelt", "info T: a\nwarning T: b\nerror T: c?d\n"},
  };
  for (const auto& c : cases) {
    setenv("QLOG_LEVEL", c.level, 1);
    __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_INFO, "T", "%s", "a");
    __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_WARNING, "T", "b\n");
    __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_ERROR, "T", "c\nd");
    EXPECT_EQ(Logged(), c.lines) << c.level;
  }
  __qlog_print(QLOG_ID_MAIN, QLOG_PRIORITY_ERROR, "T", "%s", std::string(9'000, 'x').c_str());
  EXPECT_EQ(Logged(), "error T: " + std::string(4'095, 'x') + "\n");
}
