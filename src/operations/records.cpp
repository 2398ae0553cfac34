// The operations under "Records of any kind" in zenfofr130.h.
//
// Tested by tests/contract/entry_test.cpp, tests/contract/sort_test.cpp
#include "files/file_entry.h"
#include "files/size_text.h"
#include "frame/callbacks.h"
#include "operations/arguments.h"
#include "operations/operation.h"
#include "operations/walks.h"

namespace zenfo {
namespace {

template <class Wanted>
int32_t put_total(Library& library, int32_t number, char* short_text,
                  char* long_text, Wanted wanted) {
  ItemList* list = library.get_list(number);
  if (list == nullptr) return -1;
  double total = 0;
  for (uint32_t i = 0; i < list->count(); ++i) {
    const auto* entry = record_cast<FileEntry>(list->get(i));
    if (entry == nullptr || !wanted(*entry)) continue;
    total += static_cast<double>(entry->facts.size);
  }
  if (short_text != nullptr) put(short_text, short_total_text(total));
  if (long_text != nullptr) put(long_text, long_total_text(total));
  return 1;
}

}  // namespace

ZENFO_ENTRY GetState(int32_t list, uint32_t index) {
  return run<row::GetState>([&](Library& library) {
    const Record* record = record_at(library, list, index);
    return record != nullptr ? static_cast<int32_t>(record->state) : -1;
  });
}

ZENFO_ENTRY SetState(int32_t number, int32_t index, int32_t action) {
  return run<row::SetState>([&](Library& library) {
    ItemList* list = library.get_list(number);
    return list != nullptr ? list->set_state(index, action) : -1;
  });
}

ZENFO_ENTRY GetCount(int32_t number, int32_t selector) {
  return run<row::GetCount>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr) return -1;
    send_status("Now counting entries");
    return list->count_state(selector);
  });
}

ZENFO_ENTRY GetFileFlagCount(int32_t number, int32_t value) {
  return run<row::GetFileFlagCount>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr || value < -1) return -1;
    send_status("Now counting entries");
    int32_t count = 0;
    for_each_entry(*list, [&](const FileEntry& entry) {
      count += value > 0 ? entry.flag >= 1 : entry.flag == value;
    });
    return count;
  });
}

ZENFO_ENTRY GetSizeTotal(int32_t list, char* short_text, char* long_text) {
  return run<row::GetSizeTotal>([&](Library& library) {
    return put_total(library, list, short_text, long_text,
                     [](const FileEntry&) { return true; });
  });
}

ZENFO_ENTRY GetSizeSelection(int32_t list, char* short_text, char* long_text) {
  return run<row::GetSizeSelection>([&](Library& library) {
    return put_total(library, list, short_text, long_text,
                     [](const FileEntry& entry) { return entry.state == 1; });
  });
}

ZENFO_ENTRY Clear(int32_t number) {
  return run<row::Clear>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr) {
      refuse(row::Clear, "The list pointer is NULL", "Getting list to clear");
      return 0;
    }
    return list->clear();
  });
}

ZENFO_ENTRY Refresh(int32_t number, int32_t index,
                    const unsigned char* option_bytes) {
  return run<row::Refresh>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr || option_bytes == nullptr) return -1;
    const FactOptions options(option_bytes);
    const bool all = index == -1;
    const auto first = all ? 0 : static_cast<uint32_t>(index);
    const uint32_t end = all ? list->count() : first + 1;
    platform::NearbyFolder nearby;
    int32_t refreshed = 0;
    for (uint32_t i = first; i < end; ++i) {
      auto* entry = record_cast<FileEntry>(list->get(i));
      if (entry == nullptr && !all) return -1;
      if (entry != nullptr) {
        // Intended: the flag stays as it is when a fact is not available.
        if (options.file_name) entry->derive_file_name();
        entry->gather(options, &nearby);
        ++refreshed;
      }
      if (!list->goes_on_after(i)) return refreshed;
    }
    list->report_position(list->count());
    return refreshed;
  });
}

// Intended: an index after the end removes nothing and answers 1.
ZENFO_ENTRY DeleteItem(int32_t number, uint32_t index) {
  return run<row::DeleteItem>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr) return -1;
    list->remove_at(index);
    list->build_index();
    return 1;
  });
}

// Walks the links, not the positions; a callback may move the cursor.
ZENFO_ENTRY RemoveSelection(int32_t number) {
  return run<row::RemoveSelection>([&](Library& library) {
    ItemList* list = logged_list(library, number, row::RemoveSelection);
    if (list == nullptr) return -1;
    send_status("Now removing items");
    for (Record* record = list->first(); record != nullptr;
         record = list->current()) {
      const ItemList::Place place = list->cursor_place();
      const bool goes_on = list->goes_on();
      list->set_cursor(place);
      if (!goes_on) break;
      if (record->state == 1) {
        list->remove_current();
      } else {
        list->next();
      }
    }
    // Intended: a sorted order is gone even when nothing was removed.
    list->build_index();
    return static_cast<int32_t>(list->count());
  });
}

}  // namespace zenfo
