// Lists of choices in the form that the host reads and frees: every block is of the C heap, and
// belongs to the list until the host gives the list back.
#ifndef MORVITH_MENU_LIST_H
#define MORVITH_MENU_LIST_H

#include <cstddef>

struct MenuListItem {
  char* string_value;   // the choice, as its registry key stores it
  char* display_value;  // the text for the user
};

// Frees the items, each with its strings, then the array. Null positions and a null list are
// allowed; with a count below 1 the array alone is freed.
void FreeMenuList(void** list, int count) noexcept;

// A list under construction. Frees all that it holds unless it is released to the host.
class MenuList {
 public:
  // Throws std::bad_alloc, as everything here that allocates.
  explicit MenuList(std::size_t count);
  ~MenuList();
  MenuList(const MenuList&) = delete;
  MenuList& operator=(const MenuList&) = delete;

  // Takes the next of the `count` positions. The strings of the item are null.
  MenuListItem& AddItem();

  void** Release() noexcept;

 private:
  void** m_items;
  int m_count = 0;
};

#endif
