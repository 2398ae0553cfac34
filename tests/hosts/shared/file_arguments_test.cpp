#include "shared/session/file_arguments.h"

#include <gtest/gtest.h>

#include "shared/system/system.h"

namespace zenfo::host {
namespace {

using system::own_form;

TEST(SearchGroup, NamesAllFilesOrThePatterns) {
  EXPECT_EQ(search_group(own_form("a/b"), false, {}), own_form("0a/b/*.*"));
  EXPECT_EQ(search_group("a", true, {"*.c", "*.h"}), own_form("1a/*.c;*.h"));
}

TEST(SearchGroup, TakesFolderWithSeparatorsBehindAndTheRoot) {
  EXPECT_EQ(search_group(own_form("a//"), false, {}), own_form("0a/*.*"));
  EXPECT_EQ(search_group(own_form("/"), true, {}), own_form("1/*.*"));
}

TEST(SplitPattern, CutsAtTheLastSeparator) {
  const PathPattern halves = split_pattern(own_form("a*/b/*.c"));
  EXPECT_EQ(halves.folder, own_form("a*/b"));
  EXPECT_EQ(halves.pattern, "*.c");
  EXPECT_EQ(halves.added_prefix, 0u);
}

TEST(SplitPattern, PutsTheCurrentFolderInFrontOfABareName) {
  const PathPattern halves = split_pattern("*.c");
  EXPECT_EQ(halves.folder, ".");
  EXPECT_EQ(halves.pattern, "*.c");
  EXPECT_EQ(halves.added_prefix, 2u);
}

#ifdef _WIN32
TEST(SplitPattern, KeepsADriveWithoutASeparator) {
  const PathPattern halves = split_pattern("C:*.c");
  EXPECT_EQ(halves.folder, "C:.");
  EXPECT_EQ(halves.pattern, "*.c");
  EXPECT_EQ(halves.added_prefix, 0u);
}

TEST(OwnForm, TurnsSlashesIntoBackslashes) {
  EXPECT_EQ(system::own_form("a/b\\c"), "a\\b\\c");
}
#endif

TEST(Runs, JoinNeighboursOfOneKind) {
  std::vector<ArgumentRun> runs;
  append_group(runs, "0a", 0);
  append_group(runs, "0b", 0);
  append_group(runs, "0c", 2);
  append_path(runs, "d");
  append_path(runs, "e");
  append_group(runs, "0f", 2);
  EXPECT_EQ(runs, (std::vector<ArgumentRun>{{"0a|0b", {}, 0},
                                            {"0c", {}, 2},
                                            {"", {"d", "e"}, 0},
                                            {"0f", {}, 2}}));
}

}  // namespace
}  // namespace zenfo::host
