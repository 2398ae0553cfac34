// Paths against the system, on both systems.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "platform/files.h"
#ifdef _WIN32
#include "platform/win32/system.h"
#endif
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;

class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& path)
      : old_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~WorkingFolder() { std::filesystem::current_path(old_); }

 private:
  std::filesystem::path old_;
};

TEST(IsRootFolder, IsTrueForRootsOnly) {
  const TempFolder folder;
  const std::string root =
      std::filesystem::path(folder.path()).root_path().string();
  EXPECT_TRUE(is_root_folder(root)) << root;
  EXPECT_TRUE(is_root_folder(""));
  EXPECT_FALSE(is_root_folder(folder.path()));
  EXPECT_FALSE(is_root_folder(folder.path("")));
  EXPECT_FALSE(is_root_folder(folder.path("missing")));
  const WorkingFolder working(folder.path());
  EXPECT_FALSE(is_root_folder("."));
}

TEST(IsRootFolder, SeesThroughPartsThatGoUp) {
  std::string up = std::filesystem::temp_directory_path().string();
  const auto depth = std::count(up.begin(), up.end(), kPathSeparator);
  for (auto i = depth; i > 0; --i) (up += kPathSeparator) += "..";
  EXPECT_TRUE(is_root_folder(up)) << up;
}

#ifdef _WIN32
TEST(IsRootFolder, TakesDrivesAndShares) {
  for (const char* root :
       {"C:", "C:\\", "Q:", "\\\\server\\share", "\\\\server\\share\\"}) {
    EXPECT_TRUE(is_root_folder(root)) << root;
  }
  EXPECT_FALSE(is_root_folder("\\\\server\\share\\folder"));
}
#endif

TEST(AbsolutePath, JoinsTheWorkingFolder) {
  const TempFolder folder;
  const WorkingFolder working(folder.path());
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(here + kPathSeparator + "a", absolute_path("a"));
  const std::string inner = std::string("b") + kPathSeparator + "a";
  EXPECT_EQ(here + kPathSeparator + inner, absolute_path(inner.c_str()));
  EXPECT_EQ(folder.path("a"), absolute_path(folder.path("a").c_str()));
  EXPECT_EQ("", absolute_path(""));
}

TEST(AbsolutePath, TakesPathsOfAnyLength) {
  const TempFolder folder;
  for (const size_t length : {200, 259, 260, 261, 1000}) {
    const std::string path = folder.path(std::string(length, 'a'));
    EXPECT_EQ(path, absolute_path(path.c_str()));
  }
}

TEST(SamePath, IgnoresDoubledAndFinalSeparators) {
  const std::string s(1, kPathSeparator);
  EXPECT_TRUE(same_path("a" + s + "b", "a" + s + "b"));
  EXPECT_TRUE(same_path("a" + s + "b", "a" + s + s + "b" + s));
  EXPECT_TRUE(same_path("." + s + "a", "a"));
  EXPECT_FALSE(same_path("a" + s + "b", "a" + s + "c"));
  EXPECT_FALSE(same_path("ab", "a" + s + "b"));
  EXPECT_FALSE(same_path("a", s + "a"));
  EXPECT_FALSE(same_path("a", "ab"));
  EXPECT_FALSE(same_path("a", ""));
  EXPECT_TRUE(same_path("", ""));
}

#ifdef _WIN32
TEST(SamePath, IgnoresTheCaseOfLettersBeyondAscii) {
  char upper[8] = {};
  char lower[8] = {};
  BOOL lost = FALSE;
  BOOL* const report = GetACP() == CP_UTF8 ? nullptr : &lost;
  WideCharToMultiByte(CP_ACP, 0, L"\u00C4", 2, upper, 8, nullptr, report);
  WideCharToMultiByte(CP_ACP, 0, L"\u00E4", 2, lower, 8, nullptr, report);
  if (lost) GTEST_SKIP() << "no such letter in this code page";
  EXPECT_TRUE(
      same_path(std::string("C:\\") + upper, std::string("c:/") + lower));
  EXPECT_FALSE(same_path(std::string("C:\\") + upper, "C:\\a"));
}
#endif

TEST(SamePath, FollowsTheSystemInCaseAndSeparators) {
#ifdef _WIN32
  EXPECT_TRUE(same_path("C:\\Folder\\File.TXT", "c:/folder/file.txt"));
  EXPECT_FALSE(same_path("[", "{"));
#else
  EXPECT_FALSE(same_path("A", "a"));
  EXPECT_FALSE(same_path("a\\b", "a/b"));
  EXPECT_FALSE(same_path("\xC3\x84", "\xC3\xA4"));
#endif
}

TEST(FileKey, IsTheSameForAllPathsOfOneFile) {
  const TempFolder folder;
  const std::string one = folder.file("one", "a");
  const std::string other = folder.file("other", "a");
  const std::string link = folder.path("link");
  std::filesystem::create_hard_link(one, link);
  EXPECT_EQ(file_key(one.c_str()), file_key(folder.path("./one").c_str()));
  EXPECT_EQ(file_key(one.c_str()), file_key(link.c_str()));
  EXPECT_NE(file_key(one.c_str()), file_key(other.c_str()));
}

TEST(FileKey, IsThePathOfWhatIsNotThere) {
  const TempFolder folder;
  const std::string none = folder.path("none");
  EXPECT_EQ(file_key(none.c_str()), file_key(folder.path("./none").c_str()));
  EXPECT_NE(file_key(none.c_str()), file_key(folder.path("nine").c_str()));
}

}  // namespace
}  // namespace zenfo::platform
