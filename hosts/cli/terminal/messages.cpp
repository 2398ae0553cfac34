#include "cli/terminal/messages.h"

#include <algorithm>
#include <atomic>

#include "cli/system/terminal.h"
#include "cli/terminal/progress.h"
#include "cli/terminal/visible.h"

namespace zenfo::host::cli {
namespace {

// Longer than any path of an existing file.
constexpr size_t kLongestSubject = 4096;

std::atomic<bool> any_complaint = false;

class TerminalMessages : public Messages {
 public:
  void complain(std::string_view subject, std::string_view reason) override {
    cli::complain(subject, reason);
  }
  void remark(std::string_view subject, std::string_view reason) override {
    cli::remark(subject, reason);
  }
};

}  // namespace

void complain(std::string_view subject, std::string_view reason) {
  any_complaint = true;
  remark(subject, reason);
}

void remark(std::string_view subject, std::string_view reason) {
  std::string line = "zenfo: ";
  if (!subject.empty()) {
    line += subject.substr(0, kLongestSubject);
    line += subject.size() > kLongestSubject ? "...: " : ": ";
  }
  line += reason;
  if (terminal::is_terminal(terminal::Stream::kErrors))
    line = visible_name(line);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; },
      '?');
  say(line + '\n');
}

void say(std::string_view text) {
  const auto undisturbed = erase_progress();
  terminal::write(terminal::Stream::kErrors, text);
}

Messages& terminal_messages() {
  static TerminalMessages messages;
  return messages;
}

bool complained() { return any_complaint; }

}  // namespace zenfo::host::cli
