// Wide texts for the host's callbacks: one shared buffer, converted from the
// system's ANSI code page (natively from UTF-8; bytes that are not UTF-8 become
// the character of the same number).
//
// Tested by tests/unit/platform/wide_text_test.cpp
#pragma once

#include <cstddef>

namespace zenfo::platform {

#ifdef _WIN32
using WideChar = wchar_t;
#else
using WideChar = char16_t;
#endif

inline constexpr size_t kWideBufferLength = 1024;

// A wide string of 1024 characters (and its terminating zero); null when there
// is no memory. Freed by free_wide_buffer, which takes null too.
WideChar* allocate_wide_buffer();
void free_wide_buffer(WideChar* buffer);
// Converts a zero-terminated text into the buffer. A text that does not fit is
// stored as far as the system does that (natively all whole characters that
// fit); the last place is then zero.
void to_wide(const char* text, WideChar* buffer);

}  // namespace zenfo::platform
