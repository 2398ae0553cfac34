// Files for replace, case and undo to change, and a store of runs of their own.
// The command's input is no terminal.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {

class ChangeTest : public ::testing::Test {
 protected:
  ChangeTest();
  ~ChangeTest() override;

  Outcome run(std::vector<std::string> arguments) const {
    return run_zenfo(std::move(arguments), folder_.path());
  }
  // Without a run's name, so that the command says which one it takes: that is
  // left out of the outcome.
  Outcome undo(std::vector<std::string> arguments = {}) const;
  // a.txt, b.txt and c.txt, a "plum" each.
  void write_three() const;
  std::string bytes(const std::string& name) const {
    return read_file(folder_.path(name));
  }
  // The bytes of a.txt that a run makes of `before`.
  std::string made_of(const std::string& before,
                      std::vector<std::string> arguments) const;
  // The last run's name.
  std::string last_run() const;
  size_t files_in_store() const;

  TempFolder folder_;
  TempFolder store_;
};

// The outcome of a plain undo but for the line that names its run.
Outcome without_run_named(Outcome outcome);

}  // namespace zenfo::test
