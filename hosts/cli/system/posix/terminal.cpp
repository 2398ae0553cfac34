#include "cli/system/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/system/temporary_folder.h"

namespace zenfo::host::cli::terminal {
namespace {

// A parent process may have made this one ignore lost pipes; then they count as
// errors.
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

// Called in a signal handler. There may be a progress bar on the line, and a
// colour may be active.
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
  const bool first = system::note_stop(128 + number);
  if (first && !system::is_stop_obeyed()) return;
  if (first) tell_of_stop();
  temporary_folder::remove();
  system::leave(128 + number);
}

}  // namespace

void prepare_streams() {
  ends_without_reader = std::signal(SIGPIPE, SIG_IGN) != SIG_IGN;
  // Reaching the file size limit is an error like others.
  std::signal(SIGXFSZ, SIG_IGN);
  // The number of a closed stream would be reused for the next file that is
  // opened. It is opened in the wrong direction, so that using it fails.
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
  system::leave(128 + SIGPIPE);
}

bool is_terminal(Stream stream) { return isatty(descriptor(stream)) == 1; }

bool shows_colours() {
  const char* terminal = std::getenv("TERM");
  return is_terminal(Stream::kOutput) && terminal != nullptr &&
         std::strcmp(terminal, "dumb") != 0;
}

// Waits with poll(), because signals interrupt it but not read().
std::optional<std::string> read_line() {
  std::string line;
  for (;;) {
    pollfd waiting{STDIN_FILENO, POLLIN, 0};
    if (system::stop_status() != 0 || poll(&waiting, 1, -1) < 0)
      return std::nullopt;
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

void watch_for_stop() {
  struct sigaction action {};
  action.sa_handler = on_stop_signal;
  action.sa_flags = SA_RESTART;
  for (int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before;
    sigaction(number, nullptr, &before);
    // Signals ignored because of nohup or a background job stay ignored.
    if (before.sa_handler != SIG_IGN) sigaction(number, &action, nullptr);
  }
}

void leave_without_file(const char* path) {
  constexpr int kError = 2;
  char line[8192];
  size_t size = 0;
  const auto add = [&](std::string_view text) {
    text = text.substr(0, sizeof line - size);
    std::memcpy(line + size, text.data(), text.size());
    size += text.size();
  };
  add("zenfo: ");
  add(path);
  add(": has been shortened while it was shown\n");
  static_cast<void>(!::write(STDERR_FILENO, line, size));
  temporary_folder::remove();
  system::leave(kError);
}

}  // namespace zenfo::host::cli::terminal
