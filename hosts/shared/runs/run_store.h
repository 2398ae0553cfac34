// The folder of runs: for each run the safe copies of the files it changed and
// a record of it. Each run has its own folder, because the library empties the
// folder in which it keeps its copies; the record is beside that folder.
//
//   runs/20261114-094256Z-17/undo.txt     the library's
//   runs/20261114-094256Z-17/notes.txt_0  a safe copy
//   runs/20261114-094256Z-17.json         the record
//   runs/20261114-094256Z-17.lock         locked while a run or undo is active
//   runs/20261114-094256Z-17.journal      the journal, before the record
//
// A name is the time in UTC and a number larger than that of every earlier run,
// because clocks may be set back.
//
// Runs older than 30 days are removed, then the oldest until all of them take
// no more than 1 GB, or the limit in ZENFO_UNDO_MEGABYTES. A run in progress
// and the last run are always kept, and a run younger than a day is not removed
// for its size. Only the user may read the folder.
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

// A file that a run changed, in its state at the end of the run.
struct RunFile {
  std::string path;
  uint64_t size = 0;
  int64_t modified = 0;
  uint64_t copy_size = 0;  // of its safe copy
};

struct Run {
  std::string name;
  std::string time;  // local, "2026-11-14 09:42:56"; empty: unknown
  std::string command;
  std::vector<RunFile> files;  // empty for a run that did not finish
  std::string folder = {};     // where it was started; empty: unknown
};

class RunStore {
 public:
  // Throws Failure when it finds no place for the folder.
  RunStore();
  explicit RunStore(const std::string& folder) : folder_(to_path(folder)) {}

  // Creates an empty folder for a new run, takes the run's lock and writes its
  // record. Throws Failure.
  Run begin(const std::string& command, RunLock& lock);
  // False while another process holds the lock of the run.
  bool take(const std::string& name, RunLock& lock) const;
  // Rewrites the record, and flushes it to disk with `durable`. False leaves it
  // unchanged.
  bool save(const Run& run, bool durable = false) const;
  // A run whose record is missing or damaged is found by its list of copies.
  std::optional<Run> find(const std::string& name) const;
  // The oldest first. The record of `known` is not read again, because it can
  // be long. Throws Failure when the folder cannot be read.
  std::vector<Run> runs(const Run* known = nullptr) const;
  // To be called by the holder of the lock, which is released.
  void remove(const std::string& name, RunLock& lock) const;
  // Announces each run before it removes it. Returns the size of all copies
  // when it exceeds the limit, else 0.
  uint64_t remove_old(Messages& messages, const Run* known = nullptr) const;
  // The files in the folder of a run that may be safe copies.
  std::vector<std::string> copies(const std::string& name) const;
  // Whether the folder may contain safe copies, listed or not.
  bool may_have_copies(const std::string& name) const;
  // Whether the run certainly has nothing to restore.
  bool is_known_empty(const std::string& name) const;
  std::string undo_file(const std::string& name) const;
  std::string journal_file(const std::string& name) const;
  // The size of the files in the folder of a run.
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
