#include "search/read_ahead.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "frame/callbacks.h"
#include "platform/environment.h"
#include "platform/threads.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

constexpr size_t kMostThreads = 8;
// With fewer files to come, threads cost more than they save.
constexpr size_t kFewFiles = 32;

}  // namespace

size_t parse_threads(std::string_view text, size_t processors) {
  size_t wanted = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, wanted);
  if (error != std::errc() || stop != end || wanted == 0) wanted = processors;
  return std::clamp<size_t>(wanted, 1, kMostThreads);
}

size_t chosen_threads() {
  return parse_threads(platform::environment("ZENFO_THREADS"),
                       platform::processors());
}

void ReadAhead::add_output(const char* path) {
  if (!is_empty(path)) outputs_.emplace_back(path);
}

void ReadAhead::look_at_outputs() {
  if (!loader_) return;
  output_versions_.clear();
  for (const std::string& path : outputs_) {
    platform::FileStamp stamp;
    if (platform::read_stamp(path.c_str(), stamp)) {
      output_versions_.push_back(stamp.version);
    }
  }
}

int32_t ReadAhead::load(const SharedText& path, FileSource& source) {
  counted_.reset();
  if (!loader_ && !start(source)) return load_now(path.c_str());
  PreloadedFile* const file = next(path);
  add_upcoming(source);
  if (file == nullptr || !file->done || !is_as_read(*file)) {
    return load_now(path.c_str());
  }
  if (make_work_) {
    content_.pass_over(file->size);
    counted_ = file->found;
    return static_cast<int32_t>(file->size);
  }
  return content_.take_file_content(path.c_str(), file->bytes, file->size);
}

// Not where the host could try to delete or lock a file while a thread has it
// open, and so notice it.
bool ReadAhead::start(FileSource& source) {
  if (tried_) return false;
  tried_ = true;
  if (!platform::kReadingHindersNobody && host_may_act()) return false;
  const size_t threads = chosen_threads();
  if (threads < 2 || source.upcoming(kFewFiles).size() < kFewFiles) {
    return false;
  }
  try {
    loader_.emplace(threads - 1,
                    make_work_ ? make_work_(threads - 1) : nullptr);
  } catch (...) {
    return false;  // no memory for it
  }
  look_at_outputs();
  return true;
}

// The file, if it is the one that was to be expected; else the host has chosen
// other files since, and what was read ahead is of no use.
PreloadedFile* ReadAhead::next(const SharedText& path) {
  if (loader_->waiting() == 0) return nullptr;
  if (loader_->next_path() == path.c_str()) return &loader_->take();
  loader_->drop();
  return nullptr;
}

void ReadAhead::add_upcoming(FileSource& source) {
  const size_t waiting = loader_->waiting();
  if (waiting > Preloader::kMostWaiting / 2) return;
  const std::vector<SharedText> paths =
      source.upcoming(Preloader::kMostWaiting);
  if (paths.size() > waiting) {
    loader_->add(std::span(paths).subspan(waiting));
  }
}

bool ReadAhead::is_as_read(const PreloadedFile& file) {
  if (is_output(file.stamp.version)) return false;
  return !host_may_act() ||
         platform::has_stamp(file.path.c_str(), file.stamp, &nearby_);
}

bool ReadAhead::is_output(const platform::FileVersion& version) const {
  return std::any_of(output_versions_.begin(), output_versions_.end(),
                     [&](const platform::FileVersion& output) {
                       return output.volume == version.volume &&
                              output.number == version.number;
                     });
}

// The threads may have had the last handles of the process.
int32_t ReadAhead::load_now(const char* path) {
  const int32_t length = content_.load_file_content(path, &nearby_);
  if (length >= 0 || content_.opened() || !loader_) return length;
  const Preloader::Rest rest(*loader_);
  return content_.load_file_content(path, &nearby_);
}

}  // namespace zenfo
