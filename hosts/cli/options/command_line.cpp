#include "cli/options/command_line.h"

#include "shared/system/system.h"

namespace zenfo::host::cli {

bool CommandLine::parse(const Arguments& arguments, Output& output) {
  std::string help;
  if (host::CommandLine::parse(arguments, help)) return true;
  output.put(help);
  return false;
}

void add_form_options(CommandLine& line, ResultForm& form) {
  line.flag("-0,--null", form.null,
            "End each result with a zero byte, not a line feed");
  line.flag("--json", form.json, "Write one JSON object per line");
}

void check_form(const CommandLine& line, const ResultForm& form) {
  if (form.null && form.json) {
    throw line.wrong("--json", "cannot be combined with --null");
  }
}

void add_choice_options(CommandLine& line, FileChoice& choice) {
  line.flag("-r,--recursive", choice.subfolders,
            "Include the subfolders of folders");
  line.values("--include", choice.patterns, "GLOB",
              "From folders, take only files with such names,\n"
              "such as '*.c'; may be repeated; case is ignored");
}

void check_choice(const CommandLine& line, const FileChoice& choice) {
  for (const std::string& pattern : choice.patterns) {
    if (pattern.empty()) throw line.wrong("--include", "needs a pattern");
    if (system::own_form(pattern).find_first_of(
            std::string(";|") + system::kSeparator) != std::string::npos) {
      throw line.wrong("--include " + pattern,
                       "a pattern is for names, without ';', '|' or folders");
    }
  }
}

void add_list_option(CommandLine& line, FileChoice& choice) {
  line.text("--from-list", choice.list_file, "FILE",
            "Take the files on the lines of FILE, each ended by\n"
            "CR LF, instead of PATHs");
}

void check_list_option(const CommandLine& line, const FileChoice& choice,
                       const std::vector<std::string>& paths) {
  if (choice.list_file.empty()) return;
  if (!paths.empty() || choice.subfolders || !choice.patterns.empty()) {
    throw line.wrong("--from-list",
                     "cannot be combined with a PATH, -r or --include");
  }
}

std::vector<std::string> parts_of(std::string_view list) {
  std::vector<std::string> parts;
  for (;;) {
    const size_t end = list.find(',');
    parts.emplace_back(list.substr(0, end));
    if (end == std::string_view::npos) return parts;
    list.remove_prefix(end + 1);
  }
}

}  // namespace zenfo::host::cli
