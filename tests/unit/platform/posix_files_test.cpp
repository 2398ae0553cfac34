// Files by name: faults and links that only Linux has.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;

uint32_t attributes_of(const std::string& path) {
  FileFacts facts;
  EXPECT_TRUE(read_file_facts(path.c_str(), facts)) << path;
  return facts.attributes;
}

TEST(PosixFileFacts, CountTimesFrom1601InHundredsOfNanoseconds) {
  const TempFolder folder;
  const std::string path = folder.file("a", "");
  const struct timespec times[] = {{1, 999999999}, {1700000000, 123456789}};
  ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(path.c_str(), facts));
  EXPECT_EQ(116444736010000000u + 9999999u, facts.access_time);
  EXPECT_EQ(133444736000000000u + 1234567u, facts.write_time);
}

TEST(PosixFileFacts, TakeTimesBefore1970) {
  const TempFolder folder;
  const std::string path = folder.file("a", "");
  const struct timespec times[] = {{-1, 0}, {-100000, 0}};
  ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(path.c_str(), facts));
  EXPECT_EQ(116444735990000000u, facts.access_time);
  EXPECT_EQ(116443736000000000u, facts.write_time);
}

TEST(PosixFileFacts, CallReadOnlyWhatNobodyMayWrite) {
  const TempFolder folder;
  const std::string path = folder.file("a", "");
  const struct {
    mode_t mode;
    uint32_t attributes;
  } cases[] = {{0444, kAttributeReadOnly},
               {0000, kAttributeReadOnly},
               {0644, kAttributeNormal},
               {0464, kAttributeNormal},
               {0446, kAttributeNormal}};
  for (const auto& c : cases) {
    ASSERT_EQ(0, chmod(path.c_str(), c.mode));
    EXPECT_EQ(c.attributes, attributes_of(path)) << std::oct << c.mode;
  }
}

TEST(PosixFileFacts, CallHiddenWhatBeginsWithAPoint) {
  const TempFolder folder;
  EXPECT_EQ(kAttributeHidden, attributes_of(folder.file(".a", "")));
  EXPECT_EQ(kAttributeNormal, attributes_of(folder.file("a.b", "")));
  const std::string inner = folder.folder(".inner");
  EXPECT_EQ(kAttributeHidden | kAttributeDirectory, attributes_of(inner));
  EXPECT_EQ(kAttributeHidden | kAttributeDirectory, attributes_of(inner + "/"));
  EXPECT_EQ(kAttributeNormal, attributes_of(folder.file(".inner/a", "")));
  EXPECT_EQ(kAttributeDirectory, attributes_of(inner + "/."));
  EXPECT_EQ(kAttributeDirectory, attributes_of(inner + "/.."));
}

TEST(PosixFileFacts, FollowLinksAndFailOnBrokenOnes) {
  const TempFolder folder;
  const std::string file = folder.file("file", "12345");
  const std::string good = folder.path("good");
  const std::string broken = folder.path("broken");
  const std::string loop = folder.path("loop");
  ASSERT_EQ(0, symlink(file.c_str(), good.c_str()));
  ASSERT_EQ(0, symlink("nowhere", broken.c_str()));
  ASSERT_EQ(0, symlink("loop", loop.c_str()));
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(good.c_str(), facts));
  EXPECT_EQ(5u, facts.size);
  EXPECT_TRUE(is_file(good.c_str()));
  for (const std::string& path : {broken, loop}) {
    EXPECT_FALSE(read_file_facts(path.c_str(), facts));
    EXPECT_FALSE(is_file(path.c_str()));
    EXPECT_FALSE(is_folder(path.c_str()));
    EXPECT_TRUE(exists(path.c_str()));
  }
}

TEST(PosixReplaceFile, LeavesLinksInPlace) {
  const TempFolder folder;
  const std::string fresh = folder.file("fresh", "new");
  const std::string old = folder.file("old", "old");
  const std::string link = folder.path("link");
  ASSERT_EQ(0, symlink("old", link.c_str()));
  EXPECT_FALSE(replace_file(fresh.c_str(), link.c_str()));
  EXPECT_EQ(test::read_file(link), "old");
  EXPECT_EQ(test::read_file(fresh), "new");
}

TEST(PosixFileFacts, GiveNoSizeToPipes) {
  const TempFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(pipe.c_str(), facts));
  EXPECT_EQ(0u, facts.size);
}

TEST(PosixFileFacts, TakeNamesOfAnyBytes) {
  const TempFolder folder;
  for (const std::string& name :
       {std::string(255, 'n'), std::string("\xE4\xF6\xFC"),
        std::string("\xC3\xA4 b\n\t\\c"), std::string("\x01\x7F\x80\xFF")}) {
    const std::string path = folder.file(name, name);
    NearbyFolder nearby;
    for (int i = 0; i < 3; ++i) {
      FileFacts facts;
      ASSERT_TRUE(read_file_facts(path.c_str(), facts, &nearby));
      EXPECT_EQ(name.size(), facts.size);
    }
    EXPECT_TRUE(exists(path.c_str()));
  }
}

// The second path in a row uses the open folder, the first does not.
TEST(PosixNearbyFolder, RefusesPathsTooLongForTheSystem) {
  const TempFolder folder;
  const std::string name = "a";
  folder.file(name, "x");
  std::string path = folder.path();
  while (path.size() < 4096) path += "/.";
  path += "/" + name;
  NearbyFolder nearby;
  for (int i = 0; i < 3; ++i) {
    FileFacts facts;
    EXPECT_FALSE(read_file_facts(path.c_str(), facts, &nearby));
  }
  FileFacts facts;
  path = folder.path();
  while (path.size() < 4080) path += "/.";
  path += "/" + name;
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(read_file_facts(path.c_str(), facts, &nearby)) << i;
  }
}

TEST(PosixNearbyFolder, KeepsReadingAFolderThatWasRenamed) {
  const TempFolder folder;
  const std::string before = folder.folder("before");
  const std::string file = folder.file("before/a", "123");
  NearbyFolder nearby;
  FileFacts facts;
  ASSERT_TRUE(read_file_facts(file.c_str(), facts, &nearby));
  ASSERT_TRUE(read_file_facts(file.c_str(), facts, &nearby));
  ASSERT_EQ(0, rename(before.c_str(), folder.path("after").c_str()));
  EXPECT_TRUE(read_file_facts(file.c_str(), facts, &nearby));
  EXPECT_FALSE(read_file_facts(file.c_str(), facts));
}

}  // namespace
}  // namespace zenfo::platform
