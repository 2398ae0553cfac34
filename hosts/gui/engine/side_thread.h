// Work beside the window's thread, one piece at a time: sorting of many files,
// exports, large copies.
//
// Tested by tests/gui/engine/side_thread_test.cpp
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <utility>

namespace zenfo::host::gui {

class SideThread {
 public:
  // What the work and its owner tell each other.
  struct Control {
    std::atomic<bool> stop = false;  // the work is to end soon
    std::atomic<uint64_t> done = 0;
    std::atomic<uint64_t> all = 0;  // 0: not known
  };
  using Work = std::function<void(Control&)>;
  using Then = std::function<void()>;
  // `notice` is called on the side thread when the work has ended; finish() is
  // to be called then.
  using Notice = std::function<void()>;

  explicit SideThread(Notice notice) : notice_(std::move(notice)) {}
  // Stops the work and waits for it; what was to follow is left out.
  ~SideThread();
  SideThread(const SideThread&) = delete;
  SideThread& operator=(const SideThread&) = delete;

  // Must not be busy. `then` is called by finish(), on the caller's thread.
  void start(Work work, Then then);
  void stop() { control_.stop = true; }
  bool stopped() const { return control_.stop; }
  // Until finish() was called.
  bool busy() const { return busy_; }
  const Control& control() const { return control_; }
  // Why the work broke off; empty if it did not. For `then`.
  const std::string& failure() const { return failure_; }
  // Does nothing while the work goes on.
  void finish();

 private:
  void run();

  const Notice notice_;
  Control control_;
  Work work_;
  Then then_;
  std::string failure_;
  bool busy_ = false;
  std::atomic<bool> ended_ = false;
  std::thread thread_;
};

}  // namespace zenfo::host::gui
