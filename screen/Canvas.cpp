#include "Canvas.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string_view>

#include <Ecore_X.h>
#include <Efreet.h>
#include <glib.h>

#include "error.h"
#include "fonts.h"
#include "platform_setup.h"
#include "temporary.h"
#include "text.h"

namespace {

constexpr char kNothing[] = "\u2014";      // an em dash
constexpr char kTextClass[] = "text";      // of the page
constexpr char kHelpTextClass[] = "help";  // of the help layout
constexpr int kLayoutSize = -100;          // 100 percent of the size in the layout
constexpr std::size_t kPlaces = 10;        // for choices
constexpr int kWaylandTopLevel = 1;        // ECORE_WL2_WINDOW_TYPE_TOPLEVEL, from a beta header
constexpr std::string_view kPngEnd = "IEND\xAE\x42\x60\x82";

const std::map<std::string, RemoteKey> kKeys = {  // the names of X11
    {"Up", RemoteKey::kUp},         {"Down", RemoteKey::kDown},
    {"Return", RemoteKey::kReturn}, {"KP_Enter", RemoteKey::kReturn},
    {"Select", RemoteKey::kReturn}, {"Escape", RemoteKey::kBack},
    {"XF86Back", RemoteKey::kBack}, {"BackSpace", RemoteKey::kBack},
    {"Prior", RemoteKey::kPageUp},  {"XF86ChannelUp", RemoteKey::kPageUp},
    {"Next", RemoteKey::kPageDown}, {"XF86ChannelDown", RemoteKey::kPageDown},
    {"Home", RemoteKey::kFirst},    {"End", RemoteKey::kLast}};

// Returns null for a key that has no function. An open list is on the right, so Left points to the
// page. In a mirrored page, the list is on the left.
std::optional<RemoteKey> RemoteKeyOf(const std::string& name, bool is_mirrored) {
  if (name == (is_mirrored ? "Right" : "Left")) {
    return RemoteKey::kToPage;
  }
  const auto found = kKeys.find(name);
  return found == kKeys.end() ? std::nullopt : std::optional(found->second);
}

void StartEfl(const std::string& layout) {
  // EFL prints a stack trace with each error. This program reports errors itself.
  setenv("EINA_LOG_LEVEL", std::to_string(EINA_LOG_LEVEL_CRITICAL).c_str(), 0);
  // A television's page needs neither session services nor desktop menus.
  ecore_app_no_system_modules();
  // EFL ends the process if this variable is not set and EFL cannot create a runtime folder.
  setenv("XDG_RUNTIME_DIR", g_get_tmp_dir(), 0);
  efreet_cache_disable();
  // EFL reads the rules for fonts from a file only.
  const std::string fonts = std::filesystem::path(layout).replace_filename("fonts.conf");
  setenv("FONTCONFIG_FILE", fonts.c_str(), 1);
  if (ecore_evas_init() == 0 || edje_init() == 0) {
    throw HostError("cannot start EFL");
  }
}

void EndWithoutDisplay(void* /*data*/) {
  std::fputs("menu_screen: the connection to the display was lost\n", stderr);
  std::_Exit(EXIT_FAILURE);
}

Eina_Bool Quit(void* /*data*/, int /*type*/, void* /*event*/) {
  ecore_main_loop_quit();
  return ECORE_CALLBACK_DONE;
}

// EFL falls back to a buffer if there is no display.
Window OpenWindow() {
  Window window(ecore_evas_new(nullptr, 0, 0, 1, 1, nullptr));
  const std::string engine = window ? ecore_evas_engine_name_get(window.get()) : "buffer";
  if (engine == "buffer") {
    throw HostError("no display found for a window; '--picture FILE.png' needs none");
  }
  // EFL gives a Wayland window no type. Without a type, the window is invisible.
  if (engine.starts_with("wayland")) {
    ecore_evas_wayland_type_set(window.get(), kWaylandTopLevel);
  }
  ecore_x_io_error_handler_set(EndWithoutDisplay, nullptr);
  ecore_event_handler_add(ECORE_EVENT_SIGNAL_HUP, Quit, nullptr);
  return window;
}

template <typename Event, auto Handle>
void Call(void* canvas, Evas* /*evas*/, Evas_Object* /*object*/, void* event) {
  (static_cast<Canvas*>(canvas)->*Handle)(*static_cast<Event*>(event));
}

void SetText(Evas_Object* object, const std::string& part, const std::string& text) {
  edje_object_part_text_unescaped_set(object, part.c_str(), text.c_str());
}

void Switch(Evas_Object* object, const char* signal, bool is_on) {
  edje_object_signal_emit(object, signal, is_on ? "on" : "off");
}

bool IsRightToLeft(Evas* evas, const std::string& text, const std::string& font) {
  Evas_Object* label = evas_object_text_add(evas);
  evas_object_text_font_set(label, font.c_str(), 10);
  evas_object_text_text_set(label, text.c_str());
  const bool is_right_to_left = evas_object_text_direction_get(label) == EVAS_BIDI_DIRECTION_RTL;
  evas_object_del(label);
  return is_right_to_left;
}

// Returns the first visible choice. The list scrolls with its focus in the middle.
std::size_t FirstShown(std::size_t focused, std::size_t count) {
  const std::size_t before = focused - std::min(focused, kPlaces / 2);
  return std::min(before, count - std::min(count, kPlaces));
}

}  // namespace

Canvas::Canvas(Target target, const std::string& layout) {
  StartEfl(layout);
  const bool is_window = target == Target::kWindow;
  m_window = is_window ? OpenWindow() : Window(ecore_evas_buffer_new(1, 1));
  m_slides = is_window;
  m_page = edje_object_add(ecore_evas_get(m_window.get()));
  if (edje_object_file_set(m_page, layout.c_str(), "page") == EINA_FALSE) {
    throw HostError("cannot use the layout " + Quoted(layout) + ": " +
                    edje_load_error_str(edje_object_load_error_get(m_page)));
  }
  m_list = edje_object_part_swallow_get(m_page, "list");
  for (std::size_t i = 0; i < kPlaces; ++i) {
    const std::string part = "choice." + std::to_string(i);
    m_choices.push_back(edje_object_part_swallow_get(m_list, part.c_str()));
  }
  edje_object_size_min_get(m_page, &m_width, &m_height);
  ecore_evas_resize(m_window.get(), m_width, m_height);
  ecore_evas_data_set(m_window.get(), "canvas", this);
  ecore_evas_callback_resize_set(m_window.get(), [](Ecore_Evas* window) {
    static_cast<Canvas*>(ecore_evas_data_get(window, "canvas"))->Resize();
  });
  ecore_evas_callback_delete_request_set(m_window.get(),
                                         [](Ecore_Evas*) { ecore_main_loop_quit(); });
  // Another program destroyed the window. EFL frees it after this call.
  ecore_evas_callback_destroy_set(m_window.get(), [](Ecore_Evas* window) {
    auto* canvas = static_cast<Canvas*>(ecore_evas_data_get(window, "canvas"));
    [[maybe_unused]] const Ecore_Evas* freed_by_efl = canvas->m_window.release();
    ecore_main_loop_quit();
  });
  // Without the focus, a window does not receive the release of a held key.
  ecore_evas_callback_focus_out_set(m_window.get(), [](Ecore_Evas* window) {
    static_cast<Canvas*>(ecore_evas_data_get(window, "canvas"))->m_held.clear();
  });
  evas_object_event_callback_add(m_page, EVAS_CALLBACK_KEY_DOWN,
                                 Call<Evas_Event_Key_Down, &Canvas::Press>, this);
  evas_object_event_callback_add(m_page, EVAS_CALLBACK_KEY_UP,
                                 Call<Evas_Event_Key_Up, &Canvas::Release>, this);
  evas_object_focus_set(m_page, EINA_TRUE);
  Resize();
  evas_object_show(m_page);
  ecore_evas_title_set(m_window.get(), "menu_screen");
  ecore_evas_show(m_window.get());
}

Canvas::~Canvas() {
  m_window.reset();
  edje_shutdown();
  ecore_evas_shutdown();
}

void Canvas::Resize() {
  int width = 0;
  int height = 0;
  ecore_evas_geometry_get(m_window.get(), nullptr, nullptr, &width, &height);
  edje_object_scale_set(m_page, std::min(static_cast<double>(width) / m_width,
                                         static_cast<double>(height) / m_height));
  evas_object_resize(m_page, width, height);
  Layout();
}

// The help layout sets its text sizes when it receives the signal that it was resized.
void Canvas::Layout() {
  edje_object_calc_force(m_page);
  edje_message_signal_process();
}

void Canvas::SetLanguage(const std::string& locale) {
  m_font = FontFor(locale);
  edje_text_class_set(kTextClass, m_font.c_str(), kLayoutSize);
}

void Canvas::Show(const PageState& state) {
  SetText(m_page, "title", state.title());
  Mirror(IsRightToLeft(ecore_evas_get(m_window.get()), state.title(), m_font));
  ShowRow("language", state.row(SettingId::kLanguage), state.focused() == SettingId::kLanguage);
  ShowRow("type", state.row(SettingId::kType), state.focused() == SettingId::kType);
  ShowHelp(state.help_image(), state.row(state.focused()).setting);
  ShowList(state);
  Layout();
}

void Canvas::Control(PageState& state) {
  m_state = &state;
  Show(state);
}

void Canvas::PrintOnce(const std::string& problem) {
  if (m_printed.insert(problem).second) {
    std::fprintf(stderr, "menu_screen: %s\n", Printable(problem).c_str());
  }
}

void Canvas::Mirror(bool is_mirrored) {
  edje_object_mirrored_set(m_page, is_mirrored ? EINA_TRUE : EINA_FALSE);
  std::vector<Evas_Object*> objects = {m_page, m_list, row("language"), row("type")};
  objects.insert(objects.end(), m_choices.begin(), m_choices.end());
  for (Evas_Object* object : objects) {
    Switch(object, "mirrored", is_mirrored);
  }
}

void Canvas::ShowRow(const char* part, const Row& content, bool focused) {
  Evas_Object* object = row(part);
  const Setting& setting = content.setting;
  const bool is_odd = setting.value && !setting.current;  // not one of the choices
  const std::string value = is_odd ? "" : setting.CurrentText().value_or(kNothing);
  SetText(object, "name", setting.has_list ? setting.name : "");
  SetText(object, "value", setting.has_list ? value : "");
  SetText(object, "unusable", setting.has_list ? "" : setting.name);
  SetText(object, "unusable.value", setting.has_list ? "" : value);
  SetText(object, "odd", is_odd ? *setting.value : "");
  Switch(object, "trouble", content.problem.has_value());
  if (content.problem) {
    PrintOnce(*content.problem);
  }
  Switch(object, "focus", focused);
}

void Canvas::LoadHelp(const std::string& image) {
  const bool has_layout = image.ends_with(".edj");
  const std::string file = LocateFile(image);
  RefuseSpecialFile(file);
  Evas* evas = ecore_evas_get(m_window.get());
  m_help = has_layout ? edje_object_add(evas) : evas_object_image_filled_add(evas);
  if (has_layout) {
    m_has_help_image = edje_object_file_set(m_help, file.c_str(), "help") != EINA_FALSE;
  } else {
    evas_object_image_file_set(m_help, file.c_str(), nullptr);
    m_has_help_image = evas_object_image_load_error_get(m_help) == EVAS_LOAD_ERROR_NONE;
  }
  if (!m_has_help_image) {
    PrintOnce("cannot show the help image " + Quoted(file));
  }
  Switch(m_page, "help.trouble", !m_has_help_image);
  edje_object_part_swallow(m_page, has_layout && m_has_help_image ? "help.layout" : "help.picture",
                           m_help);
  m_help_text = has_layout && m_has_help_image ? Place{m_help, "help", false}
                                               : Place{m_page, "help.text", false};
}

void Canvas::ShowHelp(const std::string& image, const Setting& setting) {
  if (m_help == nullptr) {
    LoadHelp(image);
  }
  if (m_help_text.object == m_help) {
    edje_object_text_class_set(m_help, kHelpTextClass, m_font.c_str(), kLayoutSize);
    edje_object_signal_emit(m_help, "language", "");
  }
  SetText(m_help_text.object, m_help_text.part, setting.help);
}

void Canvas::ShowList(const PageState& state) {
  const std::optional<std::size_t>& focus = state.list_focus();
  const std::string moves = m_slides ? "slide," : "";
  edje_object_signal_emit(m_page, "list", (moves + (focus ? "on" : "off")).c_str());
  if (!focus) {
    return;
  }
  const Setting& setting = state.row(state.focused()).setting;
  const std::size_t count = setting.choices.size();
  const std::size_t first = FirstShown(*focus, count);
  SetText(m_list, "title", setting.name);
  SetText(m_list, "position",
          count == 0 ? "" : std::to_string(*focus + 1) + " / " + std::to_string(count));
  Switch(m_list, "trouble", count == 0);
  Switch(m_list, "above", first > 0);
  Switch(m_list, "below", first + kPlaces < count);
  for (std::size_t i = 0; i < kPlaces; ++i) {
    const std::size_t shown = first + i;
    SetText(m_choices[i], "text", shown < count ? setting.choices[shown].text : "");
    Switch(m_choices[i], "used", shown < count);
    Switch(m_choices[i], "focus", shown < count && shown == focus);
    Switch(m_choices[i], "trouble", shown < count && shown == state.failed());
    Switch(m_choices[i], "mark", shown < count && shown == setting.current);
  }
}

void Canvas::Release(const Evas_Event_Key_Up& event) {
  m_held.erase(event.keyname);
  m_released = {event.keyname, event.timestamp};
}

void Canvas::Press(const Evas_Event_Key_Down& event) {
  const bool is_mirrored = edje_object_mirrored_get(m_page) != EINA_FALSE;
  const std::optional<RemoteKey> key = RemoteKeyOf(event.key, is_mirrored);
  // A held key repeats as presses without a release, or as a release and a press at the same time.
  // Only Up and Down repeat.
  const bool is_repeated =
      !m_held.insert(event.keyname).second ||
      m_released == std::pair<std::string, unsigned int>(event.keyname, event.timestamp);
  const bool may_repeat = key == RemoteKey::kUp || key == RemoteKey::kDown;
  if (m_state == nullptr || !key || (is_repeated && !may_repeat)) {
    return;
  }
  m_state->Press(*key);
  Show(*m_state);
  if (m_state->is_left()) {
    ecore_main_loop_quit();
  }
}

// EFL reports no error if the disk is full. So EFL writes a temporary file. Only a complete picture
// is copied to `file`.
void Canvas::SavePicture(const std::string& file) {
  ecore_evas_manual_render(m_window.get());
  Evas_Object* picture = evas_object_image_filled_add(ecore_evas_get(m_window.get()));
  evas_object_image_size_set(picture, m_width, m_height);
  evas_object_image_alpha_set(picture, EINA_FALSE);
  void* pixels = const_cast<void*>(ecore_evas_buffer_pixels_get(m_window.get()));
  evas_object_image_data_set(picture, pixels);
  const TemporaryFolder folder;
  const std::string drawn = folder.PathOf("page.png");
  evas_object_image_save(picture, drawn.c_str(), nullptr, "compress=9");
  evas_object_del(picture);
  g_autoptr(GError) error = nullptr;
  g_autofree gchar* contents = nullptr;
  gsize size = 0;
  if (g_file_get_contents(drawn.c_str(), &contents, &size, &error) == FALSE ||
      !std::string_view(contents, size).ends_with(kPngEnd)) {
    throw HostError("cannot draw the picture in " + Quoted(drawn) +
                    "; free space there, or set TMPDIR to another folder");
  }
  if (g_file_set_contents(file.c_str(), contents, static_cast<gssize>(size), &error) == FALSE) {
    throw HostError("cannot write the picture " + Quoted(file) + ": " + error->message);
  }
}
