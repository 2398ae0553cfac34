// zenfo replace: replaces a text in files, or inserts beside it.
//
// Tested by tests/cli/posix_replace_test.cpp
#include <cstdint>
#include <fstream>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands/changes.h"
#include "cli/commands/commands.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/progress.h"
#include "shared/system/paths.h"
#include "shared/system/temporary_folder.h"
#include "shared/text/text_file.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kReplaceHelp = {
    "zenfo replace [OPTIONS] TEXT REPLACEMENT PATH...\n"
    "       zenfo replace [OPTIONS] --between FIRST SECOND REPLACEMENT "
    "PATH...\n"
    "       zenfo replace [OPTIONS] --values FILE TEXT PATH...\n"
    "       zenfo replace [OPTIONS] --from-pattern PATTERN TEXT PATH...\n"
    "       zenfo replace [OPTIONS] --pairs FILE PATH...",
    "Replaces TEXT by REPLACEMENT, which may be empty, in files.\n"
    "\n"
    "A PATH is a file, a folder (with -r), or a pattern for the files of one\n"
    "folder, as 'src/*.c'. Links are followed. Files with a zero byte, which\n"
    "are binary, and read-only files are not changed: those that contain TEXT\n"
    "are named, and the exit status is 2. A match whose replacement is the\n"
    "same text is not counted, except with --number.\n"
    "\n"
    "On a terminal you are asked before anything is changed; elsewhere --yes\n"
    "is needed. Safe copies are kept, and the last line names the command\n"
    "that undoes the run. The copies are removed after 30 days, or earlier\n"
    "when all of them take more than 1 GB.",
    "The exit status is 0 when something was replaced, 1 when nothing "
    "was,\n"
    "and 2 after an error.\n"
    "\n"
    "Examples:\n"
    "  zenfo replace -rn colour color docs      show what would change\n"
    "  zenfo replace -ry -w colour color docs   change it\n"
    "  zenfo replace --number '<h2>' '<h2 id=\"s#\">' page.html\n"
    "  zenfo replace -r --pairs terms.txt docs --include '*.md'\n"
    "  zenfo undo                               undo the last run\n"};

struct ReplaceOptions {
  ChangeOptions change;
  std::string replacement;
  std::vector<std::string> replacements;  // one for each text, from --pairs
  std::string pairs;
  std::string values;
  std::string from_pattern;
  std::optional<uint64_t> take;
  bool expand = false;
  bool before = false;
  bool after = false;
  bool number = false;
  bool run_on = false;
  std::string placeholder = "#";
  std::optional<uint64_t> first;
  std::optional<uint64_t> step;

  int32_t edit_mode() const { return before ? 1 : after ? 2 : 0; }
};

void declare_replacement(CommandLine& line, ReplaceOptions& options) {
  line.heading("What to replace it by");
  line.flag("--before", options.before, "Insert REPLACEMENT before the text");
  line.flag("--after", options.after, "Insert REPLACEMENT after the text");
  line.flag("--expand", options.expand,
            "In REPLACEMENT, names such as ^M mean control\ncharacters");
  line.value("--pairs", options.pairs, "FILE",
             "Instead of TEXT and REPLACEMENT: lines of FILE,\n"
             "each a text, a tab and its replacement, applied in\n"
             "order");
  line.value("--values", options.values, "FILE",
             "Instead of REPLACEMENT: line n of FILE replaces\n"
             "match n of each file; further matches stay");
  line.value("--from-pattern", options.from_pattern, "PATTERN",
             "Instead of REPLACEMENT: match n of PATTERN in the\n"
             "same file replaces match n");
  line.number("--take", options.take,
              "With --from-pattern: its match NUM replaces all");
  line.flag("--number", options.number,
            "Replace '#' in REPLACEMENT by running numbers");
  line.value("--placeholder", options.placeholder, "TEXT",
             "Replace TEXT by numbers, not '#'");
  line.number("--first", options.first, "Begin with NUM instead of 1");
  line.number("--step", options.step, "Add NUM for each match, not 1");
  line.flag("--run-on", options.run_on,
            "Continue the numbers from file to file");
}

std::string take_argument(const CommandLine& line, ChangeOptions& options,
                          const std::string& name) {
  if (options.paths.empty())
    throw line.wrong("", "the " + name + " is missing");
  std::string first = std::move(options.paths.front());
  options.paths.erase(options.paths.begin());
  return first;
}

void read_pairs(ReplaceOptions& options) {
  for (const std::string& text : read_text_lines(options.pairs)) {
    const size_t tab = text.find('\t');
    if (tab == 0 || tab == std::string::npos ||
        text.find('\0') != std::string::npos) {
      throw Failure{options.pairs,
                    "each line must be a text, a tab and its replacement"};
    }
    options.change.search.texts.push_back(text.substr(0, tab));
    options.replacements.push_back(text.substr(tab + 1));
  }
  if (options.replacements.empty()) throw Failure{options.pairs, "is empty"};
}

void settle_texts(const CommandLine& line, ReplaceOptions& options) {
  ChangeOptions& change = options.change;
  if (!options.pairs.empty()) {
    read_pairs(options);
    return;
  }
  if (!change.search.between) {
    const std::string text = take_argument(line, change, "TEXT");
    if (text.empty()) throw line.wrong("", "the TEXT to replace is empty");
    change.search.texts = {text};
  }
  if (options.values.empty() && options.from_pattern.empty()) {
    options.replacement = take_argument(line, change, "REPLACEMENT");
  }
}

void check_together(const CommandLine& line, const ReplaceOptions& options) {
  const SearchOptions& search = options.change.search;
  const bool pairs = !options.pairs.empty();
  const bool marked = !search.start.text.empty() || !search.end.text.empty();
  const bool sources = !options.values.empty() || !options.from_pattern.empty();
  line.refuse_if({
      {options.before && options.after, "--after",
       "cannot be combined with --before"},
      {!options.values.empty() && !options.from_pattern.empty(), "--values",
       "cannot be combined with --from-pattern"},
      {options.take && options.from_pattern.empty(), "--take",
       "needs --from-pattern"},
      {options.number && sources, "--number",
       "cannot be combined with --values or --from-pattern"},
      {pairs &&
           (sources || search.between || marked || options.edit_mode() != 0),
       "--pairs",
       "cannot be combined with --values, --from-pattern, --between, --start, "
       "--end, "
       "--before or --after"},
      {marked && search.between.has_value(), "--between",
       "cannot be combined with --start or --end"},
      {options.number && options.placeholder.empty(), "--placeholder",
       "is empty"},
      {options.number && !pairs && options.replacement.empty(), "--number",
       "needs a REPLACEMENT"},
      {!options.number && (options.first || options.step || options.run_on),
       "--first, --step, --run-on", "need --number"},
  });
}

int32_t checked(const CommandLine& line, const char* name,
                const std::optional<uint64_t>& number, int32_t usual) {
  if (number && *number > std::numeric_limits<int32_t>::max()) {
    throw line.wrong(name, "is too large");
  }
  return number ? static_cast<int32_t>(*number) : usual;
}

// Drops pairs that replace a text by itself, but keeps at least one pair.
void drop_unchanged_pairs(ReplaceOptions& options) {
  SearchOptions& search = options.change.search;
  if (options.number || search.ignore_case || search.is_pattern ||
      search.caret) {
    return;
  }
  for (size_t i = search.texts.size(); i-- > 0 && search.texts.size() > 1;) {
    if (search.texts[i] != options.replacements[i]) continue;
    search.texts.erase(search.texts.begin() + static_cast<ptrdiff_t>(i));
    options.replacements.erase(options.replacements.begin() +
                               static_cast<ptrdiff_t>(i));
  }
}

// With numbers every match changes, because each one is counted.
Stays which_stay(const ReplaceOptions& options) {
  if (options.number || options.edit_mode() != 0) return nullptr;
  if (!options.values.empty() || !options.from_pattern.empty()) {
    return stays_never;
  }
  const bool several = options.replacements.size() > 1;
  const std::string& replacement = options.replacements.empty()
                                       ? options.replacement
                                       : options.replacements.front();
  const bool expands =
      options.expand || (!options.pairs.empty() && options.change.search.caret);
  if (several || expands) return nullptr;
  return stays_as(options.change.search, replacement);
}

// False when the user only asked for help.
bool parse(const Arguments& arguments, ReplaceOptions& options,
           Output& output) {
  CommandLine line("replace", kReplaceHelp);
  ChangeOptions& change = options.change;
  AreaTexts areas;
  change.command = shell_command("replace", arguments);
  change.done = "replaced";
  change.cuts_at_zero_byte = true;
  line.arguments(change.paths);
  declare_text_options(line, change.search, areas);
  declare_replacement(line, options);
  declare_change_options(line, change);
  if (!line.parse(arguments, output)) return false;
  settle_texts(line, options);
  check_together(line, options);
  if (options.edit_mode() != 0) change.done = "inserted at";
  checked(line, "--first", options.first, 1);
  checked(line, "--step", options.step, 1);
  checked(line, "--take", options.take, 0);
  settle_change_options(line, change, areas);
  if (!options.pairs.empty()) drop_unchanged_pairs(options);
  change.stays = which_stay(options);
  return true;
}

// Writes the values in the library's form, with lines that end in CR LF. The
// library skips empty lines, so that later values would go to the wrong
// matches; they are refused.
void enter_values(const std::string& path) {
  const std::string own = temporary_folder::make_file();
  std::ofstream file(to_path(own), std::ios::binary);
  for (const std::string& value : read_text_lines(path)) {
    if (value.empty() ||
        value.find_first_of(std::string("\0\r", 2)) != std::string::npos) {
      throw Failure{path,
                    "each line must be a replacement, not empty, without zero "
                    "bytes and CR"};
    }
    file << value << "\r\n";
  }
  file.close();
  if (!file || load_replace_list(own.c_str()) < 1) {
    throw Failure{path, "no replacements can be read from this file"};
  }
}

// Enters the replacements; the search has compiled the texts.
void enter_replacements(const ReplaceOptions& options) {
  if (!options.pairs.empty()) {
    Clear(ZENFO_LIST_PAIRS);
    for (size_t i = 0; i < options.replacements.size(); ++i) {
      AddStringPair(options.change.search.texts[i].c_str(),
                    options.replacements[i].c_str());
    }
    SetState(ZENFO_LIST_PAIRS, -1, 1);
  }
  if (!options.values.empty()) enter_values(options.values);
  const int32_t caret = options.change.search.caret;
  if (!options.from_pattern.empty() &&
      set_replace_pattern("", options.from_pattern.c_str(), "", 0, 1, 0, caret,
                          caret, caret) != 1) {
    throw Failure{options.from_pattern, "there is nothing in it to search for"};
  }
}

// No byte check: the files to change contain no zero bytes.
constexpr int32_t kAnyBytes = 0;

class Replacing {
 public:
  explicit Replacing(const ReplaceOptions& options) : o_(options) {}

  int32_t operator()(bool ask, bool safe) const {
    if (!o_.pairs.empty())
      return o_.number ? pairs_nbr(ask, safe) : pairs(ask, safe);
    return o_.number ? block_nbr(ask, safe) : block(ask, safe);
  }

 private:
  int32_t first() const { return static_cast<int32_t>(o_.first.value_or(1)); }
  int32_t step() const { return static_cast<int32_t>(o_.step.value_or(1)); }
  int32_t take() const { return static_cast<int32_t>(o_.take.value_or(0)); }
  const SearchOptions& search() const { return o_.change.search; }

  int32_t block(bool ask, bool safe) const {
    const SearchOptions& s = search();
    return ReplaceBlock(o_.replacement.c_str(), !s.ignore_case, s.whole_words,
                        kAnyBytes, ask, safe, o_.edit_mode(),
                        !o_.values.empty(), !o_.from_pattern.empty(), take(),
                        s.areas.inside, o_.expand);
  }
  int32_t block_nbr(bool ask, bool safe) const {
    const SearchOptions& s = search();
    return ReplaceBlockNbr(o_.replacement.c_str(), !s.ignore_case,
                           s.whole_words, kAnyBytes, ask, safe, o_.edit_mode(),
                           0, 0, 0, s.areas.inside, o_.expand,
                           o_.placeholder.c_str(), first(), step(), o_.run_on);
  }
  // One option enables caret names in both texts.
  int32_t pairs(bool ask, bool safe) const {
    const SearchOptions& s = search();
    return ReplaceString(!s.ignore_case, s.whole_words, kAnyBytes, s.is_pattern,
                         s.caret, ask, safe, s.areas.inside);
  }
  int32_t pairs_nbr(bool ask, bool safe) const {
    const SearchOptions& s = search();
    return ReplaceStringNbr(!s.ignore_case, s.whole_words, kAnyBytes,
                            s.is_pattern, s.caret, ask, safe, s.areas.inside,
                            o_.placeholder.c_str(), first(), step(), o_.run_on);
  }

  const ReplaceOptions& o_;
};

}  // namespace

int run_replace(const Arguments& arguments) {
  ReplaceOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Progress progress;
  Session session(terminal_messages(), progress);
  Search search(session, options.change.search);
  search.compile();
  enter_replacements(options);
  return run_change(session, search, options.change, Replacing(options),
                    output);
}

}  // namespace zenfo::host::cli
