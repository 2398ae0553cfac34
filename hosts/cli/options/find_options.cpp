#include "cli/options/find_options.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "cli/options/command_line.h"
#include "cli/options/text_options.h"
#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "shared/session/file_selection.h"
#include "shared/system/paths.h"
#include "shared/system/system.h"
#include "shared/text/text_file.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kFindHelp = {
    "zenfo find [OPTIONS] TEXT [PATH...]\n"
    "       zenfo find [OPTIONS] -e TEXT [-e TEXT]... [-f FILE] [PATH...]\n"
    "       zenfo find [OPTIONS] --between FIRST SECOND [PATH...]",
    "Shows the lines that contain TEXT. TEXT is searched for as written; with\n"
    "--pattern it is in the pattern language. Options mean what they mean to\n"
    "grep.\n"
    "\n"
    "A PATH is a file, a folder (with -r), a pattern for the files of one\n"
    "folder, such as 'src/*.c', or - for standard input. Without a PATH,\n"
    "standard input is searched if it is not a terminal; otherwise, and with\n"
    "-r, --include, --exclude or --exclude-dir, the current folder and all\n"
    "below it. Names that begin with a dot are skipped unless given in full.\n"
    "\n"
    "A file is binary when it has a zero byte among its first 32,768 bytes or\n"
    "before the current line. Lines of a binary file are not shown, only that\n"
    "it matches.",
    "The exit status is 0 when something was found, 1 when nothing was, and 2\n"
    "after an error, even if something was found, unless -q was given.\n"
    "\n"
    "Examples:\n"
    "  zenfo find -r 'Copyright 2024'       in all files in and below this "
    "folder\n"
    "  zenfo find -rnw count src            'count', but not 'counter'\n"
    "  zenfo find -rli error logs --include '*.log'\n"
    "  zenfo find -rc -e tide -e ferry src  count the lines with either\n"
    "  zenfo find -ro --between '<b>' '</b>' pages\n"
    "  zenfo find -q needle notes.txt && echo found\n"
    "  journalctl | zenfo find -i error\n"
    "  zenfo find -rl0 -- -v . | xargs -0 ls -l\n"};

// Options that can only be checked when all are known.
struct Given {
  std::string first;
  std::vector<std::string> texts;
  std::vector<std::string> text_files;
  std::string start_pattern;
  std::string end_pattern;
  AreaTexts areas;
  bool quiet = false;
  bool paths_only = false;
  bool other_paths = false;
  bool count = false;
  bool count_matches = false;
  bool json = false;
  bool hex = false;
  bool literal = false;
  bool no_paths = false;
  bool with_paths = false;
  std::string colour = "auto";
  std::optional<uint64_t> before;
  std::optional<uint64_t> after;
  std::optional<uint64_t> around;
  std::optional<uint64_t> most_lines;
};

void declare_search(CommandLine& line, FindOptions& options, Given& given) {
  SearchOptions& search = options.search;
  line.heading("What to find");
  line.values("-e,--text", given.texts, "TEXT",
              "Find TEXT; may be repeated to find several texts");
  line.values("-f,--file", given.text_files, "FILE",
              "Find the texts on the lines of FILE");
  declare_between(line, search,
                  "Find what begins with FIRST and ends with the\n"
                  "next SECOND");
  line.flag("-F,--literal", given.literal,
            "Search for TEXT as written (the default)");
  declare_how(line, search);
  line.value("--start-pattern", given.start_pattern, "PATTERN",
             "As --start, in the pattern language");
  line.value("--end-pattern", given.end_pattern, "PATTERN",
             "As --end, in the pattern language");
  declare_areas(line, search, given.areas);
  line.value("--area-start", search.areas.start, "TEXT",
             "Use only areas that directly follow TEXT");
  line.value("--area-end", search.areas.end, "TEXT",
             "Use only areas that TEXT directly follows");
}

void declare_files(CommandLine& line, FindOptions& options) {
  line.heading("Which files");
  line.flag("-r,--recursive", options.choice.subfolders,
            "Search subfolders of folders too");
  line.values("--include", options.filter.includes, "GLOB",
              "Search only files with such names, as '*.c'");
  line.values("--exclude", options.filter.excludes, "GLOB",
              "Skip files with such names");
  line.values("--exclude-dir", options.filter.excluded_folders, "GLOB",
              "Skip files in and below folders with such names");
  line.value("--files-from", options.files_from, "FILE",
             "Also search the files on the lines of FILE");
  line.flag("--skip-binary", options.skip_binary,
            "Skip files with a zero byte among their first\n"
            "32,768");
}

void declare_results(CommandLine& line, FindOptions& options, Given& given) {
  line.heading("What to show");
  line.flag("-q,--quiet", given.quiet,
            "Write nothing; only the exit status is the answer");
  line.flag("-l,--files-with-matches", given.paths_only,
            "Write only the names of files with matches");
  line.flag("-L,--files-without-match", given.other_paths,
            "Write only the names of files without matches");
  line.flag("-c,--count", given.count,
            "Write only the number of matching lines of each\nfile");
  line.flag("--count-matches", given.count_matches,
            "Write only the number of matches of each file");
  line.flag("--json", given.json,
            "Write one JSON object per line, see\n"
            "docs/json-output.md");
  line.flag("--hex", given.hex,
            "Write the bytes of matches as rows of a hex dump");
  line.flag("-o,--only-matching", options.form.matches_only,
            "Write only the matches, each on its own line");
  line.number("-m,--max-count", given.most_lines,
              "Show at most NUM matching lines of each file");
  line.flag("-a,--as-text", options.form.as_text,
            "Show lines of binary files too");
  line.flag("--ask", options.ask, "Ask for each match whether to take it");
  line.value("--report", options.search.report, "FILE",
             "Also write all matches with their offsets to FILE");
  line.value("--summary", options.summary, "FILE",
             "Write one line for each file of --files-from, whose\n"
             "lines end in CR LF, to FILE, and nothing else");
}

void declare_form(CommandLine& line, FindOptions& options, Given& given) {
  line.heading("In which form");
  line.flag("-n,--line-number", options.form.numbers, "Show line numbers");
  line.flag("-b,--byte-offset", options.form.offsets,
            "Show the offset in bytes of each line, or with -o\n"
            "of each match");
  line.flag("-H,--with-filename", given.with_paths,
            "Show the file's name on each line (the default\n"
            "unless there is only one file)");
  line.flag("-h,--no-filename", given.no_paths, "Do not show file names");
  line.number("-A,--after-context", given.after,
              "Show NUM lines after each match");
  line.number("-B,--before-context", given.before,
              "Show NUM lines before each match");
  line.number("-C,--context", given.around,
              "Show NUM lines before and after each match");
  line.flag("-0,--null", options.form.null,
            "Write a zero byte after file names");
  line.value("--color", given.colour, "WHEN",
             "Mark matches by colours: auto, always or never;\n"
             "auto respects NO_COLOR");
  line.heading("Options");
}

// The options that replace or change the output lines; the first one given in
// this order wins.
struct ShowRow {
  bool Given::*given;
  Show show;
};

constexpr ShowRow kShowRows[] = {
    {&Given::quiet, Show::kNothing},
    {&Given::paths_only, Show::kPaths},
    {&Given::other_paths, Show::kOtherPaths},
    {&Given::count, Show::kLineCounts},
    {&Given::count_matches, Show::kMatchCounts},
    {&Given::json, Show::kJson},
    {&Given::hex, Show::kHex},
};

Show show_of(const Given& given) {
  for (const ShowRow& row : kShowRows) {
    if (given.*row.given) return row.show;
  }
  return Show::kLines;
}

void read_texts(const std::string& path, std::vector<std::string>& texts) {
  for (std::string& text : read_text_lines(path)) {
    if (text.find('\0') != std::string::npos) {
      throw Failure{path, "a text with a zero byte cannot be searched for"};
    }
    if (text.empty()) {
      throw Failure{path, "has an empty line, which is no text to find"};
    }
    texts.push_back(std::move(text));
  }
}

// The first argument is TEXT unless an option gave the texts.
void settle_texts(const CommandLine& line, FindOptions& options,
                  const Given& given) {
  std::vector<std::string>& texts = options.search.texts;
  const bool otherwise = !given.texts.empty() || !given.text_files.empty() ||
                         options.search.between.has_value();
  if (!otherwise) {
    texts = {given.first};
  } else if (!given.first.empty()) {
    options.paths.insert(options.paths.begin(), given.first);
  }
  texts.insert(texts.end(), given.texts.begin(), given.texts.end());
  for (const std::string& path : given.text_files) read_texts(path, texts);
  const bool any_empty = std::any_of(texts.begin(), texts.end(),
                                     [](const auto& t) { return t.empty(); });
  if (any_empty || (texts.empty() && !options.search.between)) {
    throw line.wrong("find", "the TEXT to find is missing");
  }
  if (options.search.between && !texts.empty()) {
    throw line.wrong("--between", "takes the place of TEXT");
  }
}

// Keeps the first of equal texts.
void remove_repeats(std::vector<std::string>& texts) {
  std::unordered_set<std::string> met;
  std::erase_if(
      texts, [&](const std::string& text) { return !met.insert(text).second; });
}

void settle_markers(const CommandLine& line, SearchOptions& search,
                    const Given& given) {
  auto settle = [&](Marker& marker, const std::string& pattern,
                    const char* name) {
    if (pattern.empty()) return;
    if (!marker.text.empty()) {
      throw line.wrong(name, "is given twice, as a text and as a pattern");
    }
    marker = {pattern, true};
  };
  settle(search.start, given.start_pattern, "--start");
  settle(search.end, given.end_pattern, "--end");
  const bool any = !search.start.text.empty() || !search.end.text.empty();
  if (any && search.texts.size() != 1) {
    throw line.wrong("--start, --end", "need a single TEXT");
  }
}

void settle_area_markers(const CommandLine& line, const Areas& areas) {
  const bool marked = !areas.start.empty() || !areas.end.empty();
  if (marked && areas.pattern.empty()) {
    throw line.wrong("--area-start, --area-end", "need --outside or --inside");
  }
}

// As in grep, names are omitted when only one file can be searched.
bool is_single_file(const FindOptions& options) {
  return options.paths.size() == 1 && options.files_from.empty() &&
         system::look_at(system::own_form(options.paths[0])).kind !=
             system::PathKind::kFolder &&
         options.paths[0].find_first_of("*?") == std::string::npos;
}

bool wants_colours(const CommandLine& line, const std::string& when) {
  if (when == "always") return true;
  if (when == "never") return false;
  if (when != "auto") {
    throw line.wrong("--color " + when, "is auto, always or never");
  }
  return environment("NO_COLOR").empty() && terminal::shows_colours();
}

void settle_form(const CommandLine& line, FindOptions& options,
                 const Given& given) {
  LineForm& form = options.form;
  form.before = given.before.value_or(given.around.value_or(0));
  form.after = given.after.value_or(given.around.value_or(0));
  if (given.most_lines) form.most_lines = *given.most_lines;
  form.paths =
      given.with_paths || (!given.no_paths && !is_single_file(options));
  form.colours = wants_colours(line, given.colour);
}

void check_together(const CommandLine& line, const FindOptions& options,
                    const Given& given) {
  const bool paths = given.paths_only || given.other_paths;
  const bool counts = given.count || given.count_matches;
  const bool summary = !options.summary.empty();
  line.refuse_if({
      {given.literal && options.search.is_pattern, "--pattern",
       "cannot be combined with --literal"},
      {given.json && options.form.null, "--json",
       "cannot be combined with --null"},
      {given.json && (paths || counts || options.form.matches_only), "--json",
       "cannot be combined with other forms of results"},
      {given.hex && (paths || counts || given.json || options.form.null ||
                     options.form.matches_only),
       "--hex", "cannot be combined with other forms of results"},
      {given.paths_only && given.other_paths, "-l",
       "cannot be combined with -L"},
      {given.with_paths && given.no_paths, "-h", "cannot be combined with -H"},
      {options.ask && (given.quiet || given.json), "--ask",
       "cannot be combined with --quiet or --json"},
      {summary && options.files_from.empty(), "--summary",
       "needs --files-from"},
      {summary && (paths || counts || given.json || given.hex || options.ask ||
                   !options.paths.empty() || !options.filter.empty()),
       "--summary",
       "cannot be combined with a PATH or another form of results"},
      {summary && options.skip_binary, "--skip-binary",
       "cannot be combined with --summary"},
      {summary && options.search.texts.size() > 1 &&
           options.search.areas.inside,
       "--summary", "with several texts cannot be combined with --inside"},
  });
  if (options.ask && !terminal::is_terminal(terminal::Stream::kInput)) {
    throw Failure{"--ask", "standard input is not a terminal"};
  }
}

void settle_choice(FindOptions& options) {
  FileChoice& choice = options.choice;
  choice.folders_need_subfolders = true;
  choice.takes_streams = true;
  choice.here_by_default = options.files_from.empty();
  choice.excluded_folders = options.filter.excluded_folders;
  choice.patterns = preselecting_patterns(options.filter.includes);
}

// Options about files in folders mean the current folder by default.
bool wants_folder(const FindOptions& options) {
  return options.choice.subfolders || !options.filter.empty();
}

// Like grep, reads standard input if no file is given and it is not a terminal.
void settle_input(const CommandLine& line, FindOptions& options) {
  if (options.paths.empty() && options.files_from.empty() &&
      !wants_folder(options) && !options.ask &&
      !terminal::is_terminal(terminal::Stream::kInput)) {
    options.paths = {kStandardInput};
  }
  if (options.search.report.empty()) return;
  for (const std::string& path : options.paths) {
    if (path == kStandardInput ||
        system::look_at(path).kind == system::PathKind::kOther) {
      throw line.wrong("--report", "works with files only, not with " + path);
    }
  }
}

}  // namespace

bool parse_find(const Arguments& arguments, FindOptions& options,
                Output& output) {
  CommandLine line("find", kFindHelp, "--help");
  Given given;
  line.argument(given.first);
  line.arguments(options.paths);
  declare_search(line, options, given);
  declare_files(line, options);
  declare_results(line, options, given);
  declare_form(line, options, given);
  if (!line.parse(arguments, output)) return false;
  settle_texts(line, options, given);
  remove_repeats(options.search.texts);
  settle_markers(line, options.search, given);
  settle_areas(line, given.areas, options.search);
  settle_area_markers(line, options.search.areas);
  settle_choice(options);
  settle_input(line, options);
  settle_form(line, options, given);
  options.show = show_of(given);
  check_together(line, options, given);
  return true;
}

}  // namespace zenfo::host::cli
