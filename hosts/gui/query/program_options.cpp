#include "gui/query/program_options.h"

#include "gui/query/area_kinds.h"
#include "shared/frame/failure.h"
#include "shared/options/command_line.h"

namespace zenfo::host::gui {
namespace {

const HelpTexts kHelpTexts = {
    "zenfo-gui [OPTIONS] [PATH...]",
    "Opens the window, with the fields filled in. A PATH is a folder or a "
    "file\n"
    "to search in.",
    "Examples:\n"
    "  zenfo-gui --run --find colour src\n"
    "  zenfo-gui --find tide --include '*.c' --outside-kind code_comments .\n"};

struct Given {
  ProgramOptions options;
  bool ignore_case = false;
  bool subfolders = false;
  bool no_subfolders = false;
  bool search_binary = false;
  std::optional<std::string> text;
  std::string find, outside, inside, outside_kind, inside_kind;
  std::string area_start, area_end;
};

std::string kind_names() {
  std::string names;
  for (const AreaKind& kind : area_kinds()) {
    names += names.empty() ? "" : ", ";
    names += kind.name;
  }
  return names;
}

void declare(CommandLine& line, Given& given) {
  Query& query = given.options.query;
  line.heading("What to find");
  line.value("--find,-e,--text", given.find, "TEXT", "Find TEXT");
  line.flag("--pattern", query.is_pattern, "TEXT is in the pattern language");
  line.flag("-i,--ignore-case", given.ignore_case, "Ignore case");
  line.flag("-w,--word", query.whole_words, "Find whole words only");
  line.flag("--caret", query.caret,
            "In texts and patterns, names such as ^M mean\n"
            "control characters");
  line.value("--outside", given.outside, "PATTERN",
             "Find only outside what PATTERN matches");
  line.value("--inside", given.inside, "PATTERN",
             "Find only inside what PATTERN matches");
  line.value("--area-start", given.area_start, "TEXT",
             "Use only areas that directly follow TEXT");
  line.value("--area-end", given.area_end, "TEXT",
             "Use only areas that TEXT directly follows");
  line.value(
      "--outside-kind", given.outside_kind, "KIND",
      "Find only outside of areas of a ready-made kind:\n" + kind_names());
  line.value("--inside-kind", given.inside_kind, "KIND",
             "Find only inside of them");
  line.heading("Which files");
  line.values("--include", query.include_names, "GLOB",
              "Search only files with such names, as '*.c'");
  line.values("--exclude", query.exclude_names, "GLOB",
              "Skip files and folders with such names");
  line.values("--exclude-dir", query.exclude_names, "GLOB", "The same");
  line.flag("-r,--recursive", given.subfolders,
            "Search subfolders (the default)");
  line.flag("--no-subfolders", given.no_subfolders, "Do not search subfolders");
  line.flag("--binary", given.search_binary, "Search binary files too");
  line.heading("Options");
  line.flag("--run", given.options.run, "Search at once");
  line.flag("--new", given.options.new_window,
            "Open a window of its own, not a tab of a running one");
  line.flag("--version", given.options.version, "Show the version and exit");
  line.arguments(query.folders);
}

// Areas come from at most one of the options.
void settle_fields(const CommandLine& line, const Given& given, Query& query) {
  AreaChoice& areas = query.areas;
  int count = 0;
  const auto take = [&](const std::string& value, AreaUse use,
                        std::string AreaChoice::*member) {
    if (value.empty()) return;
    ++count;
    areas.use = use;
    areas.*member = value;
  };
  take(given.outside, AreaUse::kOutside, &AreaChoice::pattern);
  take(given.inside, AreaUse::kInside, &AreaChoice::pattern);
  take(given.outside_kind, AreaUse::kOutside, &AreaChoice::kind);
  take(given.inside_kind, AreaUse::kInside, &AreaChoice::kind);
  areas.start = given.area_start;
  areas.end = given.area_end;
  const bool marked = !areas.start.empty() || !areas.end.empty();
  line.refuse_if({
      {count > 1, "--outside, --inside", "only one kind of areas can be given"},
      {marked && areas.pattern.empty(), "--area-start, --area-end",
       "need --outside or --inside"},
      {given.subfolders && given.no_subfolders, "--no-subfolders",
       "cannot be combined with --recursive"},
  });
  if (!areas.kind.empty() && find_area_kind(areas.kind) == nullptr) {
    throw line.wrong(areas.kind, "no such kind; there are " + kind_names());
  }
}

bool begins_query(const Query& query) { return query != Query(); }

void settle(const CommandLine& line, Given& given) {
  Query& query = given.options.query;
  query.text = given.find;
  query.subfolders = !given.no_subfolders;
  if (given.search_binary) query.binary = BinaryFiles::kSearch;
  settle_fields(line, given, query);
  given.options.has_query = begins_query(query) || given.ignore_case;
  given.options.has_text = !given.find.empty();
  // As on the command line: case counts unless it is ignored.
  query.match_case = given.options.has_text && !given.ignore_case;
  if (given.options.run && !given.options.has_text) {
    throw line.wrong("--run", "needs --find");
  }
}

CommandLine command_line() {
  return {"zenfo-gui", kHelpTexts, "zenfo-gui --help"};
}

}  // namespace

ProgramOptions read_program_options(const std::vector<std::string>& arguments,
                                    std::string* reason) {
  Given given;
  CommandLine line = command_line();
  try {
    declare(line, given);
    std::string help;
    given.options.help = !line.parse(arguments, help);
    if (!given.options.help && !given.options.version) settle(line, given);
  } catch (const Failure& failure) {
    *reason = failure.subject + ": " + failure.reason;
  }
  return given.options;
}

std::string program_help() {
  Given given;
  CommandLine line = command_line();
  declare(line, given);
  std::string help;
  line.parse({"--help"}, help);
  return help;
}

}  // namespace zenfo::host::gui
