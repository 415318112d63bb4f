// Lists of choices in the form that the host reads and frees. Every block is on the C heap and
// belongs to the list.
#ifndef MORVITH_MENU_LIST_H
#define MORVITH_MENU_LIST_H

#include <cstddef>

struct MenuListItem {
  char* string_value;   // the value that the registry stores for this choice
  char* display_value;  // the text for the viewer
};

// Frees the items with their strings, then the array. The list and its items may be null. If
// `count` is below 1, only the array is freed.
void FreeMenuList(void** list, int count) noexcept;

// A list under construction. The destructor frees the list unless Release() was called.
class MenuList {
 public:
  // Allocates an array of `count` items. Throws std::bad_alloc.
  explicit MenuList(std::size_t count);
  ~MenuList();
  MenuList(const MenuList&) = delete;
  MenuList& operator=(const MenuList&) = delete;

  // Adds an item whose strings are null. Must be called at most `count` times. Throws
  // std::bad_alloc.
  MenuListItem& AddItem();

  // Transfers the array to the caller. It may be null if `count` is 0.
  void** Release() noexcept;

 private:
  void** m_items;
  int m_count = 0;
};

#endif
