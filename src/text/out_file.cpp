// The one writer of text and binary files.
//
// The buffer grows with what is written and is kept from file to file, so a
// writer that rewrites many small files allocates once and writes each of them
// with one call; pieces of a buffer's size or more go out as they are.
//
// Tested by tests/unit/text/out_file_test.cpp
#include "text/out_file.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace zenfo {

bool OutFile::open(const char* path, platform::OutputMode mode,
                   LineEnds line_ends) {
  close();
  line_ends_ = line_ends;
  cut_at_end_ = mode == platform::OutputMode::kOverwrite;
  failed_ = false;
  return file_.open(path, mode);
}

platform::Opened OutFile::open_unchanged(
    const char* path, const platform::FileVersion& expected) {
  close();
  line_ends_ = LineEnds::kRaw;
  cut_at_end_ = true;
  failed_ = false;
  return file_.open_unchanged(path, expected);
}

bool OutFile::write_elsewhere(std::string_view piece) {
  if (!is_open() || failed_) return false;
  return line_ends_ == LineEnds::kRaw ? write_raw(piece)
                                      : write_expanded(piece);
}

bool OutFile::write_raw(std::string_view piece) {
  if (piece.size() > kBufferSize - buffer_.size() && !flush()) return false;
  if (piece.size() >= kBufferSize) return hand_over(piece);
  buffer_.append(piece);
  return true;
}

bool OutFile::write_expanded(std::string_view piece) {
  // Reserve the most it can need first, so that lack of memory cannot leave
  // half a piece.
  buffer_.reserve(std::min(kBufferSize, buffer_.size() + 2 * piece.size()));
  while (!piece.empty()) {
    const size_t line = piece.find('\n');
    if (line == std::string_view::npos) return write_raw(piece);
    if (!write_raw(piece.substr(0, line)) || !write_raw("\r\n")) return false;
    piece.remove_prefix(line + 1);
  }
  return true;
}

bool OutFile::write_number(unsigned long long number) {
  char digits[24];  // 2^64 - 1 has 20
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return write({digits, static_cast<size_t>(end - digits)});
}

bool OutFile::hand_over(std::string_view bytes) {
  if (!file_.write(bytes.data(), bytes.size())) failed_ = true;
  return !failed_;
}

bool OutFile::flush() {
  if (!is_open() || failed_) return false;
  if (buffer_.empty()) return true;
  const bool written = hand_over(buffer_);
  buffer_.clear();
  return written;
}

bool OutFile::close() {
  if (!is_open()) return true;
  flush();
  buffer_.clear();
  if (cut_at_end_ && !file_.set_end()) failed_ = true;
  return file_.close() && !failed_;
}

}  // namespace zenfo
