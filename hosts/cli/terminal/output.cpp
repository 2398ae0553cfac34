#include "cli/terminal/output.h"

#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/visible.h"

namespace zenfo::host::cli {

Output::Output()
    : on_terminal_(terminal::is_terminal(terminal::Stream::kOutput)) {
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
    const std::string reason =
        terminal::write(terminal::Stream::kOutput, buffer_);
    failed_ = !reason.empty();
    if (failed_ && !terminal::reader_is_gone()) {
      complain("standard output", reason);
    }
  }
  buffer_.clear();
}

}  // namespace zenfo::host::cli
