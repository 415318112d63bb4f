// The steps of a settings application that shows the page. At the start, this process has loaded
// none of the libraries that the plug-in needs.
//
// Usage: steps ROOT [answers]. ROOT is laid out like a device. With "answers", requests only the
// list of types, to compare it with other libraries.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

#include <dlfcn.h>
#include <unistd.h>

#include "data_provider.h"
#include "frame.h"

void init_data_provider_cbs(data_provider_cbs* table) { *table = {}; }

namespace {

using Keys = std::initializer_list<const char*>;

constexpr Keys kItems = {DATA_PROVIDER_PAGE, DATA_PROVIDER_LANGUAGE, DATA_PROVIDER_TYPE};

void* g_library = nullptr;
void* g_handle = nullptr;

const data_provider_cbs& Table() { return *static_cast<data_provider_cbs*>(g_handle); }

// The empty library stays loaded, and so do its dependencies.
int LoadDependencies() { return dlopen(BENCH_EMPTY, RTLD_NOW | RTLD_LOCAL) == nullptr ? 0 : 1; }

int Load() {
  g_library = dlopen(BENCH_PLUGIN, RTLD_NOW | RTLD_LOCAL);
  return g_library == nullptr ? 0 : 1;
}

int CallEntry(const char* name) {
  const auto entry = reinterpret_cast<data_provider_entry>(dlsym(g_library, name));
  return entry(&g_handle) == 0 ? 1 : 0;
}

int Create() { return CallEntry("create_provider"); }

int Unload() { return CallEntry("delete_provider") == 1 && dlclose(g_library) == 0 ? 1 : 0; }

// Returns the number of texts.
int AskTexts(int (*get)(const char* key, char** text), Keys keys) {
  int count = 0;
  for (const char* key : keys) {
    char* text = nullptr;
    get(key, &text);
    count += Table().release_string(text) == 0 ? 1 : 0;
  }
  return count;
}

int AskNames() { return AskTexts(Table().get_display_name, kItems); }
int AskHelpTexts() { return AskTexts(Table().get_help_text, kItems); }
int AskValue() { return AskTexts(Table().get_string, {DATA_PROVIDER_TYPE}); }
int AskHelpImage() { return AskTexts(Table().get_help_image_path, {DATA_PROVIDER_PAGE}); }
int SetLanguage() { return Table().set_string(DATA_PROVIDER_LANGUAGE, "ko_KR"); }

// Returns the number of choices.
int AskList(const char* key) {
  int count = 0;
  void** list = Table().get_list_items(key, &count);
  Table().free_list_items(list, count);
  return count;
}

int AskTypes() { return AskList(DATA_PROVIDER_TYPE); }

int AskPage() {
  AskHelpImage();
  AskNames();
  AskHelpTexts();
  AskTexts(Table().get_string, kItems);
  AskList(DATA_PROVIDER_PAGE);
  AskList(DATA_PROVIDER_LANGUAGE);
  return AskTypes();
}

}  // namespace

int main(int count, char** arguments) {
  // The root is the current folder, because the length of a path changes the number of
  // instructions. The comment in host/ui_language.cpp explains the locale C_XX.UTF-8.
  if (chdir(arguments[1]) != 0 || setenv("ROOTFS_DIR", ".", 1) != 0 ||
      setenv("LANGUAGE", "ko", 1) != 0 || std::setlocale(LC_ALL, "C_XX.UTF-8") == nullptr) {
    std::perror("error: cannot set up the root or the locale");
    return EXIT_FAILURE;
  }
  if (count > 2) {
    return Load() == 1 && Create() == 1 ? TakeAnswers(AskTypes) : EXIT_FAILURE;
  }
  return TakeSteps({{"load dependencies", LoadDependencies},
                    {"load", Load},
                    {"create", Create},
                    {"first page", AskPage},
                    {"later page", AskPage, kManyRounds},
                    {"language list", [] { return AskList(DATA_PROVIDER_LANGUAGE); }, kManyRounds},
                    {"type list", AskTypes, kManyRounds},
                    {"names", AskNames, kManyRounds},
                    {"help texts", AskHelpTexts, kManyRounds},
                    {"value", AskValue, kManyRounds},
                    {"help image", AskHelpImage, kManyRounds},
                    {"set language", SetLanguage, kManyRounds},
                    {"unload", Unload}});
}
