#include "PageState.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "registry_admin.h"
#include "text.h"

namespace {

// The number of choices by which a key moves the focus. The steps of kFirst and kLast are longer
// than any list.
const std::map<RemoteKey, std::ptrdiff_t> kSteps = {
    {RemoteKey::kUp, -1},       {RemoteKey::kDown, 1},       {RemoteKey::kPageUp, -10},
    {RemoteKey::kPageDown, 10}, {RemoteKey::kFirst, -10000}, {RemoteKey::kLast, 10000}};

Row ReadRow(const KeyboardPage& page, SettingId id) {
  Row row = {page.ReadSetting(id), WhyUnreadable(KeyOf(id))};
  // If no type is stored, an empty list is not a problem: perhaps no language is stored.
  const bool needs_choices = id == SettingId::kLanguage || row.setting.value;
  if (!row.problem && needs_choices && row.setting.choices.empty()) {
    row.problem = "no choices for " + Quoted(KeyOf(id));
  } else if (!row.problem && row.setting.value && !row.setting.current) {
    row.problem = Quoted(*row.setting.value) + " is not a choice for " + Quoted(KeyOf(id));
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

void PageState::Press(RemoteKey key) { m_list_focus ? PressOnList(key) : PressOnPage(key); }

void PageState::PressOnPage(RemoteKey key) {
  if (key == RemoteKey::kReturn) {
    Open();
  } else if (key == RemoteKey::kUp || key == RemoteKey::kDown) {
    Focus(key == RemoteKey::kUp ? SettingId::kLanguage : SettingId::kType);
  }
  m_is_left = key == RemoteKey::kBack;
}

void PageState::PressOnList(RemoteKey key) {
  const std::ptrdiff_t count = std::ssize(row(m_focused).setting.choices);
  const auto step = kSteps.find(key);
  if (step != kSteps.end()) {
    const std::ptrdiff_t moved =
        static_cast<std::ptrdiff_t>(m_list_focus.value_or(0)) + step->second;
    m_list_focus = std::max<std::ptrdiff_t>(std::min(moved, count - 1), 0);
  } else if (key == RemoteKey::kReturn && count > 0) {
    StoreFocused();
  } else {
    Close();
  }
}

// Reads the rows again, because another program may have changed the registry.
void PageState::Open() {
  ReadRows();
  if (!row(m_focused).setting.has_list) {
    Focus(SettingId::kLanguage);
  }
  m_list_focus = row(m_focused).setting.current.value_or(0);
}

void PageState::Close() {
  m_list_focus.reset();
  m_failed.reset();
  ReadRows();
}

// The list stays open if the choice was not stored. It keeps its old choices, because a new row has
// no choices if the registry cannot be read.
void PageState::StoreFocused() {
  const std::string value = row(m_focused).setting.choices[m_list_focus.value_or(0)].value;
  m_page.Store(m_focused, value);
  const Row stored = ReadRow(m_page, m_focused);
  if (stored.setting.value == value) {
    Close();
    return;
  }
  m_failed = m_list_focus;
  m_rows[static_cast<std::size_t>(m_focused)].problem =
      stored.problem.value_or(Quoted(value) + " was not stored");
}
