#include "change_options.h"

#include <utility>

#include "messages.h"
#include "system.h"

namespace zenfo::cli {
namespace {

// For a shell: quoted where it would be taken apart.
std::string quoted(const std::string& text) {
  constexpr char kPlain[] =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
      "-_./,:=@%+";
  if (!text.empty() && text.find_first_not_of(kPlain) == std::string::npos) {
    return text;
  }
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + '\'';
}

}  // namespace

void declare_text_options(CommandLine& line, SearchOptions& search,
                          std::string& outside, std::string& inside) {
  line.heading("What to find");
  line.two_values("--between", search.between, "FIRST SECOND",
                  "In place of TEXT: what begins with FIRST and ends\n"
                  "with the next SECOND");
  line.flag("--pattern", search.is_pattern, "TEXT is in the pattern language");
  line.flag("-i,--ignore-case", search.ignore_case,
            "Take capital and small letters as the same");
  line.flag("-w,--word", search.whole_words,
            "Find the text where no letter or digit touches it");
  line.value("--start", search.start.text, "TEXT",
             "Find only where TEXT stands directly in front");
  line.value("--end", search.end.text, "TEXT",
             "Find only where TEXT stands directly behind");
  line.flag("--caret", search.caret,
            "In texts and patterns, names such as ^M mean\n"
            "control characters");
  line.value("--classes", search.classes, "FILE",
             "Take character classes for patterns from FILE");
  line.value("--outside", outside, "PATTERN",
             "Find only outside what PATTERN matches");
  line.value("--inside", inside, "PATTERN",
             "Find only inside what PATTERN matches");
}

void declare_change_options(CommandLine& line, ChangeOptions& options) {
  line.heading("Which files");
  line.flag("-r,--recursive", options.choice.subfolders,
            "Take the subfolders of folders too");
  line.values("--include", options.filter.includes, "GLOB",
              "Change only files with such names, as '*.c'");
  line.values("--exclude", options.filter.excludes, "GLOB",
              "Pass over files with such names");
  line.values("--exclude-dir", options.filter.excluded_folders, "GLOB",
              "Pass over files in and below folders with such\nnames");
  line.flag("--binary", options.binary,
            options.cuts_at_zero_byte
                ? "Has no effect: what follows a zero byte would be\n"
                  "lost, so files with one stay as they are"
                : "Change files with zero bytes too");
  line.flag("--read-only", options.read_only, "Change read-only files too");
  line.heading("How to go about it");
  line.flag("-n,--dry-run", options.dry_run,
            "Show each change and touch nothing");
  line.flag("-y,--yes", options.yes, "Change without asking");
  line.flag("--ask", options.ask, "Ask for each match whether to take it");
  line.flag("--no-backup", options.no_backup,
            "Keep no safe copies: there is no undo");
  line.flag("--keep-date", options.keep_date,
            "Keep the modification times of the files");
  line.heading("Options");
}

void settle_change_options(const CommandLine& line, ChangeOptions& options,
                           const std::string& outside,
                           const std::string& inside) {
  if (!outside.empty() && !inside.empty()) {
    throw line.wrong("--inside", "does not go with --outside");
  }
  if (options.ask && (options.yes || options.dry_run)) {
    throw line.wrong("--ask", "does not go with --yes or --dry-run");
  }
  if (options.paths.empty()) {
    throw line.wrong("", "which files? A PATH is missing");
  }
  options.search.areas.inside = !inside.empty();
  options.search.areas.pattern = inside.empty() ? outside : inside;
  options.choice.folders_need_subfolders = true;
  options.choice.excluded_folders = options.filter.excluded_folders;
}

std::string shell_command(const std::string& name, const Arguments& arguments) {
  std::string command = "zenfo " + name;
  for (const std::string& argument : arguments) {
    command += ' ' + quoted(argument);
  }
  return command;
}

}  // namespace zenfo::cli
