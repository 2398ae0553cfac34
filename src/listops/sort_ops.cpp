#include "listops/sort_ops.h"

#include "frame/callbacks.h"
#include "frame/rows.h"
#include "listops/keyed_sort.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

// One row a sort operation: option n uses row first_key + n of the table of
// keys.
struct SortOperation {
  const ExportRow& row;
  int32_t list;
  uint32_t first_key;
  uint32_t options;
};

constexpr int32_t kAnyList = -1;  // the host names it
constexpr SortOperation kSort{row::Sort, kAnyList, 0, 17};
constexpr SortOperation kSortString{row::SortString, ZENFO_LIST_PAIRS, 12, 3};
constexpr SortOperation kSortUndo{row::SortUndo, ZENFO_LIST_UNDO, 15, 4};
constexpr SortOperation kSortResult{row::SortResult, ZENFO_LIST_RESULT, 19, 4};
constexpr SortOperation kSortResultNoMatch{row::SortResultNoMatch,
                                           ZENFO_LIST_NO_MATCH, 19, 4};
constexpr SortOperation kSortResultError{row::SortResultError, ZENFO_LIST_ERROR,
                                         19, 4};
// Intended: the last option is a row behind the table's end; asking for it
// throws.
constexpr SortOperation kSortReplaceList{row::sort_replace_list,
                                         ZENFO_LIST_VALUES, 23, 3};
constexpr uint32_t kDuplicateOptions = 12;

int32_t refuse(const char* message, const char* context, const ExportRow& row) {
  ReportError(message, context, row.routine);
  return -1;
}

// The list of an operation that takes its number; logged when missing.
ItemList* logged_list(Library& library, int32_t number, const ExportRow& row) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) {
    refuse("The list pointer is NULL", "Getting list pointer", row);
  }
  return list;
}

int32_t sort_list(ItemList* list, const SortOperation& operation,
                  uint32_t option, int32_t descending) {
  if (list == nullptr) return -1;
  if (option >= operation.options) {
    return refuse("Option is invalid", "Checking sort option", operation.row);
  }
  send_status("Now sorting entries");
  refresh_byte_tables();
  return sort_by_key(*list, kSortTable.at(operation.first_key + option),
                     descending);
}

int32_t sort_fixed_list(Library& library, const SortOperation& operation,
                        uint32_t option, int32_t descending) {
  return sort_list(library.get_list(operation.list), operation, option,
                   descending);
}

bool deselect_all(ItemList& list) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    Record* record = list.Get(i);
    if (record == nullptr) return false;
    record->state = 0;
    list.ReportPosition(i);
  }
  return true;
}

}  // namespace

int32_t sort(Library& library, int32_t number, uint32_t option,
             int32_t descending) {
  return sort_list(logged_list(library, number, kSort.row), kSort, option,
                   descending);
}

int32_t sort_string(Library& library, uint32_t option, int32_t descending) {
  return sort_fixed_list(library, kSortString, option, descending);
}

int32_t sort_undo(Library& library, uint32_t option, int32_t descending) {
  return sort_fixed_list(library, kSortUndo, option, descending);
}

int32_t sort_result(Library& library, uint32_t option, int32_t descending) {
  return sort_fixed_list(library, kSortResult, option, descending);
}

int32_t sort_result_no_match(Library& library, uint32_t option,
                             int32_t descending) {
  return sort_fixed_list(library, kSortResultNoMatch, option, descending);
}

int32_t sort_result_error(Library& library, uint32_t option,
                          int32_t descending) {
  return sort_fixed_list(library, kSortResultError, option, descending);
}

int32_t sort_replace_list(Library& library, uint32_t option,
                          int32_t descending) {
  return sort_fixed_list(library, kSortReplaceList, option, descending);
}

// Intended: the selection is cleared even where there can be no duplicates.
int32_t select_duplicates(Library& library, int32_t number, uint32_t option) {
  const ExportRow& row = row::SelectDuplicates;
  ItemList* list = logged_list(library, number, row);
  if (list == nullptr) return -1;
  if (option >= kDuplicateOptions) {
    return refuse("Option is invalid", "Checking duplicate option", row);
  }
  send_status("Now deselecting all entries");
  if (!deselect_all(*list)) {
    return refuse("The item pointer is NULL", "Getting list item", row);
  }
  send_status("Now selecting duplicates");
  refresh_byte_tables();
  return select_duplicates_by_key(*list, kSortTable.at(option),
                                  [](Record& record) { record.state = 1; });
}

// Walks the links, not the positions; a callback may move the cursor.
int32_t remove_selection(Library& library, int32_t number) {
  ItemList* list = logged_list(library, number, row::RemoveSelection);
  if (list == nullptr) return -1;
  send_status("Now removing items");
  for (Record* record = list->First(); record != nullptr;
       record = list->Current()) {
    const ItemList::Place place = list->CursorPlace();
    const bool stop = list->PollInterrupt() != 0;
    if (!stop) list->ReportReset();
    list->SetCursor(place);
    if (stop) break;
    if (record->state == 1) {
      list->RemoveCurrent();
    } else {
      list->Next();
    }
  }
  // Intended: a sorted order is gone even when nothing was removed.
  list->BuildIndex();
  return static_cast<int32_t>(list->Count());
}

// Intended: an index behind the end removes nothing and answers 1.
int32_t delete_item(Library& library, int32_t number, uint32_t index) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) return -1;
  list->RemoveAt(index);
  list->BuildIndex();
  return 1;
}

}  // namespace zenfo
