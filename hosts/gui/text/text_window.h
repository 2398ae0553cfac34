// Part of a file of any size as rows, with line numbers and marks, forwards and
// backwards, without loading the file.
//
// A row is a line, or a piece of a very long one: a line is cut where the
// file's offset is a multiple of kPiece and no line begins in the kPiece bytes
// before, or up to three bytes later, so that no UTF-8 character is cut. So a
// row's place depends only on what is near it.
//
// Tested by tests/gui/text/text_window_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "gui/text/file_part.h"
#include "gui/text/line_marks.h"
#include "gui/text/shown_text.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {

struct TextRow {
  uint64_t offset = 0;  // of its first byte in the file
  uint64_t end = 0;     // of the next row
  uint64_t number = 0;  // of the line, from 1; 0 if it is not counted yet
  bool begins_line = true;
  std::string bytes;  // without the line's end
  std::vector<Mark> marks;

  bool operator==(const TextRow&) const = default;
};

class TextWindow {
 public:
  static constexpr uint64_t kPiece = 4096;

  // The matches must be in order. False, with a reason, if the file cannot be
  // read. The file is open only during calls.
  bool open(const std::string& path, std::vector<Match> matches,
            std::string* reason);
  uint64_t size() const { return size_; }
  // Whether the file has another size or time than when it was opened.
  bool has_changed() const;

  // The row that contains the offset; the last row for an offset at or after
  // the end of the file.
  uint64_t row_start(uint64_t offset);
  // Rows from the one that contains the offset on, and rows before that one, in
  // the order of the file; fewer at the file's ends.
  std::vector<TextRow> rows_from(uint64_t offset, size_t count);
  std::vector<TextRow> rows_before(uint64_t offset, size_t count);

  // The line at an offset. Reads all before it for the first time, which may
  // take a while in a very large file; rows have numbers where one is known.
  std::optional<uint64_t> count_to(uint64_t offset,
                                   const LineMarks::Stop& stop);
  // Where a line begins; no value behind the last line.
  std::optional<uint64_t> line_start(uint64_t number,
                                     const LineMarks::Stop& stop);

 private:
  class Opened;

  bool begins_line(uint64_t offset);
  uint64_t cut_near(uint64_t piece);
  uint64_t start_of(uint64_t offset);
  uint64_t end_of(uint64_t start);
  TextRow row_at(uint64_t start);
  void add_marks(TextRow& row) const;
  void add_numbers(std::vector<TextRow>& rows);

  std::string path_;
  uint64_t size_ = 0;  // when it was opened
  uint64_t now_ = 0;   // during a call: no more than that
  int64_t modified_ = 0;
  std::vector<Match> matches_;
  uint32_t longest_match_ = 0;
  FilePart file_;
  LineMarks marks_;
};

}  // namespace zenfo::host::gui
