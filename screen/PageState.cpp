#include "PageState.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "error.h"
#include "registry_admin.h"

namespace {

Row ReadRow(const KeyboardPage& page, SettingId id) {
  Row row = {page.ReadSetting(id), false};
  const bool has_list = id == SettingId::kLanguage || row.setting.value;
  row.failed = has_list && page.ReadChoicesIfAny(id).empty();
  try {
    CheckReadable(row.setting.key);
  } catch (const HostError& error) {
    std::fprintf(stderr, "menu_screen: %s\n", error.what());
    row.failed = true;
  }
  return row;
}

}  // namespace

PageState::PageState(const KeyboardPage& page) : m_page(page), m_head(page.ReadHead()) {
  ReadRows();
}

void PageState::ReadRows() {
  m_language = ReadRow(m_page, SettingId::kLanguage);
  m_type = ReadRow(m_page, SettingId::kType);
}

void PageState::Press(RemoteKey key) { m_list ? PressOnList(key) : PressOnPage(key); }

void PageState::PressOnPage(RemoteKey key) {
  if (key == RemoteKey::kReturn) {
    Open();
  } else if (key == RemoteKey::kUp || key == RemoteKey::kDown) {
    Focus(key == RemoteKey::kUp ? SettingId::kLanguage : SettingId::kType);
  }
  m_is_left = key == RemoteKey::kBack;
}

void PageState::PressOnList(RemoteKey key) {
  const std::size_t last = m_list->choices.empty() ? 0 : m_list->choices.size() - 1;
  if (key == RemoteKey::kUp) {
    m_list->focused -= m_list->focused > 0 ? 1 : 0;
  } else if (key == RemoteKey::kDown) {
    m_list->focused += m_list->focused < last ? 1 : 0;
  } else if (key == RemoteKey::kReturn) {
    StoreFocused();
  } else {
    m_list.reset();
  }
}

void PageState::Open() {
  OpenList list;
  list.choices = m_page.ReadChoicesIfAny(m_focused);
  const auto current =
      std::ranges::find(list.choices, row(m_focused).setting.value, &Choice::value);
  if (current != list.choices.end()) {
    list.focused = static_cast<std::size_t>(current - list.choices.begin());
    list.current = list.focused;
  }
  m_list = std::move(list);
}

void PageState::StoreFocused() {
  if (!m_list->choices.empty()) {
    const std::string value = m_list->choices[m_list->focused].value;
    m_page.Store(m_focused, value);
    ReadRows();
    Row& stored = m_focused == SettingId::kLanguage ? m_language : m_type;
    stored.failed |= stored.setting.value != value;
  }
  m_list.reset();
}
