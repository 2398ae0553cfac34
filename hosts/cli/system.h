// What the command needs of the operating system. posix/system.cpp and
// win32/system.cpp are twins; the build picks one, callers never ask which.
//
// Texts are narrow: the bytes of a path on Linux, UTF-8 on Windows (the
// program's manifest makes that the narrow character set). Reasons are short
// texts for people, without a full stop: "permission denied".
//
// Tested by tests/cli/command_test.cpp
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zenfo::cli::system {

#ifdef _WIN32
inline constexpr char kSeparator = '\\';
#else
inline constexpr char kSeparator = '/';
#endif

enum class PathKind { kNone, kFile, kFolder, kOther };

struct PathFacts {
  PathKind kind = PathKind::kNone;
  std::string reason;  // why there is nothing, when kind is kNone
};

// The path as the system writes it: on Windows "/" becomes "\".
std::string own_form(std::string path);
// The end of the drive in front of a path ("C:" gives 2); 0 on Linux.
size_t drive_length(std::string_view path);
// What an error number of the system says.
std::string reason_of(unsigned error);
// Links are followed.
PathFacts look_at(const std::string& path);
// Why a folder cannot be listed; empty when it can.
std::string why_not_listed(const std::string& folder);
// Why the library cannot load a file; empty when it can. Reads it all.
std::string why_not_loaded(const std::string& file);

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

// A file that exists as long as this process runs; empty when there is none.
std::string known_file();

// From now on Ctrl-C and its like are noted rather than obeyed. The second one
// ends the process at once.
void watch_for_stop();
// While on, the first one ends the process at once too, with a word to the
// user. For work that leaves nothing half done. Answers how it was before.
bool obey_stop(bool on);
// Exit status for a process that was told to stop; 0 while it was not.
int stop_status();
// Ends the process without running destructors.
[[noreturn]] void leave(int status);

}  // namespace zenfo::cli::system
