#include "shared/options/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

namespace zenfo::host {
namespace {

constexpr size_t kHelpColumn = 28;

// The parser treats "[a,b]" as a list; a mark at the start keeps it a text.
constexpr char kMark = '\1';

bool looks_like_option(const std::string& argument) {
  return argument.size() > 1 && argument.starts_with('-');
}

// After "--" nothing is an option, so what looks like one is marked too.
std::string marked(const std::string& argument, bool only_texts) {
  const bool needed = argument.starts_with('[') ||
                      argument.starts_with(kMark) ||
                      (only_texts && looks_like_option(argument));
  return needed ? kMark + argument : argument;
}

// The parser takes its arguments from the back.
std::vector<std::string> marked_backwards(
    const std::vector<std::string>& arguments) {
  std::vector<std::string> backwards;
  bool only_texts = false;
  for (const std::string& argument : arguments) {
    backwards.push_back(marked(argument, only_texts));
    only_texts |= argument == "--";
  }
  std::reverse(backwards.begin(), backwards.end());
  return backwards;
}

std::string unmarked(const std::string& text) {
  return text.starts_with(kMark) ? text.substr(1) : text;
}

// Shows the usage first, then what the command does, then the options.
class HelpFormat : public CLI::Formatter {
 public:
  explicit HelpFormat(const HelpTexts& texts) : texts_(texts) {
    column_width(kHelpColumn);
  }

  std::string make_description(const CLI::App*) const override { return ""; }
  std::string make_usage(const CLI::App*, std::string) const override {
    return "Usage: " + texts_.usage + "\n\n" + texts_.description + "\n";
  }
  std::string make_positionals(const CLI::App*) const override { return ""; }
  // Shows only the value's name, without "..." for repeatable options.
  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string name = option->get_type_name();
    return name.empty() ? "" : ' ' + name;
  }
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode) const override {
    std::string text = make_usage(app, name);
    for (const std::string& group : app->get_groups()) {
      const auto options = app->get_options([&](const CLI::Option* option) {
        return option->get_group() == group && option->nonpositional();
      });
      if (!options.empty()) text += make_group(group, false, options);
    }
    return text + make_footer(app);
  }
  std::string make_footer(const CLI::App*) const override {
    return "\n" + texts_.examples;
  }

 private:
  HelpTexts texts_;
};

}  // namespace

CommandLine::CommandLine(std::string name, const HelpTexts& texts,
                         std::string help, const std::string& help_names)
    : name_(std::move(name)),
      help_(std::move(help)),
      options_(std::make_unique<CLI::App>("", name_)) {
  options_->set_help_flag(help_names, "Show this help and exit");
  options_->allow_windows_style_options(false);
  // Unknown options are collected to report them in our own words.
  options_->allow_extras();
  options_->formatter(std::make_shared<HelpFormat>(texts));
}

CommandLine::~CommandLine() = default;

void CommandLine::flag(const std::string& names, bool& value,
                       const std::string& help) {
  options_->add_flag(names, value, help)
      ->disable_flag_override()
      ->group(heading_);
}

void CommandLine::value(const std::string& names, std::string& value,
                        const std::string& value_name,
                        const std::string& help) {
  options_
      ->add_option_function<std::string>(
          names, [&value](const std::string& text) { value = unmarked(text); },
          help)
      ->type_name(value_name)
      ->group(heading_)
      ->take_last();
}

void CommandLine::values(const std::string& names,
                         std::vector<std::string>& values,
                         const std::string& value_name,
                         const std::string& help) {
  options_
      ->add_option_function<std::vector<std::string>>(
          names,
          [&values](const std::vector<std::string>& texts) {
            for (const auto& text : texts) values.push_back(unmarked(text));
          },
          help)
      ->type_name(value_name)
      ->group(heading_)
      ->allow_extra_args(false);
}

void CommandLine::text(const std::string& names, std::string& value,
                       const std::string& value_name, const std::string& help) {
  options_
      ->add_option_function<std::string>(
          names,
          [this, &value, names](const std::string& text) {
            if (text.empty()) throw wrong(names, "needs a value");
            value = unmarked(text);
          },
          help)
      ->type_name(value_name)
      ->group(heading_)
      ->take_last();
}

void CommandLine::number(const std::string& names,
                         std::optional<uint64_t>& value,
                         const std::string& help) {
  const std::string name = names.substr(0, names.find(','));
  options_
      ->add_option_function<std::string>(
          names,
          [this, &value, name](const std::string& text) {
            uint64_t number = 0;
            const char* end = text.data() + text.size();
            const auto [stop, error] =
                std::from_chars(text.data(), end, number);
            if (error != std::errc() || stop != end) {
              throw wrong(name + ' ' + unmarked(text),
                          "needs a number of 0 or more");
            }
            value = number;
          },
          help)
      ->type_name("NUM")
      ->group(heading_)
      ->take_last();
}

void CommandLine::two_values(const std::string& names,
                             std::optional<TwoTexts>& values,
                             const std::string& value_names,
                             const std::string& help) {
  options_
      ->add_option_function<std::vector<std::string>>(
          names,
          [&values](const std::vector<std::string>& texts) {
            values = TwoTexts(unmarked(texts[texts.size() - 2]),
                              unmarked(texts.back()));
          },
          help)
      ->type_name(value_names)
      ->group(heading_)
      ->expected(2)
      ->allow_extra_args(false);
}

void CommandLine::argument(std::string& value) {
  options_->add_option_function<std::string>(
      "first",
      [this, &value](const std::string& text) { value = taken(text); });
}

void CommandLine::arguments(std::vector<std::string>& values) {
  options_->add_option_function<std::vector<std::string>>(
      "others", [this, &values](const std::vector<std::string>& texts) {
        for (const auto& text : texts) values.push_back(taken(text));
      });
}

// The parser treats "-5" as an argument, and also the rest of "-n5" if -n is a
// flag.
std::string CommandLine::taken(const std::string& argument) const {
  if (looks_like_option(argument)) throw wrong(argument, "no such option");
  return unmarked(argument);
}

Failure CommandLine::wrong(const std::string& subject,
                           const std::string& reason) const {
  return {subject, reason + "; see '" + help_ + "'"};
}

bool CommandLine::parse(const Arguments& arguments, std::string& help) {
  try {
    options_->parse(marked_backwards(arguments));
  } catch (const CLI::CallForHelp&) {
    help = options_->help();
    return false;
  } catch (const CLI::ParseError& error) {
    throw wrong(name_, error.what());
  }
  refuse_unknown_options();
  return true;
}

void CommandLine::refuse_if(std::initializer_list<Rule> rules) const {
  for (const Rule& rule : rules) {
    if (rule.wrong) throw wrong(rule.subject, rule.reason);
  }
}

void CommandLine::refuse_unknown_options() const {
  for (const std::string& argument : options_->remaining()) {
    if (argument != "--") throw wrong(argument, "no such option");
  }
}

}  // namespace zenfo::host
