// What the page on the screen shows, and how the keys of a remote control change it. This class
// neither draws nor prints.
#ifndef SCREEN_PAGE_STATE_H
#define SCREEN_PAGE_STATE_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "KeyboardPage.h"

// kToPage is the arrow key that points from an open list to the page. It closes the list. kFirst
// and kLast move within a list.
enum class RemoteKey { kUp, kDown, kReturn, kBack, kToPage, kPageUp, kPageDown, kFirst, kLast };

struct Row {
  Setting setting;
  // Null if there is no problem. Otherwise the registry cannot be read, the setting has no choices,
  // the stored value is not one of them, or a choice was not stored.
  std::optional<std::string> problem;
};

class PageState {
 public:
  // `page` must live longer than the state.
  explicit PageState(KeyboardPage& page);

  void Press(RemoteKey key);
  void Focus(SettingId id) { m_focused = id; }
  // Opens the list of the focused setting, which may be empty. Opens the list of languages if a
  // language must be stored first.
  void Open();

  const std::string& title() const { return m_title; }
  const std::string& help_image() const { return m_help_image; }  // its path on the device
  const Row& row(SettingId id) const { return m_rows[static_cast<std::size_t>(id)]; }
  SettingId focused() const { return m_focused; }
  // The position of the focus in the open list; null if no list is open.
  const std::optional<std::size_t>& list_focus() const { return m_list_focus; }
  // The position in the open list of the choice that could not be stored; otherwise null.
  const std::optional<std::size_t>& failed() const { return m_failed; }
  bool is_left() const { return m_is_left; }  // Back was pressed while no list was open

 private:
  void PressOnPage(RemoteKey key);
  void PressOnList(RemoteKey key);
  void StoreFocused();
  void Close();
  void ReadRows();

  KeyboardPage& m_page;
  std::string m_title;
  std::string m_help_image;
  std::array<Row, kSettingIds.size()> m_rows;
  SettingId m_focused = SettingId::kLanguage;
  std::optional<std::size_t> m_list_focus;
  std::optional<std::size_t> m_failed;
  bool m_is_left = false;
};

#endif
