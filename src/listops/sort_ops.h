// Sorting, selection of duplicates and removal, as exported.
//
// Tested by tests/contract/sort_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t sort(Library& library, int32_t list, uint32_t option,
             int32_t descending);
int32_t sort_string(Library& library, uint32_t option, int32_t descending);
int32_t sort_undo(Library& library, uint32_t option, int32_t descending);
int32_t sort_result(Library& library, uint32_t option, int32_t descending);
int32_t sort_result_no_match(Library& library, uint32_t option,
                             int32_t descending);
int32_t sort_result_error(Library& library, uint32_t option,
                          int32_t descending);
int32_t sort_replace_list(Library& library, uint32_t option,
                          int32_t descending);
int32_t select_duplicates(Library& library, int32_t list, uint32_t option);
int32_t remove_selection(Library& library, int32_t list);
int32_t delete_item(Library& library, int32_t list, uint32_t index);

}  // namespace zenfo
