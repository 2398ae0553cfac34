// The folder of runs: safe copies of the files that a run changed, and what is
// known of the run. Each run has a folder of its own, as the library empties
// the folder in which it keeps its copies; the record stands beside it.
//
//   runs/20261114-094256Z-17/undo.txt     the library's
//   runs/20261114-094256Z-17/notes.txt_0  a safe copy
//   runs/20261114-094256Z-17.json         the record
//   runs/20261114-094256Z-17.lock         held while a run or undo is alive
//   runs/20261114-094256Z-17.journal      what is known before the record is
//
// A name is the time in UTC and a number that is larger than that of all runs
// before: clocks may go back.
//
// Runs older than 30 days are removed, then the oldest until all take no more
// than 1 GB, or what ZENFO_UNDO_MEGABYTES says; but none that is alive, none
// younger than a day for its size, and not the last. Only the user may read
// the folder.
//
// Tested by tests/cli/posix_replace_test.cpp,
// tests/hosts/shared/run_store_test.cpp
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "shared/frame/messages.h"
#include "shared/system/paths.h"
#include "shared/system/run_lock.h"

namespace zenfo::host {

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
  std::string folder = {};     // where it was started; empty: not known
};

class RunStore {
 public:
  // Throws Failure when no folder for it is known.
  RunStore();
  explicit RunStore(const std::string& folder) : folder_(to_path(folder)) {}

  // Makes an empty folder for a new run, takes the run's lock, and writes its
  // record. Throws Failure.
  Run begin(const std::string& command, RunLock& lock);
  // False while another process has the run in hand.
  bool take(const std::string& name, RunLock& lock) const;
  // Rewrites the record, with `durable` onto the disk; false leaves it as it
  // was.
  bool save(const Run& run, bool durable = false) const;
  // A run whose record is missing or damaged is known by its list of copies.
  std::optional<Run> find(const std::string& name) const;
  // The oldest first. The record of a run that the caller knows is not read: it
  // can be long. Throws Failure when the folder cannot be read.
  std::vector<Run> runs(const Run* known = nullptr) const;
  // For the holder of the lock, which is given up.
  void remove(const std::string& name, RunLock& lock) const;
  // Says what it removes before it does. Answers what all copies take when that
  // is more than they may, else 0.
  uint64_t remove_old(Messages& messages, const Run* known = nullptr) const;
  // The files in its folder that may be safe copies.
  std::vector<std::string> copies(const std::string& name) const;
  // Whether there may be files in its folder that the library did not list
  // there.
  bool may_have_copies(const std::string& name) const;
  // Whether it is certain that it has nothing to bring back.
  bool is_known_empty(const std::string& name) const;
  std::string undo_file(const std::string& name) const;
  std::string journal_file(const std::string& name) const;
  // What its copies take.
  uint64_t size_of(const std::string& name) const;

 private:
  std::filesystem::path folder_of(const std::string& name) const;
  std::filesystem::path undo_path(const std::string& name) const;
  std::filesystem::path record(const std::string& name) const;
  std::filesystem::path fresh_record(const std::string& name) const;
  std::optional<Run> find_unrecorded(const std::string& name) const;
  std::string lock_file(const std::string& name) const;
  std::set<std::string> names() const;
  std::string next_name() const;
  bool is_older_than(std::chrono::hours age, const std::string& name) const;
  bool remove_if_free(const Run& run, const std::string& reason,
                      Messages& messages) const;

  std::filesystem::path folder_;
};

// "1.2 MB".
std::string megabytes(uint64_t bytes);

}  // namespace zenfo::host
