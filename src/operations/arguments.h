// The arguments and results of operations: lists and records by number, texts
// copied into buffers of the host.
//
// A missing list, record or text returns -1 unlogged, and so does a record of
// another kind than the operation reads.
//
// Tested by tests/contract/entry_test.cpp, tests/contract/match_test.cpp
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "containers/item_list.h"
#include "containers/record.h"
#include "library/library.h"
#include "operations/operation.h"
#include "text/c_text.h"

namespace zenfo {

// The list of an operation that takes its number; logged when missing.
inline ItemList* logged_list(Library& library, int32_t number,
                             const ExportRow& row) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) {
    refuse(row, "The list pointer is NULL", "Getting list pointer");
  }
  return list;
}

inline Record* record_at(Library& library, int32_t number, uint32_t index) {
  ItemList* list = library.get_list(number);
  return list != nullptr ? list->get(index) : nullptr;
}

// Null also for a record of another kind.
template <class T>
T* record_at(Library& library, int32_t number, uint32_t index) {
  return record_cast<T>(record_at(library, number, index));
}

// Intended: the host's buffer is large enough by contract; no size is
// consulted.
inline void put(char* buffer, std::string_view text) {
  if (!text.empty()) std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
}

// The first step of a text accessor: the buffer is emptied before the record is
// looked up.
template <class T>
const T* begin_text(Library& library, int32_t list, uint32_t index,
                    char* buffer) {
  if (buffer == nullptr) return nullptr;
  *buffer = '\0';
  return record_at<T>(library, list, index);
}

// One of the texts that all records share.
template <class T>
int32_t give_slot(Library& library, int32_t list, uint32_t index, char* buffer,
                  TextSlot slot) {
  const T* record = begin_text<T>(library, list, index, buffer);
  if (record == nullptr) return -1;
  const std::optional<std::string_view> text = record->text(slot);
  if (!text) return -1;
  put(buffer, up_to_nul(*text));
  return 1;
}

}  // namespace zenfo
