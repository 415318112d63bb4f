// The page drawn by EFL, in a window or into a buffer.
#ifndef SCREEN_CANVAS_H
#define SCREEN_CANVAS_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <Ecore.h>
#include <Ecore_Evas.h>
#include <Edje.h>

#include "PageState.h"

struct EcoreEvasDeleter {
  void operator()(Ecore_Evas* window) const { ecore_evas_free(window); }
};
using Window = std::unique_ptr<Ecore_Evas, EcoreEvasDeleter>;

enum class Target { kWindow, kBuffer };  // a buffer needs no display, and nothing moves in it

// Where a text stands: a part of an object of the layout.
struct Place {
  Evas_Object* object;
  const char* part;
};

class Canvas {
 public:
  // `layout` is the program's own .edj. Throws HostError if it cannot be used, or there is no
  // display for a window.
  Canvas(Target target, const std::string& layout);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  // In which language the texts of the page are from now on, of the form "ko_KR" or "ko": it
  // decides on the form of the letters.
  void SetLanguage(const std::string& locale);

  // From which side it is read is seen from its title.
  void Show(const PageState& state);

  // Throws HostError if the file cannot be written. Of a buffer alone.
  void SavePicture(const std::string& file);

  void OnKey(std::function<void(RemoteKey)> on_key) { m_on_key = std::move(on_key); }

  // Returns when the window is closed or Leave() was called.
  static void Run() { ecore_main_loop_begin(); }
  static void Leave() { ecore_main_loop_quit(); }

  // The object of the layout that has these parts, for the check and for tests.
  Evas_Object* page() const { return m_page; }
  Evas_Object* Nested(const std::string& part) const;
  Place help_text() const { return m_help_text; }
  void ShowHelpText(const std::string& text) const;
  bool has_picture() const { return m_has_picture; }  // once a page was shown

 private:
  void Resize();
  void Mirror(bool is_mirrored);
  void ShowRow(const char* part, const Row& row, bool focused) const;
  void LoadHelp(const std::string& image);
  void ShowHelp(const PageHead& head, const Setting& setting);
  void ShowList(const std::optional<OpenList>& list, const Setting& setting);
  void Press(const Evas_Event_Key_Down& event);
  void Release(const Evas_Event_Key_Up& event);

  Window m_window;
  Evas_Object* m_page = nullptr;  // these are the window's own
  Evas_Object* m_help = nullptr;  // the help layout or picture
  Place m_help_text = {};
  bool m_has_picture = false;
  bool m_slides = false;
  int m_width = 0;  // for which the layout is made
  int m_height = 0;
  std::pair<std::string, unsigned int> m_released;  // the key, and when in milliseconds
  std::string m_font;
  std::vector<Evas_Object*> m_choices;
  std::function<void(RemoteKey)> m_on_key;
};

#endif
