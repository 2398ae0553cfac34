// Wide texts as the system's own strings, converted by the system.
//
// Tested by tests/unit/platform/wide_text_test.cpp
#include "platform/wide_text.h"

#include "platform/win32/system.h"

namespace zenfo::platform {

WideChar* allocate_wide_buffer() {
  WideChar* buffer = SysAllocStringLen(nullptr, kWideBufferLength);
  if (buffer != nullptr) buffer[0] = 0;  // the system leaves it as it was
  return buffer;
}

void free_wide_buffer(WideChar* buffer) { SysFreeString(buffer); }

void to_wide(const char* text, WideChar* buffer) {
  if (MultiByteToWideChar(CP_ACP, 0, text, -1, buffer,
                          static_cast<int>(kWideBufferLength)) == 0) {
    buffer[kWideBufferLength - 1] = 0;
  }
}

}  // namespace zenfo::platform
