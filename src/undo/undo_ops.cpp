#include "undo/undo_ops.h"

#include "frame/callbacks.h"

namespace zenfo {

int32_t undo(Library& library) {
  if (library.safe_store == nullptr) return -1;
  send_status("Restoring original files");
  return library.safe_store->undo();
}

int32_t set_undo_file(Library& library, const char* path) {
  return library.safe_store != nullptr ? library.safe_store->set_undo_file(path)
                                       : -1;
}

int32_t get_undo_list(Library& library) {
  if (library.safe_store == nullptr) return -1;
  send_status("Retrieving list of safe-stored files");
  return library.safe_store->load_undo_list();
}

int32_t clear_undo_list(Library& library) {
  return library.safe_store != nullptr ? library.safe_store->undo_list.Clear()
                                       : -1;
}

}  // namespace zenfo
