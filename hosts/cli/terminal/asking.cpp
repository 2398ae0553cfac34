#include "cli/terminal/asking.h"

#include <algorithm>
#include <optional>

#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/visible.h"

namespace zenfo::host::cli {
namespace {

// "path:12: the line with the [match] marked".
std::string question(std::string_view path, std::string_view text,
                     const Match& match) {
  const size_t from = std::min<size_t>(match.offset, text.size());
  const size_t to = std::min<size_t>(from + match.length, text.size());
  const size_t start = start_of_line(text, from);
  const size_t end = to > from ? end_of_line(text, to - 1) : to;
  const auto part = [&](size_t first, size_t last) {
    return visible_text(text.substr(first, last - first));
  };
  return visible_name(path) + ':' + std::to_string(LineNumbers(text).at(from)) +
         ": " + part(start, from) + ">>>" + part(from, to) + "<<<" +
         visible_text(without_end(text.substr(to, end - to))) +
         "\nTake it? yes, no, all, stop: ";
}

}  // namespace

bool Asking::take(std::string_view path, std::string_view text,
                  const Match& match) {
  if (stopped_) return false;
  if (all_) return true;
  std::string line = question(path, text, match);
  for (;;) {
    say(line);
    const std::optional<std::string> answer = terminal::read_line();
    const char first = answer && !answer->empty() ? answer->front() : ' ';
    all_ = first == 'a';
    stopped_ = !answer || first == 's';
    if (stopped_ || first == 'n') return false;
    if (all_ || first == 'y') return true;
    line = "Answer yes, no, all or stop: ";
  }
}

}  // namespace zenfo::host::cli
