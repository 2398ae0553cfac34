// How far the library has got, for a host that shows it.
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
  // Whether anybody would see it. If not, the library need not report.
  virtual bool wanted() const = 0;
  // From now on a whole run over so many files is shown.
  using Count = std::function<uint32_t()>;
  virtual void begin_run(uint32_t files, Count files_done) = 0;
  virtual void end_run() = 0;
  virtual void show_status(const ZenfoWideChar* text) = 0;
  virtual void show_step(const ProgressRecord& step) = 0;
  // The operation is over, or the user is about to be asked something.
  virtual void erase() = 0;
};

}  // namespace zenfo::host
