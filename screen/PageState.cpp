#include "PageState.h"

#include <vector>

#include "registry_admin.h"
#include "text.h"

namespace {

Row ReadRow(const KeyboardPage& page, SettingId id) {
  Row row = {page.ReadSetting(id), WhyUnreadable(KeyOf(id))};
  // A type that is not stored needs no choices, because its language may not be stored either.
  const bool needs_choices = id == SettingId::kLanguage || row.setting.value;
  if (!row.problem && needs_choices && row.setting.choices.empty()) {
    row.problem = "no choices for " + Quoted(KeyOf(id));
  }
  return row;
}

}  // namespace

PageState::PageState(KeyboardPage& page)
    : m_page(page), m_title(page.ReadHead().title), m_help_image(page.ReadHelpImage()) {
  ReadRows();
}

void PageState::ReadRows() {
  for (const SettingId id : kSettingIds) {
    m_rows[static_cast<std::size_t>(id)] = ReadRow(m_page, id);
  }
}

void PageState::Press(RemoteKey key) {
  if (m_list_focus) {
    PressOnList(key, *m_list_focus);
  } else {
    PressOnPage(key);
  }
}

void PageState::PressOnPage(RemoteKey key) {
  if (key == RemoteKey::kReturn) {
    Open();
  } else if (key == RemoteKey::kUp || key == RemoteKey::kDown) {
    Focus(key == RemoteKey::kUp ? SettingId::kLanguage : SettingId::kType);
  }
  m_is_left = key == RemoteKey::kBack;
}

void PageState::PressOnList(RemoteKey key, std::size_t& focus) {
  const std::vector<Choice> choices = row(m_focused).setting.choices;
  if (key == RemoteKey::kUp) {
    focus -= focus > 0 ? 1 : 0;
  } else if (key == RemoteKey::kDown) {
    focus += focus + 1 < choices.size() ? 1 : 0;
  } else {
    if (key == RemoteKey::kReturn && !choices.empty()) {
      Store(choices[focus].value);
    }
    m_list_focus.reset();
  }
}

// Reads the rows again, because another program may have changed the registry.
void PageState::Open() {
  ReadRows();
  m_list_focus = row(m_focused).setting.current.value_or(0);
}

void PageState::Store(const std::string& value) {
  m_page.Store(m_focused, value);
  ReadRows();
  Row& stored = m_rows[static_cast<std::size_t>(m_focused)];
  if (!stored.problem && stored.setting.value != value) {
    stored.problem = Quoted(value) + " was not stored";
  }
}
