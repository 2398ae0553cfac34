#include "gui/engine/parked_display.h"

namespace zenfo::host::gui {

void ParkedDisplay::leave() {
  const std::lock_guard lock(mutex_);
  left_ = true;
  changed_.notify_all();
}

bool ParkedDisplay::is_left() const {
  const std::lock_guard lock(mutex_);
  return left_;
}

bool ParkedDisplay::is_parked() const {
  const std::lock_guard lock(mutex_);
  return parked_ && !left_;
}

bool ParkedDisplay::use(const std::function<void()>& look) {
  const std::lock_guard lock(mutex_);
  if (!parked_ || left_) return false;
  look();
  return true;
}

void ParkedDisplay::park() {
  {
    const std::lock_guard lock(mutex_);
    parked_ = true;
  }
  notice_();
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return left_; });
  parked_ = false;
}

}  // namespace zenfo::host::gui
