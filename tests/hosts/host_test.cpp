// The example host, run on sample files, and the guide that explains it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "cli/process.h"
#include "support/document.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using testing::HasSubstr;

constexpr char kGuide[] = "docs/host-guide.md";
constexpr char kExample[] = "examples/host.c";

std::vector<std::string> sorted_lines(const std::string& text) {
  std::multiset<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    while (line.ends_with('\r')) line.pop_back();
    lines.insert(line);
  }
  return {lines.begin(), lines.end()};
}

TEST(ExampleHost, SearchesReplacesAndTakesItBack) {
  const TempFolder folder;
  const std::string one = folder.file("pets/one.txt", "a cat\nand a cat\n");
  const std::string two = folder.file("pets/more/two.txt", "cat");
  folder.file("pets/none.txt", "dog");
  folder.file("pets/binary", std::string("cat\0", 4));
  const std::string safe = folder.path("safe");
  const Outcome outcome =
      run_zenfo({folder.path("pets"), "cat", "mouse", safe});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(
      sorted_lines(outcome.out),
      testing::UnorderedElementsAre(
          "4 files", "3 lines: 'cat' at 2 'cat' at 12", "1 lines: 'cat' at 0",
          "3 found", one + ": 2", two + ": 1", "3 replaced", "0 found now",
          "0 not brought back", "3 found again"));
  EXPECT_EQ(read_file(one), "a cat\nand a cat\n");
  EXPECT_EQ(read_file(two), "cat");
  EXPECT_EQ(read_file(safe + ".errors").empty(), false)
      << "the binary file is told of";
}

TEST(ExampleHost, RefusesAnythingButFourArguments) {
  EXPECT_EQ(run_zenfo({"only", "three", "given"}).status, 2);
}

TEST(HostGuide, ShowsPiecesOfTheExampleAsTheyAre) {
  const std::string example = read_source(kExample);
  const std::vector<Block> pieces = fenced_blocks(kGuide, "c");
  EXPECT_GE(pieces.size(), 5u);
  for (const Block& piece : pieces) {
    EXPECT_THAT(example, HasSubstr(piece.body)) << kGuide << ":" << piece.line;
  }
}

}  // namespace
}  // namespace zenfo::test
