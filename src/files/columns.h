// The columns of a file entry as the texts that a host sees, one row for each
// column: shared by the accessors, the search in lists and the export.
//
// Tested by tests/unit/files/columns_test.cpp
#pragma once

#include <string>

#include "files/file_entry.h"

namespace zenfo {

// Numbered as hosts number them.
enum class Column {
  kFileName = 2,
  kDirectory = 3,
  kType = 4,
  kCreationTime = 5,  // dd/mm/yyyy hh:mm:ss, local time
  kAccessTime = 6,    // Intended: without seconds, unlike the other two
  kWriteTime = 7,
  kSize = 8,
  kAttributes = 9,  // letters out of "RHASC"
};
inline constexpr int kFirstColumn = 2;
inline constexpr int kLastColumn = 9;

// Appends the column's text; false, and nothing appended, when the entry lacks
// it or a time cannot be shown.
bool append_column(const FileEntry& entry, Column column, std::string& text);

}  // namespace zenfo
