// Standard streams, terminals and the signals that come from them.
// posix/terminal.cpp and win32/terminal.cpp are twins.
//
// Tested by tests/cli/command_test.cpp, tests/cli/posix_terminal_test.cpp,
// tests/cli/posix_command_test.cpp
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zenfo::host::cli::terminal {

enum class Stream { kInput, kOutput, kErrors };

// Call once, first: makes the standard streams usable as bytes, and writing to
// a stream that is closed or has lost its reader an error rather than a death.
void prepare_streams();
// Writes all bytes. Answers the reason for a failure, empty for success.
std::string write(Stream stream, std::string_view bytes);
// Whether standard output was a pipe that nobody reads any more, and nobody
// asked to be told so. Its reader had enough, which is no error.
bool reader_is_gone();
// Ends the process as other programs end then: on Linux by SIGPIPE.
[[noreturn]] void leave_without_reader();
bool is_terminal(Stream stream);
// Whether escape sequences in what is written to the output become colours;
// makes them do so where that takes a call.
bool shows_colours();
// The next line of standard input, a terminal's, without its end. None at its
// end and when the user stops the command while it waits.
std::optional<std::string> read_line();
// Width in characters; 80 where it is not known.
size_t terminal_columns();

// From now on Ctrl-C and its like are noted as a stop rather than obeyed,
// unless stops are obeyed. The second one ends the process at once.
void watch_for_stop();
// Says that a file was shortened while it was shown and ends the process: for
// MappedFile::prepare().
void leave_without_file(const char* path);

}  // namespace zenfo::host::cli::terminal
