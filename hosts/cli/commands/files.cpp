// zenfo files: lists files with their facts.
//
// Tested by tests/cli/command_test.cpp, files_test.cpp,
// posix_files_test.cpp
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/commands.h"
#include "cli/options/command_line.h"
#include "cli/options/keys.h"
#include "cli/printing/columns.h"
#include "cli/terminal/messages.h"
#include "cli/terminal/output.h"
#include "cli/terminal/progress.h"
#include "shared/frame/counted.h"
#include "shared/session/file_arguments.h"
#include "shared/session/session.h"
#include "shared/system/stop.h"
#include "shared/text/text_file.h"

namespace zenfo::host::cli {
namespace {

const HelpTexts kFilesHelp = {
    "zenfo files [OPTIONS] [PATH...]",
    "Lists files and their facts.\n"
    "\n"
    "A PATH is a file, a folder, or a pattern for the files of one folder, as\n"
    "'src/*.c'. Without a PATH, the current folder and all below it are "
    "listed.\n"
    "Names that begin with a dot are skipped unless given in full.",
    "Columns: name, folder, type, created, accessed, modified, size,\n"
    "attributes, path. Keys are the same, and 'all': name, then size, "
    "modified\n"
    "and attributes. Case is ignored; equal files come in any order. Of two\n"
    "times 3 to 7 minutes apart the later may come first.\n"
    "\n"
    "A saved list has one path per line; an export has the columns except\n"
    "'path', in the order above. Both end lines in CR LF. The exit status is\n"
    "2 when something could not be listed or saved, else 0.\n"
    "\n"
    "Examples:\n"
    "  zenfo files                          all files in and below this "
    "folder\n"
    "  zenfo files -r src --include '*.h'   the headers below src\n"
    "  zenfo files 'doc/*.txt' --columns size,modified,path --total\n"
    "  zenfo files -r src --sort size --reverse --columns size,path\n"
    "  zenfo files -r src --save-list src.list\n"
    "  zenfo files --from-list src.list --total\n"
    "  zenfo files --columns name,size --export sizes.csv --separator ';'\n"
    "  zenfo files -r0 . | xargs -0 wc -c   for names of any bytes\n"};

struct FilesOptions {
  std::vector<std::string> paths;
  FileChoice choice;
  ResultForm form;
  std::vector<const Column*> columns;
  bool total = false;
  const Key* sort = nullptr;
  bool reverse = false;
  std::string save_list;
  std::string export_to;
  std::string separator;
};

// Options that can only be checked when all are known.
struct GivenColumns {
  std::string columns = "path";
  std::string sort;
  std::string separator;
};

std::vector<const Column*> parse_columns(const CommandLine& line,
                                         const std::string& names) {
  std::vector<const Column*> columns;
  for (const std::string& name : parts_of(names)) {
    columns.push_back(find_column(name));
    if (columns.back() != nullptr) continue;
    throw line.wrong("--columns",
                     "no column '" + name + "' among " + column_names());
  }
  return columns;
}

void declare(CommandLine& line, FilesOptions& options, GivenColumns& given) {
  line.arguments(options.paths);
  add_choice_options(line, options.choice);
  add_list_option(line, options.choice);
  line.value("--columns", given.columns, "LIST",
             "Columns to show, such as 'size,path'");
  line.text("--sort", given.sort, "KEY", "Sort by a key, see below");
  line.flag("--reverse", options.reverse, "Sort in reverse order");
  line.flag("--total", options.total,
            "End with the number of files and the sum of sizes");
  line.text("--save-list", options.save_list, "FILE",
            "Save the paths in FILE, for --from-list");
  line.text("--export", options.export_to, "FILE",
            "Also write the columns to FILE, separated by tabs");
  line.text("--separator", given.separator, "TEXT",
            "With --export, separate by TEXT instead of tabs");
  add_form_options(line, options.form);
}

void check_export(const CommandLine& line, const FilesOptions& options,
                  const GivenColumns& given) {
  if (options.export_to.empty()) {
    if (given.separator.empty()) return;
    throw line.wrong("--separator", "needs --export");
  }
  for (const Column* column : options.columns) {
    if (column->field != 0) continue;
    throw line.wrong("--export", "needs --columns without 'path'");
  }
}

// False when the user only asked for help.
bool parse(const Arguments& arguments, FilesOptions& options, Output& output) {
  CommandLine line("files", kFilesHelp);
  GivenColumns given;
  declare(line, options, given);
  if (!line.parse(arguments, output)) return false;
  check_form(line, options.form);
  check_choice(line, options.choice);
  check_list_option(line, options.choice, options.paths);
  options.columns = parse_columns(line, given.columns);
  if (!given.sort.empty()) {
    options.sort = &find_key(line, "--sort", given.sort);
  } else if (options.reverse) {
    throw line.wrong("--reverse", "needs --sort");
  }
  check_export(line, options, given);
  options.separator = given.separator.empty() ? "\t" : given.separator;
  return true;
}

FactOptions facts_for(const FilesOptions& options) {
  FactOptions facts;
  if (options.total) facts.ask(ZENFO_OPTION_ATTRIBUTES);
  if (options.sort != nullptr) ask_for(*options.sort, facts);
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
    if (options_.columns.size() == 1 && !options_.form.json) {
      write_single(*options_.columns.front());
    } else {
      write_lines();
    }
    if (options_.total) write_total();
  }

 private:
  template <class Visit>
  void for_each_file(Visit visit) {
    for (uint32_t i = 0; i < files_.count(); ++i) {
      if (system::stop_status() != 0) throw Stopped{};
      visit(i);
    }
  }

  // Most lists have one column, which needs no alignment.
  void write_single(const Column& column) {
    for_each_file([&](uint32_t index) {
      output_.put_name(text(column, index).value_or(""));
      end("");
    });
  }

  void write_lines() {
    const bool aligned = !options_.form.null && !options_.form.json;
    if (aligned) measure();
    std::string line;
    for_each_file([&](uint32_t index) {
      find_cells(index);
      if (aligned) {
        align(options_.columns, cells_, widths_, line);
      } else if (options_.form.json) {
        line = json_line(options_.columns, cells_);
      } else {
        line = tabbed_line(cells_);
      }
      end(line);
    });
  }

  // Valid until the next call; no value when the file has no such text.
  std::optional<std::string_view> text(const Column& column, uint32_t index) {
    if (column.accessor == nullptr) return files_.path(index);
    return session_.text(column.accessor, index);
  }

  void add_cells(uint32_t index, CellTexts& texts) {
    for (const Column* column : options_.columns) {
      const std::optional<std::string_view> bytes = text(*column, index);
      if (bytes && output_.on_terminal() && !options_.form.json) {
        texts.add(output_.shown_name(*bytes));
      } else {
        texts.add(bytes);
      }
    }
  }

  // Sets cells_ to those of a file.
  void find_cells(uint32_t index) {
    const size_t columns = options_.columns.size();
    const size_t first = index * columns;
    if (first < kept_.count()) {
      kept_.get(first, columns, cells_);
      return;
    }
    line_texts_.clear();
    add_cells(index, line_texts_);
    line_texts_.get(0, columns, cells_);
  }

  // Keeps the texts of the first files, which are usually all.
  void measure() {
    constexpr size_t kMostKept = size_t{16} << 20;
    widths_.resize(options_.columns.size());
    for_each_file([&](uint32_t index) {
      if (kept_.bytes() < kMostKept) add_cells(index, kept_);
      find_cells(index);
      for (size_t i = 0; i < cells_.size(); ++i) {
        widths_[i] = std::max(widths_[i], width_of(cells_[i].value_or("")));
      }
    });
  }

  void end(std::string_view line) {
    if (options_.form.json) {
      output_.put_json(line);
    } else {
      output_.put(line);
    }
    output_.put(options_.form.null ? '\0' : '\n');
  }

  void write_total() {
    session_.select_all(true);
    const uint32_t files = files_.count();
    const SizeTotal total = session_.size_of_selection();
    end(options_.form.json
            ? json_total(files, total)
            : counted(files, "file", "files") + ", " + total.long_text);
  }

  const FilesOptions& options_;
  Session& session_;
  FileList& files_;
  Output& output_;
  std::vector<size_t> widths_;
  CellTexts kept_;  // of files from the first on
  CellTexts line_texts_;
  Cells cells_;  // in one of the two
};

void complain_about_missing_facts(Session& session, FileList& files) {
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (session.complete(i)) continue;
    complain(files.path(i), "its facts cannot be read");
  }
}

void export_columns(const FilesOptions& options, Session& session) {
  SavedColumns columns{};
  for (const Column* column : options.columns) {
    columns[static_cast<size_t>(column->field)] = 1;
  }
  session.select_all(true);
  if (!can_be_written(options.export_to) ||
      !session.save_columns(options.export_to, options.separator, columns)) {
    complain(options.export_to, "the columns cannot be written");
  }
}

// Saves the paths as shown. A path with a line feed cannot be saved, because
// the line would end there.
void save_list(const std::string& file, Session& session, FileList& files) {
  for (uint32_t i = 0; i < files.count(); ++i) {
    const std::string path(files.path(i));
    const bool sayable = path.find('\n') == std::string::npos;
    session.select(i, sayable);
    session.rename(i, path);
    if (!sayable)
      complain(path, "contains a line feed, which lists cannot hold");
  }
  if (!can_be_written(file) || !session.save_list(file)) {
    complain(file, "the list cannot be written");
  }
}

}  // namespace

int run_files(const Arguments& arguments) {
  FilesOptions options;
  Output output;
  if (!parse(arguments, options, output)) return kDone;
  Progress progress;
  Session session(terminal_messages(), progress);
  const FactOptions facts = facts_for(options);
  FileList files(session);
  files.fill(options.paths, options.choice, facts);
  files.drop_repeats();
  if (facts.any()) complain_about_missing_facts(session, files);
  if (options.sort != nullptr) {
    session.sort(options.sort->option, options.reverse);
  }
  Listing(options, session, files, output).write();
  if (!options.export_to.empty()) export_columns(options, session);
  if (!options.save_list.empty()) save_list(options.save_list, session, files);
  session.complain_about_errors();
  return kDone;
}

}  // namespace zenfo::host::cli
