// Draws the page with EFL, in a window or into a buffer.
#ifndef SCREEN_CANVAS_H
#define SCREEN_CANVAS_H

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
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

// A buffer needs no display. In a buffer, lists open without an animation.
enum class Target { kWindow, kBuffer };

// The place of a text: a part of an object of the layout.
struct Place {
  Evas_Object* object;
  const char* part;
  bool is_line = true;  // otherwise it wraps
};

class Canvas {
 public:
  // `layout` is the path of the program's .edj file. Throws HostError if EFL cannot use it, or if
  // there is no display for a window.
  Canvas(Target target, const std::string& layout);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  // Sets the language of the texts that follow, in the form "ko_KR" or "ko". It decides the font.
  void SetLanguage(const std::string& locale);

  // Shows the page, and prints each of its problems once. The direction of the title decides the
  // layout direction.
  void Show(const PageState& state);

  // Shows the page and passes the keys to it. Run() returns after the user left the page. `state`
  // must live longer than the canvas.
  void Control(PageState& state);

  // Returns after the window was closed or the user left the page.
  static void Run() { ecore_main_loop_begin(); }

  // Writes a PNG file, or leaves the old file as it is. Works for a buffer only. Throws HostError
  // if the file cannot be written.
  void SavePicture(const std::string& file);

  // For the check of texts and for tests: the page, the list, its choices, and the rows "language"
  // and "type".
  Evas_Object* page() const { return m_page; }
  Evas_Object* list() const { return m_list; }
  Evas_Object* choice(std::size_t place) const { return m_choices[place]; }
  Evas_Object* row(const char* part) const { return edje_object_part_swallow_get(m_page, part); }
  const Place& help_text() const { return m_help_text; }
  bool has_help_image() const { return m_has_help_image; }  // valid after Show()

 private:
  void Resize();
  void Layout();
  void Mirror(bool is_mirrored);
  void ShowRow(const char* part, const Row& content, bool focused);
  void LoadHelp(const std::string& image);
  void ShowHelp(const std::string& image, const Setting& setting);
  void ShowList(const PageState& state);
  void PrintOnce(const std::string& problem);
  void Press(const Evas_Event_Key_Down& event);
  void Release(const Evas_Event_Key_Up& event);

  Window m_window;
  Evas_Object* m_page = nullptr;  // the window owns all objects
  Evas_Object* m_list = nullptr;
  Evas_Object* m_help = nullptr;  // the help layout or image
  Place m_help_text = {};
  bool m_has_help_image = false;
  bool m_slides = false;
  int m_width = 0;  // the size for which the layout is made
  int m_height = 0;
  std::set<std::string> m_held;                     // keys
  std::pair<std::string, unsigned int> m_released;  // the last key and its time in milliseconds
  std::string m_font;
  std::vector<Evas_Object*> m_choices;
  std::set<std::string> m_printed;  // problems
  PageState* m_state = nullptr;     // controlled by the keys
};

#endif
