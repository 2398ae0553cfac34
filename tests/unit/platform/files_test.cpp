// Files by name, on both systems.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;

constexpr uint64_t kMinute = 600000000;  // in steps of 100 ns

uint64_t file_time_now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<uint64_t>(
             std::chrono::duration_cast<std::chrono::seconds>(now).count() +
             11644473600) *
         10000000;
}

TEST(ReadFileFacts, ReadsSizeAndTimesOfAFile) {
  const TempFolder folder;
  const std::string path = folder.file("a.txt", std::string(70000, 'x'));
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(path.c_str(), facts));
  EXPECT_EQ(70000u, facts.size);
  EXPECT_NE(0u, facts.attributes);
  EXPECT_EQ(0u, facts.attributes & (kAttributeReadOnly | kAttributeHidden |
                                    kAttributeDirectory));
  const uint64_t now = file_time_now();
  for (const uint64_t time :
       {facts.creation_time, facts.access_time, facts.write_time}) {
    EXPECT_GT(time, now - kMinute);
    EXPECT_LT(time, now + kMinute);
  }
}

TEST(ReadFileFacts, MarksFoldersByTheirBitAndWithoutSize) {
  const TempFolder folder;
  FileFacts facts;
  facts.size = 1;
  ASSERT_TRUE(read_file_facts(folder.path().c_str(), facts));
  EXPECT_EQ(kAttributeDirectory, facts.attributes & kAttributeDirectory);
  EXPECT_EQ(0u, facts.size);
}

TEST(ReadFileFacts, LeavesFactsAloneWhenItFails) {
  const TempFolder folder;
  const std::string file = folder.file("file", "x");
  const std::string inside_file = file + kPathSeparator + "x";
  for (const std::string& path :
       {std::string(), folder.path("missing"), inside_file,
        folder.path(std::string(300, 'n')), std::string(100000, 'p')}) {
    FileFacts facts{1, 2, 3, 4, 5};
    EXPECT_FALSE(read_file_facts(path.c_str(), facts)) << path.substr(0, 80);
    EXPECT_EQ(1u, facts.attributes);
    EXPECT_EQ(2u, facts.size);
    EXPECT_EQ(3u, facts.creation_time);
    EXPECT_EQ(4u, facts.access_time);
    EXPECT_EQ(5u, facts.write_time);
  }
}

TEST(ReadFileFacts, AnswersAlikeWithANearbyFolder) {
  const TempFolder folder;
  folder.folder("one");
  folder.folder("two");
  const std::string s(1, kPathSeparator);
  const std::string paths[] = {
      folder.file("one" + s + "a", "1"),   folder.file("one" + s + "b", "22"),
      folder.file("one" + s + "c", "333"), folder.file("two" + s + "a", "4444"),
      folder.file("two" + s + "b", ""),    folder.file("x", "55555")};
  const uint64_t sizes[] = {1, 2, 3, 4, 0, 5};
  NearbyFolder nearby;
  for (const size_t i : {0, 1, 2, 3, 4, 5, 2, 1, 0, 4, 4, 0, 3}) {
    FileFacts facts;
    ASSERT_TRUE(read_file_facts(paths[i].c_str(), facts, &nearby)) << i;
    EXPECT_EQ(sizes[i], facts.size) << i;
  }
  for (int i = 0; i < 3; ++i) {
    FileFacts facts;
    const std::string missing = folder.path("no") + s + "a";
    EXPECT_FALSE(read_file_facts(missing.c_str(), facts, &nearby));
    const std::string empty_name = folder.path("one") + s;
    ASSERT_TRUE(read_file_facts(empty_name.c_str(), facts, &nearby));
    EXPECT_EQ(kAttributeDirectory, facts.attributes & kAttributeDirectory);
  }
}

TEST(IsFile, IsTrueForFilesOnly) {
  const TempFolder folder;
  const std::string file = folder.file("a", "");
  EXPECT_TRUE(is_file(file.c_str()));
  EXPECT_FALSE(is_file(folder.path().c_str()));
  EXPECT_FALSE(is_file(folder.path("b").c_str()));
  EXPECT_FALSE(is_file(""));
}

TEST(IsFolder, IsTrueForFoldersOnly) {
  const TempFolder folder;
  const std::string file = folder.file("a", "");
  EXPECT_TRUE(is_folder(folder.path().c_str()));
  EXPECT_TRUE(is_folder(folder.path("").c_str()));
  EXPECT_FALSE(is_folder(file.c_str()));
  EXPECT_FALSE(is_folder(folder.path("b").c_str()));
  EXPECT_FALSE(is_folder(""));
}

TEST(Exists, NeverFindsAPattern) {
  const TempFolder folder;
  folder.file("abc", "");
  EXPECT_TRUE(exists(folder.path("abc").c_str()));
  EXPECT_TRUE(exists(folder.path().c_str()));
  EXPECT_FALSE(exists(folder.path("abd").c_str()));
  EXPECT_FALSE(exists(folder.path("a*").c_str()));
  EXPECT_FALSE(exists(folder.path("ab?").c_str()));
  EXPECT_FALSE(exists(""));
}

TEST(DeleteFile, DeletesFilesAndNoFolders) {
  const TempFolder folder;
  const std::string file = folder.file("a", "x");
  EXPECT_TRUE(delete_file(file.c_str()));
  EXPECT_FALSE(exists(file.c_str()));
  EXPECT_FALSE(delete_file(file.c_str()));
  const std::string inner = folder.folder("b");
  EXPECT_FALSE(delete_file(inner.c_str()));
  EXPECT_TRUE(is_folder(inner.c_str()));
}

TEST(ReplaceFile, TakesThePlaceOfAFileOrOfNone) {
  const TempFolder folder;
  const std::string old = folder.file("old", "old bytes");
  const std::string fresh = folder.file("fresh", "new");
  EXPECT_TRUE(replace_file(fresh.c_str(), old.c_str()));
  EXPECT_EQ(test::read_file(old), "new");
  EXPECT_FALSE(exists(fresh.c_str()));
  EXPECT_TRUE(replace_file(old.c_str(), fresh.c_str()));
  EXPECT_EQ(test::read_file(fresh), "new");
  EXPECT_FALSE(exists(old.c_str()));
}

TEST(ReplaceFile, LeavesBothWhenItFails) {
  const TempFolder folder;
  const std::string fresh = folder.file("fresh", "new");
  const std::string inner = folder.folder("b");
  EXPECT_FALSE(replace_file(fresh.c_str(), inner.c_str()));
  EXPECT_TRUE(is_folder(inner.c_str()));
  EXPECT_EQ(test::read_file(fresh), "new");
  const std::string none = folder.path("none");
  EXPECT_FALSE(replace_file(none.c_str(), fresh.c_str()));
  EXPECT_EQ(test::read_file(fresh), "new");
}

TEST(CreateFolder, FailsForWhatExistsOrHasNoParent) {
  const TempFolder folder;
  EXPECT_TRUE(create_folder(folder.path("a").c_str()));
  EXPECT_TRUE(is_folder(folder.path("a").c_str()));
  EXPECT_FALSE(create_folder(folder.path("a").c_str()));
  const std::string deep = folder.path("b") + kPathSeparator + "c";
  EXPECT_FALSE(create_folder(deep.c_str()));
  EXPECT_FALSE(create_folder(""));
}

TEST(Stamp, IsOfOrdinaryFilesOnly) {
  const TempFolder folder;
  const std::string path = folder.file("a", "abc");
  FileStamp stamp;
  ASSERT_TRUE(read_stamp(path.c_str(), stamp));
  InputFile file;
  FileVersion version;
  ASSERT_TRUE(file.open(path.c_str()) && file.version(version));
  EXPECT_EQ(stamp.version, version);
  EXPECT_FALSE(read_stamp(folder.path().c_str(), stamp));
  EXPECT_FALSE(read_stamp(folder.path("b").c_str(), stamp));
  EXPECT_FALSE(read_stamp("", stamp));
}

// On Windows no stamp is trusted.
TEST(Stamp, ShowsThatAFileIsTheSame) {
  const TempFolder folder;
  const std::string path = folder.file("a", "abc");
  FileStamp fresh;
  ASSERT_TRUE(read_stamp(path.c_str(), fresh));
  EXPECT_FALSE(has_stamp(path.c_str(), fresh)) << "too recent to be sure";
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  FileStamp settled;
  ASSERT_TRUE(read_stamp(path.c_str(), settled));
#ifndef _WIN32
  EXPECT_TRUE(has_stamp(path.c_str(), settled));
  namespace fs = std::filesystem;
  const auto time = fs::last_write_time(path);
  test::write_file(path, "xyz");
  fs::last_write_time(path, time);
#endif
  EXPECT_FALSE(has_stamp(path.c_str(), settled));
  EXPECT_FALSE(has_stamp(folder.path("b").c_str(), settled));
}

}  // namespace
}  // namespace zenfo::platform
