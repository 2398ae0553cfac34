// Two lists compared: both are sorted by a key and walked side by side. Lists
// that share nothing take one step for each entry, because the walk drops what
// is smaller than everything that follows. A key that is not a true order does
// not allow that: then every entry of one list may be compared with every entry
// of the other.
//
// Tested by tests/unit/sorting/list_comparison_test.cpp
#pragma once

#include <cstdint>

#include "containers/item_list.h"

namespace zenfo {

// Marks the entries that both lists contain by the flag 1, all others by 0, and
// selects the former (`keep`) or the latter. Both lists end up sorted.
//   option  a row of the table of keys, 0 in place of any above 18
void compare_lists(ItemList& reference, ItemList& compared, uint32_t option,
                   bool keep);

}  // namespace zenfo
