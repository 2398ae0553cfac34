// The search report: one file of all matches of a run.
//
//   path
//   (empty line)
//   Number  Offset  Length       separated by TAB, as all columns
//   ------  ------  ------
//   1       12      3
//   -------------MATCH-------------
//   the matched bytes, as they are
//   -----------END MATCH-----------
//   (empty line)
//
// A file without selected matches leaves only its path. Lines end in CR LF.
//
// Tested by tests/unit/search/report_file_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "containers/item_list.h"
#include "text/out_file.h"

namespace zenfo {

class ReportFile {
 public:
  // A null or empty path opens nothing. If the report cannot be created, the
  // run continues without it.
  void open(const char* path);
  bool is_open() const { return file_.is_open(); }
  const std::string& path() const { return path_; }

  // Begins the block of a file with its path line.
  bool begin_file(std::string_view path);
  // Writes the selected matches of a list; `selected` says how many there are.
  // Several lists of one file share one header. False when the host interrupts,
  // a record is not a match, or writing failed.
  bool write_matches(ItemList& matches, uint32_t selected);
  // Ends the block of a file.
  bool end_file();

  // False when anything could not be written.
  bool close() { return file_.close(); }

 private:
  OutFile file_;
  std::string path_;
  // Intended: numbers run on across files and leave gaps where a match was
  // deselected.
  uint32_t reported_ = 0;
  bool header_written_ = false;
};

}  // namespace zenfo
