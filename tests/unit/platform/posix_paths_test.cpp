// Paths against the native system's links and working folder.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;

TEST(PosixIsRootFolder, SeesThroughLinks) {
  const TempFolder folder;
  const std::string link = folder.path("root");
  ASSERT_EQ(0, symlink("/", link.c_str()));
  EXPECT_TRUE(is_root_folder(link));
  EXPECT_TRUE(is_root_folder("/."));
  EXPECT_TRUE(is_root_folder("//"));
}

TEST(PosixAbsolutePath, IsUnchangedWhenTheWorkingFolderIsGone) {
  const auto old = std::filesystem::current_path();
  const TempFolder folder;
  const std::string gone = folder.folder("gone");
  std::filesystem::current_path(gone);
  std::filesystem::remove(gone);
  EXPECT_EQ("a", absolute_path("a"));
  std::filesystem::current_path("/");
  EXPECT_EQ("/a", absolute_path("a"));
  std::filesystem::current_path(old);
}

}  // namespace
}  // namespace zenfo::platform
