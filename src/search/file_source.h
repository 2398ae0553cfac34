// Where a run takes its files from: the selected entries of a file list, or the
// lines of a file-name list file.
//
// Tested by tests/unit/search/file_source_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "containers/item_list.h"
#include "files/file_content.h"
#include "files/file_entry.h"
#include "platform/files.h"

namespace zenfo {

// One file of a run and its results.
struct FileInHand {
  SharedText path;                  // as given
  std::unique_ptr<FileEntry> copy;  // for the result lists; list runs only
  uint32_t found = 0;               // selected matches, of all searches
  uint32_t changed = 0;             // matches rewritten
  bool handled = false;             // a search of it was accepted, not skipped
  bool recorded = false;            // is in its result list or summary
  bool stale = false;               // was rewritten since it was loaded
};

class FileSource {
 public:
  enum class Next { kFile, kEnd, kFailed };

  virtual ~FileSource() = default;
  // Moves to the next file.
  virtual Next next(FileInHand& file) = 0;
  // Polls the host at the start of a file.
  virtual bool interrupted() = 0;
  // Paths of the next files, at most this many, as far as they are known: the
  // host may still choose others.
  virtual std::vector<SharedText> upcoming(size_t /*most*/) { return {}; }
};

// The selected entries of a list, in list order.
class ListSource final : public FileSource {
 public:
  explicit ListSource(ItemList& list) : list_(list) {}
  Next next(FileInHand& file) override;
  bool interrupted() override { return list_.poll_interrupt() != 0; }
  std::vector<SharedText> upcoming(size_t most) override;

 private:
  ItemList& list_;
  uint32_t position_ = 0;
};

// The lines of a list file: read in pieces of at most 4,095 bytes, each taken
// up to its first NUL and cut at its first CR LF; empty ones are skipped.
// Intended: a bare LF stays part of the path.
class LineSource final : public FileSource {
 public:
  explicit LineSource(FileContent& poller) : poller_(poller) {}

  // False when it cannot be opened as a file.
  bool open(const char* path) { return file_.open(path) && file_.size() >= 0; }
  Next next(FileInHand& file) override;
  bool interrupted() override { return poller_.poll_interrupt(1) != 0; }
  std::vector<SharedText> upcoming(size_t most) override;

 private:
  static constexpr size_t kLongestPiece = 4095;

  static size_t piece_length(std::string_view bytes);
  static std::string_view path_of(std::string_view piece);
  std::string_view take_piece();
  void fill();

  FileContent& poller_;
  platform::InputFile file_;
  std::string buffer_;
  size_t start_ = 0;  // of what is not yet taken from the buffer
  bool at_end_ = false;
};

}  // namespace zenfo
