// Walks over the files of a list, with the calls to the host that go with them.
//
// Tested by tests/contract/find_files_test.cpp,
// tests/contract/list_file_test.cpp
#pragma once

#include <cstdint>

#include "containers/item_list.h"
#include "files/file_entry.h"

namespace zenfo {

// Runs `work` on every file. After each record the host is asked whether to go
// on, then the position is reported. False when the host stopped the walk.
template <class Work>
bool visit_entries(ItemList& list, Work work) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    if (auto* entry = record_cast<FileEntry>(list.get(i))) work(*entry);
    if (!list.goes_on_after(i)) return false;
  }
  return true;
}

// The same; a walk that was not stopped also reports the end.
template <class Work>
bool for_each_entry(ItemList& list, Work work) {
  if (!visit_entries(list, work)) return false;
  list.report_position(list.count());
  return true;
}

}  // namespace zenfo
