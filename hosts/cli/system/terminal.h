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

// Call it once before all others: makes the standard streams usable for bytes.
// Writing to a stream that is closed or has lost its reader becomes an error
// instead of ending the process.
void prepare_streams();
// Writes all bytes. Returns the reason for a failure, empty for success.
std::string write(Stream stream, std::string_view bytes);
// Whether the reader of standard output, a pipe, closed it and the process was
// not told to ignore that. It is not an error: the reader had enough.
bool reader_is_gone();
// Ends the process as other programs do in this case: on Linux by SIGPIPE.
[[noreturn]] void leave_without_reader();
bool is_terminal(Stream stream);
// Whether escape sequences in the output become colours; enables them if
// necessary.
bool shows_colours();
// The next line of standard input, which must be a terminal, without its end.
// No value at its end and when the user stops the command meanwhile.
std::optional<std::string> read_line();
// The width in characters; 80 if unknown.
size_t terminal_columns();

// From now on Ctrl-C and similar signals are noted as a stop. The first ends
// the process only while stops are obeyed, the second always does.
void watch_for_stop();
// Reports that a file was shortened while it was shown and ends the process.
// For MappedFile::prepare().
void leave_without_file(const char* path);

}  // namespace zenfo::host::cli::terminal
