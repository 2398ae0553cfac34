// zenfo: the command-line host. Finds the subcommand and turns what it throws
// into one line and an exit status.
//
// Tested by tests/cli/command_test.cpp
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "messages.h"
#include "output.h"
#include "paths.h"
#include "system.h"

#ifdef _WIN32
// Patterns come as they were typed: the start-up code must not expand them.
extern "C" int _dowildcard;
int _dowildcard = 0;
#endif

namespace zenfo::cli {
namespace {

struct Command {
  std::string_view name;
  std::string_view summary;
  int (*run)(const Arguments& arguments);
};

int run_help(const Arguments& arguments);

constexpr Command kCommands[] = {
    {"case", "turn a text in files to capital or small letters", run_case},
    {"compare", "what two lists of files have in common", run_compare},
    {"count", "count bytes, words and lines of files", run_count},
    {"dups", "list files that are the same by their facts", run_dups},
    {"files", "list files and what is known about them", run_files},
    {"find", "show the lines of files that hold a text", run_find},
    {"replace", "replace a text in files", run_replace},
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
    "  zenfo find -r colour            lines that hold it, from here down\n"
    "  zenfo files -r src --total      all files below src, and their size\n"
    "\n"
    "The exit status is 0 for success, 1 when a search found nothing or what "
    "is\n"
    "compared differs, 2 after an error, 130 when the command was stopped, "
    "and\n"
    "141 when its output was not read to the end.\n"
    "\n"
    "On a terminal, control characters in names and text are shown as digits,\n"
    "as \\x1b. Into pipes and files all bytes go as they are.\n";

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

// A character that is lost could become a "?", which stands for others.
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
}  // namespace zenfo::cli

// Wide on Windows: narrow arguments may have lost characters before they get
// here.
#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
  using namespace zenfo::cli;
  system::prepare_streams();
  system::watch_for_stop();
  const int status = run_and_explain(count, arguments);
  if (system::reader_is_gone()) system::leave_without_reader();
  return status <= kNothingFound && complained() ? kError : status;
}
