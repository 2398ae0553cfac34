#include "files/file_entry.h"

#include <string>

#include "platform/shell.h"
#include "text/byte_tables.h"
#include "zenfofr130.h"

namespace zenfo {

FactOptions::FactOptions(const unsigned char* bytes)
    : icon(bytes[ZENFO_OPTION_ICON] != 0),
      file_name(bytes[ZENFO_OPTION_FILE_NAME] != 0),
      folder(bytes[ZENFO_OPTION_FOLDER] != 0),
      type_name(bytes[ZENFO_OPTION_TYPE] != 0),
      attributes(false) {
  for (int i = ZENFO_OPTION_ATTRIBUTES; i < ZENFO_OPTION_COUNT; ++i) {
    attributes |= bytes[i] != 0;
  }
}

std::optional<std::string_view> FileEntry::text(TextSlot slot) const {
  switch (slot) {
    case TextSlot::kFirst:
      return full_name_.text();
    case TextSlot::kSecond:
      return folder();
    case TextSlot::kThird:
      return file_name();
  }
  return std::nullopt;
}

void FileEntry::take_name(SharedText name) {
  full_name_ = std::move(name);
  size_t last = full_name_.view().rfind(platform::kPathSeparator);
  name_start_ =
      last == std::string_view::npos ? 0 : static_cast<uint32_t>(last + 1);
  has_folder_ = has_file_name_ = false;
}

void FileEntry::set_full_name(std::string_view name) {
  take_name(SharedText(name));
  derive_folder();
  derive_file_name();
}

std::string_view FileEntry::after_last_separator() const {
  return full_name_.view().substr(name_start_);
}

std::optional<std::string_view> FileEntry::folder() const {
  if (!has_folder_) return std::nullopt;
  return full_name_.view().substr(0, name_start_ > 0 ? name_start_ - 1 : 0);
}

std::optional<std::string_view> FileEntry::file_name() const {
  if (!has_file_name_) return std::nullopt;
  return after_last_separator();
}

bool FileEntry::trashed() const {
  std::string_view rest = full_name_.view();
  while (!rest.empty()) {
    size_t end = rest.find(platform::kPathSeparator);
    std::string_view component = rest.substr(0, end);
    if (compare_ignoring_case(component, "recycled") == 0 ||
        compare_ignoring_case(component, "recycler") == 0) {
      return true;
    }
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return false;
}

bool FileEntry::derive_file_name() {
  has_file_name_ = !after_last_separator().empty();
  return has_file_name_;
}

bool FileEntry::derive_folder() {
  has_folder_ = true;
  return true;
}

bool FileEntry::gather_icon() {
  return platform::read_icon_index(full_name_.c_str(), icon);
}

bool FileEntry::gather_type_name() {
  std::string name;
  if (!platform::read_type_name(full_name_.c_str(), name)) return false;
  type_name_ = SharedText(name);
  return true;
}

bool FileEntry::gather_attributes(platform::NearbyFolder* nearby) {
  return platform::read_file_facts(full_name_.c_str(), facts, nearby);
}

bool FileEntry::gather(const FactOptions& options,
                       platform::NearbyFolder* nearby) {
  bool complete = true;
  if (options.folder) complete &= derive_folder();
  if (options.icon) complete &= gather_icon();
  if (options.type_name) complete &= gather_type_name();
  if (options.attributes) complete &= gather_attributes(nearby);
  return complete;
}

}  // namespace zenfo
