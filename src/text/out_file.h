// The one writer of text and binary files.
//
// Gathers what is written in one buffer and hands it to the system in large
// pieces. In text mode every LF becomes CR LF, on both systems, so that the
// bytes on disk are the same everywhere. Every write and the close are
// checked; after a failed write all later ones fail too.
//
// Tested by tests/unit/text/out_file_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zenfo {

class OutFile {
 public:
  enum class LineEnds {
    kRaw,     // bytes as given
    kExpand,  // every LF is written as CR LF
  };

  OutFile() = default;
  ~OutFile() { close(); }
  OutFile(const OutFile&) = delete;
  OutFile& operator=(const OutFile&) = delete;

  // Closes the file that is open and opens another. False leaves nothing open.
  bool open(const char* path, platform::OutputMode mode, LineEnds line_ends);
  // Closes the file that is open and opens one that was examined before, to
  // overwrite it with raw bytes, if it still has that version.
  platform::Opened open_unchanged(const char* path,
                                  const platform::FileVersion& expected);
  bool is_open() const { return file_.is_open(); }

  // Reserves memory for this many further bytes, as far as they will be
  // buffered: one allocation instead of several. Throws for lack of memory.
  void expect(size_t size) { buffer_.reserve(std::min(size, kBufferSize)); }
  // Appends a piece; false once any write has failed, or when nothing is open.
  // Throws for lack of memory, with nothing of the piece taken.
  bool write(std::string_view piece) {
    // Nearly always.
    if (is_open() && !failed_ && line_ends_ == LineEnds::kRaw &&
        piece.size() < kBufferSize - buffer_.size()) {
      buffer_.append(piece);
      return true;
    }
    return write_elsewhere(piece);
  }
  bool write(char byte) { return write(std::string_view(&byte, 1)); }
  // The same, never expanding LF: for lines that already end in CR LF.
  bool write_unchanged(std::string_view piece) {
    return is_open() && !failed_ && write_raw(piece);
  }
  // Decimal digits of a number.
  bool write_number(unsigned long long number);

  // Hands the gathered bytes to the system; false as for write().
  bool flush();
  // Flushes and closes; an overwritten file ends after what was written, just
  // as if it had been emptied first. False when any write or the close failed.
  // Closing a closed file returns true.
  bool close();

 private:
  static constexpr size_t kBufferSize = size_t{1} << 18;

  bool write_elsewhere(std::string_view piece);
  bool write_raw(std::string_view piece);
  bool write_expanded(std::string_view piece);
  bool hand_over(std::string_view bytes);

  platform::OutputFile file_;
  LineEnds line_ends_ = LineEnds::kRaw;
  bool cut_at_end_ = false;
  bool failed_ = false;
  std::string buffer_;  // never more than kBufferSize bytes
};

}  // namespace zenfo
