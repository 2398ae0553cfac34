#include "files/preloader.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "files/file_content.h"
#include "platform/threads.h"

namespace zenfo {
namespace {

// Few enough that the first of a batch is not waited for long; several, because
// neighbours share a folder.
constexpr size_t kBatch = 4;
// Most files fit, so that buffers hardly ever grow.
constexpr size_t kUsualSize = 50000;

class Loading final : public FileWork {
 public:
  bool handle(PreloadedFile& file, platform::NearbyFolder& folder,
              size_t thread) override;
};

bool Loading::handle(PreloadedFile& file, platform::NearbyFolder& folder,
                     size_t /*thread*/) {
  platform::InputFile input;
  if (!input.open_ordinary(file.path.c_str(), FileContent::kLargestTaken,
                           file.stamp, &folder)) {
    return false;
  }
  const auto size = static_cast<size_t>(file.stamp.version.size);
  if (size == 0 || !file.bytes.reserve(std::max(size, kUsualSize) + 1, 0)) {
    return false;
  }
  // The byte more shows a file that has grown.
  const int64_t got = input.read(file.bytes.data(), size + 1);
  file.size = static_cast<uint32_t>(size);
  return got == static_cast<int64_t>(size);
}

}  // namespace

Preloader::Preloader(size_t threads, std::unique_ptr<FileWork> work)
    : work_(std::move(work)), folders_(threads + 1) {
  if (work_ == nullptr) work_ = std::make_unique<Loading>();
  threads_.reserve(threads);
  const platform::SignalsKeptAway signals;
  try {
    for (size_t i = 1; i <= threads; ++i) {
      threads_.emplace_back([this, i] { this->work(i); });
    }
  } catch (const std::system_error&) {
    // Those that were started will do.
  } catch (...) {
    stop();
    throw;
  }
}

Preloader::~Preloader() { stop(); }

void Preloader::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  to_do_.notify_all();
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
}

void Preloader::add(std::span<const SharedText> paths) {
  for (size_t i = 0; i < paths.size(); ++i) {
    Place& next = places_[place(added_ + i)];
    next.path = paths[i].c_str();
    next.ready.store(false, std::memory_order_relaxed);
  }
  {
    const std::lock_guard lock(mutex_);
    added_ += paths.size();
  }
  to_do_.notify_all();
}

PreloadedFile& Preloader::take() {
  Place& next = places_[place(taken_)];
  while (!next.ready.load(std::memory_order_acquire)) {
    Claim files{};
    {
      const std::lock_guard lock(mutex_);
      files = claim(1);
    }
    if (files.begin != files.end) {
      load(files, 0);
    } else {
      wait_for(next);
    }
  }
  ++taken_;
  return next;
}

void Preloader::drop() {
  std::unique_lock lock(mutex_);
  claimed_ = added_;
  done_.wait(lock, [&] { return busy_ == 0; });
  taken_ = added_;
}

// The next files that nobody has claimed, none when there are none. The mutex
// is locked.
Preloader::Claim Preloader::claim(size_t most) {
  const size_t begin = claimed_;
  claimed_ = std::min(added_, begin + most);
  return {begin, claimed_};
}

void Preloader::work(size_t thread) noexcept {
  std::unique_lock lock(mutex_);
  for (;;) {
    to_do_.wait(lock,
                [&] { return stopping_ || (!resting_ && claimed_ != added_); });
    if (stopping_) return;
    const Claim files = claim(kBatch);
    ++busy_;
    lock.unlock();
    load(files, thread);
    lock.lock();
    --busy_;
    done_.notify_one();
  }
}

void Preloader::load(const Claim& claim, size_t thread) noexcept {
  Folder& folder = folders_[thread];
  for (size_t file = claim.begin; file < claim.end; ++file) {
    Place& next = places_[place(file)];
    next.done = false;
    try {
      if (folder == nullptr)
        folder = std::make_unique<platform::NearbyFolder>();
      next.done = work_->handle(next, *folder, thread);
    } catch (...) {
      // Lack of memory: the user may have more luck.
    }
    finish(next);
  }
}

// Either the user sees that the file is done, or it is seen here that the user
// waits.
void Preloader::finish(Place& place) noexcept {
  place.ready.store(true);
  if (!user_waits_.load()) return;
  const std::lock_guard lock(mutex_);
  done_.notify_one();
}

void Preloader::wait_for(const Place& place) {
  std::unique_lock lock(mutex_);
  user_waits_.store(true);
  done_.wait(lock, [&] { return place.ready.load(); });
  user_waits_.store(false);
}

void Preloader::begin_rest() {
  std::unique_lock lock(mutex_);
  resting_ = true;
  done_.wait(lock, [&] { return busy_ == 0; });
  for (Folder& folder : folders_) folder.reset();
}

void Preloader::end_rest() {
  {
    const std::lock_guard lock(mutex_);
    resting_ = false;
  }
  to_do_.notify_all();
}

}  // namespace zenfo
