// Matches as lines of text, in the format of grep:
//
//   path:12:a line with a match
//   path-13-a line of its context
//   --
//
// Tested by tests/cli/find_test.cpp
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/output.h"
#include "shared/text/found_text.h"

namespace zenfo::host::cli {

// Written to a terminal before and after the bytes of a match.
inline constexpr char kMatchColour[] = "\x1b[01;31m";
inline constexpr char kPlainColour[] = "\x1b[m";

struct LineForm {
  bool paths = true;
  bool numbers = false;
  bool offsets = false;
  bool matches_only = false;
  bool null = false;     // a zero byte after a path
  bool as_text = false;  // even if it is binary
  bool colours = false;
  uint64_t before = 0;
  uint64_t after = 0;
  uint64_t most_lines = std::numeric_limits<uint64_t>::max();
};

class LinePrinter {
 public:
  LinePrinter(const LineForm& form, Output& output)
      : form_(form), output_(output) {}

  // The binary part of the file is left out, see binary.h; if it contains
  // matches, a line says so.
  void print_file(std::string_view path, std::string_view text,
                  std::span<const Match> matches);
  // "path" or, with paths, "path:12".
  void print_path(std::string_view path);
  void print_count(std::string_view path, uint64_t count);

 private:
  class Walk;

  bool prints_plain_lines() const;
  void print_plain_lines(std::string_view path, std::string_view text,
                         std::span<const Match> matches);
  void print_blocks(std::string_view path, std::string_view text,
                    const std::vector<Block>& blocks);
  void print_text(std::string_view path, std::string_view text,
                  const std::vector<Block>& blocks);
  void print_binary(std::string_view path);
  std::string prefix(std::string_view path, char separator) const;
  void put(const char* colour, std::string_view text);
  void put_number(uint64_t number, char separator);
  void put_separator(char separator);

  const LineForm& form_;
  Output& output_;
  bool any_ = false;  // lines were printed
};

// Writes the part of a text from `start` to `end` with its matches marked.
void put_marked(Output& output, std::string_view text, size_t start, size_t end,
                std::span<const Match> matches, bool colours);

}  // namespace zenfo::host::cli
