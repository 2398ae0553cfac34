// A file's bytes, and the lines with matches.
//
// Neighbouring matches on the same lines form one block of whole lines. Lines
// end in LF or CR LF; the last one may have no end.
//
// Tested by tests/hosts/shared/found_text_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shared/system/file_reader.h"
#include "shared/system/mapped_file.h"

namespace zenfo::host {

struct Match {
  uint32_t offset = 0;
  uint32_t length = 0;

  bool operator==(const Match&) const = default;
};

inline size_t end_of(const Match& match) {
  return size_t{match.offset} + match.length;
}

// Sorts the matches of several texts by offset, longer ones first. Equal
// matches are merged; others may overlap.
void unite(std::vector<Match>& matches);

// Holds the bytes of one file at a time.
class FileBytes {
 public:
  // False when the file cannot be read, is not an ordinary one, or does not fit
  // into memory; the object is then empty.
  bool load(const std::string& path);
  // The same for any readable path, up to `most` bytes. Waits for the writer of
  // a pipe.
  bool load_start(const std::string& path, size_t most);
  // The same, but maps a large file; see MappedFile for when that is allowed.
  bool load_or_map(const std::string& path);
  std::string_view view() const {
    return mapped_.is_open() ? mapped_.view()
                             : std::string_view(bytes_.get(), size_);
  }

 private:
  bool read_to_end();
  bool grow(size_t capacity);

  FileReader reader_;
  MappedFile mapped_;
  std::unique_ptr<char[]> bytes_;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

struct Block {
  size_t start = 0;
  size_t end = 0;  // after the end of its last line
  std::span<const Match> matches;
};

// The blocks of a text, in order, with at most `most_lines` lines in all. The
// matches must be sorted by offset. Matches after the end of the text, which
// occur when the file was shortened, are left out.
std::vector<Block> find_blocks(std::string_view text,
                               std::span<const Match> matches,
                               uint64_t most_lines);
// The number of lines with matches. The matches are as for find_blocks().
uint64_t count_matching_lines(std::string_view text,
                              std::span<const Match> matches);
// The number of lines; one without an end counts too.
uint64_t count_lines(std::string_view text);
// The end of the line that contains `offset`, including its LF.
size_t end_of_line(std::string_view text, size_t offset);
size_t start_of_line(std::string_view text, size_t offset);
// The line without its end.
std::string_view without_end(std::string_view line);

// Walks through a text from line to line, forward only: counts the lines and
// looks for zero bytes on the way.
class LineScan {
 public:
  explicit LineScan(std::string_view text) : text_(text) {}

  // Moves to the line that contains the offset; it must not lie before the
  // present line.
  void move_to(size_t offset);
  // The present line, with its end, and its number, from 1.
  size_t start() const { return start_; }
  size_t end() const { return end_; }
  uint64_t number() const { return number_; }
  // Whether there is a zero byte before end().
  bool zero_met() const { return zero_met_; }

 private:
  void count_to(size_t offset);
  void find_end(size_t offset);

  std::string_view text_;
  size_t start_ = 0;
  size_t end_ = 0;  // 0 before the first line
  uint64_t number_ = 0;
  bool zero_met_ = false;
};

// Line numbers from 1; offsets must be asked for in ascending order.
class LineNumbers {
 public:
  explicit LineNumbers(std::string_view text) : text_(text) {}
  uint64_t at(size_t offset);
  // Tells the number of the line that starts at an offset not asked for yet.
  void note(size_t offset, uint64_t number) {
    counted_ = offset;
    number_ = number;
  }

 private:
  std::string_view text_;
  size_t counted_ = 0;
  uint64_t number_ = 1;
};

// Called for the blocks of a file and the lines around them, in text order.
class LineVisitor {
 public:
  virtual ~LineVisitor() = default;
  // The next lines do not directly follow the previous ones.
  virtual void gap() {}
  virtual void context(size_t start, size_t end) = 0;
  virtual void block(const Block& block) = 0;
};

void visit_lines(std::string_view text, const std::vector<Block>& blocks,
                 uint64_t before, uint64_t after, LineVisitor& visitor);

}  // namespace zenfo::host
