// Rewrites a file from the text in memory: gaps unchanged, matches as an engine
// says.
//
// The file is overwritten from its start and cut at the end, which leaves the
// same bytes as emptying it first and does less work on the disk. Long pieces
// of text are written at once. If the destination asks for it, the new file is
// written beside the old one: then the old one stays when the writing ends
// early.
//
// Tested by tests/unit/replace/rewriter_test.cpp
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "pattern/context.h"
#include "pattern/match_record.h"
#include "platform/next_version.h"
#include "text/out_file.h"

namespace zenfo {

// The file that a rewritten text goes to.
struct Destination {
  // Overwrites whatever is at that path.
  Destination(const char* file) : path(file) {}
  // Only while it has the version that was loaded, if that is known. `result`
  // receives how it opened.
  Destination(const char* file, const platform::FileVersion* version,
              platform::Opened* result, bool write_beside = false)
      : path(file), loaded(version), opened(result), beside(write_beside) {}

  const char* path;
  const platform::FileVersion* loaded = nullptr;
  platform::Opened* opened = nullptr;
  // The new text is written beside the file and replaces it in one step, where
  // that is possible.
  bool beside = false;
};

class Rewriter {
 public:
  enum class Until { kEnd, kNul };

  // `text` is the part of the context's text that is written, from its start,
  // perhaps only up to its first NUL.
  Rewriter(PatternContext& context, std::string_view text,
           Until until = Until::kEnd)
      : context_(context),
        text_(text),
        searched_(until == Until::kEnd ? text.size() : 0) {}

  // Walks the matches in list order. `put(file, match, matched)` writes what
  // replaces a selected match; `matched` are the match's bytes inside the text.
  // Returns the number of matches written; -1 when the file cannot be opened or
  // written, the host interrupts, or a record is not a match. A file that was
  // opened then stays as far as it was written.
  template <class Put>
  int32_t write(const Destination& destination, Put put);

 private:
  bool open(const Destination& destination);
  platform::Opened open_loaded(const Destination& destination);
  bool close(const Destination& destination);
  // The next selected match; null at the end or on failure.
  const MatchRecord* next_match();
  void report(uint32_t position);
  // Cuts the text at its first NUL if that is before `offset`. Searches piece
  // by piece, so that the text is still cached when it is written.
  void find_end(size_t offset);
  void write_gap(size_t offset);

  PatternContext& context_;
  std::string_view text_;
  size_t searched_;  // text before it contains no NUL that would end it
  platform::NextVersion
      next_;  // outlives the file, which is closed before it is deleted
  OutFile file_;
  size_t cursor_ = 0;  // text before it is written
  uint32_t position_ = 0;
  size_t next_report_ = 0;  // the least position that will be reported
  bool failed_ = false;
};

template <class Put>
int32_t Rewriter::write(const Destination& destination, Put put) {
  // Before the file is opened, so that lack of memory leaves it whole.
  file_.expect(text_.size());
  if (!open(destination)) return -1;
  int32_t count = 0;
  context_.report_progress(0, context_.matches.count());
  while (const MatchRecord* match = next_match()) {
    write_gap(match->offset);
    find_end(size_t{match->offset} + match->length);
    // Intended: a match that overlaps the one before is written all the same.
    const std::string_view matched = text_.substr(match->offset, match->length);
    put(file_, *match, matched);
    cursor_ = std::max(cursor_, match->offset + matched.size());
    ++count;
  }
  if (failed_) return -1;
  find_end(text_.size());
  write_gap(text_.size());
  const uint32_t matches = context_.matches.count();
  context_.report_progress(matches, matches);
  return close(destination) ? count : -1;
}

}  // namespace zenfo
