// The operations under "Undo" in zenfofr130.h.
//
// Tested by tests/contract/undo_test.cpp
#include "frame/callbacks.h"
#include "operations/arguments.h"
#include "operations/operation.h"
#include "undo/undo_record.h"

namespace zenfo {

ZENFO_ENTRY SetUndoFile(const char* path) {
  return run<row::SetUndoFile>([&](Library& library) {
    return library.safe_store != nullptr
               ? library.safe_store->set_undo_file(path)
               : -1;
  });
}

ZENFO_ENTRY GetUndoList() {
  return run<row::GetUndoList>([&](Library& library) {
    if (library.safe_store == nullptr) return -1;
    send_status("Retrieving list of safe-stored files");
    return library.safe_store->load_undo_list();
  });
}

ZENFO_ENTRY Undo() {
  return run<row::Undo>([&](Library& library) {
    if (library.safe_store == nullptr) return -1;
    send_status("Restoring original files");
    return library.safe_store->undo();
  });
}

ZENFO_ENTRY ClearUndoList() {
  return run<row::ClearUndoList>([&](Library& library) {
    return library.safe_store != nullptr ? library.safe_store->undo_list.clear()
                                         : -1;
  });
}

ZENFO_ENTRY GetOrigFile(uint32_t index, char* buffer, uint32_t) {
  return run<row::GetOrigFile>([&](Library& library) {
    return give_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                                 TextSlot::kFirst);
  });
}

ZENFO_ENTRY GetSafeFile(uint32_t index, char* buffer, uint32_t) {
  return run<row::GetSafeFile>([&](Library& library) {
    return give_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                                 TextSlot::kSecond);
  });
}

ZENFO_ENTRY GetSafeTime(uint32_t index, char* buffer, uint32_t) {
  return run<row::GetSafeTime>([&](Library& library) {
    return give_slot<UndoRecord>(library, ZENFO_LIST_UNDO, index, buffer,
                                 TextSlot::kThird);
  });
}

}  // namespace zenfo
