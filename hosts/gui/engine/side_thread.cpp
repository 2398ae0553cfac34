#include "gui/engine/side_thread.h"

#include <exception>
#include <new>
#include <system_error>
#include <utility>

namespace zenfo::host::gui {

SideThread::~SideThread() {
  stop();
  if (thread_.joinable()) thread_.join();
}

void SideThread::start(Work work, Then then) {
  control_.stop = false;
  control_.done = control_.all = 0;
  work_ = std::move(work);
  then_ = std::move(then);
  failure_.clear();
  busy_ = true;
  ended_ = false;
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    run();  // The system lets no more threads start.
  }
}

void SideThread::run() {
  try {
    work_(control_);
  } catch (const std::bad_alloc&) {
    failure_ = "out of memory";
  } catch (const std::exception& error) {
    failure_ = error.what();
  }
  ended_ = true;
  notice_();
}

void SideThread::finish() {
  if (!busy_ || !ended_) return;
  if (thread_.joinable()) thread_.join();
  work_ = nullptr;
  busy_ = false;
  // It may start the next work.
  const Then then = std::exchange(then_, nullptr);
  if (then) then();
}

}  // namespace zenfo::host::gui
