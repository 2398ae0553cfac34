// A file's bytes and the lines of it that hold matches.
//
// Neighbouring matches that touch the same lines make one block of whole
// lines. Lines end in LF or CR LF; the last one may have no end.
//
// Tested by tests/hosts/shared/found_text_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shared/system/mapped_file.h"

namespace zenfo::host {

struct Match {
  uint32_t offset = 0;
  uint32_t length = 0;

  bool operator==(const Match&) const = default;
};

// Puts the matches of several texts in the order of their offsets, longer ones
// first. Matches that are the same count once; others may overlap.
void unite(std::vector<Match>& matches);

// The bytes of one file after the other.
class FileBytes {
 public:
  // False when the file cannot be read or is no ordinary one, or there is no
  // memory for it; it is then empty.
  bool load(const std::string& path);
  // The same for anything that can be read, up to `most` bytes. Waits for the
  // writer of a pipe.
  bool load_start(const std::string& path, size_t most);
  // The same, or a large file mapped; see there when that will do.
  bool load_or_map(const std::string& path);
  std::string_view view() const {
    return mapped_.is_open() ? mapped_.view()
                             : std::string_view(bytes_.get(), size_);
  }

 private:
  bool read(std::FILE* file, size_t expected, size_t most);
  bool grow(size_t capacity);

  MappedFile mapped_;
  std::unique_ptr<char[]> bytes_;
  size_t size_ = 0;
  size_t capacity_ = 0;
};

struct Block {
  size_t start = 0;
  size_t end = 0;  // behind the end of its last line
  std::span<const Match> matches;
};

// The blocks of a text, in order, with at most `most_lines` lines in all. The
// matches are in the order of their offsets; what lies behind the end of the
// text, as when the file was cut since, is left out.
std::vector<Block> find_blocks(std::string_view text,
                               std::span<const Match> matches,
                               uint64_t most_lines);
// The number of lines that hold matches, of matches as for find_blocks().
uint64_t count_matching_lines(std::string_view text,
                              std::span<const Match> matches);
// The number of lines; one without an end counts too.
uint64_t count_lines(std::string_view text);
// The end of the line that holds the byte at `offset`, its LF included.
size_t end_of_line(std::string_view text, size_t offset);
size_t start_of_line(std::string_view text, size_t offset);
// The line without its end.
std::string_view without_end(std::string_view line);

// Where lines stand: numbers from 1, asked for in the order of the text.
class LineNumbers {
 public:
  explicit LineNumbers(std::string_view text) : text_(text) {}
  uint64_t at(size_t offset);

 private:
  std::string_view text_;
  size_t counted_ = 0;
  uint64_t number_ = 1;
};

// What a walk through the blocks of a file meets, in the order of the text.
class LineVisitor {
 public:
  virtual ~LineVisitor() = default;
  // Lines begin here that do not follow what came before.
  virtual void gap() {}
  virtual void context(size_t start, size_t end) = 0;
  virtual void block(const Block& block) = 0;
};

void visit_lines(std::string_view text, const std::vector<Block>& blocks,
                 uint64_t before, uint64_t after, LineVisitor& visitor);

}  // namespace zenfo::host
