#include "files/file_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temp_folder.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace zenfo {
namespace {

using test::kSeparator;
using test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::string with_own_separators(std::string path) {
  for (char& c : path) {
    if (c == '/') c = kSeparator;
  }
  return path;
}

class FileFinderTest : public testing::Test {
 protected:
  // Names found, relative to the test's folder, with slashes. In the
  // specification "~" means the folder.
  std::vector<std::string> find(std::string specification) {
    std::string whole;
    for (char c : specification) {
      whole +=
          c == '~' ? folder.path() : with_own_separators(std::string(1, c));
    }
    std::vector<std::string> found;
    FileFinder finder(hooks, [&](std::string_view in, std::string_view name) {
      std::string path(in);
      path += '/';
      path += name;
      path.erase(0, folder.path().size() + 1);
      for (char& c : path) {
        if (c == kSeparator) c = '/';
      }
      found.push_back(path);
      return true;
    });
    result = finder.find(whole);
    return found;
  }
  TempFolder folder;
  ProgressHooks hooks;
  int32_t result = 0;
};

TEST_F(FileFinderTest, FindsTheFilesOfAFolderByPatternInTheOrderWritten) {
  folder.file("b.txt", "");
  folder.file("a.txt", "");
  folder.file("c.log", "");
  folder.file("sub/d.txt", "");
  EXPECT_THAT(find("0~/*.log;*.txt"), ElementsAre("c.log", "a.txt", "b.txt"));
  EXPECT_EQ(result, 3);
}

TEST_F(FileFinderTest, DescendsOnlyWithTheFlag) {
  folder.file("a.txt", "");
  folder.file("one/b.txt", "");
  folder.file("one/deep/c.txt", "");
  folder.file("two/d.txt", "");
  EXPECT_THAT(find("1~/*.txt"),
              ElementsAre("a.txt", "one/b.txt", "one/deep/c.txt", "two/d.txt"));
  EXPECT_THAT(find("0~/*.txt"), ElementsAre("a.txt"));
  EXPECT_THAT(find("x~/*.txt"), ElementsAre("a.txt"));
}

TEST_F(FileFinderTest, SkipsRecycleBinsInAnyCase) {
  folder.file("RECYCLER/x", "");
  folder.file("sub/recycled/y", "");
  folder.file("sub/z", "");
  EXPECT_THAT(find("1~/*"), ElementsAre("sub/z"));
}

TEST_F(FileFinderTest, PassesOverNamesThatBeginWithAPoint) {
  folder.file(".hidden", "");
  folder.file(".git/config", "");
  folder.file("plain", "");
  EXPECT_THAT(find("1~/*"), ElementsAre("plain"));
}

TEST_F(FileFinderTest, SumsOverGroupsAndEntersAFileTwiceThroughTwoPatterns) {
  folder.file("a/x.c", "");
  folder.file("b/y.h", "");
  EXPECT_THAT(find("0~/a/*.c;*|0~/b/*.h"),
              ElementsAre("a/x.c", "a/x.c", "b/y.h"));
  EXPECT_EQ(result, 3);
}

TEST_F(FileFinderTest, GroupsWithNothingToSearchAreSkipped) {
  folder.file("a.txt", "");
  for (const char* specification : {"", "|", "1", "0", "1a.txt", "0~/",
                                    "0~/missing/*", "0~/;", ";;", "0;~/*"}) {
    EXPECT_THAT(find(specification), IsEmpty()) << specification;
    EXPECT_EQ(result, 0) << specification;
  }
  EXPECT_THAT(find("1a.txt|0~/*.txt"), ElementsAre("a.txt"));
}

TEST_F(FileFinderTest, AnEmptyPatternIsNotEveryFile) {
  folder.file("a.txt", "");
  EXPECT_THAT(find("0~/;*.txt"), ElementsAre("a.txt"));
}

TEST_F(FileFinderTest, LaterItemsWithAPathAreSkipped) {
  folder.file("a.txt", "");
  folder.file("sub/b.txt", "");
  EXPECT_THAT(find("0~/*.txt;~/sub/*.txt;*.txt"),
              ElementsAre("a.txt", "a.txt"));
}

TEST_F(FileFinderTest, PointStarMatchesEveryName) {
  folder.file("plain", "");
  folder.file("a.txt", "");
  EXPECT_THAT(find("0~/*.*"), UnorderedElementsAre("plain", "a.txt"));
}

TEST_F(FileFinderTest, ExtensionsAreComparedButForWildcards) {
  folder.file("index.html", "");
  folder.file("old.HTM", "");
  EXPECT_THAT(find("0~/*.htm"), ElementsAre("old.HTM"));
  EXPECT_THAT(find("0~/*.ht*"), UnorderedElementsAre("index.html", "old.HTM"));
}

TEST(ExtensionTest, FollowsItsFourRules) {
  struct Case {
    const char* name;
    const char* pattern;
    bool passes;
  };
  const Case cases[] = {
      {"page.html", "*.htm", false},
      {"page.HTM", "*.htm", true},
      {"page.html", "*.ht*", true},
      {"page.html", "*.htm?", true},
      {"page", "*.htm", true},
      {"page.html", "*", true},
      {"page.html", "page.", true},
      {"page.", "*.htm", true},
      // Intended: a wildcard elsewhere in the extension is compared as text.
      {"a.hxm", "*.h?m", false},
      {"a", "*.h?m", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(passes_extension_test(c.name, c.pattern), c.passes)
        << c.name << ' ' << c.pattern;
  }
}

TEST(SearchGroup, IsTakenApartAtSemicolons) {
  SearchGroup group =
      parse_search_group(with_own_separators("1/data/*.c;*.h;;x/y;*"));
  EXPECT_TRUE(group.valid);
  EXPECT_TRUE(group.subfolders);
  EXPECT_EQ(group.folder, with_own_separators("/data"));
  EXPECT_THAT(group.patterns, ElementsAre("*.c", "*.h", "*"));
  EXPECT_FALSE(parse_search_group("").valid);
  EXPECT_FALSE(parse_search_group("1").valid);
  EXPECT_FALSE(parse_search_group("1*.c").valid);
}

int32_t stop(void*) { return 1; }

TEST_F(FileFinderTest, AnInterruptEndsTheWalkWithMinusOne) {
  for (int i = 0; i < 60; ++i) {
    folder.file("f" + std::to_string(1000 + i), "");
  }
  hooks.set_interrupt_hook(stop);
  while (hooks.poll_interrupt_every(100) == 0) {
  }
  // "." and ".." are names too, and are read once.
  EXPECT_EQ(find("0~/*;*").size(), 101u - 62u);
  EXPECT_EQ(result, -1);
}

TEST_F(FileFinderTest, AnInterruptEndsTheWalkOfFoldersToo) {
  for (int i = 0; i < 250; ++i) folder.folder("d" + std::to_string(i));
  hooks.set_interrupt_hook(stop);
  while (hooks.poll_interrupt_every(100) == 0) {
  }
  EXPECT_THAT(find("1~/*"), IsEmpty());
  EXPECT_EQ(result, -1);
}

TEST_F(FileFinderTest, AnInterruptEndsTheReadingOfAFolder) {
  for (int i = 0; i < 250; ++i) folder.file("f" + std::to_string(i), "");
  hooks.set_interrupt_hook(stop);
  EXPECT_THAT(find("0~/*"), IsEmpty());
  EXPECT_EQ(result, -1);
  EXPECT_THAT(find("0~/none"), IsEmpty());
  EXPECT_EQ(result, -1);
}

TEST_F(FileFinderTest, ASinkThatFailsEndsTheWalk) {
  folder.file("a", "");
  FileFinder finder(hooks,
                    [](std::string_view, std::string_view) { return false; });
  EXPECT_EQ(finder.find("0" + folder.path() + kSeparator + "*"), -1);
}

#ifndef _WIN32
TEST_F(FileFinderTest, LinksToFoldersAreNotEntered) {
  folder.file("real/a", "");
  std::filesystem::create_directory_symlink(folder.path(),
                                            folder.path("real/loop"));
  std::filesystem::create_symlink(folder.path("real/a"), folder.path("link"));
  EXPECT_THAT(find("1~/*"), ElementsAre("link", "real/a"));
}

// Thirty nested folders with a file in each, made one by one from inside,
// because no single call accepts such a long path.
void make_deep_folders(const std::string& top, const std::string& name) {
  int at = open(top.c_str(), O_PATH | O_DIRECTORY);
  for (int i = 0; i < 30; ++i) {
    ASSERT_EQ(mkdirat(at, name.c_str(), 0755), 0);
    const int inner = openat(at, name.c_str(), O_PATH | O_DIRECTORY);
    ASSERT_GE(inner, 0);
    close(at);
    at = inner;
    close(openat(at, "f", O_CREAT | O_WRONLY, 0644));
  }
  close(at);
}

TEST_F(FileFinderTest, StopsDescendingAtTheLongestPath) {
  make_deep_folders(folder.path(), std::string(200, 'd'));
  const size_t found = find("1~/f").size();
  EXPECT_GE(found, 19u);
  EXPECT_LE(found, 21u);
  EXPECT_EQ(result, static_cast<int32_t>(found));
}
#endif

}  // namespace
}  // namespace zenfo
