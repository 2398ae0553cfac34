// zenfo compare: finds what two lists of files have in common, or what only one
// of them has.
//
// The library compares lists 1 and 2. Both are filled through list 1.
//
// Tested by tests/cli/compare_test.cpp, posix_files_test.cpp
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/command_line.h"
#include "cli/options/keys.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/session/file_arguments.h"
#include "shared/session/session.h"
#include "shared/system/stop.h"
#include "shared/text/json_text.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kCompareHelp = {
    "zenfo compare [OPTIONS] A B",
    "Compares two lists of files by a key and shows the files that both hold:\n"
    "those of A after '< ', then those of B after '> '. With --differ it\n"
    "shows the files that the other one lacks. The contents are not\n"
    "compared.\n"
    "\n"
    "A and B are folders, files, or patterns for the files of one folder, as\n"
    "'src/*.c'; with --lists, saved lists of files. Names that begin with a\n"
    "dot are skipped unless given in full.",
    "Keys: name, folder, type, created, accessed, modified, size, attributes,\n"
    "path, and all: name, size, modified and attributes together. Case is\n"
    "ignored. By a time, equal files may be missed among files written within\n"
    "minutes of each other.\n"
    "\n"
    "The exit status is 0 when neither side lacks a file of the other, 1 when\n"
    "one does, and 2 after an error.\n"
    "\n"
    "Examples:\n"
    "  zenfo compare -r photos backup       names that both hold\n"
    "  zenfo compare -r photos backup --differ --by all\n"
    "  zenfo compare --lists monday.list today.list --differ\n"
    "  zenfo files -r src --save-list monday.list    makes such a list\n"};

struct CompareOptions {
  std::string sides[2];
  FileChoice choice;
  ResultForm form;
  const Key* key = nullptr;
  bool lists = false;
  bool differ = false;
};

void check_sides(const CommandLine& line, CompareOptions& options,
                 const std::vector<std::string>& paths) {
  if (paths.size() != 2) {
    throw line.wrong("compare", "needs two things to compare, A and B");
  }
  for (size_t i = 0; i < 2; ++i) {
    if (paths[i].empty()) throw line.wrong("compare", "A or B is empty");
    options.sides[i] = paths[i];
  }
  if (options.lists &&
      (options.choice.subfolders || !options.choice.patterns.empty())) {
    throw line.wrong("--lists", "cannot be combined with -r or --include");
  }
}

// False when the user only asked for help.
bool parse(const Arguments& arguments, CompareOptions& options,
           Output& output) {
  CommandLine line("compare", kCompareHelp);
  std::vector<std::string> paths;
  std::string key;
  line.arguments(paths);
  line.text("--by", key, "KEY",
            "Compare by this key; the default is 'name', or\n"
            "'path' with --lists");
  line.flag("--differ", options.differ,
            "Show the files that the other one lacks");
  line.flag("--lists", options.lists,
            "A and B are lists, as 'zenfo files --save-list'\nmakes them");
  add_choice_options(line, options.choice);
  add_form_options(line, options.form);
  if (!line.parse(arguments, output)) return false;
  check_form(line, options.form);
  check_choice(line, options.choice);
  check_sides(line, options, paths);
  if (key.empty()) key = options.lists ? "path" : "name";
  options.key = &find_key(line, "--by", key);
  return true;
}

// Loads the files of one side into list 1.
FileList load_side(Session& session, const CompareOptions& options,
                   const std::string& side, const FactOptions& facts) {
  FileChoice choice = options.choice;
  std::vector<std::string> arguments;
  if (options.lists) {
    choice.list_file = side;
  } else {
    arguments = {side};
  }
  FileList files(session);
  files.fill(arguments, choice, facts);
  files.drop_repeats();
  leave_out_incomplete(session, ZENFO_LIST_RUN_FILES, files);
  return files;
}

// Continuing would report every file of the other side as a difference.
bool nothing_to_compare(Session& session) {
  return session.count() == 0 && complained();
}

struct Side {
  int32_t list;
  const char* name;  // in JSON
  char mark;
};

constexpr Side kSideA = {ZENFO_LIST_PAIRS, "A", '<'};
constexpr Side kSideB = {ZENFO_LIST_RUN_FILES, "B", '>'};

class SideWriter {
 public:
  SideWriter(Session& session, const ResultForm& form, Output& output)
      : session_(session), form_(form), output_(output) {}

  void write(const Side& side, const FileList& files) {
    const uint32_t count = session_.count(side.list);
    for (uint32_t i = 0; i < count; ++i) {
      if (system::stop_status() != 0) throw Stopped{};
      if (!session_.selected(side.list, i)) continue;
      write_file(side, files.shown(session_.full_name(side.list, i)));
    }
  }

 private:
  void write_file(const Side& side, std::string_view path) {
    if (form_.json) {
      output_.put_json(json_file(side, path));
    } else {
      output_.put(side.mark);
      output_.put(' ');
      output_.put_name(path);
    }
    output_.put(form_.null ? '\0' : '\n');
  }

  static std::string json_file(const Side& side, std::string_view path) {
    return "{\"side\":" + json_text(side.name) +
           ",\"path\":" + json_text(path) + '}';
  }

  Session& session_;
  const ResultForm& form_;
  Output& output_;
};

}  // namespace

int run_compare(const Arguments& arguments) {
  CompareOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  FactOptions facts;
  ask_for(*options.key, facts);
  Progress progress;
  Session session(terminal_messages(), progress);
  const FileList a = load_side(session, options, options.sides[0], facts);
  if (nothing_to_compare(session)) return kError;
  session.move_files_to(kSideA.list, facts);
  const FileList b = load_side(session, options, options.sides[1], facts);
  if (nothing_to_compare(session)) return kError;
  session.compare(options.key->option, !options.differ);
  SideWriter writer(session, options.form, output);
  writer.write(kSideA, a);
  writer.write(kSideB, b);
  session.complain_about_errors();
  return session.all_common() ? kSame : kDifferent;
}

}  // namespace zenfo::host::cli
