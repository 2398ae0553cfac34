// Messages for people on the error stream: one line each, "zenfo: SUBJECT:
// REASON". Whatever is complained about makes the exit status 2.
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <string_view>

#include "shared/frame/failure.h"
#include "shared/frame/messages.h"

namespace zenfo::host::cli {

// Exit statuses. kFound and kNothingFound are the answers of a search, kSame
// and kDifferent those of a comparison.
inline constexpr int kFound = 0;
inline constexpr int kDone = 0;
inline constexpr int kNothingFound = 1;
inline constexpr int kSame = 0;
inline constexpr int kDifferent = 1;
inline constexpr int kError = 2;

// Line feeds inside the subject are shown as "?", so that a message stays one
// line; on a terminal all control characters are shown, as visible.h tells. A
// subject too long for a path is cut, an empty one left out.
void complain(std::string_view subject, std::string_view reason);
// The same for what is worth telling but no error.
void remark(std::string_view subject, std::string_view reason);
// Writes a question, or any other text for people, to the error stream.
void say(std::string_view text);
// The same for the parts that hosts share.
Messages& terminal_messages();
// Whether there was a complaint since the program began.
bool complained();

}  // namespace zenfo::host::cli
