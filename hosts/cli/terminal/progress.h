// The progress bar: one line on the error stream that is redrawn. It is erased
// at the end, and before anything else goes to the terminal. It appears only on
// a terminal and only when an operation takes a while, and changes at most ten
// times a second.
//
//   [############            ]  52% Now looking for files
//
// Tested by tests/cli/progress_test.cpp
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

#include "shared/frame/progress_view.h"

namespace zenfo::host::cli {

// The bar's line, cut to `columns` bytes.
std::string progress_line(const std::string& status, int percent,
                          size_t columns);
// A callback's text as UTF-8; an unpaired surrogate becomes "?".
std::string utf8_of(const ZenfoWideChar* text);

// The finished part of a run over files, in percent: `done` of `files`, plus
// `percent` of the current phase of the file in hand. A file is first loaded,
// then searched and perhaps changed.
int run_percent(uint32_t done, uint32_t files, bool loading, int percent);

// Erases the bar on the terminal, if there is one. No thread draws it again as
// long as the result lives.
[[nodiscard]] std::unique_lock<std::mutex> erase_progress();

class Progress : public ProgressView {
 public:
  Progress();
  ~Progress() override { Progress::erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  bool wanted() const override { return wanted_; }
  void begin_run(uint32_t files, Count files_done) override;
  void end_run() override { files_ = 0; }
  void show_status(const ZenfoWideChar* text) override;
  void show_step(const ProgressRecord& step) override;
  void erase() override;

 private:
  friend std::unique_lock<std::mutex> erase_progress();

  void erase_drawn();

  using Clock = std::chrono::steady_clock;

  int percent_of(const ProgressRecord& step);

  bool wanted_;
  std::string status_;
  uint32_t files_ = 0;  // of the run; 0: an operation without one
  Count files_done_;
  bool loading_ = false;
  bool counting_ = false;  // files_done_ is running
  int reached_ = 0;        // of the run, in percent; never decreases
  size_t drawn_ = 0;       // bytes on the screen now
  Clock::time_point next_drawing_;
};

}  // namespace zenfo::host::cli
