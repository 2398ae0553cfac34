// Shell facts.
#include "platform/shell.h"

#include <gtest/gtest.h>

#include <string>

#include "support/scratch_folder.h"

namespace zenfo::platform {
namespace {

TEST(IsPerceivedText, FollowsTheExtension) {
  for (const char* path : {"a.txt", "A.TXT", "x.y.txt"}) {
    EXPECT_TRUE(is_perceived_text(path)) << path;
  }
  for (const char* path :
       {"", "a", "a.", "txt", "a.exe", "a.no-such-extension", "a.txt.exe"}) {
    EXPECT_FALSE(is_perceived_text(path)) << path;
  }
}

TEST(IsPerceivedText, LooksBehindTheLastSeparatorOnly) {
  EXPECT_FALSE(is_perceived_text("folder.txt/file"));
  EXPECT_TRUE(is_perceived_text("folder.exe/file.txt"));
}

#ifndef _WIN32
TEST(ReadTypeName, NamesTheExtensionInCapitals) {
  const struct {
    const char* path;
    const char* type;
  } cases[] = {{"a.txt", "TXT File"},
               {"/x/a.b.Html", "HTML File"},
               {"a", "File"},
               {"a.", "File"},
               {"", "File"},
               {"x.y/a", "File"},
               {".profile", "PROFILE File"},
               {"a.\xC3\xA4z", "\xC3\xA4Z File"}};
  for (const auto& c : cases) {
    std::string type = "old";
    EXPECT_TRUE(read_type_name(c.path, type));
    EXPECT_EQ(c.type, type) << c.path;
  }
}

TEST(ReadIconIndex, IsZeroNatively) {
  int32_t index = 7;
  EXPECT_TRUE(read_icon_index("a.txt", index));
  EXPECT_EQ(0, index);
  EXPECT_EQ(0, system_image_list("a.txt"));
}
#else
TEST(ReadTypeName, FailsForAMissingFileAndLeavesTheText) {
  const test::ScratchFolder folder;
  std::string type = "old";
  int32_t index = 7;
  EXPECT_FALSE(read_type_name(folder.path("missing").c_str(), type));
  EXPECT_EQ("old", type);
  EXPECT_FALSE(read_icon_index(folder.path("missing").c_str(), index));
  EXPECT_EQ(7, index);
  EXPECT_TRUE(read_type_name(folder.write("a.txt", "").c_str(), type));
  EXPECT_NE("old", type);
}
#endif

}  // namespace
}  // namespace zenfo::platform
