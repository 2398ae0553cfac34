// The columns of a list of files, and three ways to write them: aligned for
// people, with zero bytes for scripts, as JSON for programs.
//
// Tested by tests/cli/columns_test.cpp, tests/cli/command_test.cpp
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/output.h"
#include "shared/session/file_arguments.h"
#include "shared/session/session.h"

namespace zenfo::host::cli {

struct Column {
  const char* name;
  int option;             // fact to gather, 0 for none
  int field;              // number for SaveSelection(), 0 for none
  TextAccessor accessor;  // null: the path
  bool to_the_right;
};

// "name, folder, ...", for messages.
std::string column_names();
// Null when there is no such column.
const Column* find_column(std::string_view name);

// The number of characters in a UTF-8 text. Each invalid byte counts as one.
size_t width_of(std::string_view text);

// The texts of a line; nothing for a text that is missing.
using Cells = std::vector<std::optional<std::string_view>>;

// Texts kept one after the other, so that many of them cost little.
class CellTexts {
 public:
  void add(std::optional<std::string_view> text);
  void clear();
  size_t bytes() const { return bytes_.size(); }
  size_t count() const { return texts_.size(); }
  // `count` of them from number `first` on. Valid until the next change.
  void get(size_t first, size_t count, Cells& cells) const;

 private:
  struct Text {
    size_t end;  // in bytes_; it begins where the one before ends
    bool missing;
  };

  std::string bytes_;
  std::vector<Text> texts_;
};

// One line without its end: cells padded to the widths and separated by two
// blanks, without blanks at the end of the line. Replaces `line`.
void align(const std::vector<const Column*>& columns, const Cells& cells,
           const std::vector<size_t>& widths, std::string& line);
// One line without its end; a missing text is null.
std::string json_line(const std::vector<const Column*>& columns,
                      const Cells& cells);
// {"files":2,"bytes":1536,"size":"1.50 KB"}; the bytes are taken from the long
// text of the total.
std::string json_total(uint32_t files, const SizeTotal& total);
// The cells, separated by tabs.
std::string tabbed_line(const Cells& cells);

}  // namespace zenfo::host::cli
