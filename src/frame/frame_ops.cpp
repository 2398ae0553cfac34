#include "frame/frame_ops.h"

#include "frame/callbacks.h"

namespace zenfo {

int32_t initialize(Library& library) { return library.initialize(); }

int32_t terminate(Library& library) { return library.terminate(); }

int32_t set_callbacks(Library&, const CallbackTable* table) {
  if (table == nullptr) {
    return ReportError("Pointer structure not initialised",
                       "Setting callback pointers", "SetCallBacks");
  }
  host_callbacks() = *table;
  return 1;
}

int32_t set_error_file(Library& library, const char* name) {
  return library.error_log != nullptr ? library.error_log->SetFile(name) : -1;
}

}  // namespace zenfo
