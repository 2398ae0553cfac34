// The progress bar: one line on the error stream that is drawn over and over.
// It is erased at the end, and before anything else goes to the terminal. It
// appears only there, only when an operation takes a while, and changes at most
// ten times a second.
//
//   [############            ]  52% Now looking for files
//
// Tested by tests/cli/progress_test.cpp
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "zenfofr130.h"

namespace zenfo::cli {

// The bar's line, at most `columns` bytes of it.
std::string progress_line(const std::string& status, int percent,
                          size_t columns);
// A callback's text as UTF-8; a half of a pair that stands alone becomes "?".
std::string narrow(const ZenfoWideChar* text);

// Erases the bar that stands on the terminal, if any.
void erase_progress();

class Progress {
 public:
  Progress();
  ~Progress() { erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Whether anybody would see the bar. If not, the library need not report.
  bool wanted() const { return wanted_; }
  void show_status(const ZenfoWideChar* text);
  void show_step(const ProgressRecord& step);
  void erase();

 private:
  using Clock = std::chrono::steady_clock;

  bool wanted_;
  std::string status_;
  size_t drawn_ = 0;  // bytes on the screen now
  Clock::time_point next_drawing_;
};

}  // namespace zenfo::cli
