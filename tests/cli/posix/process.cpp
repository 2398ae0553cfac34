#include "cli/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

#include "support/sweep.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

constexpr uid_t kNobody = 65534;

int open_for_writing(const std::string& path) {
  return open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
}

void write_to_nobody() {
  int ends[2];
  if (pipe(ends) != 0) _exit(127);
  dup2(ends[1], STDOUT_FILENO);
  for (const int end : ends) close(end);
}

// A sanitized program looks for leaks at its end, which takes as long as all
// else. So only some runs do, others every day.
void choose_whether_to_look_for_leaks() {
#ifdef ZENFO_SANITIZED_PROGRAM
  static const Sweep sweep(8);
  static int runs = 0;
  const bool looks = ++runs % sweep.step() == sweep.first() % sweep.step();
  setenv("ASAN_OPTIONS", looks ? "" : "detect_leaks=0", 1);
#endif
}

// Runs in the child. Opens the program before giving up rights, because it may
// be in a folder that nobody may enter.
[[noreturn]] void become_zenfo(const Start& start, const std::string& out,
                               const std::string& err) {
  std::vector<char*> arguments = {const_cast<char*>("zenfo")};
  for (const std::string& argument : start.arguments) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  if (!start.temporary_folder.empty()) {
    setenv("TMPDIR", start.temporary_folder.c_str(), 1);
  }
  const int program = open(ZENFO_PROGRAM, O_RDONLY | O_CLOEXEC);
  if (!start.input_file.empty()) {
    dup2(open(start.input_file.c_str(), O_RDONLY | O_CLOEXEC), STDIN_FILENO);
  }
  dup2(open_for_writing(out), STDOUT_FILENO);
  dup2(open_for_writing(err), STDERR_FILENO);
  if (start.output_unread) write_to_nobody();
  if (start.output_closed) close(STDOUT_FILENO);
  if (!start.folder.empty() && chdir(start.folder.c_str()) != 0) _exit(127);
  if (start.as_nobody && geteuid() == 0 && setuid(kNobody) != 0) _exit(127);
  fexecve(program, arguments.data(), environ);
  _exit(127);
}

}  // namespace

Outcome run_zenfo(const Start& start) {
  const TempFolder folder;
  const std::string out =
      start.output_file.empty() ? folder.file("out", "") : start.output_file;
  const std::string err = folder.file("err", "");
  choose_whether_to_look_for_leaks();
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) become_zenfo(start, out, err);
  int state = 0;
  while (waitpid(child, &state, 0) < 0) {
  }
  Outcome outcome;
  outcome.status =
      WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state);
  if (outcome.status == 127) throw std::runtime_error("cannot run zenfo");
  if (start.output_file.empty()) outcome.out = read_file(out);
  outcome.err = read_file(err);
  return outcome;
}

}  // namespace zenfo::test
