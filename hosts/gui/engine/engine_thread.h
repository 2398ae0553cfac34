// The thread of the library: a queue of jobs, of which one runs. Only these
// call operations, apart from a parked one, which lets the window do it; see
// parked_display.h.
//
// Tested by tests/gui/engine/engine_thread_test.cpp
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "gui/engine/job.h"
#include "gui/results/outbox.h"

namespace zenfo::host::gui {

// Only one can exist at a time, because the library has one state per process.
class EngineThread {
 public:
  // `notice` is called on the engine thread when a job has ended and its news
  // can be taken. It must return soon and call nothing here.
  using Notice = std::function<void()>;
  explicit EngineThread(Notice notice);
  // Stops all jobs and waits for the end of the running one.
  ~EngineThread();
  EngineThread(const EngineThread&) = delete;
  EngineThread& operator=(const EngineThread&) = delete;

  // Puts a job behind the others; a running one may give way.
  JobId start(std::unique_ptr<Job> job);
  // The running job ends soon; one that waits ends without having begun. Both
  // end as stopped. An unknown or ended job is left alone.
  void stop(JobId job);
  void stop_all();
  // Whether no job runs or waits; one that is parked does not count.
  bool idle() const;

  // What jobs have told since the last call.
  std::vector<JobNews> take();

 private:
  struct Waiting {
    JobId id = 0;
    std::unique_ptr<Job> job;
    bool stopped = false;
  };

  void run();
  // False when the thread shall end.
  bool next(Waiting& job);
  void perform(Waiting& job);
  void forget_job();
  void end_job(JobEnd end);
  void stop_running();
  void make_way();

  const Notice notice_;
  Outbox outbox_;

  // Shared.
  mutable std::mutex mutex_;
  std::condition_variable given_;
  std::deque<Waiting> waiting_;
  JobId running_ = 0;
  Job* job_ = nullptr;  // that runs
  JobId last_id_ = 0;
  bool ended_ = false;

  std::thread thread_;  // last, so that it ends before what it uses
};

}  // namespace zenfo::host::gui
