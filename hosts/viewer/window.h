// The window. The engine stores, lays out and paints the text; the window
// chooses the page and the options. It exists only during an option question,
// because only then there is something to show.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace zenfo::viewer {

class Window {
 public:
  Window(std::wstring name, bool hex);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Shows the text with its first match highlighted.
  bool open();
  // Handles messages until the window is closed.
  void run();

  HWND handle() const { return handle_; }

 private:
  static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM word,
                                    LPARAM value);
  LRESULT on_message(UINT message, WPARAM word, LPARAM value);
  void on_key(WPARAM key);
  void on_wheel(int turn);
  void paint();
  void repaint();
  void show_text();
  void scroll(int bar, int action, int times = 1);
  void show_match(int32_t match);
  void step(int32_t matches);
  void turn(bool& option);

  std::wstring name_;
  HWND handle_ = nullptr;
  uint32_t top_line_ = 0;
  uint32_t left_column_ = 0;
  bool hex_;
  bool line_numbers_ = true;
  bool fixed_font_ = true;
  int32_t match_ = 0;  // highlighted
  int wheel_ = 0;      // turned but not yet scrolled
};

}  // namespace zenfo::viewer
