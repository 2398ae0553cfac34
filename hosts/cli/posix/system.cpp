#include "system.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "temporary_folder.h"

namespace zenfo::cli::system {
namespace {

// The library loads no larger file.
constexpr int64_t kLargestFile = INT32_MAX - 1;

volatile std::sig_atomic_t stop_signal = 0;
volatile std::sig_atomic_t stop_is_obeyed = 0;

// Whoever started the process may have it ignore lost pipes; then they count
// as errors.
bool ends_without_reader = false;
bool reader_lost = false;

int descriptor(Stream stream) {
  switch (stream) {
    case Stream::kInput:
      return STDIN_FILENO;
    case Stream::kOutput:
      return STDOUT_FILENO;
    default:
      return STDERR_FILENO;
  }
}

// From within a signal handler. A bar may stand on the line of a terminal, and
// a colour be in force.
void tell_of_stop() {
  constexpr std::string_view kPlain = "\x1b[m";
  if (isatty(STDOUT_FILENO) != 0) {
    static_cast<void>(!::write(STDOUT_FILENO, kPlain.data(), kPlain.size()));
  }
  constexpr std::string_view kMessage = "\nzenfo: stopped\n";
  const size_t start = isatty(STDERR_FILENO) != 0 ? 0 : 1;
  static_cast<void>(!::write(STDERR_FILENO, kMessage.data() + start,
                             kMessage.size() - start));
}

extern "C" void on_stop_signal(int number) {
  const bool first = stop_signal == 0;
  stop_signal = number;
  if (first && stop_is_obeyed == 0) return;
  if (first) tell_of_stop();
  temporary_folder::remove();
  _exit(128 + number);
}

// Reads to the end; the error number, 0 without an error.
int try_to_read(int number) {
  std::array<char, 64 * 1024> part;
  for (;;) {
    const ssize_t size = read(number, part.data(), part.size());
    if (size == 0) return 0;
    if (size < 0 && errno != EINTR) return errno;
  }
}

// Not by new, which the compiler may leave out with its delete.
bool is_memory_for(int64_t size) {
  void* volatile room = std::malloc(static_cast<size_t>(size) + 1);
  const bool is_there = room != nullptr;
  std::free(room);
  return is_there;
}

std::string reason_against(int number) {
  struct stat facts;
  if (fstat(number, &facts) != 0) {
    return reason_of(static_cast<unsigned>(errno));
  }
  if (S_ISDIR(facts.st_mode)) return "is a folder";
  if (!S_ISREG(facts.st_mode)) return "is no ordinary file";
  if (facts.st_size > kLargestFile) return "too large to be loaded";
  if (!is_memory_for(facts.st_size)) return "there is no memory for it";
  const int error = try_to_read(number);
  return error == 0 ? "" : reason_of(static_cast<unsigned>(error));
}

}  // namespace

std::string reason_of(unsigned error) {
  switch (static_cast<int>(error)) {
    case ENOENT:
    case ENOTDIR:
      return "no such file or folder";
    case EACCES:
    case EPERM:
      return "permission denied";
    case ENAMETOOLONG:
      return "its path is too long";
    default:
      return std::strerror(static_cast<int>(error));
  }
}

std::string own_form(std::string path) { return path; }

size_t drive_length(std::string_view) { return 0; }

PathFacts look_at(const std::string& path) {
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) {
    return {PathKind::kNone, reason_of(errno)};
  }
  if (S_ISDIR(facts.st_mode)) return {PathKind::kFolder, ""};
  if (S_ISREG(facts.st_mode)) return {PathKind::kFile, ""};
  return {PathKind::kOther, ""};
}

std::string why_not_listed(const std::string& folder) {
  DIR* listing = opendir(folder.c_str());
  if (listing == nullptr) return reason_of(errno);
  closedir(listing);
  return "";
}

std::string why_not_loaded(const std::string& file) {
  const int number =
      open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (number < 0) return reason_of(static_cast<unsigned>(errno));
  std::string reason = reason_against(number);
  close(number);
  return reason;
}

void prepare_streams() {
  ends_without_reader = std::signal(SIGPIPE, SIG_IGN) != SIG_IGN;
  // A closed stream would lend its number to the next file that is opened.
  // Opened the wrong way round, so that using it fails.
  for (int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) >= 0) continue;
    const int access = number == STDIN_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", access) != number) return;
  }
}

std::string write(Stream stream, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        ::write(descriptor(stream), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      reader_lost |= errno == EPIPE && stream == Stream::kOutput;
      return std::strerror(errno);
    }
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return "";
}

bool reader_is_gone() { return reader_lost && ends_without_reader; }

void leave_without_reader() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  leave(128 + SIGPIPE);
}

bool is_terminal(Stream stream) { return isatty(descriptor(stream)) == 1; }

bool shows_colours() {
  const char* terminal = std::getenv("TERM");
  return is_terminal(Stream::kOutput) && terminal != nullptr &&
         std::strcmp(terminal, "dumb") != 0;
}

// Waits by poll(), which a signal ends, as it does not end read().
std::optional<std::string> read_line() {
  std::string line;
  for (;;) {
    pollfd waiting{STDIN_FILENO, POLLIN, 0};
    if (stop_signal != 0 || poll(&waiting, 1, -1) < 0) return std::nullopt;
    char byte;
    if (read(STDIN_FILENO, &byte, 1) != 1) return std::nullopt;
    if (byte == '\n') return line;
    line += byte;
  }
}

size_t terminal_columns() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
    return 80;
  }
  return size.ws_col;
}

std::string known_file() { return "/proc/self/exe"; }

void watch_for_stop() {
  struct sigaction action {};
  action.sa_handler = on_stop_signal;
  action.sa_flags = SA_RESTART;
  for (int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before;
    sigaction(number, nullptr, &before);
    // What nohup and the shell's background jobs ignore stays ignored.
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
}

bool obey_stop(bool on) {
  const bool before = stop_is_obeyed != 0;
  stop_is_obeyed = on;
  return before;
}

int stop_status() { return stop_signal == 0 ? 0 : 128 + stop_signal; }

void leave(int status) { _exit(status); }

}  // namespace zenfo::cli::system
