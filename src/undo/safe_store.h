// The safe store: copies of files that are about to be changed, the list and
// the file that record them, and how they are restored.
//
// The store lives in the folder of its undo list file, and every run empties
// that folder: only the last run can be undone. A line of the undo list file
// is "original TAB safe copy TAB time".
//
// Tested by tests/unit/undo/safe_store_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "containers/item_list.h"
#include "platform/files.h"
#include "platform/flush_set.h"
#include "text/out_file.h"
#include "undo/undo_record.h"

namespace zenfo {

class SafeStore {
 public:
  void set_interrupt_hook(InterruptHook hook) {
    undo_list.set_interrupt_hook(hook);
  }
  void set_report_hook(ReportHook hook) { undo_list.set_report_hook(hook); }

  // While an object of this class exists, for a run that changes files or for
  // Undo, the store cannot be moved. `store` may be null.
  class InUse {
   public:
    explicit InUse(SafeStore* store) : store_(store) {
      if (store_ != nullptr) ++store_->users_;
    }
    ~InUse() {
      if (store_ != nullptr) --store_->users_;
    }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

   private:
    SafeStore* store_;
  };

  // Names the undo list file and creates it, with its folders, if missing.
  // Returns 1, or -1: then a store in use keeps its file, any other has none.
  // The undo list is kept.
  int32_t set_undo_file(const char* path);

  // Begins a run: empties the undo list and deletes all files in the store's
  // folder except `open_files`; in a drive's root only the store's own. Always
  // 1. Until the next run no copy takes the name of an open file. With `sync` a
  // copy and its line are on their disk, flushed, before the copy counts.
  int32_t start_safe_store_run(std::vector<std::string> open_files,
                               bool sync = false);
  // Copies a file into the store and records it, on disk and in the list. 1
  // only when the copy and its line are complete; 0, with nothing stored, when
  // `loaded` is not null and the file is of another version; else -1.
  int32_t store_safe_copy(const char* path,
                          const platform::FileVersion* loaded = nullptr);
  // Removes the copy stored last, with its line and its record, because the
  // file is not changed after all.
  void take_back_safe_copy();
  // For runs with `sync`: copies files that will probably be stored next, with
  // one flush for all, so that storing one of them then costs nothing more.
  // Earlier copies ahead are forgotten. A file that cannot be copied now is
  // copied when it is stored. False when the disk fails; then none is ahead.
  bool copy_ahead(const std::vector<std::string>& paths);
  bool is_ahead(const std::string& path) const { return ahead_.contains(path); }
  // Whether a file is copied ahead and not stored yet.
  size_t ahead() const { return ahead_.size(); }
  // Ends a run: deletes unused copies and their lines. False when the
  // list file cannot be written.
  bool end_safe_store_run();

  // Replaces the list by the contents of the undo list file: the number of
  // records, 0 without such a file, -1 when none is named. Reading ends at a
  // line that is no record, or when the host stops it; the lines from there on
  // are not counted.
  int32_t load_undo_list();
  // Copies the safe copies of all selected records back, and deletes the copies
  // and the records; the undo list file keeps the others and, byte for byte,
  // the lines that were not read from it. Records that cannot be restored stay
  // and are written to the undo error file. Returns the number of records left,
  // without the lines not read; 0 when there is nothing to restore; -1 on
  // failure.
  // Intended: any later change to a file is overwritten.
  int32_t undo();

  ItemList undo_list;  // of UndoRecord

 private:
  // The part of an undo list file that is in no record of the list.
  struct Unread {
    std::string file;  // its path
    std::string text;
    size_t at = 0;  // what is before it has been read
  };

  using Records = std::vector<std::unique_ptr<UndoRecord>>;
  // A copy whose file is not stored yet, and the version that was copied.
  struct Ahead {
    std::unique_ptr<UndoRecord> record;
    platform::FileVersion version;
  };

  std::unique_ptr<UndoRecord> copy(const char* path,
                                   platform::FileVersion& version);
  bool add_lines(const Records& records);
  bool append_lines(const Records& records);
  void forget_ahead();
  std::string folder() const;
  static std::string error_file_of(const std::string& undo_file) {
    return undo_file + ".error";
  }
  bool is_own_file(std::string_view path) const;
  bool is_open(const std::string& path) const;
  std::string next_copy_path(std::string_view name);
  void delete_own_files();
  void delete_unless_open(const std::string& path) const;
  void read_records();
  std::string_view unread_lines() const;
  bool put_records(OutFile& file, std::string_view line_end,
                   std::string_view unread);
  bool replace_list(std::string_view line_end, std::string_view unread);
  bool finish_undo(std::string_view unread);
  bool restore_records(const std::string& error_file);
  bool restore(const UndoRecord& record);
  bool report_unrestored(const std::string& error_file,
                         const UndoRecord& record);

  std::string undo_file_;      // empty: none
  Unread unread_;              // empty for a list that a run has filled
  uint64_t lines_before_ = 0;  // bytes of it before the line written last
  int users_ = 0;              // InUse objects that exist
  uint32_t copies_ = 0;        // of this run; part of the copies' names
  std::vector<std::string> open_files_;  // by the run: list and summary
  bool sync_ = false;
  std::unordered_map<std::string, Ahead> ahead_;  // by path
  Records unwanted_;  // with a line in the file, but not in the list
  std::vector<std::string>
      restored_copies_;          // by an Undo that is to be flushed
  platform::FlushSet to_flush_;  // since the last flush
};

}  // namespace zenfo
