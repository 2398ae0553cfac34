#include "output.h"

#include "messages.h"
#include "progress.h"
#include "system.h"
#include "visible.h"

namespace zenfo::cli {

Output::Output() : on_terminal_(system::is_terminal(system::Stream::kOutput)) {
  buffer_.reserve(kSize);
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
  if (!failed_ && !buffer_.empty()) {
    if (on_terminal_) erase_progress();
    const std::string reason = system::write(system::Stream::kOutput, buffer_);
    failed_ = !reason.empty();
    if (failed_ && !system::reader_is_gone()) {
      complain("standard output", reason);
    }
  }
  buffer_.clear();
}

}  // namespace zenfo::cli
