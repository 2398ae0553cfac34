#include "shared/session/undo_list.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "shared/system/paths.h"

namespace zenfo::host {
namespace {

// Accessors may copy the whole text whatever size they are given; one byte is
// for the NUL.
constexpr size_t kNoText = 1;

}  // namespace

bool UndoList::load(const std::string& file) {
  std::error_code error;
  const auto before = std::filesystem::file_size(to_path(file), error);
  if (error) {
    ClearUndoList();
    return error == std::errc::no_such_file_or_directory;
  }
  buffer_.resize(before + kNoText);
  const int32_t records = GetUndoList();
  const auto after = std::filesystem::file_size(to_path(file), error);
  const bool read = !error && after == before && (records > 0 || before == 0);
  if (!read || records <= 0) ClearUndoList();
  return read;
}

uint32_t UndoList::count() {
  return static_cast<uint32_t>(std::max(GetCount(ZENFO_LIST_UNDO, -1), 0));
}

std::string UndoList::text(Accessor accessor, uint32_t index) {
  buffer_.front() = '\0';
  accessor(index, buffer_.data(), static_cast<uint32_t>(buffer_.size()));
  return buffer_.data();
}

}  // namespace zenfo::host
