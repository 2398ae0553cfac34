#include "platform/next_version.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temp_folder.h"
#ifdef _WIN32
#include <windows.h>
#else
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#endif

namespace zenfo::platform {
namespace {

namespace fs = std::filesystem;
using zenfo::test::read_file;
using zenfo::test::TempFolder;
using zenfo::test::write_file;

FileVersion version_now(const std::string& path) {
  InputFile file;
  FileVersion version;
  EXPECT_TRUE(file.open(path.c_str()) && file.version(version));
  return version;
}

size_t files_in(const std::string& folder) {
  return static_cast<size_t>(std::distance(fs::directory_iterator(folder), {}));
}

TEST(NextVersion, TakesThePlaceInOneStep) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  NextVersion next;
  ASSERT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kOpen);
  write_file(next.path(), "new");
  EXPECT_EQ(read_file(path), "old");
  EXPECT_EQ(next.take_place(), Opened::kOpen);
  EXPECT_EQ(read_file(path), "new");
  EXPECT_EQ(files_in(folder.path()), 1u);
}

TEST(NextVersion, AFileOfSeveralNamesIsWrittenInPlace) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  std::error_code error;
  fs::create_hard_link(path, folder.path("b"), error);
  if (error) GTEST_SKIP() << "no hard links here";
  NextVersion next;
  EXPECT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kFailed);
  EXPECT_FALSE(next.begun());
}

TEST(NextVersion, WhatDoesNotTakeThePlaceIsDeleted) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  {
    NextVersion next;
    ASSERT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kOpen);
    write_file(next.path(), "half");
    EXPECT_EQ(files_in(folder.path()), 2u);
  }
  EXPECT_EQ(read_file(path), "old");
  EXPECT_EQ(files_in(folder.path()), 1u);
}

TEST(NextVersion, AFileOfAnotherVersionIsLeft) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  const FileVersion before = version_now(path);
  write_file(path, "changed");
  NextVersion next;
  EXPECT_EQ(next.begin(path.c_str(), before), Opened::kChanged);
  ASSERT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kOpen);
  write_file(path, "again");
  EXPECT_EQ(next.take_place(), Opened::kChanged);
  EXPECT_EQ(read_file(path), "again");
  EXPECT_EQ(files_in(folder.path()), 1u);
}

#ifdef _WIN32
TEST(NextVersion, KeepsTheAttributes) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN);
  NextVersion next;
  ASSERT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kOpen);
  write_file(next.path(), "new");
  EXPECT_EQ(next.take_place(), Opened::kOpen);
  EXPECT_EQ(read_file(path), "new");
  EXPECT_NE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}
#else
TEST(NextVersion, KeepsTheRights) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  for (const mode_t mode : {0600, 0755, 0644, 0440}) {
    ASSERT_EQ(chmod(path.c_str(), mode | 0200), 0);
    NextVersion next;
    ASSERT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kOpen);
    write_file(next.path(), "new");
    EXPECT_EQ(read_file(path), "old");
    EXPECT_EQ(next.take_place(), Opened::kOpen);
    EXPECT_EQ(read_file(path), "new");
    struct stat facts;
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, mode | 0200u);
    EXPECT_EQ(files_in(folder.path()), 1u);
    write_file(path, "old");
  }
}

TEST(NextVersion, WhatAnotherFileWouldNotHaveIsWrittenInPlace) {
  const TempFolder folder;
  const std::string two_names = folder.file("a", "old");
  fs::create_hard_link(two_names, folder.path("b"));
  const std::string target = folder.file("target", "old");
  const std::string link = folder.path("link");
  fs::create_symlink(target, link);
  NextVersion next;
  for (const std::string& path : {two_names, link}) {
    EXPECT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kFailed)
        << path;
    // No lock is left that would prevent writing it in place.
    OutputFile file;
    EXPECT_EQ(file.open_unchanged(path.c_str(), version_now(path)),
              Opened::kOpen)
        << path;
  }
  if (setxattr(target.c_str(), "user.note", "x", 1, 0) == 0) {
    EXPECT_EQ(next.begin(target.c_str(), version_now(target)), Opened::kFailed);
  }
  EXPECT_EQ(files_in(folder.path()), 4u);
}

TEST(NextVersion, AFileThatAnotherRunWritesIsChanged) {
  const TempFolder folder;
  const std::string path = folder.file("a", "old");
  OutputFile other;
  ASSERT_EQ(other.open_unchanged(path.c_str(), version_now(path)),
            Opened::kOpen);
  NextVersion next;
  EXPECT_EQ(next.begin(path.c_str(), version_now(path)), Opened::kChanged);
}
#endif

}  // namespace
}  // namespace zenfo::platform
