#include "gui/engine/engine_thread.h"

#include <chrono>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "shared/frame/failure.h"
#include "shared/frame/messages.h"
#include "shared/frame/progress_view.h"
#include "shared/system/stop.h"

namespace zenfo::host::gui {
namespace {

constexpr int kStopAsked = 1;  // any status

// What the code that hosts share complains of could not be searched.
class OutboxMessages : public Messages {
 public:
  explicit OutboxMessages(Outbox& outbox) : outbox_(outbox) {}
  void complain(std::string_view subject, std::string_view reason) override {
    outbox_.add(OtherFile{std::string(subject), ResultState::kNotSearched,
                          std::string(reason)});
  }
  void remark(std::string_view subject, std::string_view reason) override {
    complain(subject, reason);
  }

 private:
  Outbox& outbox_;
};

class OutboxProgress : public ProgressView {
 public:
  explicit OutboxProgress(Outbox& outbox) : outbox_(outbox) {}
  bool wanted() const override { return true; }
  void begin_run(uint32_t files, Count) override { outbox_.set_files(files); }
  void end_run() override {}
  // The host's own calls in the question report other phases.
  void show_status(const ZenfoWideChar* text) override {
    constexpr std::string_view kLoading = "Now loading file ";
    for (const char c : kLoading) {
      if (*text++ != static_cast<ZenfoWideChar>(c)) return;
    }
    outbox_.begin_file(text);
  }
  void show_step(const ProgressRecord&) override {}
  void erase() override {}

 private:
  Outbox& outbox_;
};

std::string reason_of(const Failure& failure) {
  return failure.subject.empty() ? failure.reason
                                 : failure.subject + ": " + failure.reason;
}

JobEnd end_of(Job& job, Outbox& outbox) {
  try {
    OutboxMessages messages(outbox);
    OutboxProgress progress(outbox);
    Session session(messages, progress);
    job.run(session, outbox);
    return {};
  } catch (const Stopped&) {
    return {JobOutcome::kStopped, "", 0};
  } catch (const Failure& failure) {
    return {JobOutcome::kFailed, reason_of(failure), 0};
  } catch (const std::bad_alloc&) {
    return {JobOutcome::kFailed, "out of memory", 0};
  } catch (const std::exception& error) {
    return {JobOutcome::kFailed, error.what(), 0};
  }
}

}  // namespace

EngineThread::EngineThread(Notice notice)
    : notice_(std::move(notice)), thread_([this] { run(); }) {}

EngineThread::~EngineThread() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    stop_running();
  }
  given_.notify_one();
  thread_.join();
  system::forget_stop();
}

JobId EngineThread::start(std::unique_ptr<Job> job) {
  JobId id = 0;
  {
    const std::lock_guard lock(mutex_);
    id = ++last_id_;
    waiting_.push_back({id, std::move(job), false});
    make_way();
  }
  given_.notify_one();
  return id;
}

void EngineThread::stop(JobId job) {
  const std::lock_guard lock(mutex_);
  if (job != 0 && job == running_) stop_running();
  for (Waiting& waiting : waiting_) waiting.stopped |= waiting.id == job;
}

void EngineThread::stop_all() {
  const std::lock_guard lock(mutex_);
  stop_running();
  for (Waiting& waiting : waiting_) waiting.stopped = true;
}

// Under the lock, like the next one. A parked job sees no stop.
void EngineThread::stop_running() {
  if (running_ == 0) return;
  system::note_stop(kStopAsked);
  if (job_ != nullptr) job_->give_way();
}

void EngineThread::make_way() {
  if (job_ != nullptr && !waiting_.empty() && job_->give_way()) {
    system::note_stop(kStopAsked);
  }
}

// Under the lock, so that whoever has seen a job's end also sees it gone.
std::vector<JobNews> EngineThread::take() {
  const std::lock_guard lock(mutex_);
  return outbox_.take();
}

bool EngineThread::idle() const {
  const std::lock_guard lock(mutex_);
  const bool rests = running_ == 0 || (job_ != nullptr && job_->is_parked());
  return rests && waiting_.empty();
}

void EngineThread::run() {
  Waiting job;
  while (next(job)) perform(job);
}

// A stop that came when its job had just ended must not end the next one.
bool EngineThread::next(Waiting& job) {
  std::unique_lock lock(mutex_);
  given_.wait(lock, [&] { return ended_ || !waiting_.empty(); });
  if (ended_) return false;
  job = std::move(waiting_.front());
  waiting_.pop_front();
  running_ = job.id;
  job_ = job.job.get();
  system::forget_stop();
  make_way();
  return true;
}

void EngineThread::perform(Waiting& job) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  outbox_.begin(job.id);
  JobEnd end{JobOutcome::kStopped, "", 0};
  if (!job.stopped) end = end_of(*job.job, outbox_);
  forget_job();
  job.job.reset();
  end.milliseconds = static_cast<uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() -
                                                            start)
          .count());
  end_job(std::move(end));
}

void EngineThread::forget_job() {
  const std::lock_guard lock(mutex_);
  job_ = nullptr;
}

void EngineThread::end_job(JobEnd end) {
  {
    const std::lock_guard lock(mutex_);
    running_ = 0;
    outbox_.end(std::move(end));
  }
  notice_();
}

}  // namespace zenfo::host::gui
