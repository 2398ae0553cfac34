#include "cli/terminal/output.h"

#include <charconv>
#include <limits>
#include <mutex>

#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/visible.h"

namespace zenfo::host::cli {

Output::Output()
    : on_terminal_(terminal::is_terminal(terminal::Stream::kOutput)),
      buffer_(new char[kSize]) {}

void Output::put_piecewise(std::string_view bytes) {
  while (!bytes.empty()) {
    if (used_ == kSize) flush();
    const std::string_view piece = bytes.substr(0, kSize - used_);
    put_bytes(piece);
    bytes.remove_prefix(piece.size());
  }
}

void Output::put_number(uint64_t number) {
  constexpr int kMostDigits = std::numeric_limits<uint64_t>::digits10 + 1;
  char digits[kMostDigits];
  const char* end = std::to_chars(digits, digits + kMostDigits, number).ptr;
  put_bytes({digits, static_cast<size_t>(end - digits)});
}

void Output::put_visible(std::string_view text) {
  if (is_visible_text(text)) {
    put_bytes(text);
  } else {
    put_bytes(visible_text(text));
  }
}

std::string Output::shown_name(std::string_view name) const {
  return on_terminal_ ? visible_name(name) : std::string(name);
}

void Output::put_json(std::string_view lines) {
  if (on_terminal_) {
    put_bytes(visible_json(lines));
  } else {
    put_bytes(lines);
  }
}

void Output::flush() {
  if (!failed_ && used_ > 0) {
    const std::string reason = write_buffer();
    failed_ = !reason.empty();
    if (failed_ && !terminal::reader_is_gone()) {
      complain("standard output", reason);
    }
  }
  used_ = 0;
}

std::string Output::write_buffer() const {
  std::unique_lock<std::mutex> undisturbed;
  if (on_terminal_) undisturbed = erase_progress();
  return terminal::write(terminal::Stream::kOutput, {buffer_.get(), used_});
}

}  // namespace zenfo::host::cli
