// Calls back to the host: the six slots of the callback table, a wrapper for
// each kind of call, and the two hooks that every list gets.
//
// The slots are plain globals: a host sets them once, Initialize and Terminate
// leave them alone. Wide texts go out in one shared buffer that the next call
// overwrites. No exception passes: a wrapper logs it under its own name and
// returns its failure value.
//
// Tested by tests/unit/frame/callbacks_test.cpp
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/wide_text.h"
#include "zenfofr130.h"

namespace zenfo {

// The current slots; all null until a host sets them.
CallbackTable& host_callbacks();

// The SharedWideBuffer, allocated by Initialize and freed by Terminate.
void allocate_shared_wide_buffer();
void free_shared_wide_buffer();

// The wrappers. Those without a text return 0 when there is no callback, those
// with one -1 when there is no callback, no text (null or empty) or no buffer.
// Otherwise the callback's answer.
int32_t cb_lng(ZenfoInterruptCallback callback);
int32_t cb_lng_str(ZenfoTextCallback callback, const char* text);
int32_t cb_lng_str_lng(ZenfoOptionCallback callback, const char* text,
                       int32_t number);
// Without a caller: no slot has a callback of this form.
int32_t cb_lng_lng(int32_t(ZENFO_CALL* callback)(int32_t), int32_t number);
int32_t cb_lng_report(ZenfoReportCallback callback, ProgressRecord* record);

// The hooks and the status below call a callback from inside itself once, not
// deeper: what the host does there could call it again without end.

// The interrupt hook: 1 when the host asks to stop, else 0. Its argument is
// ignored.
int32_t interr(void* argument);
// The report hook: 1 when the host's callback was called, whatever it returned,
// else 0.
int32_t report(ProgressRecord* record);

// Sends a status text, if the host listens; cut to the 1023 bytes that the
// shared buffer holds.
void send_status(std::string_view text);
// The same for a fixed text, a blank and a path.
void send_status(std::string_view text, std::string_view path);
// Whether the host has callbacks that runs call by themselves: for interrupts,
// progress or status texts.
bool host_listens();
// Whether the host has any callback that runs call: then it can change files
// while a run works on them.
bool host_may_act();
// The two questions; -1 when the host has no such callback.
int32_t ask_about_file(std::string_view full_name);
int32_t ask_option(std::string_view path, int32_t number);

}  // namespace zenfo
