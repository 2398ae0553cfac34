// The operations under "One entry" in zenfofr130.h.
//
// Tested by tests/contract/entry_test.cpp,
// tests/unit/operations/entries_test.cpp
#include <cstdint>
#include <string>

#include "files/columns.h"
#include "files/file_entry.h"
#include "operations/arguments.h"
#include "operations/operation.h"
#include "platform/shell.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

// False for an entry that lacks the column.
bool put_column(const FileEntry& entry, Column column, char* buffer) {
  std::string text;
  if (!append_column(entry, column, text)) return false;
  put(buffer, up_to_nul(text));
  return true;
}

template <const ExportRow& kRow>
int32_t give_column(int32_t list, uint32_t index, char* buffer, Column column) {
  return run<kRow>([&](Library& library) {
    const auto* entry = begin_text<FileEntry>(library, list, index, buffer);
    return entry != nullptr && put_column(*entry, column, buffer) ? 1 : -1;
  });
}

}  // namespace

ZENFO_ENTRY GetFilename(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetFilename>(list, index, buffer, Column::kFileName);
}

ZENFO_ENTRY GetFullName(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return run<row::GetFullName>([&](Library& library) {
    return give_slot<FileEntry>(library, list, index, buffer, TextSlot::kFirst);
  });
}

ZENFO_ENTRY SetFullName(int32_t list, uint32_t index, const char* text) {
  return run<row::SetFullName>([&](Library& library) {
    FileEntry* entry = record_at<FileEntry>(library, list, index);
    if (entry == nullptr) return -1;
    if (is_empty(text)) {
      return refuse(row::SetFullName, "The text pointer is NULL",
                    "Getting parameters");
    }
    entry->set_full_name(text);
    return 1;
  });
}

ZENFO_ENTRY GetDirectory(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetDirectory>(list, index, buffer,
                                        Column::kDirectory);
}

ZENFO_ENTRY GetType(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetType>(list, index, buffer, Column::kType);
}

ZENFO_ENTRY GetCTime(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return run<row::GetCTime>([&](Library& library) {
    const auto* entry = begin_text<FileEntry>(library, list, index, buffer);
    if (entry == nullptr) return -1;
    if (put_column(*entry, Column::kCreationTime, buffer)) return 1;
    // Of a file's columns only this one logs a value that cannot be shown.
    return refuse(row::GetCTime, "Getting local time failed",
                  "Getting local time");
  });
}

ZENFO_ENTRY GetATime(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetATime>(list, index, buffer, Column::kAccessTime);
}

ZENFO_ENTRY GetMTime(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetMTime>(list, index, buffer, Column::kWriteTime);
}

ZENFO_ENTRY GetSize(int32_t list, uint32_t index, char* buffer, uint32_t) {
  return give_column<row::GetSize>(list, index, buffer, Column::kSize);
}

ZENFO_ENTRY GetAttributes(int32_t list, uint32_t index, char* buffer,
                          uint32_t) {
  return give_column<row::GetAttributes>(list, index, buffer,
                                         Column::kAttributes);
}

ZENFO_ENTRY GetIcon(int32_t list, uint32_t index, int32_t* image_list,
                    int32_t* icon) {
  return run<row::GetIcon>([&](Library& library) {
    const FileEntry* entry = record_at<FileEntry>(library, list, index);
    if (entry == nullptr) return -1;
    // A host may pass a small number in place of the pointer.
    auto given = [](const int32_t* pointer) {
      return reinterpret_cast<uintptr_t>(pointer) >= 65536;
    };
    if (given(image_list)) {
      *image_list = static_cast<int32_t>(
          platform::system_image_list(entry->full_name().c_str()));
    }
    if (given(icon)) *icon = entry->icon;
    return entry->icon;
  });
}

ZENFO_ENTRY GetFlag(int32_t list, uint32_t index) {
  return run<row::GetFlag>([&](Library& library) {
    const FileEntry* entry = record_at<FileEntry>(library, list, index);
    return entry != nullptr ? entry->flag : -1;
  });
}

ZENFO_ENTRY IsTrashed(int32_t list, uint32_t index) {
  return run<row::IsTrashed>([&](Library& library) {
    const FileEntry* entry = record_at<FileEntry>(library, list, index);
    if (entry == nullptr) return -1;
    return entry->trashed() ? 1 : 0;
  });
}

}  // namespace zenfo
