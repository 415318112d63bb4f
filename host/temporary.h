// Files and environment variables that exist during the lifetime of an object. Environment
// variables belong to the process, so use these only while no other thread reads the environment.
#ifndef HOST_TEMPORARY_H
#define HOST_TEMPORARY_H

#include <optional>
#include <string>

#include "platform_setup.h"

// Sets the environment variable `name`. The destructor restores the old value.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::string& value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* m_name;
  std::optional<std::string> m_old_value;
};

// An empty folder. The destructor removes it with its files.
class TemporaryFolder {
 public:
  TemporaryFolder();  // throws HostError if the folder cannot be created
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string PathOf(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

// Makes the platform use an empty registry. Throws HostError if its folder cannot be created.
class TemporaryRegistry {
 private:
  TemporaryFolder m_folder;
  ScopedVariable m_variable{kRegistryVariable, m_folder.PathOf("registry.db")};
};

// Makes the platform use a device profile with these contents.
class TemporaryProfile {
 public:
  explicit TemporaryProfile(const std::string& contents);  // throws HostError if it cannot be saved

 private:
  TemporaryFolder m_folder;
  std::string m_file = m_folder.PathOf("profile.ini");
  ScopedVariable m_variable{kProfileVariable, m_file};
};

#endif
