// The operations under "Start, end, callbacks, errors" in zenfofr130.h.
//
// Tested by tests/contract/frame_test.cpp
#include "frame/callbacks.h"
#include "operations/operation.h"

namespace zenfo {

ZENFO_ENTRY Initialize() {
  return run<row::Initialize>(
      [](Library& library) { return library.initialize(); });
}

ZENFO_ENTRY Terminate() {
  return run<row::Terminate>(
      [](Library& library) { return library.terminate(); });
}

extern "C" ZENFO_API void ZENFO_CALL SetCallBacks(const CallbackTable* table) {
  run<row::SetCallBacks>([&](Library&) {
    if (table == nullptr) {
      return refuse(row::SetCallBacks, "Pointer structure not initialised",
                    "Setting callback pointers");
    }
    host_callbacks() = *table;
    return 1;
  });
}

ZENFO_ENTRY SetErrorFile(const char* name) {
  return run<row::SetErrorFile>([&](Library& library) {
    return library.error_log != nullptr ? library.error_log->set_file(name)
                                        : -1;
  });
}

}  // namespace zenfo
