#include "messages.h"

#include <algorithm>

#include "progress.h"
#include "system.h"
#include "visible.h"

namespace zenfo::cli {
namespace {

// Longer than any path of a file that there is.
constexpr size_t kLongestSubject = 4096;

bool any_complaint = false;

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
  if (system::is_terminal(system::Stream::kErrors)) line = visible_name(line);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; },
      '?');
  say(line + '\n');
}

void say(std::string_view text) {
  erase_progress();
  system::write(system::Stream::kErrors, text);
}

bool complained() { return any_complaint; }

}  // namespace zenfo::cli
