// The progress of the library, for a host that shows it.
//
// Tested by tests/cli/progress_test.cpp
#pragma once

#include <cstdint>
#include <functional>

#include "zenfofr130.h"

namespace zenfo::host {

class ProgressView {
 public:
  virtual ~ProgressView() = default;
  // Whether the progress is visible to anyone. If not, the library need not
  // report it.
  virtual bool wanted() const = 0;
  // Starts to show the progress of a run over this number of files.
  using Count = std::function<uint32_t()>;
  virtual void begin_run(uint32_t files, Count files_done) = 0;
  virtual void end_run() = 0;
  virtual void show_status(const ZenfoWideChar* text) = 0;
  virtual void show_step(const ProgressRecord& step) = 0;
  // Called when the operation ends, and before the user is asked something.
  virtual void erase() = 0;
};

}  // namespace zenfo::host
