#include "cli/posix/change_fixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <regex>

namespace zenfo::test {

namespace fs = std::filesystem;

ChangeTest::ChangeTest() {
  setenv("XDG_STATE_HOME", store_.path().c_str(), 1);
  const int nothing = open("/dev/null", O_RDONLY);
  dup2(nothing, STDIN_FILENO);
  close(nothing);
}

ChangeTest::~ChangeTest() { unsetenv("XDG_STATE_HOME"); }

Outcome ChangeTest::undo(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "undo");
  return without_run_named(run(std::move(arguments)));
}

Outcome without_run_named(Outcome outcome) {
  static const std::regex kNamed("zenfo: [^\n]*: undoing the run[^\n]*\n");
  outcome.err = std::regex_replace(outcome.err, kNamed, "");
  return outcome;
}

void ChangeTest::write_three() const {
  for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
    folder_.file(name, "plum");
  }
}

std::string ChangeTest::made_of(const std::string& before,
                                std::vector<std::string> arguments) const {
  folder_.file("a.txt", before);
  arguments.push_back("a.txt");
  const Outcome outcome = run(std::move(arguments));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
  return bytes("a.txt");
}

std::string ChangeTest::last_run() const {
  const std::string list = run({"undo", "--list"}).out;
  const size_t end = list.rfind('\n', list.size() - 2);
  const size_t start = end == std::string::npos ? 0 : end + 1;
  return list.substr(start, list.find(' ', start) - start);
}

size_t ChangeTest::files_in_store() const {
  size_t count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(store_.path())) {
    count += entry.is_regular_file();
  }
  return count;
}

}  // namespace zenfo::test
