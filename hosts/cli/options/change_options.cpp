#include "cli/options/change_options.h"

#include <utility>

#include "cli/terminal/messages.h"

namespace zenfo::host::cli {
namespace {

// Quotes an argument for a shell if necessary.
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
                          AreaTexts& areas) {
  line.heading("What to find");
  declare_between(line, search,
                  "Instead of TEXT: find what begins with FIRST and\n"
                  "ends with the next SECOND");
  declare_how(line, search);
  declare_areas(line, search, areas);
}

void declare_change_options(CommandLine& line, ChangeOptions& options) {
  line.heading("Which files");
  line.flag("-r,--recursive", options.choice.subfolders,
            "Take the subfolders of folders too. Links that are\n"
            "found in folders are skipped");
  line.values("--include", options.filter.includes, "GLOB",
              "Change only files with such names, as '*.c'");
  line.values("--exclude", options.filter.excludes, "GLOB",
              "Skip files with such names");
  line.values("--exclude-dir", options.filter.excluded_folders, "GLOB",
              "Skip files in and below folders with such names");
  line.flag("--binary", options.binary,
            options.cuts_at_zero_byte
                ? "Has no effect: what follows a zero byte would be\n"
                  "lost, so files with one are not changed"
                : "Change files with zero bytes too");
  line.flag("--read-only", options.read_only, "Change read-only files too");
  line.heading("How to change them");
  line.flag("-n,--dry-run", options.dry_run,
            "Show each change, but change nothing");
  line.flag("-y,--yes", options.yes, "Change without asking");
  line.flag("--ask", options.ask, "Ask for each match whether to take it");
  line.flag("--no-backup", options.no_backup,
            "Keep no safe copies: there is no undo. Each file is\n"
            "written beside the old one and replaces it, so that\n"
            "it is never half written; files with several names\n"
            "or another owner are written in place");
  line.flag("--no-sync", options.no_sync,
            "Do not wait until the safe copies and the changes\n"
            "are on the disk: faster, but after a power cut files\n"
            "of the last minute may be damaged and have no copy");
  line.flag("--keep-date", options.keep_date,
            "Keep the modification times of the files");
  line.heading("Options");
}

void settle_change_options(const CommandLine& line, ChangeOptions& options,
                           const AreaTexts& areas) {
  settle_areas(line, areas, options.search);
  line.refuse_if({
      {options.ask && (options.yes || options.dry_run), "--ask",
       "cannot be combined with --yes or --dry-run"},
      {options.paths.empty(), "", "which files? A PATH is missing"},
  });
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

}  // namespace zenfo::host::cli
