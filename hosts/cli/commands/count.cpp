// zenfo count: counts bytes, words and lines of files.
//
// Each output line, including the heading and the total, is a row of texts, so
// that all of them align. Nothing is written until the last file is counted.
//
// Tested by tests/cli/count_test.cpp
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/command_line.h"
#include "cli/printing/columns.h"
#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/session/file_arguments.h"
#include "shared/session/session.h"
#include "shared/system/system.h"
#include "shared/text/json_text.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kCountHelp = {
    "zenfo count [OPTIONS] FILE...",
    "Counts the bytes, words and lines of files, and the totals.\n"
    "\n"
    "A FILE may be a folder (with -r), or a pattern for the files of one\n"
    "folder, such as 'src/*.c'; - is standard input, which is also counted\n"
    "when there is no FILE and it is not a terminal. A word is a run of bytes\n"
    "other than control characters, blanks and byte 127. Only CR LF ends a\n"
    "line, not a line feed or CR alone.",
    "The exit status is 2 when a file could not be counted, else 0.\n"
    "\n"
    "Examples:\n"
    "  zenfo count letter.txt\n"
    "  zenfo count '*.txt' about.md         each, and the total\n"
    "  zenfo count -r --total docs          the total of a folder\n"
    "  zenfo count --json '*.txt'           one object per line, for "
    "programs\n"};

struct CountOptions {
  std::vector<std::string> files;
  FileChoice choice;
  bool total = false;
  bool json = false;
};

// Sums of many files, which would overflow the library's counts.
struct Sums {
  uint64_t bytes = 0;
  uint64_t words = 0;
  uint64_t lines = 0;

  void add(const TextCounts& counts) {
    bytes += counts.size;
    words += counts.words;
    lines += counts.lines;
  }
};

struct CountedFile {
  std::string path;
  Sums sums;
};

struct Counted {
  std::vector<CountedFile> files;  // empty when only the total is shown
  size_t count = 0;
  Sums total;
};

// False when the user only asked for help.
bool parse(const Arguments& arguments, CountOptions& options, Output& output) {
  CommandLine line("count", kCountHelp);
  options.choice.folders_need_subfolders = true;
  options.choice.takes_streams = true;
  line.arguments(options.files);
  add_choice_options(line, options.choice);
  line.flag("--total", options.total, "Show only the total");
  line.flag("--json", options.json, "Write one JSON object per line");
  if (!line.parse(arguments, output)) return false;
  if (options.files.empty() &&
      !terminal::is_terminal(terminal::Stream::kInput)) {
    options.files = {kStandardInput};
  }
  if (options.files.empty())
    throw line.wrong("count", "the FILE to count is missing");
  check_choice(line, options.choice);
  return true;
}

Counted count_all(Session& session, FileList& files, bool only_total) {
  Counted counted;
  std::string name;
  session.begin_counting(files.count());
  for (uint32_t i = 0; i < files.count(); ++i) {
    name = session.full_name(i);
    const auto counts = session.count_words(name);
    if (!counts) {
      complain(files.shown(name),
               system::why_not_loaded(name, "cannot be counted"));
      continue;
    }
    ++counted.count;
    counted.total.add(*counts);
    if (only_total) continue;
    counted.files.push_back({std::string(files.shown(name)), {}});
    counted.files.back().sums.add(*counts);
  }
  return counted;
}

// `value` is already JSON.
std::string json_object(const std::string& key, const std::string& value,
                        const Sums& sums) {
  return "{\"" + key + "\":" + value +
         ",\"bytes\":" + std::to_string(sums.bytes) +
         ",\"words\":" + std::to_string(sums.words) +
         ",\"lines\":" + std::to_string(sums.lines) + '}';
}

constexpr size_t kNumbers = 3;

// Right-aligned numbers, then the name.
struct Row {
  std::array<std::string, kNumbers> numbers;
  std::string name;
};

Row row_of(const Sums& sums, std::string name) {
  return {{std::to_string(sums.bytes), std::to_string(sums.words),
           std::to_string(sums.lines)},
          std::move(name)};
}

void write_rows(const std::vector<Row>& rows, Output& output) {
  std::array<size_t, kNumbers> widths{};
  for (const Row& row : rows) {
    for (size_t i = 0; i < kNumbers; ++i) {
      widths[i] = std::max(widths[i], row.numbers[i].size());
    }
  }
  for (const Row& row : rows) {
    for (size_t i = 0; i < kNumbers; ++i) {
      output.put(std::string(widths[i] - row.numbers[i].size(), ' '));
      output.put(row.numbers[i]);
      output.put("  ");
    }
    output.put_name(row.name);
    output.put('\n');
  }
}

void write_counts(const Counted& counted, const CountOptions& options,
                  Output& output) {
  const bool with_total = counted.count > 1 || options.total;
  if (options.json) {
    for (const CountedFile& file : counted.files) {
      output.put_json(json_object("path", json_text(file.path), file.sums) +
                      '\n');
    }
    if (with_total) {
      output.put(
          json_object("files", std::to_string(counted.count), counted.total) +
          '\n');
    }
    return;
  }
  if (counted.count == 0 && !options.total) return;
  std::vector<Row> rows = {{{"bytes", "words", "lines"}, "path"}};
  for (const CountedFile& file : counted.files) {
    rows.push_back(row_of(file.sums, file.path));
  }
  if (with_total) rows.push_back(row_of(counted.total, "total"));
  write_rows(rows, output);
}

}  // namespace

int run_count(const Arguments& arguments) {
  CountOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Progress progress;
  Session session(terminal_messages(), progress);
  session.leave_at_stop(true);
  FileList files(session);
  files.fill(options.files, options.choice, FactOptions{});
  write_counts(count_all(session, files, options.total), options, output);
  session.complain_about_errors();
  return kDone;
}

}  // namespace zenfo::host::cli
