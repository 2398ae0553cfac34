// Copying a file, on both systems.
#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "support/scratch_folder.h"

namespace zenfo::platform {
namespace {

using test::read_bytes;
using test::ScratchFolder;

TEST(CopyFile, CopiesAllBytesAndTheWriteTime) {
  const ScratchFolder folder;
  std::string bytes;
  for (int i = 0; i < 700001; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  for (const std::string& content : {std::string(), std::string("x"), bytes}) {
    const std::string from = folder.write("from", content);
    std::filesystem::last_write_time(
        from, std::filesystem::file_time_type::clock::now() -
                  std::chrono::hours(1000));
    const std::string to = folder.path("to");
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ(content, read_bytes(to));
    EXPECT_EQ(content, read_bytes(from));
    FileFacts old_facts, new_facts;
    ASSERT_TRUE(read_file_facts(from.c_str(), old_facts));
    ASSERT_TRUE(read_file_facts(to.c_str(), new_facts));
    EXPECT_EQ(old_facts.write_time, new_facts.write_time);
  }
}

TEST(CopyFile, ReplacesAFileOfAnyLength) {
  const ScratchFolder folder;
  const std::string from = folder.write("from", "content");
  for (const std::string& old :
       {std::string(), std::string("x"), std::string(100000, 'x')}) {
    const std::string to = folder.write("to", old);
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ("content", read_bytes(to));
  }
}

TEST(CopyFile, NeverCopiesAFileOntoItself) {
  const ScratchFolder folder;
  const std::string file = folder.write("a", "content");
  EXPECT_FALSE(copy_file(file.c_str(), file.c_str()));
  EXPECT_EQ("content", read_bytes(file));
}

TEST(CopyFile, LeavesNothingWhenItCannotStart) {
  const ScratchFolder folder;
  const std::string file = folder.write("a", "content");
  const std::string inner = folder.make_folder("inner");
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
  EXPECT_EQ("content", read_bytes(file));
}

TEST(CopyFile, LeavesTheTargetAloneWhenTheSourceIsMissing) {
  const ScratchFolder folder;
  const std::string to = folder.write("to", "old");
  EXPECT_FALSE(copy_file(folder.path("missing").c_str(), to.c_str()));
  EXPECT_EQ("old", read_bytes(to));
}

}  // namespace
}  // namespace zenfo::platform
