#include "system.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>

#include "temporary_folder.h"

namespace zenfo::cli::system {
namespace {

// The library loads no larger file.
constexpr int64_t kLargestFile = INT32_MAX - 1;
constexpr int kStopStatus = 130;
constexpr int kReaderGoneStatus = 141;
// ENABLE_VIRTUAL_TERMINAL_PROCESSING, which older headers lack.
constexpr DWORD kVirtualTerminal = 4;

// Read by the thread that answers Ctrl-C.
std::atomic<bool> stop_asked{false};
std::atomic<bool> stop_is_obeyed = false;
bool reader_lost = false;

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (valid()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

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

// A bar may stand on the line of a console.
void tell_of_stop() {
  write(Stream::kErrors, is_terminal(Stream::kErrors) ? "\nzenfo: stopped\n"
                                                      : "zenfo: stopped\n");
}

// Called in a thread of its own.
BOOL WINAPI on_stop(DWORD) {
  const bool first = !stop_asked.exchange(true);
  if (first && !stop_is_obeyed.load()) return TRUE;
  if (first) tell_of_stop();
  temporary_folder::remove();
  leave(kStopStatus);
}

// Reads to the end; the error number, 0 without an error.
DWORD try_to_read(HANDLE file) {
  std::array<char, 64 * 1024> part;
  for (DWORD size = 1; size > 0;) {
    if (!ReadFile(file, part.data(), static_cast<DWORD>(part.size()), &size,
                  nullptr)) {
      return GetLastError();
    }
  }
  return 0;
}

// Not by new, which the compiler may leave out with its delete.
bool is_memory_for(int64_t size) {
  void* volatile room = std::malloc(static_cast<size_t>(size) + 1);
  const bool is_there = room != nullptr;
  std::free(room);
  return is_there;
}

}  // namespace

std::string reason_of(unsigned error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_DIRECTORY:
      return "no such file or folder";
    case ERROR_ACCESS_DENIED:
      return "permission denied";
    case ERROR_SHARING_VIOLATION:
      return "in use by another program";
    case ERROR_BROKEN_PIPE:
    case ERROR_NO_DATA:
      return "nobody reads it any more";
    case ERROR_FILENAME_EXCED_RANGE:
      return "its path is too long";
    case ERROR_TOO_MANY_OPEN_FILES:
      return "too many open files";
    case ERROR_CRC:
    case ERROR_IO_DEVICE:
      return "the device cannot be read";
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return "not enough memory";
    case ERROR_DISK_FULL:
      return "the disk is full";
    default:
      return "system error " + std::to_string(error);
  }
}

std::string own_form(std::string path) {
  std::replace(path.begin(), path.end(), '/', kSeparator);
  return path;
}

size_t drive_length(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' ? 2 : 0;
}

PathFacts look_at(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    return {PathKind::kNone, reason_of(GetLastError())};
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return {PathKind::kFolder, ""};
  }
  if ((attributes & FILE_ATTRIBUTE_DEVICE) != 0) return {PathKind::kOther, ""};
  return {PathKind::kFile, ""};
}

std::string why_not_listed(const std::string& folder) {
  WIN32_FIND_DATAA found;
  const HANDLE listing = FindFirstFileA((folder + "\\*").c_str(), &found);
  if (listing != INVALID_HANDLE_VALUE) {
    FindClose(listing);
    return "";
  }
  const DWORD error = GetLastError();
  // An empty drive has not even "." in it.
  return error == ERROR_FILE_NOT_FOUND ? "" : reason_of(error);
}

std::string why_not_loaded(const std::string& file) {
  const Handle handle(
      CreateFileA(file.c_str(), GENERIC_READ,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size;
  if (!handle.valid() || !GetFileSizeEx(handle.get(), &size)) {
    return reason_of(GetLastError());
  }
  if (size.QuadPart > kLargestFile) return "too large to be loaded";
  if (!is_memory_for(size.QuadPart)) return "there is no memory for it";
  const DWORD error = try_to_read(handle.get());
  return error == 0 ? "" : reason_of(error);
}

void prepare_streams() {}

std::string write(Stream stream, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(handle_of(stream), bytes.data(),
                   static_cast<DWORD>(bytes.size()), &written, nullptr)) {
      const DWORD error = GetLastError();
      reader_lost |= stream == Stream::kOutput &&
                     (error == ERROR_BROKEN_PIPE || error == ERROR_NO_DATA);
      return reason_of(error);
    }
    bytes.remove_prefix(written);
  }
  return "";
}

bool reader_is_gone() { return reader_lost; }

void leave_without_reader() { leave(kReaderGoneStatus); }

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
        count == 0 || stop_asked.load()) {
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

std::string known_file() {
  char path[MAX_PATH + 1];
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  return length < sizeof path ? std::string(path, length) : "";
}

void watch_for_stop() { SetConsoleCtrlHandler(on_stop, TRUE); }

bool obey_stop(bool on) { return stop_is_obeyed.exchange(on); }

int stop_status() { return stop_asked.load() ? kStopStatus : 0; }

void leave(int status) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  for (;;) Sleep(INFINITE);
}

}  // namespace zenfo::cli::system
