// The journal of a run: how far the run got with each file and the state of the
// file at that time. Each step is written before the next file is begun. When a
// run finishes, its record replaces the journal. An undo of the run notes in
// the journal what it is about to restore.
//
// Each step is one line, with tabs between its fields:
//
//   boot NAME                   the boot of the system during the next lines
//   begin PATH                  the file is about to be rewritten
//   done SIZE MODIFIED PATH     it was rewritten and has this size and time
//   leave PATH                  it was not rewritten after all
//   intend PATH                 an undo is going to restore the file
//   undo                        an undo starts to restore the next files
//   restore PATH                one of these; the earlier ones are restored
//
// Tested by tests/hosts/shared/run_journal_test.cpp,
// tests/cli/posix_journal_test.cpp
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "shared/system/file_state.h"

namespace zenfo::host {

class RunJournal {
 public:
  // Appends to an existing journal. If a line cannot be written, the journal is
  // deleted, because half a journal would mislead.
  void open(const std::string& file);
  void begin(const std::string& path);
  void done(const std::string& path, const FileState& state);
  void leave(const std::string& path);
  void intend(const std::string& path);
  void begin_restoring();
  void restore(const std::string& path);
  // Deletes the journal once the record has replaced it.
  void remove();

 private:
  void put(const std::string& line);

  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_;
  std::string path_;
};

// What a journal says about one file.
struct JournalEntry {
  bool begun = false;
  bool intended = false;  // by an undo
  bool restored = false;  // an undo reached it
  // Size and modification time after it was rewritten or dated.
  std::vector<std::pair<uint64_t, int64_t>> states;

  bool was_left_like(const FileState& state) const;
};

class JournalReader {
 public:
  explicit JournalReader(const std::string& file);

  // Whether there is a journal at all.
  bool exists() const { return exists_; }
  // Whether the system has not been restarted since, so that no line is
  // missing.
  bool is_complete() const { return complete_; }
  // Whether the run began to rewrite any of its files.
  bool any_begun() const;
  const JournalEntry& entry(const std::string& path) const;
  // All files that the journal names.
  std::vector<std::string> paths() const;
  // Whether the last undo may have ended while it restored the file.
  bool was_being_restored(const std::string& path) const {
    return being_restored_.contains(path);
  }

 private:
  void take(const std::string& line);

  std::unordered_map<std::string, JournalEntry> entries_;
  std::unordered_set<std::string> being_restored_;
  bool exists_ = false;
  bool complete_ = true;
};

}  // namespace zenfo::host
