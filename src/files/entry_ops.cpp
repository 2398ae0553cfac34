#include "files/entry_ops.h"

#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "files/columns.h"
#include "files/file_entry.h"
#include "files/size_text.h"
#include "frame/callbacks.h"
#include "frame/rows.h"
#include "listops/string_pair.h"
#include "platform/shell.h"
#include "text/c_text.h"
#include "undo/undo_record.h"

namespace zenfo {
namespace {

Record* record_at(Library& library, int32_t number, uint32_t index) {
  ItemList* list = library.get_list(number);
  return list != nullptr ? list->Get(index) : nullptr;
}

FileEntry* entry_at(Library& library, int32_t number, uint32_t index) {
  return record_cast<FileEntry>(record_at(library, number, index));
}

// Intended: the host's buffer is large enough by contract; no size is
// consulted.
void put(char* buffer, std::string_view text) {
  if (!text.empty()) std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
}

// The frame of every text accessor: the buffer is emptied before anything is
// looked up.
template <class T, class Text>
int32_t copy_text(Library& library, int32_t list, uint32_t index, char* buffer,
                  Text text) {
  if (buffer == nullptr) return -1;
  *buffer = '\0';
  const T* record = record_cast<T>(record_at(library, list, index));
  if (record == nullptr) return -1;
  const std::optional<std::string_view> found = text(*record);
  if (!found) return -1;
  put(buffer, up_to_nul(*found));
  return 1;
}

// `missing` is called for an entry that lacks the column.
template <class Missing>
int32_t copy_column(Library& library, int32_t list, uint32_t index,
                    char* buffer, Column column, Missing missing) {
  std::string text;
  return copy_text<FileEntry>(
      library, list, index, buffer,
      [&](const FileEntry& entry) -> std::optional<std::string_view> {
        if (append_column(entry, column, text)) return text;
        missing();
        return std::nullopt;
      });
}

int32_t copy_column(Library& library, int32_t list, uint32_t index,
                    char* buffer, Column column) {
  return copy_column(library, list, index, buffer, column, [] {});
}

template <class T>
int32_t copy_slot(Library& library, int32_t list, uint32_t index, char* buffer,
                  TextSlot slot) {
  return copy_text<T>(library, list, index, buffer,
                      [&](const T& record) { return record.text(slot); });
}

template <class Wanted>
int32_t put_total(Library& library, int32_t number, char* short_text,
                  char* long_text, Wanted wanted) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) return -1;
  double total = 0;
  for (uint32_t i = 0; i < list->Count(); ++i) {
    const auto* entry = record_cast<FileEntry>(list->Get(i));
    if (entry == nullptr || !wanted(*entry)) continue;
    total += static_cast<double>(entry->facts.size);
  }
  if (short_text != nullptr) put(short_text, short_total_text(total));
  if (long_text != nullptr) put(long_text, long_total_text(total));
  return 1;
}

}  // namespace

int32_t get_filename(Library& library, int32_t list, uint32_t index,
                     char* buffer, uint32_t) {
  return copy_column(library, list, index, buffer, Column::kFileName);
}

int32_t get_full_name(Library& library, int32_t list, uint32_t index,
                      char* buffer, uint32_t) {
  return copy_slot<FileEntry>(library, list, index, buffer, TextSlot::kFirst);
}

int32_t set_full_name(Library& library, int32_t list, uint32_t index,
                      const char* text) {
  FileEntry* entry = entry_at(library, list, index);
  if (entry == nullptr) return -1;
  if (text == nullptr || *text == '\0') {
    ReportError("The text pointer is NULL", "Getting parameters",
                row::SetFullName.routine);
    return -1;
  }
  entry->set_full_name(text);
  return 1;
}

int32_t get_directory(Library& library, int32_t list, uint32_t index,
                      char* buffer, uint32_t) {
  return copy_column(library, list, index, buffer, Column::kDirectory);
}

int32_t get_type(Library& library, int32_t list, uint32_t index, char* buffer,
                 uint32_t) {
  return copy_column(library, list, index, buffer, Column::kType);
}

int32_t get_ctime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t) {
  // Of a file's columns only this one logs what it cannot show.
  return copy_column(library, list, index, buffer, Column::kCreationTime, [] {
    ReportError("Getting local time failed", "Getting local time",
                row::GetCTime.routine);
  });
}

int32_t get_atime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t) {
  return copy_column(library, list, index, buffer, Column::kAccessTime);
}

int32_t get_mtime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t) {
  return copy_column(library, list, index, buffer, Column::kWriteTime);
}

int32_t get_size(Library& library, int32_t list, uint32_t index, char* buffer,
                 uint32_t) {
  return copy_column(library, list, index, buffer, Column::kSize);
}

int32_t get_attributes(Library& library, int32_t list, uint32_t index,
                       char* buffer, uint32_t) {
  return copy_column(library, list, index, buffer, Column::kAttributes);
}

int32_t get_icon(Library& library, int32_t list, uint32_t index,
                 int32_t* image_list, int32_t* icon) {
  const FileEntry* entry = entry_at(library, list, index);
  if (entry == nullptr) return -1;
  // A host may pass a small number where the pointer stands.
  auto given = [](const int32_t* pointer) {
    return reinterpret_cast<uintptr_t>(pointer) >= 65536;
  };
  if (given(image_list)) {
    *image_list = static_cast<int32_t>(
        platform::system_image_list(entry->full_name().c_str()));
  }
  if (given(icon)) *icon = entry->icon;
  return entry->icon;
}

int32_t get_flag(Library& library, int32_t list, uint32_t index) {
  const FileEntry* entry = entry_at(library, list, index);
  return entry != nullptr ? entry->flag : -1;
}

int32_t is_trashed(Library& library, int32_t list, uint32_t index) {
  const FileEntry* entry = entry_at(library, list, index);
  if (entry == nullptr) return -1;
  return entry->trashed() ? 1 : 0;
}

int32_t get_state(Library& library, int32_t list, uint32_t index) {
  const Record* record = record_at(library, list, index);
  return record != nullptr ? static_cast<int32_t>(record->state) : -1;
}

int32_t set_state(Library& library, int32_t number, int32_t index,
                  int32_t action) {
  ItemList* list = library.get_list(number);
  return list != nullptr ? list->SetState(index, action) : -1;
}

int32_t get_find_string(Library& library, uint32_t index, char* buffer,
                        uint32_t) {
  return copy_slot<StringPair>(library, ZENFO_LIST_PAIRS, index, buffer,
                               TextSlot::kFirst);
}

int32_t get_replace_string(Library& library, uint32_t index, char* buffer,
                           uint32_t) {
  return copy_slot<StringPair>(library, ZENFO_LIST_PAIRS, index, buffer,
                               TextSlot::kSecond);
}

int32_t get_replace_value(Library& library, uint32_t index, char* buffer,
                          uint32_t) {
  return copy_slot<ReplaceValue>(library, ZENFO_LIST_VALUES, index, buffer,
                                 TextSlot::kFirst);
}

int32_t get_orig_file(Library& library, uint32_t index, char* buffer,
                      uint32_t) {
  return copy_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                               TextSlot::kFirst);
}

int32_t get_safe_file(Library& library, uint32_t index, char* buffer,
                      uint32_t) {
  return copy_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                               TextSlot::kSecond);
}

int32_t get_safe_time(Library& library, uint32_t index, char* buffer,
                      uint32_t) {
  return copy_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                               TextSlot::kThird);
}

int32_t get_count(Library& library, int32_t number, int32_t selector) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) return -1;
  send_status("Now counting entries");
  return list->CountState(selector);
}

int32_t get_file_flag_count(Library& library, int32_t number, int32_t value) {
  ItemList* list = library.get_list(number);
  if (list == nullptr || value < -1) return -1;
  send_status("Now counting entries");
  int32_t count = 0;
  for (uint32_t i = 0; i < list->Count(); ++i) {
    if (const auto* entry = record_cast<FileEntry>(list->Get(i))) {
      const bool counts = value > 0 ? entry->flag >= 1 : entry->flag == value;
      if (counts) ++count;
    }
    if (list->PollInterruptEvery(100) != 0) return count;
    list->ReportPosition(i);
  }
  list->ReportPosition(list->Count());
  return count;
}

int32_t get_size_selection(Library& library, int32_t list, char* short_text,
                           char* long_text) {
  return put_total(library, list, short_text, long_text,
                   [](const FileEntry& entry) { return entry.state == 1; });
}

int32_t get_size_total(Library& library, int32_t list, char* short_text,
                       char* long_text) {
  return put_total(library, list, short_text, long_text,
                   [](const FileEntry&) { return true; });
}

int32_t refresh(Library& library, int32_t number, int32_t index,
                const unsigned char* option_bytes) {
  ItemList* list = library.get_list(number);
  if (list == nullptr || option_bytes == nullptr) return -1;
  const FactOptions options(option_bytes);
  const bool all = index == -1;
  const auto first = all ? 0 : static_cast<uint32_t>(index);
  const uint32_t end = all ? list->Count() : first + 1;
  platform::NearbyFolder nearby;
  int32_t refreshed = 0;
  for (uint32_t i = first; i < end; ++i) {
    auto* entry = record_cast<FileEntry>(list->Get(i));
    if (entry == nullptr && !all) return -1;
    if (entry != nullptr) {
      // Intended: the flag stays as it is when a fact cannot be had.
      if (options.file_name) entry->derive_file_name();
      entry->gather(options, &nearby);
      ++refreshed;
    }
    if (list->PollInterruptEvery(100) != 0) return refreshed;
    list->ReportPosition(i);
  }
  list->ReportPosition(list->Count());
  return refreshed;
}

int32_t clear(Library& library, int32_t number) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) {
    ReportError("The list pointer is NULL", "Getting list to clear",
                row::Clear.routine);
    return 0;
  }
  return list->Clear();
}

}  // namespace zenfo
