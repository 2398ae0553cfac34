// Copying a file, on both systems.
#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::read_file;
using test::TempFolder;

TEST(CopyFile, CopiesAllBytesAndTheWriteTime) {
  const TempFolder folder;
  std::string bytes;
  for (int i = 0; i < 700001; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  for (const std::string& content : {std::string(), std::string("x"), bytes}) {
    const std::string from = folder.file("from", content);
    std::filesystem::last_write_time(
        from, std::filesystem::file_time_type::clock::now() -
                  std::chrono::hours(1000));
    const std::string to = folder.path("to");
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ(content, read_file(to));
    EXPECT_EQ(content, read_file(from));
    FileFacts old_facts, new_facts;
    ASSERT_TRUE(read_file_facts(from.c_str(), old_facts));
    ASSERT_TRUE(read_file_facts(to.c_str(), new_facts));
    EXPECT_EQ(old_facts.write_time, new_facts.write_time);
  }
}

TEST(CopyFile, ReplacesAFileOfAnyLength) {
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  for (const std::string& old :
       {std::string(), std::string("x"), std::string(100000, 'x')}) {
    const std::string to = folder.file("to", old);
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ("content", read_file(to));
  }
}

TEST(CopyFile, NeverCopiesAFileOntoItself) {
  const TempFolder folder;
  const std::string file = folder.file("a", "content");
  EXPECT_FALSE(copy_file(file.c_str(), file.c_str()));
  EXPECT_EQ("content", read_file(file));
}

TEST(CopyFile, LeavesNothingWhenItCannotStart) {
  const TempFolder folder;
  const std::string file = folder.file("a", "content");
  const std::string inner = folder.folder("inner");
  const std::string to = folder.path("to");
  EXPECT_FALSE(copy_file(folder.path("missing").c_str(), to.c_str()));
  EXPECT_FALSE(copy_file(inner.c_str(), to.c_str()));
  EXPECT_FALSE(copy_file("", to.c_str()));
  EXPECT_FALSE(exists(to.c_str()));
  EXPECT_FALSE(copy_file(file.c_str(), inner.c_str()));
  EXPECT_FALSE(copy_file(file.c_str(), ""));
  const std::string deep = folder.path("no") + kPathSeparator + "a";
  EXPECT_FALSE(copy_file(file.c_str(), deep.c_str()));
  EXPECT_TRUE(is_folder(inner.c_str()));
  EXPECT_EQ("content", read_file(file));
}

TEST(CopyFile, LeavesTheTargetAloneWhenTheSourceIsMissing) {
  const TempFolder folder;
  const std::string to = folder.file("to", "old");
  EXPECT_FALSE(copy_file(folder.path("missing").c_str(), to.c_str()));
  EXPECT_EQ("old", read_file(to));
}

}  // namespace
}  // namespace zenfo::platform
