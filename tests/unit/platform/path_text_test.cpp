// Paths as texts, by the rules of both systems.
#include "platform/path_text.h"

#include <gtest/gtest.h>

namespace zenfo::platform {
namespace {

struct PlainCase {
  PathStyle style;
  const char* path;
  const char* plain;
};
constexpr PathStyle kP = PathStyle::kPosix;
constexpr PathStyle kW = PathStyle::kWindows;

TEST(PlainPath, LeavesOneSeparatorBetweenParts) {
  const PlainCase cases[] = {
      {kP, "", ""},
      {kP, "/", "/"},
      {kP, "///", "/"},
      {kP, "a", "a"},
      {kP, "a//./b/", "a/b"},
      {kP, "./a", "a"},
      {kP, ".", "."},
      {kP, "./.", "."},
      {kP, "/.", "/"},
      {kP, "//a", "/a"},
      {kP, "a/../b", "a/../b"},
      {kP, "a\\b", "a\\b"},
      {kP, ".a/b.", ".a/b."},
      {kW, "C:/x\\", "C:\\x"},
      {kW, "C:\\\\x\\.\\y", "C:\\x\\y"},
      {kW, "\\\\server\\\\share\\", "\\\\server\\share"},
      {kW, "//server/share", "\\\\server\\share"},
      {kW, "\\\\\\a", "\\\\a"},
      {kW, "\\a", "\\a"},
      {kW, "\\", "\\"},
      {kW, ".\\a", "a"},
  };
  for (const PlainCase& c : cases) {
    EXPECT_EQ(c.plain, plain_path(c.path, c.style)) << c.path;
  }
}

TEST(IsRootText, KnowsDrivesAndShares) {
  for (const char* root :
       {"", "\\", "/", "C:", "c:", "C:\\", "C:/", "z:\\\\", "C:\\.",
        "\\\\server\\share", "\\\\server\\share\\", "//server/share/",
        "\\\\server", "\\\\?\\C:\\", "\\\\?\\UNC\\server\\share\\"}) {
    EXPECT_TRUE(is_root_text(root, kW)) << root;
  }
  for (const char* folder : {"C:\\a", "C:\\a\\", "\\a", "a", ".", "1:", "C",
                             "C:a", "\\\\server\\share\\a", "\\\\?\\C:\\a",
                             "\\\\?\\UNC\\server\\share\\a", "[:", "@:"}) {
    EXPECT_FALSE(is_root_text(folder, kW)) << folder;
  }
}

TEST(IsRootText, KnowsTheOneRootOfPosix) {
  for (const char* root : {"", "/", "//", "/."}) {
    EXPECT_TRUE(is_root_text(root, kP)) << root;
  }
  for (const char* folder : {"a", "/a", ".", "C:", "C:\\", "\\"}) {
    EXPECT_FALSE(is_root_text(folder, kP)) << folder;
  }
}

}  // namespace
}  // namespace zenfo::platform
