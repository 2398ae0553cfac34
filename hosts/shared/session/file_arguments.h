// Turns the PATHs of a command line into the library's list of files.
//
// Folders and patterns become search specifications; a file is entered by its
// path, whatever bytes the path contains. The list keeps the order of the
// command line, so the arguments are grouped into runs: neighbours that the
// library can take in one call.
//
// Tested by tests/hosts/shared/file_arguments_test.cpp,
// tests/cli/command_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "shared/session/session.h"
#include "shared/system/folder_check.h"

namespace zenfo::host {

struct FileChoice {
  bool subfolders = false;
  // A folder is an error unless subfolders are wanted.
  bool folders_need_subfolders = false;
  // "-" is standard input; pipes and devices are read to their ends.
  bool takes_streams = false;
  // No argument at all means the current folder with its subfolders.
  bool here_by_default = true;
  // Filename patterns for the files of folders; none means all files.
  std::vector<std::string> patterns;
  // Shell patterns for folders whose files are not wanted.
  std::vector<std::string> excluded_folders;
  // A file whose lines replace the arguments; empty: no such file.
  std::string list_file;
};

// The argument that means standard input.
inline constexpr char kStandardInput[] = "-";

// Neighbouring arguments for one call: either a specification or paths.
struct ArgumentRun {
  std::string specification;
  std::vector<std::string> paths;
  // Bytes at the start of each path that the user did not write: "./".
  size_t added_prefix = 0;

  bool operator==(const ArgumentRun&) const = default;
};

// The two halves of a path whose last component may be a pattern. The folder is
// "." (after the drive, if there is one) when the path names none.
struct PathPattern {
  std::string folder;
  std::string pattern;
  size_t added_prefix = 0;
};
PathPattern split_pattern(const std::string& path);

// One group of a specification, without the "|".
std::string search_group(std::string folder, bool subfolders,
                         const std::vector<std::string>& patterns);

// Appends a group to the runs, to the last one if possible.
void append_group(std::vector<ArgumentRun>& runs, const std::string& group,
                  size_t added_prefix);
void append_path(std::vector<ArgumentRun>& runs, const std::string& path);

// The list of files that the arguments make.
class FileList {
 public:
  explicit FileList(Session& session) : session_(session) {}

  // Complains about each argument that names nothing and each folder that
  // cannot be listed, and continues without it. Call it once.
  void fill(const std::vector<std::string>& arguments, const FileChoice& choice,
            const FactOptions& facts);

  uint32_t count() const { return count_; }
  // The path to show to the user. Valid until the session's next call.
  std::string_view path(uint32_t index) {
    return shown(session_.full_name(index));
  }
  // The same for the path of any file that was in the list.
  std::string_view shown(std::string_view path) const;
  // Whether the user named the file itself, not its folder or a pattern.
  bool is_named(uint32_t index) const { return stretch_of(index).named; }
  // Whether the file is a copy of standard input, a pipe or a device.
  bool is_stream(uint32_t index) const {
    return !streams_.empty() && streams_.contains(session_.full_name(index));
  }
  // Whether another pattern already entered the file earlier in the list.
  bool is_repeat(uint32_t index) const { return repeats_.contains(index); }

  // Removes the repeats. Like a sort this moves files, so that is_named() and
  // is_repeat() become invalid; path() stays valid.
  void drop_repeats();

 private:
  struct Stretch {
    uint32_t first;
    bool named;
  };

  const Stretch& stretch_of(uint32_t index) const;
  void add(const std::string& argument, const FileChoice& choice);
  void add_folder(const std::string& folder, const FileChoice& choice);
  void add_pattern(const std::string& argument);
  void add_here(const FileChoice& choice);
  // Looks for folders that cannot be listed, in a thread beside the library.
  // `added_prefix` as in ArgumentRun.
  void check_below(std::string folder, const FileChoice& choice,
                   size_t added_prefix);
  void complain_about_unlisted();
  void add_stream(const std::string& argument);
  void load(const FactOptions& facts);
  void load_list(const std::string& file, const FactOptions& facts);
  void note_repeats();
  void note_written_prefixes();

  Session& session_;
  std::vector<ArgumentRun> runs_;
  std::vector<std::future<std::vector<UnlistedFolder>>> checks_;
  std::vector<Stretch> stretches_;  // by first
  std::unordered_set<uint32_t> repeats_;
  bool prefix_added_ = false;  // in front of some paths
  // Paths that begin with "./" because the user wrote it.
  std::set<std::string, std::less<>> written_prefixes_;
  // The name to show for each file with the copy of a stream.
  std::map<std::string, std::string, std::less<>> streams_;
  uint32_t count_ = 0;
};

// Complains about files of a list whose facts could not all be read, and
// removes them.
void leave_out_incomplete(Session& session, int32_t list,
                          const FileList& files);

}  // namespace zenfo::host
