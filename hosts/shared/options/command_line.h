// A command line: its options are declared once, for parsing and for the help
// text. CLI11 parses, with some features disabled: no "/x" options, no "[a,b]"
// lists, one value for each option.
//
// Tested by tests/cli/command_test.cpp,
// tests/gui/query/program_options_test.cpp
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shared/frame/failure.h"

namespace CLI {
class App;
}

namespace zenfo::host {

// The words of a command line after the name of the program and of a
// subcommand.
using Arguments = std::vector<std::string>;

// The parts of the help text around the options.
struct HelpTexts {
  std::string usage;        // "zenfo find [OPTIONS] TEXT [PATH...]"
  std::string description;  // lines without the last line feed
  std::string examples;     // whole lines
};

class CommandLine {
 public:
  // Failures name the command and say "see 'HELP'".
  CommandLine(std::string name, const HelpTexts& texts, std::string help,
              const std::string& help_names = "-h,--help");
  ~CommandLine();

  // The heading of the options that follow.
  void heading(const std::string& text) { heading_ = text; }

  void flag(const std::string& names, bool& value, const std::string& help);
  // `value_name` names the value in the help text. An option that is given
  // again replaces its value, or adds to its values.
  void value(const std::string& names, std::string& value,
             const std::string& value_name, const std::string& help);
  void values(const std::string& names, std::vector<std::string>& values,
              const std::string& value_name, const std::string& help);
  // The same for a value that must not be empty.
  void text(const std::string& names, std::string& value,
            const std::string& value_name, const std::string& help);
  // A whole number of 0 or more.
  void number(const std::string& names, std::optional<uint64_t>& value,
              const std::string& help);
  // An option with two values.
  using TwoTexts = std::pair<std::string, std::string>;
  void two_values(const std::string& names, std::optional<TwoTexts>& values,
                  const std::string& value_names, const std::string& help);
  // The arguments that are not options: one, then all others. The help text
  // describes them only in its usage line and description.
  void argument(std::string& value);
  void arguments(std::vector<std::string>& values);

  // Throws Failure for an invalid command line. False when the user asked for
  // help, which is then in `help`.
  bool parse(const Arguments& arguments, std::string& help);
  // Throws the failure of the first rule that is broken.
  struct Rule {
    bool wrong;
    const char* subject;
    const char* reason;
  };
  void refuse_if(std::initializer_list<Rule> rules) const;
  // A failure that refers to the help text.
  Failure wrong(const std::string& subject, const std::string& reason) const;

 private:
  // Returns an argument as it was given; throws for an unknown option.
  std::string taken(const std::string& argument) const;
  void refuse_unknown_options() const;

  std::string name_;
  std::string help_;
  std::string heading_ = "Options";
  std::unique_ptr<CLI::App> options_;  // the parser's header takes long
};

}  // namespace zenfo::host
