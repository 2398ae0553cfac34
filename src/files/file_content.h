// The loaded text of the current file: the loader, which limits how often it
// reports progress and polls, and the check for non-printable bytes.
//
// One buffer serves all files of a run. It is neither cleared nor freed
// between files; one NUL byte follows the content. A small file costs an open,
// one read and a close; a large one that will not be rewritten is viewed in the
// system's memory, not copied.
//
// The poll counter and the last progress step are process-wide, shared by all
// loaders, like those of the lists.
//
// Tested by tests/unit/files/file_content_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "containers/progress.h"
#include "platform/file_view.h"
#include "platform/files.h"
#include "platform/memory.h"

namespace zenfo {

class FileContent {
 public:
  void set_interrupt_hook(InterruptHook hook) { interrupt_hook_ = hook; }
  void set_progress_hook(ReportHook hook) { progress_hook_ = hook; }

  // Allows views of large files; for files that the library does not rewrite
  // while their content is in use. What other programs write to them meanwhile
  // may be seen.
  void allow_views() { views_allowed_ = true; }
  // Lets the bytes of a view be read when they are used, not before: for those
  // who only search them and then ask intact().
  void read_when_used(bool when_used) { read_when_used_ = when_used; }
  // False when any bytes that were used could not be read, or the file is
  // shorter than it was when it was loaded: zeros may stand for its bytes, and
  // whatever was found in them has no meaning.
  bool intact();

  // For files that are rewritten later: each is asked for its version before it
  // is read.
  void note_versions() { versions_wanted_ = true; }
  // The same, and only ordinary files up to this size are loaded; nothing else
  // is read.
  void load_only_ordinary(uint64_t largest) {
    versions_wanted_ = ordinary_only_ = true;
    largest_ = largest;
  }
  // A path that leads through a link fails to load.
  void refuse_links() { links_refused_ = true; }
  // The version of the file loaded last, before it was read; null where the
  // system does not say.
  const platform::FileVersion* version() const {
    return version_known_ ? &version_ : nullptr;
  }

  // Throttled call of the interrupt hook; non-zero means stop. Intended: with
  // `every` 1 the hook is asked on every second call, counted across all
  // files and operations.
  uint32_t poll_interrupt(uint32_t every);
  // Throttled call of the progress hook: about a hundred a file, the first
  // always.
  void progress_step(uint32_t done, uint32_t total);

  // Loads the whole file; returns its length, or -1. An empty file loads with
  // length 0 and is not opened. `nearby` speeds up a walk; may be null.
  // Intended: an interrupt while loading skips to the rest after the last whole
  // block and still succeeds, with a length below the file's size.
  int32_t load_file_content(const char* path,
                            platform::NearbyFolder* nearby = nullptr);
  // The same for a file whose bytes, 1 to kLargestTaken, are in memory already,
  // with room for a NUL after them. Takes the buffer and gives an old one for
  // it.
  int32_t take_file_content(const char* path, platform::KeptBuffer& bytes,
                            uint32_t size);
  static constexpr uint32_t kLargestTaken = 1 << 18;
  // Counts the polls of loading a file of this size, which was searched
  // elsewhere. Nothing is loaded then.
  void pass_over(uint32_t size);
  // False when the last file could not even be opened. No hook was called then.
  bool opened() const { return opened_; }
  // Forgets the content, keeps the buffer.
  void clear();

  // Position of the first non-printable byte, 0 if none. Intended: such a
  // byte at position 0 is never found.
  int32_t find_non_printable();

  bool loaded() const { return loaded_; }
  const char* data() const { return data_; }
  uint32_t length() const { return length_; }
  std::string_view bytes() const {
    return loaded_ ? std::string_view(data(), length_) : std::string_view();
  }
  // The bytes up to the first NUL.
  std::string_view text() const;
  const std::string& path() const { return path_; }
  // Size on disk when loading began; above length() after an interrupt.
  uint64_t file_size() const { return file_size_; }

 private:
  int32_t load(const char* path, platform::NearbyFolder* nearby);
  int32_t finish(uint32_t total, uint32_t steps);
  int32_t load_large();
  int32_t load_in_steps(uint32_t size);
  bool may_load() const {
    return !ordinary_only_ || (version_known_ && version_.size <= largest_);
  }
  bool make_room(uint32_t size);
  bool read_exactly(uint64_t offset, uint32_t size);
  // Whether the bytes are read when they are used.
  bool unread() const { return read_when_used_ && view_.is_open(); }

  std::string path_;
  platform::KeptBuffer buffer_;
  platform::FileView view_;
  platform::InputFile file_;  // open while bytes may have to be read
  char* data_ = nullptr;      // in the buffer or the view
  bool views_allowed_ = false;
  bool read_when_used_ = false;
  bool versions_wanted_ = false;
  bool version_known_ = false;
  bool links_refused_ = false;
  bool ordinary_only_ = false;
  uint64_t largest_ = 0;
  platform::FileVersion version_;
  bool opened_ = false;
  bool loaded_ = false;  // false for an empty file too
  uint32_t length_ = 0;
  uint64_t file_size_ = 0;
  uint32_t interrupt_word_ = 0;
  ProgressRecord progress_{};
  InterruptHook interrupt_hook_ = nullptr;
  ReportHook progress_hook_ = nullptr;
};

// Position of the first byte below 0x20 other than TAB, LF and CR, starting at
// `from`; the text's length if there is none.
size_t find_control_byte(std::string_view text, size_t from);

}  // namespace zenfo
