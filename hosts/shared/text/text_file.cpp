#include "shared/text/text_file.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <system_error>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/text/found_text.h"

namespace zenfo::host {
namespace {

constexpr char kLimitName[] = "ZENFO_LIST_LIMIT";

// In MB.
size_t most_megabytes() {
  constexpr size_t kUsual = 256;
  constexpr size_t kMost = SIZE_MAX >> 21;
  const std::string given = environment(kLimitName);
  if (given.empty()) return kUsual;
  size_t number = 0;
  const char* end = given.data() + given.size();
  const auto [rest, error] = std::from_chars(given.data(), end, number);
  if (error != std::errc() || rest != end || number == 0 || number > kMost) {
    throw Failure{kLimitName,
                  "is not a number of MB from 1 to " + std::to_string(kMost)};
  }
  return number;
}

// A stop may end the process while it waits for a pipe, because nothing is half
// done.
class ObeyedStop {
 public:
  ObeyedStop() : before_(system::obey_stop(true)) {
    if (system::stop_status() != 0) throw Stopped{};
  }
  ~ObeyedStop() { system::obey_stop(before_); }
  ObeyedStop(const ObeyedStop&) = delete;
  ObeyedStop& operator=(const ObeyedStop&) = delete;

 private:
  bool before_;
};

void load(FileBytes& bytes, const std::string& path) {
  const ObeyedStop obeyed;
  const size_t megabytes = most_megabytes();
  const size_t most = megabytes << 20;
  if (!bytes.load_start(path, most + 1)) {
    const system::PathFacts facts = system::look_at(path);
    throw Failure{path, facts.kind == system::PathKind::kNone
                            ? facts.reason
                            : "cannot be read"};
  }
  if (bytes.view().size() <= most) return;
  throw Failure{path, "is longer than " + std::to_string(megabytes) +
                          " MB, the most that is read; " + kLimitName +
                          "=MB raises that"};
}

// For files that the library reads again.
void check_ordinary(const std::string& path) {
  if (system::look_at(path).kind != system::PathKind::kOther) return;
  throw Failure{path, "is not an ordinary file"};
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
  check_ordinary(path);
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
  check_ordinary(path);
  FileBytes bytes;
  load(bytes, path);
  const std::string_view text = bytes.view();
  size_t longest = 0;
  size_t start = 0;
  for (size_t end;
       (end = text.find("\r\n", start)) != std::string_view::npos;) {
    longest = std::max(longest, end - start);
    start = end + 2;
  }
  if (start == 0 && text.find('\n') != std::string_view::npos) {
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

}  // namespace zenfo::host
