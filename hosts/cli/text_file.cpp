#include "text_file.h"

#include <string_view>

#include "found_text.h"
#include "messages.h"
#include "system.h"

namespace zenfo::cli {
namespace {

void load(FileBytes& bytes, const std::string& path) {
  if (bytes.load(path)) return;
  const system::PathFacts facts = system::look_at(path);
  throw Failure{path, facts.kind == system::PathKind::kNone ? facts.reason
                                                            : "cannot be read"};
}

template <class Visit>
void for_each_line(std::string_view text, Visit visit) {
  for (size_t start = 0; start < text.size();) {
    const size_t end = end_of_line(text, start);
    visit(text.substr(start, end - start));
    start = end;
  }
}

}  // namespace

std::vector<std::string> read_text_lines(const std::string& path) {
  FileBytes bytes;
  load(bytes, path);
  std::vector<std::string> lines;
  for_each_line(bytes.view(), [&](std::string_view line) {
    lines.emplace_back(without_end(line));
  });
  return lines;
}

void check_crlf_lines(const std::string& path) {
  FileBytes bytes;
  load(bytes, path);
  uint64_t number = 0;
  for_each_line(bytes.view(), [&](std::string_view line) {
    ++number;
    if (line.ends_with("\r\n")) return;
    throw Failure{path, "line " + std::to_string(number) +
                            " does not end in CR LF, as --summary needs"};
  });
}

}  // namespace zenfo::cli
