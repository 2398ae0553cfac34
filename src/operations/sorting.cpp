// The operations under "Sorting" in zenfofr130.h.
//
// Tested by tests/contract/sort_test.cpp
#include "frame/callbacks.h"
#include "operations/arguments.h"
#include "operations/operation.h"
#include "sorting/keyed_sort.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

// One row for each sort operation: option n uses row first_key + n of the table
// of keys.
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
// Intended: the last option is a row after the table's end; asking for it
// throws.
constexpr SortOperation kSortReplaceList{row::sort_replace_list,
                                         ZENFO_LIST_VALUES, 23, 3};
constexpr uint32_t kDuplicateOptions = 12;

int32_t sort_list(ItemList* list, const SortOperation& operation,
                  uint32_t option, int32_t descending) {
  if (list == nullptr) return -1;
  if (option >= operation.options) {
    return refuse(operation.row, "Option is invalid", "Checking sort option");
  }
  send_status("Now sorting entries");
  refresh_byte_tables();
  return sort_by_key(*list, kSortTable.at(operation.first_key + option),
                     descending);
}

template <const SortOperation& kOperation>
int32_t sort_own_list(uint32_t option, int32_t descending) {
  return run<kOperation.row>([&](Library& library) {
    return sort_list(library.get_list(kOperation.list), kOperation, option,
                     descending);
  });
}

bool deselect_all(ItemList& list) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    Record* record = list.get(i);
    if (record == nullptr) return false;
    record->state = 0;
    list.report_position(i);
  }
  return true;
}

}  // namespace

ZENFO_ENTRY Sort(int32_t number, uint32_t option, int32_t descending) {
  return run<row::Sort>([&](Library& library) {
    return sort_list(logged_list(library, number, kSort.row), kSort, option,
                     descending);
  });
}

ZENFO_ENTRY SortString(uint32_t option, int32_t descending) {
  return sort_own_list<kSortString>(option, descending);
}

ZENFO_ENTRY SortUndo(uint32_t option, int32_t descending) {
  return sort_own_list<kSortUndo>(option, descending);
}

ZENFO_ENTRY SortResult(uint32_t option, int32_t descending) {
  return sort_own_list<kSortResult>(option, descending);
}

ZENFO_ENTRY SortResultNoMatch(uint32_t option, int32_t descending) {
  return sort_own_list<kSortResultNoMatch>(option, descending);
}

ZENFO_ENTRY SortResultError(uint32_t option, int32_t descending) {
  return sort_own_list<kSortResultError>(option, descending);
}

ZENFO_ENTRY sort_replace_list(uint32_t option, int32_t descending) {
  return sort_own_list<kSortReplaceList>(option, descending);
}

// Intended: the selection is cleared even where there can be no duplicates.
ZENFO_ENTRY SelectDuplicates(int32_t number, uint32_t option) {
  return run<row::SelectDuplicates>([&](Library& library) {
    const ExportRow& row = row::SelectDuplicates;
    ItemList* list = logged_list(library, number, row);
    if (list == nullptr) return -1;
    if (option >= kDuplicateOptions) {
      return refuse(row, "Option is invalid", "Checking duplicate option");
    }
    send_status("Now deselecting all entries");
    if (!deselect_all(*list)) {
      return refuse(row, "The item pointer is NULL", "Getting list item");
    }
    send_status("Now selecting duplicates");
    refresh_byte_tables();
    return select_duplicates_by_key(*list, kSortTable.at(option),
                                    [](Record& record) { record.state = 1; });
  });
}

}  // namespace zenfo
