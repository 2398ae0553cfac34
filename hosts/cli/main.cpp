// zenfo: the command-line host. Runs the subcommand and turns its exceptions
// into one line and an exit status.
//
// Tested by tests/cli/command_test.cpp
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/system/terminal.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"

#ifdef _WIN32
// The start-up code must not expand patterns in arguments.
extern "C" int _dowildcard;
int _dowildcard = 0;
#endif

namespace zenfo::host::cli {
namespace {

struct Command {
  std::string_view name;
  std::string_view summary;
  int (*run)(const Arguments& arguments);
};

int run_help(const Arguments& arguments);

constexpr Command kCommands[] = {
    {"case", "change the case of text in files", run_case},
    {"compare", "compare two lists of files", run_compare},
    {"count", "count the bytes, words and lines of files", run_count},
    {"dups", "list files that have the same name, size or other facts",
     run_dups},
    {"files", "list files and their facts", run_files},
    {"find", "show the lines of files that contain a text", run_find},
    {"replace", "replace text in files", run_replace},
    {"undo", "bring back the files that a run changed", run_undo},
    {"help", "explain a command: zenfo help COMMAND", run_help},
};

constexpr std::string_view kHelp =
    "zenfo finds and replaces text in many files at once.\n"
    "\n"
    "Usage: zenfo COMMAND [OPTIONS] [ARGUMENTS]\n"
    "       zenfo --help | --version\n"
    "\n"
    "Commands:\n";

constexpr std::string_view kHelpEnd =
    "\n"
    "Examples:\n"
    "  zenfo find -r colour            lines with it, in and below this "
    "folder\n"
    "  zenfo files -r src --total      all files below src, and their size\n"
    "\n"
    "The exit status is 0 for success, 1 when a search found nothing or a\n"
    "comparison found differences, 2 after an error, 130 when the command was\n"
    "stopped, and 141 when its output was not read to the end.\n"
    "\n"
    "On a terminal, control characters in names and text are shown as codes\n"
    "such as \\x1b. Pipes and files receive all bytes unchanged.\n";

const Command& find_command(std::string_view name) {
  for (const Command& command : kCommands) {
    if (command.name == name) return command;
  }
  throw Failure{std::string(name), "no such command; see 'zenfo --help'"};
}

int show_help() {
  Output output;
  output.put(kHelp);
  for (const Command& command : kCommands) {
    output.put("  ");
    output.put(command.name);
    output.put(std::string(10 - command.name.size(), ' '));
    output.put(command.summary);
    output.put('\n');
  }
  output.put(kHelpEnd);
  return kDone;
}

int run_help(const Arguments& arguments) {
  if (arguments.empty()) return show_help();
  const Command& command = find_command(arguments.front());
  if (command.run == run_help) return show_help();
  return command.run({"--help"});
}

int run(Arguments arguments) {
  if (arguments.empty()) {
    throw Failure{"", "which command? See 'zenfo --help'"};
  }
  const std::string first = arguments.front();
  if (first == "--help" || first == "-h") return show_help();
  if (first == "--version" || first == "-V") {
    Output().put("zenfo " ZENFO_VERSION "\n");
    return kDone;
  }
  arguments.erase(arguments.begin());
  return find_command(first).run(arguments);
}

// A character that cannot be converted could become "?", a wildcard.
Arguments texts_of(int count, NativeChar** arguments) {
  Arguments texts;
  for (int i = 1; i < count; ++i) {
    texts.push_back(narrow(arguments[i]));
    if (to_path(texts.back()).native() != arguments[i]) {
      throw Failure{texts.back(),
                    "has characters that the system's character set lacks"};
    }
  }
  return texts;
}

int run_and_explain(int count, NativeChar** arguments) {
  try {
    return run(texts_of(count, arguments));
  } catch (const Failure& failure) {
    complain(failure.subject, failure.reason);
  } catch (const Stopped&) {
    complain("", "stopped");
    return system::stop_status();
  } catch (const std::bad_alloc&) {
    complain("", "out of memory");
  } catch (const std::exception& error) {
    complain("", error.what());
  }
  return kError;
}

}  // namespace
}  // namespace zenfo::host::cli

// Wide on Windows, because narrow arguments may already have lost characters.
#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  using namespace zenfo::host::cli;
  terminal::prepare_streams();
  terminal::watch_for_stop();
  const int status = run_and_explain(count, arguments);
  if (terminal::reader_is_gone()) terminal::leave_without_reader();
  return status <= kNothingFound && complained() ? kError : status;
}
