// zenfo find: names the files that hold a text.
//
// Tested by tests/cli/command_test.cpp; compared with grep by
// tests/cli/compare_with_grep
#include <string>
#include <vector>

#include "columns.h"
#include "command_line.h"
#include "commands.h"
#include "file_arguments.h"
#include "library.h"
#include "messages.h"
#include "output.h"
#include "system.h"

namespace zenfo::cli {
namespace {

const HelpTexts kHelpTexts = {
    "zenfo find [OPTIONS] TEXT [PATH...]",
    "Names the files that hold TEXT.\n"
    "\n"
    "A PATH is a file, a folder (with -r), or a pattern for the files of one\n"
    "folder, as 'src/*.c'. Without any, the current folder and all below it\n"
    "are searched. Names that begin with a point are passed over unless given\n"
    "in full. A file is searched up to its first zero byte.",
    "The exit status is 0 when a file was found, 1 when none was, and 2 after\n"
    "an error.\n"
    "\n"
    "Examples:\n"
    "  zenfo find 'Copyright 2024'          in all files from here down\n"
    "  zenfo find -rw count src             'count', but not 'counter'\n"
    "  zenfo find -ri error logs --include '*.log'\n"
    "  zenfo find -q needle notes.txt && echo found\n"
    "  zenfo find -r0 -- -v . | xargs -0 ls -l\n"};

struct FindOptions {
  Session::TextSearch search;
  std::vector<std::string> paths;
  FileChoice choice;
  ResultForm form;
};

// False when only help was asked for.
bool parse(const Arguments& arguments, FindOptions& options, Output& output) {
  CommandLine line("find", kHelpTexts);
  bool ignore_case = false;
  bool names_only = false;
  line.argument(options.search.text);
  line.arguments(options.paths);
  line.flag("-i,--ignore-case", ignore_case,
            "Take capital and small letters as the same");
  line.flag("-w,--word", options.search.whole_word,
            "Find the text where no letter or digit touches it");
  add_choice_options(line, options.choice);
  line.flag("-l,--files-with-matches", names_only,
            "Write names only (always so)");
  line.flag("-q,--quiet", options.search.first_only,
            "Write nothing; only the exit status tells");
  add_form_options(line, options.form);
  if (!line.parse(arguments, output)) return false;
  if (options.search.text.empty())
    throw line.wrong("find", "the TEXT to find is missing");
  check_form(line, options.form);
  check_choice(line, options.choice);
  options.search.case_sensitive = !ignore_case;
  options.choice.folders_need_subfolders = true;
  return true;
}

void write_found(const ResultForm& form, Session& session, FileList& files,
                 Output& output) {
  const std::vector<const Column*> path = {find_column("path")};
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (system::stop_status() != 0) throw Stopped{};
    if (!session.selected(i) || files.is_repeat(i)) continue;
    if (form.json) {
      output.put(json_line(path, {std::string(files.path(i))}));
    } else {
      output.put(files.path(i));
    }
    output.put(form.null ? '\0' : '\n');
  }
}

// The library passes over files that it cannot load without a word.
void complain_about_unsearched(Session& session, FileList& files) {
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (session.selected(i) || files.is_repeat(i)) continue;
    const std::string path(session.full_name(i));
    const std::string reason = system::why_not_loaded(path);
    if (!reason.empty()) complain(files.path(i), reason);
  }
}

}  // namespace

int run_find(const Arguments& arguments) {
  FindOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Session session;
  FileList files(session, options.paths, options.choice, FactOptions{});
  const bool found = session.find_in_files(options.search) > 0;
  complain_about_unsearched(session, files);
  write_found(options.form, session, files, output);
  session.complain_about_errors();
  return found ? kFound : kNothingFound;
}

}  // namespace zenfo::cli
