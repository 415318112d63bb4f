#include "MenuList.h"

#include <cstdlib>
#include <utility>

#include "heap.h"

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
  std::free(static_cast<void*>(list));
}

MenuList::MenuList(std::size_t count) : m_items(AllocateZeroed<void*>(count)) {}

MenuList::~MenuList() { FreeMenuList(m_items, m_count); }

MenuListItem& MenuList::AddItem() {
  auto* item = AllocateZeroed<MenuListItem>();
  m_items[m_count++] = item;  // if an allocation of its strings fails, the list frees it
  return *item;
}

void** MenuList::Release() noexcept { return std::exchange(m_items, nullptr); }
