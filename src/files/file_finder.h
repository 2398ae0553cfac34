// The walk of a file search: from a search specification to full names.
//
// Specification: groups separated by "|"; a group's first character is its
// subfolder flag ('1': all folders below too), the rest is split at ";": the
// first item is a path whose last component is a pattern, every further item
// one more pattern for the same folder.
//
// Tested by tests/unit/files/file_finder_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "containers/progress.h"
#include "platform/files.h"

namespace zenfo {

// One group, taken apart. No patterns: nothing is found.
struct SearchGroup {
  bool subfolders = false;
  std::string folder;
  std::vector<std::string> patterns;
  bool valid = false;  // has a folder part
};
SearchGroup parse_search_group(std::string_view group);

// Whether the extensions agree: the pattern's is empty or ends in a wildcard,
// the name's is empty, or both are the same but for case. (A system may answer
// page.html for *.htm.)
bool passes_extension_test(std::string_view name, std::string_view pattern);

class FileFinder {
 public:
  // Takes one file found; false ends the walk as a failure.
  using Sink =
      std::function<bool(std::string_view folder, std::string_view name)>;

  // `hooks` are polled with period 100 after each answer of the system, even
  // for what is not a file or is not wanted.
  FileFinder(ProgressHooks& hooks, Sink sink)
      : hooks_(hooks), sink_(std::move(sink)) {}

  // Walks all groups: the number of files found, or -1 when the host
  // interrupted or the sink failed.
  int32_t find(std::string_view specification);

 private:
  bool search(const SearchGroup& group);
  bool add_folders_below(size_t parent);
  bool search_folder(platform::FolderListing& folder,
                     const std::vector<std::string>& patterns);
  bool interrupted() { return hooks_.poll_interrupt_every(100) != 0; }

  ProgressHooks& hooks_;
  Sink sink_;
  std::vector<platform::FolderListing> folders_;
  int32_t found_ = 0;
};

}  // namespace zenfo
