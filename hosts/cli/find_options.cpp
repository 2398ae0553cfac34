#include "find_options.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "command_line.h"
#include "messages.h"
#include "paths.h"
#include "system.h"
#include "text_file.h"

namespace zenfo::cli {
namespace {

const HelpTexts kHelpTexts = {
    "zenfo find [OPTIONS] TEXT [PATH...]\n"
    "       zenfo find [OPTIONS] -e TEXT [-e TEXT]... [-f FILE] [PATH...]\n"
    "       zenfo find [OPTIONS] --between FIRST SECOND [PATH...]",
    "Shows the lines that hold TEXT, which is taken as it is written; with\n"
    "--pattern it is in the pattern language. Options mean what they mean to\n"
    "grep.\n"
    "\n"
    "A PATH is a file, a folder (with -r), a pattern for the files of one\n"
    "folder, as 'src/*.c', or - for standard input. Without any, standard\n"
    "input is searched when it is no terminal; else, and with -r, --include,\n"
    "--exclude or --exclude-dir, the current folder and all below it. Names\n"
    "that begin with a point are passed over unless given in full.\n"
    "\n"
    "A file is binary when it has a zero byte, among its first 32,768 bytes "
    "or\n"
    "before the line in hand: of its lines nothing more is shown than that it\n"
    "matches.",
    "The exit status is 0 when something was found, 1 when nothing was, and 2\n"
    "after an error, even though something was found, unless -q was given.\n"
    "\n"
    "Examples:\n"
    "  zenfo find -r 'Copyright 2024'       in all files from here down\n"
    "  zenfo find -rnw count src            'count', but not 'counter'\n"
    "  zenfo find -rli error logs --include '*.log'\n"
    "  zenfo find -rc -e tide -e ferry src  count the lines with either\n"
    "  zenfo find -ro --between '<b>' '</b>' pages\n"
    "  zenfo find -q needle notes.txt && echo found\n"
    "  journalctl | zenfo find -i error\n"
    "  zenfo find -rl0 -- -v . | xargs -0 ls -l\n"};

// What is given once and looked at when all is known.
struct Given {
  std::string first;
  std::vector<std::string> texts;
  std::vector<std::string> text_files;
  std::string start_pattern;
  std::string end_pattern;
  std::string outside;
  std::string inside;
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
              "Find TEXT; repeated, find each of the texts");
  line.values("-f,--file", given.text_files, "FILE",
              "Find the texts on the lines of FILE");
  line.two_values("--between", search.between, "FIRST SECOND",
                  "Find what begins with FIRST and ends with the\n"
                  "next SECOND");
  line.flag("-F,--literal", given.literal,
            "Take TEXT as it is written (always so without\n--pattern)");
  line.flag("--pattern", search.is_pattern, "TEXT is in the pattern language");
  line.flag("-i,--ignore-case", search.ignore_case,
            "Take capital and small letters as the same");
  line.flag("-w,--word", search.whole_words,
            "Find the text where no letter or digit touches it");
  line.value("--start", search.start.text, "TEXT",
             "Find only where TEXT stands directly in front");
  line.value("--end", search.end.text, "TEXT",
             "Find only where TEXT stands directly behind");
  line.value("--start-pattern", given.start_pattern, "PATTERN",
             "As --start, in the pattern language");
  line.value("--end-pattern", given.end_pattern, "PATTERN",
             "As --end, in the pattern language");
  line.flag("--caret", search.caret,
            "In texts and patterns, names such as ^M mean\n"
            "control characters");
  line.value("--classes", search.classes, "FILE",
             "Take character classes for patterns from FILE");
  line.value("--outside", given.outside, "PATTERN",
             "Find only outside what PATTERN matches");
  line.value("--inside", given.inside, "PATTERN",
             "Find only inside what PATTERN matches");
  line.value("--area-start", search.areas.start, "TEXT",
             "TEXT stands directly in front of such areas");
  line.value("--area-end", search.areas.end, "TEXT",
             "TEXT stands directly behind such areas");
}

void declare_files(CommandLine& line, FindOptions& options) {
  line.heading("Which files");
  line.flag("-r,--recursive", options.choice.subfolders,
            "Take the subfolders of folders too");
  line.values("--include", options.filter.includes, "GLOB",
              "Search only files with such names, as '*.c'");
  line.values("--exclude", options.filter.excludes, "GLOB",
              "Pass over files with such names");
  line.values("--exclude-dir", options.filter.excluded_folders, "GLOB",
              "Pass over files in and below folders with such\nnames");
  line.value("--files-from", options.files_from, "FILE",
             "Search the files on the lines of FILE too");
  line.flag("--skip-binary", options.skip_binary,
            "Pass over files with a zero byte among their\n"
            "first 32,768");
}

void declare_results(CommandLine& line, FindOptions& options, Given& given) {
  line.heading("What to show");
  line.flag("-q,--quiet", given.quiet,
            "Write nothing; only the exit status tells");
  line.flag("-l,--files-with-matches", given.paths_only,
            "Write the names of files with matches only");
  line.flag("-L,--files-without-match", given.other_paths,
            "Write the names of files without matches only");
  line.flag("-c,--count", given.count,
            "Write the number of lines with matches of each\nfile");
  line.flag("--count-matches", given.count_matches,
            "Write the number of matches of each file");
  line.flag("--json", given.json,
            "Write a JSON object a line, see docs/json-output.md");
  line.flag("--hex", given.hex,
            "Write the bytes of matches as rows of a hex dump");
  line.flag("-o,--only-matching", options.form.matches_only,
            "Write the matches only, each on a line of its own");
  line.number("-m,--max-count", given.most_lines,
              "Show at most NUM lines with matches of each file");
  line.flag("-a,--as-text", options.form.as_text,
            "Show lines of binary files too");
  line.flag("--ask", options.ask, "Ask for each match whether to take it");
  line.value("--report", options.search.report, "FILE",
             "Write all matches with their places to FILE too");
  line.value("--summary", options.summary, "FILE",
             "Write a line for each file of --files-from, whose\n"
             "lines end in CR LF, to FILE and nothing else");
}

void declare_form(CommandLine& line, FindOptions& options, Given& given) {
  line.heading("In which form");
  line.flag("-n,--line-number", options.form.numbers,
            "Show the numbers of lines");
  line.flag("-b,--byte-offset", options.form.offsets,
            "Show where lines begin, or with -o matches, in\n"
            "bytes from 0");
  line.flag("-H,--with-filename", given.with_paths,
            "Show the file's name on each line (usual but for\n"
            "a single file)");
  line.flag("-h,--no-filename", given.no_paths, "Show no names of files");
  line.number("-A,--after-context", given.after, "Show NUM lines behind too");
  line.number("-B,--before-context", given.before,
              "Show NUM lines in front too");
  line.number("-C,--context", given.around,
              "Show NUM lines in front and behind too");
  line.flag("-0,--null", options.form.null,
            "Write a zero byte behind names of files");
  line.value("--color", given.colour, "WHEN",
             "Mark matches by colours: auto, always or never;\n"
             "auto heeds NO_COLOR");
  line.heading("Options");
}

// An option that takes the place of the lines or changes them, in the order in
// which one wins over the next.
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

// The first argument is TEXT unless texts were given otherwise.
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

// Each stays where it stood first.
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
    throw line.wrong("--start, --end", "go with a single TEXT");
  }
}

void settle_areas(const CommandLine& line, SearchOptions& search,
                  const Given& given) {
  Areas& areas = search.areas;
  if (!given.outside.empty() && !given.inside.empty()) {
    throw line.wrong("--inside", "does not go with --outside");
  }
  areas.inside = !given.inside.empty();
  areas.pattern = areas.inside ? given.inside : given.outside;
  const bool marked = !areas.start.empty() || !areas.end.empty();
  if (marked && areas.pattern.empty()) {
    throw line.wrong("--area-start, --area-end",
                     "go with --outside or --inside");
  }
}

// grep's rule: names are left out when there is only one file to speak of.
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
  return environment("NO_COLOR").empty() && system::shows_colours();
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
  struct Pair {
    bool wrong;
    const char* one;
    const char* reason;
  };
  const bool paths = given.paths_only || given.other_paths;
  const bool counts = given.count || given.count_matches;
  const bool summary = !options.summary.empty();
  const Pair pairs[] = {
      {given.literal && options.search.is_pattern, "--pattern",
       "does not go with --literal"},
      {given.json && options.form.null, "--json", "does not go with --null"},
      {given.json && (paths || counts || options.form.matches_only), "--json",
       "does not go with other forms of results"},
      {given.hex && (paths || counts || given.json || options.form.null ||
                     options.form.matches_only),
       "--hex", "does not go with other forms of results"},
      {given.paths_only && given.other_paths, "-l", "does not go with -L"},
      {given.with_paths && given.no_paths, "-h", "does not go with -H"},
      {options.ask && (given.quiet || given.json), "--ask",
       "does not go with --quiet or --json"},
      {summary && options.files_from.empty(), "--summary",
       "goes with --files-from"},
      {summary && (paths || counts || given.json || given.hex || options.ask ||
                   !options.paths.empty() || !options.filter.empty()),
       "--summary", "goes with no PATH and no other form of results"},
      {summary && options.skip_binary, "--skip-binary",
       "does not go with --summary"},
      {summary && options.search.texts.size() > 1 &&
           options.search.areas.inside,
       "--summary", "with several texts does not go with --inside"},
  };
  for (const Pair& pair : pairs) {
    if (pair.wrong) throw line.wrong(pair.one, pair.reason);
  }
  if (options.ask && !system::is_terminal(system::Stream::kInput)) {
    throw Failure{"--ask", "standard input is no terminal to answer from"};
  }
}

// The library's patterns know no brackets and ignore case, so they only
// prepare the choice.
void settle_choice(FindOptions& options) {
  FileChoice& choice = options.choice;
  choice.folders_need_subfolders = true;
  choice.takes_streams = true;
  choice.here_by_default = options.files_from.empty();
  choice.excluded_folders = options.filter.excluded_folders;
  for (const std::string& pattern : options.filter.includes) {
    const bool simple = !pattern.empty() &&
                        pattern.find_first_of("[]\\;|/") == std::string::npos;
    choice.patterns.push_back(simple ? pattern : "*");
  }
  std::sort(choice.patterns.begin(), choice.patterns.end());
  choice.patterns.erase(
      std::unique(choice.patterns.begin(), choice.patterns.end()),
      choice.patterns.end());
}

// What speaks of the files of folders asks for the current one.
bool wants_folder(const FindOptions& options) {
  return options.choice.subfolders || !options.filter.empty();
}

// As grep does, for whom a terminal is no input to search.
void settle_input(const CommandLine& line, FindOptions& options) {
  if (options.paths.empty() && options.files_from.empty() &&
      !wants_folder(options) && !options.ask &&
      !system::is_terminal(system::Stream::kInput)) {
    options.paths = {kStandardInput};
  }
  if (options.search.report.empty()) return;
  for (const std::string& path : options.paths) {
    if (path == kStandardInput ||
        system::look_at(path).kind == system::PathKind::kOther) {
      throw line.wrong("--report", "goes with files only, not with " + path);
    }
  }
}

}  // namespace

bool parse_find(const Arguments& arguments, FindOptions& options,
                Output& output) {
  CommandLine line("find", kHelpTexts, "--help");
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
  settle_areas(line, options.search, given);
  settle_choice(options);
  settle_input(line, options);
  settle_form(line, options, given);
  options.show = show_of(given);
  check_together(line, options, given);
  return true;
}

}  // namespace zenfo::cli
