// Messages for people on the error stream: one line each, "zenfo: SUBJECT:
// REASON". Any complaint makes the exit status 2.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string_view>

#include "shared/frame/failure.h"
#include "shared/frame/messages.h"

namespace zenfo::host::cli {

// Exit statuses. Searches return kFound or kNothingFound, comparisons kSame or
// kDifferent.
inline constexpr int kFound = 0;
inline constexpr int kDone = 0;
inline constexpr int kNothingFound = 1;
inline constexpr int kSame = 0;
inline constexpr int kDifferent = 1;
inline constexpr int kError = 2;

// Line feeds in the subject are shown as "?", so that a message stays on one
// line; on a terminal all control characters are made visible, see visible.h. A
// subject too long for a path is cut, an empty one omitted.
void complain(std::string_view subject, std::string_view reason);
// The same for something the user should know that is not an error.
void remark(std::string_view subject, std::string_view reason);
// Writes a question, or any other text for people, to the error stream.
void say(std::string_view text);
// The same as an object, for the code that hosts share.
Messages& terminal_messages();
// Whether there was any complaint.
bool complained();

}  // namespace zenfo::host::cli
