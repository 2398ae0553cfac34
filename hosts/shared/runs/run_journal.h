// The journal of a run: how far it got with each of its files, and how each
// stood then, on disk before the next file is begun. Of a run that came to its
// end the record tells the same. An undo of the run notes in it what it is
// about to restore.
//
// One line each, with tabs between its fields:
//
//   boot NAME                   of the system that the lines below come from
//   begin PATH                  about to be rewritten
//   done SIZE MODIFIED PATH     rewritten; so the file stands
//   leave PATH                  not rewritten after all
//   intend PATH                 an undo is going to restore it
//   undo                        restores the files of the next lines
//   restore PATH                one of them; those of before are restored
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
  // Later lines go behind those that are there. One that cannot be written
  // leaves no journal, which tells nothing rather than half.
  void open(const std::string& file);
  void begin(const std::string& path);
  void done(const std::string& path, const FileState& state);
  void leave(const std::string& path);
  void intend(const std::string& path);
  void begin_restoring();
  void restore(const std::string& path);
  // Takes it away: what it told is known otherwise.
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
  bool restored = false;  // an undo was at it, or behind it
  // How it stood when its rewriting, or its date, was done.
  std::vector<std::pair<uint64_t, int64_t>> states;

  bool was_left_like(const FileState& state) const;
};

class JournalReader {
 public:
  explicit JournalReader(const std::string& file);

  // Whether there is a journal at all.
  bool exists() const { return exists_; }
  // The system has not been restarted since, so no line is missing.
  bool is_complete() const { return complete_; }
  // Whether the run was at one of its files.
  bool any_begun() const;
  const JournalEntry& entry(const std::string& path) const;
  // Of all files it names.
  std::vector<std::string> paths() const;
  // Whether the last undo may have ended in the middle of the file.
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
