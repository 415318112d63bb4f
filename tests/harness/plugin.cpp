#include "plugin.h"

#include <cstdlib>
#include <stdexcept>

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

// scripts/mutate has the tests load a broken one.
const char* PluginFile() {
  const char* given = std::getenv("MORVITH_PLUGIN");
  return given == nullptr ? TEST_PLUGIN : given;
}

}  // namespace

Plugin::Plugin() : Plugin(PluginFile()) {}

Plugin::Plugin(const char* file) : m_file(file), m_library(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
  if (m_library == nullptr) {
    throw std::runtime_error(dlerror());
  }
  create_provider = reinterpret_cast<int (*)(void**)>(dlsym(m_library, "create_provider"));
  delete_provider = reinterpret_cast<int (*)(void**)>(dlsym(m_library, "delete_provider"));
  void* handle = nullptr;
  EXPECT_EQ(create_provider(&handle), 0);
  cbs = static_cast<data_provider_cbs*>(handle);
}

Plugin::~Plugin() {
  void* handle = cbs;
  EXPECT_EQ(delete_provider(&handle), 0);
  EXPECT_EQ(dlclose(m_library), 0);
  EXPECT_EQ(dlopen(m_file, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}
