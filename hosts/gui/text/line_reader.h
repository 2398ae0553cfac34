// Reads the lines of matches that are in view, on a thread of its own. A new
// wish replaces the old one: what has scrolled away is not read any more.
//
// Tested by tests/gui/text/line_reader_test.cpp
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gui/text/line_marks.h"
#include "gui/text/match_line.h"
#include "shared/system/file_state.h"

namespace zenfo::host::gui {

struct LineWish {
  uint64_t key = 0;  // the caller's name for it
  std::string path;
  Match match;
};

struct FoundLine {
  uint64_t key = 0;
  bool read = false;    // else the file is gone or shorter now
  uint64_t number = 0;  // of the line, from 1; 0 if it cannot be counted
  MatchLine line;
};

class LineReader {
 public:
  // `notice` is called on the reader's thread when there is something to take
  // and nothing was before.
  using Notice = std::function<void()>;
  explicit LineReader(Notice notice);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  // Replaces all wishes that are not fulfilled. Wishes for one file should
  // stand together.
  void want(std::vector<LineWish> wishes);
  // The lines read since the last call, in the order of the wishes.
  std::vector<FoundLine> take();

 private:
  // Line marks of files read before; the last one used is first.
  struct KnownFile {
    std::string path;
    FileFacts facts;
    LineMarks marks;
  };
  static constexpr size_t kKnownFiles = 16;

  void run();
  bool wait(std::vector<LineWish>& wishes, uint64_t& wish);
  void fulfil(const std::vector<LineWish>& wishes, uint64_t wish);
  bool is_old(uint64_t wish) const { return wish_ != wish; }
  FoundLine read(const LineWish& wish);
  LineMarks& marks_of(const std::string& path);
  void give(FoundLine line);

  const Notice notice_;

  // Of the reader's thread.
  FilePart file_;
  std::string open_path_;
  std::list<KnownFile> known_;

  // Shared.
  std::mutex mutex_;
  std::condition_variable wanted_;
  std::vector<LineWish> wishes_;
  std::vector<FoundLine> found_;
  std::atomic<uint64_t> wish_ = 0;  // the number of the newest wish
  bool pending_ = false;
  bool ended_ = false;

  std::thread thread_;  // last, so that it ends before what it uses
};

}  // namespace zenfo::host::gui
