// zenfo files: lists files with their facts.
//
// Tested by tests/cli/command_test.cpp
#include <algorithm>
#include <string>
#include <string_view>
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
    "zenfo files [OPTIONS] [PATH...]",
    "Lists files and what is known about them.\n"
    "\n"
    "A PATH is a file, a folder, or a pattern for the files of one folder, as\n"
    "'src/*.c'. Without any, the current folder and all below it are listed.\n"
    "Names that begin with a point are passed over unless given in full.",
    "Columns: name, folder, type, created, accessed, modified, size,\n"
    "attributes, path.\n"
    "\n"
    "Examples:\n"
    "  zenfo files                          all files from here down\n"
    "  zenfo files -r src --include '*.h'   the headers below src\n"
    "  zenfo files 'doc/*.txt' --columns size,modified,path --total\n"
    "  zenfo files -r0 . | xargs -0 wc -c   for names with any bytes in "
    "them\n"};

struct FilesOptions {
  std::vector<std::string> paths;
  FileChoice choice;
  ResultForm form;
  std::vector<const Column*> columns;
  bool total = false;
};

std::vector<const Column*> parse_columns(const CommandLine& line,
                                         std::string_view names) {
  std::vector<const Column*> columns;
  while (true) {
    const size_t end = names.find(',');
    const std::string name(names.substr(0, end));
    const Column* column = find_column(name);
    if (column == nullptr) {
      throw line.wrong("--columns",
                       "no column '" + name + "' among " + column_names());
    }
    columns.push_back(column);
    if (end == std::string_view::npos) return columns;
    names.remove_prefix(end + 1);
  }
}

// False when only help was asked for.
bool parse(const Arguments& arguments, FilesOptions& options, Output& output) {
  CommandLine line("files", kHelpTexts);
  std::string columns = "path";
  line.arguments(options.paths);
  add_choice_options(line, options.choice);
  line.value("--columns", columns, "LIST", "Columns to show, as 'size,path'");
  line.flag("--total", options.total,
            "End with the number of files and the sum of sizes");
  add_form_options(line, options.form);
  if (!line.parse(arguments, output)) return false;
  check_form(line, options.form);
  check_choice(line, options.choice);
  options.columns = parse_columns(line, columns);
  return true;
}

FactOptions facts_for(const FilesOptions& options) {
  FactOptions facts;
  if (options.total) facts.ask(ZENFO_OPTION_ATTRIBUTES);
  for (const Column* column : options.columns) {
    if (column->option != 0) facts.ask(column->option);
  }
  return facts;
}

class Listing {
 public:
  Listing(const FilesOptions& options, Session& session, FileList& files,
          Output& output)
      : options_(options), session_(session), files_(files), output_(output) {}

  void write() {
    const bool aligned = !options_.form.null && !options_.form.json;
    if (aligned && options_.columns.size() > 1) measure();
    widths_.resize(options_.columns.size());
    for_each_file([&](uint32_t index) {
      const Cells cells = cells_of(index);
      end(options_.form.json ? json_line(options_.columns, cells)
          : options_.form.null
              ? tabbed_line(cells)
              : aligned_line(options_.columns, cells, widths_));
    });
    if (options_.total) write_total();
  }

 private:
  template <class Visit>
  void for_each_file(Visit visit) {
    for (uint32_t i = 0; i < files_.count(); ++i) {
      if (system::stop_status() != 0) throw Stopped{};
      if (!files_.is_repeat(i)) visit(i);
    }
  }

  std::optional<std::string> cell(const Column& column, uint32_t index) {
    if (column.accessor == nullptr) return std::string(files_.path(index));
    const auto text = session_.text(column.accessor, index);
    if (!text) return std::nullopt;
    return std::string(*text);
  }

  Cells cells_of(uint32_t index) {
    Cells cells;
    for (const Column* column : options_.columns) {
      cells.push_back(cell(*column, index));
    }
    return cells;
  }

  void measure() {
    widths_.resize(options_.columns.size());
    for_each_file([&](uint32_t index) {
      const Cells cells = cells_of(index);
      for (size_t i = 0; i < cells.size(); ++i) {
        widths_[i] = std::max(widths_[i], width_of(cells[i].value_or("")));
      }
    });
  }

  void end(std::string_view line) {
    output_.put(line);
    output_.put(options_.form.null ? '\0' : '\n');
  }

  void write_total() {
    session_.select_all(false);
    uint32_t files = 0;
    for_each_file([&](uint32_t index) {
      session_.select(index, true);
      ++files;
    });
    const SizeTotal total = session_.size_of_selection();
    end(options_.form.json
            ? json_total(files, total)
            : std::to_string(files) + (files == 1 ? " file, " : " files, ") +
                  total.long_text);
  }

  const FilesOptions& options_;
  Session& session_;
  FileList& files_;
  Output& output_;
  std::vector<size_t> widths_;
};

void complain_about_missing_facts(Session& session, FileList& files) {
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (session.complete(i) || files.is_repeat(i)) continue;
    complain(files.path(i), "its facts cannot be read");
  }
}

}  // namespace

int run_files(const Arguments& arguments) {
  FilesOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Session session;
  const FactOptions facts = facts_for(options);
  FileList files(session, options.paths, options.choice, facts);
  if (facts.any()) complain_about_missing_facts(session, files);
  Listing(options, session, files, output).write();
  session.complain_about_errors();
  return kDone;
}

}  // namespace zenfo::cli
