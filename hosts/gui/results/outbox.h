// What the engine thread has to tell, kept until the window fetches it.
//
// The window pulls at a rate of its own; a message for each file would keep it
// from painting.
//
// Tested by tests/gui/results/outbox_test.cpp
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "gui/results/result_file.h"
#include "shared/text/found_text.h"
#include "zenfofr130.h"

namespace zenfo::host::gui {

using JobId = uint32_t;  // 0 is none

// A file with matches. They are cut at the caps; `count` is exact.
struct FoundFile {
  std::string path;
  uint64_t size = 0;
  int64_t modified = 0;
  uint32_t count = 0;
  std::vector<Match> matches;
};

// A file without matches, or one that was not searched, with the reason.
struct OtherFile {
  std::string path;
  ResultState state = ResultState::kNoMatch;
  std::string reason;
};

enum class JobPhase { kListing, kChecking, kSearching, kCollecting };

struct JobProgress {
  JobPhase phase = JobPhase::kListing;
  uint32_t files = 0;       // of the run; 0 while they are listed
  uint32_t files_done = 0;  // begun
  std::string path;         // the file in hand
};

enum class JobOutcome { kDone, kStopped, kFailed };

struct JobEnd {
  JobOutcome outcome = JobOutcome::kDone;
  std::string reason;  // of a failure
  uint64_t milliseconds = 0;
};

// What one job has to tell since the last fetch.
struct JobNews {
  JobId job = 0;
  std::vector<FoundFile> found;
  std::vector<OtherFile> others;
  JobProgress progress;
  std::optional<JobEnd> end;
};

// Any thread may call it.
class Outbox {
 public:
  // All calls until end() belong to this job.
  void begin(JobId job);
  void add(FoundFile file);
  void add(OtherFile file);
  void set_phase(JobPhase phase);
  void set_files(uint32_t files);
  // The next file is in hand. Copies the text; to be cheap it is not converted.
  void begin_file(const ZenfoWideChar* path);
  void end(JobEnd end);

  // In the order of the jobs; nothing when there is no news.
  std::vector<JobNews> take();

 private:
  JobNews& last();

  std::mutex mutex_;
  std::vector<JobNews> news_;
  JobId job_ = 0;  // that runs
  JobProgress progress_;
  std::u16string path_;
  bool changed_ = false;  // since the last fetch
};

}  // namespace zenfo::host::gui
