// Files for replace, case and undo to change, and a separate store of runs.
// Standard input is not a terminal.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {

#ifdef ZENFO_SANITIZED_PROGRAM
inline constexpr int kSweepStep = 13;  // because such a program starts slowly
#else
inline constexpr int kSweepStep = 4;
#endif

class ChangeTest : public ::testing::Test {
 protected:
  ChangeTest();
  ~ChangeTest() override;

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  // Undoes the last run. The command names it because the arguments do not; the
  // outcome omits that line.
  Outcome undo(std::vector<std::string> arguments = {}) const;
  // a.txt, b.txt and c.txt, each containing "plum".
  void write_three() const;
  std::string bytes(const std::string& name) const {
    return read_file(folder_.path(name));
  }
  // The bytes that a run makes of `before` in a.txt.
  std::string made_of(const std::string& before,
                      std::vector<std::string> arguments) const;
  // The last run's name.
  std::string last_run() const;
  size_t files_in_store() const;

  TempFolder folder_;
  TempFolder store_;
};

// The outcome of a plain undo without the line that names its run.
Outcome without_run_named(Outcome outcome);

}  // namespace zenfo::test
