// What the library takes of a process's memory: pages of its file after loading, and heap after the
// first page of the menu.
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <malloc.h>

#include "device.h"

namespace {

// In KiB: all of the file's mappings that the process wrote to or had relocated, and those that
// it may still write to.
struct Pages {
  long written;
  long writable;
};

Pages LibraryPages() {
  Pages pages = {};
  std::ifstream lines("/proc/self/smaps");
  bool inside = false;
  bool writable = false;
  for (std::string line; std::getline(lines, line);) {
    std::string name;
    std::string value;
    std::istringstream(line) >> name >> value;
    if (name.back() != ':') {  // the line that begins a mapping: its addresses and permissions
      inside = line.find("/libmorvith_dataprovider.so") != std::string::npos;
      writable = value[1] == 'w';
    } else if (inside && name == "Private_Dirty:") {
      pages.written += std::stol(value);
    } else if (inside && writable && name == "Size:") {
      pages.writable += std::stol(value);
    }
  }
  return pages;
}

std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void Release(const data_provider_cbs& cbs, int (*get)(const char*, char**), const char* key) {
  char* text = nullptr;
  get(key, &text);
  cbs.release_string(text);
}

// All that the page shows.
void OpenPage(const data_provider_cbs& cbs) {
  for (const char* key : {kPageKey, kLanguageKey, kTypeKey}) {
    Release(cbs, cbs.get_display_name, key);
    Release(cbs, cbs.get_help_text, key);
    Release(cbs, cbs.get_help_image_path, key);
    Release(cbs, cbs.get_string, key);
    int count = 0;
    cbs.free_list_items(cbs.get_list_items(key, &count), count);
  }
}

}  // namespace

// The first time pays what GLib and gettext keep; the second is the library alone.
int main() {
  const Device device("shipped", Library::kAbsent);
  Pages pages = {};
  std::size_t held[2] = {};
  for (std::size_t& each : held) {
    const std::size_t before = HeapInUse();
    const auto plugin = std::make_unique<Plugin>();
    pages = LibraryPages();
    OpenPage(*plugin->cbs);
    each = HeapInUse() - before;
  }
  std::printf(R"({"written_kib": %ld, "writable_kib": %ld, "heap_first": %zu, "heap_library": %zu})"
              "\n",
              pages.written, pages.writable, held[0], held[1]);
}
