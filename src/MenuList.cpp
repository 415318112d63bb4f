#include "MenuList.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr std::size_t kBufferSize = 256;
constexpr std::size_t kTextLimit = 254;

template <typename T>
T* OrBadAlloc(T* block) {
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

}  // namespace

void FreeMenuList(void** list, int count) noexcept {
  for (int i = 0; list != nullptr && i < count; ++i) {
    auto* item = static_cast<MenuListItem*>(list[i]);
    if (item != nullptr) {
      std::free(item->display_value);
      std::free(item->string_value);
      std::free(item);
      list[i] = nullptr;
    }
  }
  std::free(list);
}

MenuList::MenuList(std::size_t count)
    : m_items(OrBadAlloc(static_cast<void**>(std::calloc(count, sizeof(void*))))) {}

MenuList::~MenuList() { FreeMenuList(m_items, m_count); }

MenuListItem& MenuList::AddItem() {
  auto* item = OrBadAlloc(static_cast<MenuListItem*>(std::calloc(1, sizeof(MenuListItem))));
  m_items[m_count++] = item;
  return *item;
}

void** MenuList::Release() noexcept {
  m_count = 0;
  return std::exchange(m_items, nullptr);
}

char* DuplicateText(const std::string& text) { return OrBadAlloc(strdup(text.c_str())); }

char* DuplicateTextBounded(const std::string& text) {
  char* buffer = OrBadAlloc(static_cast<char*>(std::calloc(1, kBufferSize)));
  text.copy(buffer, kTextLimit);
  return buffer;
}
