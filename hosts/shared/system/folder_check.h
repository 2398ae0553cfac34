// Folders that a search through subfolders cannot list. The library takes them
// for empty, so they are looked for beside it.
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

// Of the folder and all below it that the library would enter, those that it
// cannot list, in no order. Touches nothing else, so that it may run in a
// thread of its own. Ends early when the user stops the command.
std::vector<UnlistedFolder> find_unlisted(const std::string& folder,
                                          const FolderTest& enters);

}  // namespace zenfo::host
