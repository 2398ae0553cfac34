#include "cli/system/terminal.h"

#include <windows.h>

#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/system/temporary_folder.h"

namespace zenfo::host::cli::terminal {
namespace {

constexpr int kStopStatus = 130;
constexpr int kReaderGoneStatus = 141;
// ENABLE_VIRTUAL_TERMINAL_PROCESSING, which older headers lack.
constexpr DWORD kVirtualTerminal = 4;

bool reader_lost = false;

HANDLE handle_of(Stream stream) {
  switch (stream) {
    case Stream::kInput:
      return GetStdHandle(STD_INPUT_HANDLE);
    case Stream::kOutput:
      return GetStdHandle(STD_OUTPUT_HANDLE);
    default:
      return GetStdHandle(STD_ERROR_HANDLE);
  }
}

// There may be a progress bar on the line.
void tell_of_stop() {
  write(Stream::kErrors, is_terminal(Stream::kErrors) ? "\nzenfo: stopped\n"
                                                      : "zenfo: stopped\n");
}

// Windows calls it in a separate thread.
BOOL WINAPI on_stop(DWORD) {
  const bool first = system::note_stop(kStopStatus);
  if (first && !system::is_stop_obeyed()) return TRUE;
  if (first) tell_of_stop();
  temporary_folder::remove();
  system::leave(kStopStatus);
}

}  // namespace

void prepare_streams() {}

std::string write(Stream stream, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(handle_of(stream), bytes.data(),
                   static_cast<DWORD>(bytes.size()), &written, nullptr)) {
      const DWORD error = GetLastError();
      reader_lost |= stream == Stream::kOutput &&
                     (error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA);
      return system::reason_of(error);
    }
    bytes.remove_prefix(written);
  }
  return "";
}

bool reader_is_gone() { return reader_lost; }

void leave_without_reader() { system::leave(kReaderGoneStatus); }

bool is_terminal(Stream stream) {
  DWORD mode;
  return GetConsoleMode(handle_of(stream), &mode) != 0;
}

bool shows_colours() {
  DWORD mode;
  const HANDLE console = handle_of(Stream::kOutput);
  return GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | kVirtualTerminal) != 0;
}

std::optional<std::string> read_line() {
  std::string line;
  for (;;) {
    char byte;
    DWORD count = 0;
    if (!ReadFile(handle_of(Stream::kInput), &byte, 1, &count, nullptr) ||
        count == 0 || system::stop_status() != 0) {
      return std::nullopt;
    }
    if (byte == '\n') return line;
    if (byte != '\r') line += byte;
  }
}

size_t terminal_columns() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(handle_of(Stream::kErrors), &info)) return 80;
  return static_cast<size_t>(info.dwSize.X);
}

void watch_for_stop() { SetConsoleCtrlHandler(on_stop, TRUE); }

// No file is mapped on Windows.
void leave_without_file(const char*) {}

}  // namespace zenfo::host::cli::terminal
