// The library's display of one file, kept for the window to paint.
//
// Matches and display exist only while the library asks its question. So a job
// searches the file again and waits inside the question: it is parked.
// Meanwhile the window's thread makes the display calls itself, one at a time.
// Why so: PaintDisplay() calls BeginPaint(), which must come from the thread
// that owns the window. A window of the engine thread would tie the keys and
// clicks of all windows to it, and a search would make them wait. Calls of a
// parked display are short, because only what is seen is painted, and the next
// job ends the parking, so no search waits for a page.
//
// Tested by tests/gui/engine/display_job_test.cpp
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>

namespace zenfo::host::gui {

class ParkedDisplay {
 public:
  // `notice` is called on the engine thread when the display can be used.
  using Notice = std::function<void()>;
  explicit ParkedDisplay(Notice notice) : notice_(std::move(notice)) {}

  // Of any thread: the display is not needed any more, and cannot be used.
  void leave();
  bool is_left() const;
  bool is_parked() const;
  // Calls `look` while display calls are allowed, and nothing else can make
  // them; it must call nothing of this object. False, without a call, while the
  // display cannot be used.
  bool use(const std::function<void()>& look);

  // Of the engine thread, in the question: waits until leave().
  void park();

 private:
  const Notice notice_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool parked_ = false;
  bool left_ = false;
};

}  // namespace zenfo::host::gui
