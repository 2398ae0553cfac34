// zenfo case: changes the case of text in files.
//
// Tested by tests/cli/posix_replace_test.cpp
#include <cstdint>
#include <string>

#include "cli/commands/changes.h"
#include "cli/commands/commands.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/progress.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kCaseHelp = {
    "zenfo case --upper|--lower [OPTIONS] TEXT PATH...",
    "Changes the letters A to Z in every occurrence of TEXT to upper or lower\n"
    "case. With -i or --pattern one TEXT can match many forms. Everything\n"
    "else is as in 'zenfo replace'.",
    "The exit status is 0 when something was changed, 1 when nothing was,\n"
    "and 2 after an error.\n"
    "\n"
    "Examples:\n"
    "  zenfo case --upper -iw select queries.sql\n"
    "  zenfo case --lower --between '<' '>' -rn pages\n"};

struct CaseOptions {
  ChangeOptions change;
  bool upper = false;
  bool lower = false;
};

// False when the user only asked for help.
bool parse(const Arguments& arguments, CaseOptions& options, Output& output) {
  CommandLine line("case", kCaseHelp);
  ChangeOptions& change = options.change;
  AreaTexts areas;
  change.command = shell_command("case", arguments);
  change.done = "changed";
  line.arguments(change.paths);
  line.flag("--upper", options.upper, "Change to upper case");
  line.flag("--lower", options.lower, "Change to lower case");
  declare_text_options(line, change.search, areas);
  declare_change_options(line, change);
  if (!line.parse(arguments, output)) return false;
  if (options.upper == options.lower) {
    throw line.wrong("", "--upper or --lower must be given");
  }
  if (!change.search.between) {
    if (change.paths.empty() || change.paths.front().empty()) {
      throw line.wrong("", "the TEXT is missing");
    }
    change.search.texts = {change.paths.front()};
    change.paths.erase(change.paths.begin());
  }
  settle_change_options(line, change, areas);
  change.stays = stays_in_case(change.search, options.upper);
  return true;
}

}  // namespace

int run_case(const Arguments& arguments) {
  CaseOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Progress progress;
  Session session(terminal_messages(), progress);
  Search search(session, options.change.search);
  search.compile();
  const SearchOptions& s = options.change.search;
  constexpr int32_t kAnyBytes = 0;
  const Change change = [&](bool ask, bool safe) {
    return change_case_i(!s.ignore_case, s.whole_words, kAnyBytes, ask, safe,
                         options.upper, s.areas.inside);
  };
  return run_change(session, search, options.change, change, output);
}

}  // namespace zenfo::host::cli
