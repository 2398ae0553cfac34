// The folder of runs: safe copies of the files that a run changed, and what is
// known of the run. Each run has a folder of its own, as the library empties
// the folder in which it keeps its copies; the record stands beside it.
//
//   runs/20261114-094256-1234-0/undo.txt    the library's
//   runs/20261114-094256-1234-0/notes.txt_0  a safe copy
//   runs/20261114-094256-1234-0.json         the record
//
// Runs older than 30 days are removed, then the oldest until all take no more
// than 1 GB. Only the user may read the folder.
//
// Tested by tests/cli/posix_replace_test.cpp, tests/cli/run_store_test.cpp
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "paths.h"

namespace zenfo::cli {

// A file that a run changed, as it stood when the run had ended.
struct RunFile {
  std::string path;
  uint64_t size = 0;
  int64_t modified = 0;
  uint64_t copy_size = 0;  // of its safe copy
};

struct Run {
  std::string name;
  std::string time;  // local, "2026-11-14 09:42:56"; empty: not known
  std::string command;
  std::vector<RunFile> files;  // none of a run that did not come to its end
};

class RunStore {
 public:
  // Throws Failure when no folder for it is known.
  RunStore();
  explicit RunStore(const std::string& folder) : folder_(to_path(folder)) {}

  // Makes an empty folder for a new run and writes its record. Throws Failure.
  Run begin(const std::string& command);
  // Writes the record anew; false leaves it as it was.
  bool save(const Run& run) const;
  // A run whose record is missing or damaged is known by its list of copies.
  std::optional<Run> find(const std::string& name) const;
  // By time, the oldest first. The record of a run that the caller knows is
  // not read: it can be long.
  std::vector<Run> runs(const Run* known = nullptr) const;
  void remove(const std::string& name) const;
  void remove_old(const Run* known = nullptr) const;
  // Whether there are files in its folder that the library did not list there.
  bool has_copies(const std::string& name) const;
  std::string undo_file(const std::string& name) const;

 private:
  std::filesystem::path folder_of(const std::string& name) const;
  std::filesystem::path undo_path(const std::string& name) const;
  std::filesystem::path record(const std::string& name) const;
  std::filesystem::path fresh_record(const std::string& name) const;
  std::optional<Run> find_unrecorded(const std::string& name) const;
  bool is_old(const std::string& name) const;
  uint64_t size_of(const std::string& name) const;

  std::filesystem::path folder_;
};

}  // namespace zenfo::cli
