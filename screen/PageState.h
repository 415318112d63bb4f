// What the page on the screen shows, and what the keys of a remote control make of it. Draws
// nothing.
#ifndef SCREEN_PAGE_STATE_H
#define SCREEN_PAGE_STATE_H

#include <cstddef>
#include <optional>
#include <vector>

#include "KeyboardPage.h"

enum class RemoteKey { kUp, kDown, kReturn, kBack, kToPage };  // the last from the list alone

struct Row {
  Setting setting;
  bool failed = false;  // there are no choices, or the registry cannot be read or did not take one
};

struct OpenList {
  std::vector<Choice> choices;
  std::size_t focused = 0;
  std::optional<std::size_t> current;  // the choice that is stored
};

class PageState {
 public:
  explicit PageState(const KeyboardPage& page);

  void Press(RemoteKey key);
  // Opens the list of the setting in focus: empty, if there is nothing to choose.
  void Open();
  void Focus(SettingId id) { m_focused = id; }

  const PageHead& head() const { return m_head; }
  const Row& row(SettingId id) const { return id == SettingId::kLanguage ? m_language : m_type; }
  SettingId focused() const { return m_focused; }
  const std::optional<OpenList>& list() const { return m_list; }
  bool is_left() const { return m_is_left; }  // Back was pressed on the page itself

 private:
  void PressOnPage(RemoteKey key);
  void PressOnList(RemoteKey key);
  void StoreFocused();
  void ReadRows();

  const KeyboardPage& m_page;
  PageHead m_head;
  Row m_language;
  Row m_type;
  SettingId m_focused = SettingId::kLanguage;
  std::optional<OpenList> m_list;
  bool m_is_left = false;
};

#endif
