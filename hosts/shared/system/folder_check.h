// Folders that a search through subfolders cannot list. The library treats them
// as empty, so the host looks for them itself.
//
// posix/folder_check.cpp and win32/folder_check.cpp are twins.
//
// Tested by tests/cli/posix_command_test.cpp, tests/cli/files_test.cpp
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo::host {

struct UnlistedFolder {
  std::string path;
  std::string reason;
};

// Whether the search enters a folder of that name.
using FolderTest = std::function<bool(std::string_view name)>;

// Returns those of the folder and all folders below it that the library would
// enter but cannot list, in no order. Shares no data with other threads, so it
// may run in its own. Ends early when the user stops the command.
std::vector<UnlistedFolder> find_unlisted(const std::string& folder,
                                          const FolderTest& enters);

}  // namespace zenfo::host
