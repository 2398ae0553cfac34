#include "cli/posix/traced_run.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <regex>
#include <stdexcept>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

struct Call {
  long number;
  const char* name;
  int flags_argument;  // for open(): only opening for writing; else -1
};

constexpr Call kChangingCalls[] = {
#ifdef SYS_open
    {SYS_open, "open", 1},
    {SYS_rename, "rename", -1},
    {SYS_mkdir, "mkdir", -1},
    {SYS_rmdir, "rmdir", -1},
    {SYS_unlink, "unlink", -1},
    {SYS_chmod, "chmod", -1},
#endif
    {SYS_openat, "openat", 2},
    {SYS_write, "write", -1},
    {SYS_writev, "writev", -1},
    {SYS_pwrite64, "pwrite64", -1},
    {SYS_copy_file_range, "copy_file_range", -1},
    {SYS_truncate, "truncate", -1},
    {SYS_ftruncate, "ftruncate", -1},
    {SYS_renameat, "renameat", -1},
    {SYS_renameat2, "renameat2", -1},
    {SYS_unlinkat, "unlinkat", -1},
    {SYS_mkdirat, "mkdirat", -1},
    {SYS_fchmod, "fchmod", -1},
    {SYS_fchmodat, "fchmodat", -1},
    {SYS_utimensat, "utimensat", -1},
};

constexpr Call kAnyCall = {-1, "any", -1};

// The call that a stopped process is about to make, or null when it is not one
// of the wanted calls.
const Call* call_ahead(pid_t process, Calls wanted) {
  __ptrace_syscall_info info{};
  if (ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info) <= 0 ||
      info.op != PTRACE_SYSCALL_INFO_ENTRY) {
    return nullptr;
  }
  if (wanted == Calls::kAll) return &kAnyCall;
  for (const Call& call : kChangingCalls) {
    if (info.entry.nr != static_cast<uint64_t>(call.number)) continue;
    if (call.flags_argument < 0) return &call;
    const uint64_t flags = info.entry.args[call.flags_argument];
    return (flags & (O_WRONLY | O_RDWR)) != 0 ? &call : nullptr;
  }
  return nullptr;
}

void send_to_file(int stream, const std::string& path) {
  dup2(open(path.c_str(), O_WRONLY | O_CREAT, 0600), stream);
}

[[noreturn]] void become_traced(std::vector<std::string>& arguments,
                                const std::string& folder,
                                const TempFolder& outputs) {
  arguments.insert(arguments.begin(), "zenfo");
  std::vector<char*> texts;
  for (std::string& argument : arguments) texts.push_back(argument.data());
  texts.push_back(nullptr);
  send_to_file(STDOUT_FILENO, outputs.path("out"));
  send_to_file(STDERR_FILENO, outputs.path("err"));
  // The leak checker would also trace the process, which is impossible.
  setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 &&
      chdir(folder.c_str()) == 0) {
    execv(ZENFO_PROGRAM, texts.data());
  }
  _exit(127);
}

// The next stop of the process; false when it has ended.
bool wait_for_stop(pid_t process, int& state) {
  while (waitpid(process, &state, 0) < 0) {
  }
  return WIFSTOPPED(state);
}

// Lets the process run to its next system call, its start or end, or a signal,
// which is delivered.
void go_on(pid_t process, int state) {
  const int stopped_by = WSTOPSIG(state);
  const bool at_call = stopped_by == (SIGTRAP | 0x80);
  const int signal = at_call || stopped_by == SIGTRAP ? 0 : stopped_by;
  ptrace(PTRACE_SYSCALL, process, nullptr, signal);
}

// When a sanitized program is stopped while it starts a thread, it may warn
// that it does not know the stack of that thread.
std::string without_false_alarm(const std::string& err) {
  static const std::regex kAlarm(
      "==[0-9]+==WARNING: ASan is ignoring requested __asan_handle_no_return"
      "[^\n]*\nFalse positive[^\n]*\nFor details[^\n]*\n");
  return std::regex_replace(err, kAlarm, "");
}

}  // namespace

bool can_trace() {
  const pid_t child = fork();
  if (child == 0) {
    _exit(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 ? 0 : 1);
  }
  int state = 0;
  waitpid(child, &state, 0);
  return WIFEXITED(state) && WEXITSTATUS(state) == 0;
}

Signalled signal_zenfo_before(int nth, int signal,
                              std::vector<std::string> arguments,
                              const std::string& folder, Calls calls) {
  const TempFolder outputs;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) become_traced(arguments, folder, outputs);
  int state = 0;
  if (!wait_for_stop(child, state)) throw std::runtime_error("cannot trace");
  ptrace(PTRACE_SETOPTIONS, child, nullptr,
         PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  Signalled result;
  do {
    const Call* call = call_ahead(child, calls);
    if (call != nullptr && ++result.calls == nth) {
      result.call = call->name;
      kill(child, signal);
    }
    go_on(child, state);
  } while (wait_for_stop(child, state));
  result.outcome = {
      read_file(outputs.path("out")),
      without_false_alarm(read_file(outputs.path("err"))),
      WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state)};
  if (result.outcome.status == 127) {
    throw std::runtime_error("cannot run zenfo");
  }
  return result;
}

}  // namespace zenfo::test
