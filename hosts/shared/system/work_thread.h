// A thread that works on items in the order in which they are given, beside the
// thread that gives them. Few items wait at a time, so memory stays bounded.
//
// Tested by tests/hosts/shared/work_thread_test.cpp
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "shared/system/paths.h"

namespace zenfo::host {

// Whether more than one thread may work: there are processors for them, and
// ZENFO_THREADS, which the library reads too, does not forbid it.
inline bool may_use_threads() {
  return std::thread::hardware_concurrency() > 1 &&
         environment("ZENFO_THREADS") != "1";
}

template <class Item>
class WorkThread {
 public:
  using Work = std::function<void(Item&)>;

  explicit WorkThread(Work work) : work_(std::move(work)) {}
  // Works on all items that were given.
  ~WorkThread() { end(); }
  WorkThread(const WorkThread&) = delete;
  WorkThread& operator=(const WorkThread&) = delete;

  // Gives an item of about this many bytes; waits while too many are waiting.
  // The thread starts with the first items.
  void give(Item item, size_t bytes) {
    batch_.push_back(std::move(item));
    batch_bytes_ += bytes;
    if (batch_.size() >= kBatch || batch_bytes_ >= kBatchBytes) hand_over();
  }

  // Whether the work ended with an exception; the items after it are dropped.
  bool failed() const { return failed_; }

  // Waits until all is done and throws what the work threw.
  void finish() {
    end();
    if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
  }

 private:
  // Waking the thread takes longer than working on a small item.
  static constexpr size_t kBatch = 32;
  static constexpr size_t kBatchBytes = size_t{64} * 1024;
  static constexpr size_t kMostBytes = size_t{8} * 1024 * 1024;

  void hand_over() {
    if (!start()) {
      for (Item& item : batch_) work_on(item);
      batch_.clear();
      return;
    }
    std::unique_lock lock(mutex_);
    taken_.wait(lock, [&] { return waiting_bytes_ < kMostBytes; });
    for (Item& item : batch_) waiting_.push_back(std::move(item));
    waiting_bytes_ += std::exchange(batch_bytes_, 0);
    batch_.clear();
    lock.unlock();
    given_.notify_one();
  }

  // False if the system lets no more threads start.
  bool start() {
    if (thread_.joinable()) return true;
    try {
      thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
    }
    return thread_.joinable();
  }

  void end() {
    if (!batch_.empty()) hand_over();
    if (!thread_.joinable()) return;
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    given_.notify_one();
    thread_.join();
  }

  void run() {
    std::vector<Item> items;
    while (take(items)) {
      for (Item& item : items) work_on(item);
      items.clear();
    }
  }

  // False at the end.
  bool take(std::vector<Item>& items) {
    std::unique_lock lock(mutex_);
    given_.wait(lock, [&] { return ended_ || !waiting_.empty(); });
    items.swap(waiting_);
    waiting_bytes_ = 0;
    lock.unlock();
    taken_.notify_one();
    return !items.empty();
  }

  void work_on(Item& item) {
    if (failed_) return;
    try {
      work_(item);
    } catch (...) {
      thrown_ = std::current_exception();
      failed_ = true;
    }
  }

  const Work work_;
  std::thread thread_;
  std::exception_ptr thrown_;  // read after the thread's end
  std::atomic<bool> failed_ = false;

  // Of the thread that gives.
  std::vector<Item> batch_;
  size_t batch_bytes_ = 0;

  // Shared.
  std::mutex mutex_;
  std::condition_variable given_;
  std::condition_variable taken_;
  std::vector<Item> waiting_;
  size_t waiting_bytes_ = 0;
  bool ended_ = false;
};

}  // namespace zenfo::host
