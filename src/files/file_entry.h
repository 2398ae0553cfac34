// The record of one file: its path, the facts a host shows in its columns, the
// selection state and a flag that runs store their result in.
//
// Folder and file name are always cut from the full name at its last path
// separator, so an entry keeps one shared text and two marks that say whether
// each has been derived.
//
// Tested by tests/unit/files/file_entry_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "containers/pool.h"
#include "containers/record.h"
#include "platform/files.h"
#include "text/shared_text.h"

namespace zenfo {

// Which facts a host asks for: its ten option bytes, read once.
struct FactOptions {
  explicit FactOptions(const unsigned char* bytes);

  bool icon;
  bool file_name;
  bool folder;
  bool type_name;
  bool attributes;  // attributes, size and the three times
};

class FileEntry final : public Record, public Pooled<FileEntry> {
 public:
  static constexpr RecordKind kKind = RecordKind::kFileEntry;

  explicit FileEntry(SharedText full_name) { take_name(std::move(full_name)); }
  FileEntry(const FileEntry&) = default;

  RecordKind kind() const override { return kKind; }
  // Full name, folder, file name.
  std::optional<std::string_view> text(TextSlot slot) const override;

  const SharedText& full_name() const { return full_name_; }
  std::optional<std::string_view> folder() const;
  std::optional<std::string_view> file_name() const;
  std::optional<std::string_view> type_name() const {
    return type_name_.text();
  }
  // The file is below a folder named RECYCLED or RECYCLER, in any case.
  bool trashed() const;

  // Sets the name and derives folder and file name.
  void set_full_name(std::string_view name);

  // Gather facts: false when the fact is not available, which leaves the old
  // value.
  bool derive_file_name();  // fails when nothing follows the last separator
  bool derive_folder();
  bool gather_icon();
  bool gather_type_name();
  // `nearby` speeds up a walk over neighbouring entries; may be null.
  bool gather_attributes(platform::NearbyFolder* nearby);
  // All that `options` asks for except the file name, in the order folder,
  // icon, type name, attributes; false when any failed.
  bool gather(const FactOptions& options, platform::NearbyFolder* nearby);

  platform::FileFacts facts;
  int32_t icon = 0;
  int32_t flag = 0;  // -1: a fact is missing; else a run's result

 private:
  void take_name(SharedText name);
  std::string_view after_last_separator() const;

  SharedText full_name_;
  SharedText type_name_;
  uint32_t name_start_ = 0;  // offset after the last separator, 0 without one
  bool has_folder_ = false;
  bool has_file_name_ = false;
};

}  // namespace zenfo
