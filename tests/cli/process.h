// Runs the built command as a separate process, as a shell would.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace zenfo::test {

struct Start {
  std::vector<std::string> arguments;
  std::string folder;            // to run in; empty: where the test runs
  std::string input_file;        // for standard input; empty: the test's
  std::string output_file;       // for standard output; empty: into the outcome
  bool output_unread = false;    // a pipe that nobody reads
  bool output_closed = false;    // Linux only
  bool as_nobody = false;        // Linux only: gives up root's rights
  std::string temporary_folder;  // for the command; empty: the test's own
};

struct Outcome {
  std::string out;
  std::string err;
  int status = -1;  // 128 + number for a process ended by a signal

  bool operator==(const Outcome&) const = default;
};

// For messages of tests.
inline void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << "status " << outcome.status << "\nout: " << outcome.out
          << "err: " << outcome.err;
}

// Throws std::runtime_error when the program cannot be started.
Outcome run_zenfo(const Start& start);

inline Outcome run_zenfo(std::vector<std::string> arguments,
                         std::string folder = "") {
  Start start;
  start.arguments = std::move(arguments);
  start.folder = std::move(folder);
  return run_zenfo(start);
}

// Linux only.
inline Outcome run_zenfo_as_nobody(std::vector<std::string> arguments,
                                   std::string folder) {
  Start start;
  start.arguments = std::move(arguments);
  start.folder = std::move(folder);
  start.as_nobody = true;
  return run_zenfo(start);
}

}  // namespace zenfo::test
