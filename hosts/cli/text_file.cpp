#include "text_file.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "found_text.h"
#include "messages.h"
#include "paths.h"
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

size_t longest_list_line(const std::string& path) {
  // A pipe could not be read a second time.
  if (system::look_at(path).kind == system::PathKind::kOther) {
    throw Failure{path, "is no ordinary file"};
  }
  FileBytes bytes;
  load(bytes, path);
  const std::string_view text = bytes.view();
  size_t longest = 0;
  size_t start = 0;
  for (size_t end; (end = text.find("\r\n", start)) != text.npos;) {
    longest = std::max(longest, end - start);
    start = end + 2;
  }
  if (start == 0 && text.find('\n') != text.npos) {
    throw Failure{path, "its lines end in LF, those of a list in CR LF"};
  }
  return std::max(longest, text.size() - start);
}

bool can_be_written(const std::string& path) {
  std::FILE* file = open_file(path, "ab");
  if (file == nullptr) return false;
  std::fclose(file);
  return true;
}

}  // namespace zenfo::cli
