// Reading and writing files, on both systems.
#include <gtest/gtest.h>

#include <string>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::read_file;
using test::TempFolder;

std::string read_all(InputFile& file, size_t size) {
  std::string bytes(size, '?');
  const int64_t count = file.read(bytes.data(), size);
  EXPECT_GE(count, 0);
  bytes.resize(count < 0 ? 0 : static_cast<size_t>(count));
  return bytes;
}

bool write_text(OutputFile& file, std::string_view text) {
  return file.write(text.data(), text.size());
}

TEST(InputFile, ReadsBlocksAndStopsAtTheEnd) {
  const TempFolder folder;
  const std::string bytes(
      "a\r\n\0\x1A\xFF"
      "bcdef",
      11);
  const std::string path = folder.file("a", bytes);
  InputFile file;
  ASSERT_TRUE(file.open(path.c_str()));
  EXPECT_TRUE(file.is_open());
  EXPECT_EQ(11, file.size());
  EXPECT_EQ(bytes.substr(0, 4), read_all(file, 4));
  EXPECT_EQ(bytes.substr(4), read_all(file, 100));
  EXPECT_EQ("", read_all(file, 100));
  file.close();
  EXPECT_FALSE(file.is_open());
}

TEST(InputFile, ReadsEmptyFiles) {
  const TempFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.file("a", "").c_str()));
  EXPECT_EQ(0, file.size());
  EXPECT_EQ("", read_all(file, 1));
}

TEST(InputFile, OpensTheNextFileInPlaceOfTheLast) {
  const TempFolder folder;
  InputFile file;
  ASSERT_TRUE(file.open(folder.file("a", "first").c_str()));
  ASSERT_TRUE(file.open(folder.file("b", "second").c_str()));
  EXPECT_EQ("second", read_all(file, 100));
  EXPECT_FALSE(file.open(folder.path("missing").c_str()));
  EXPECT_FALSE(file.is_open());
}

// On some systems a folder can be opened but not read.
bool readable(const std::string& path, NearbyFolder* nearby) {
  InputFile file;
  char byte;
  return file.open(path.c_str(), nearby) && file.read(&byte, 1) >= 0;
}

TEST(InputFile, RefusesFoldersAndMissingFiles) {
  const TempFolder folder;
  NearbyFolder nearby;
  const std::string inner = folder.folder("inner");
  for (int i = 0; i < 3; ++i) {
    for (const std::string& path :
         {folder.path(), inner, folder.path(""), folder.path("missing"),
          std::string(), std::string(100000, 'x')}) {
      EXPECT_FALSE(readable(path, nullptr));
      EXPECT_FALSE(readable(path, &nearby));
    }
  }
}

TEST(InputFile, AnswersTheSizeOfFilesOnly) {
  const TempFolder folder;
  InputFile file;
  if (file.open(folder.path().c_str())) {
    EXPECT_EQ(-1, file.size());
  }
  ASSERT_TRUE(file.open(folder.file("three", "abc").c_str()));
  EXPECT_EQ(3, file.size());
}

TEST(InputFile, FindsFilesThroughANearbyFolder) {
  const TempFolder folder;
  folder.folder("inner");
  const std::string s(1, kPathSeparator);
  const std::string a = folder.file("a", "1");
  const std::string b = folder.file("b", "2");
  const std::string c = folder.file("inner" + s + "a", "3");
  NearbyFolder nearby;
  InputFile file;
  const struct {
    const std::string& path;
    const char* bytes;
  } cases[] = {{a, "1"}, {b, "2"}, {a, "1"}, {c, "3"}, {c, "3"}, {b, "2"}};
  for (const auto& each : cases) {
    ASSERT_TRUE(file.open(each.path.c_str(), &nearby));
    EXPECT_EQ(each.bytes, read_all(file, 10));
  }
}

TEST(InputFile, ReportsNothingReadWhenNoneIsOpen) {
  InputFile file;
  char byte;
  EXPECT_EQ(-1, file.read(&byte, 1));
  EXPECT_EQ(-1, file.size());
  file.close();
  EXPECT_FALSE(file.is_open());
}

#ifdef _WIN32
TEST(InputFile, RefusesDevices) {
  InputFile file;
  EXPECT_FALSE(file.open("NUL"));
  EXPECT_FALSE(file.is_open());
}
#endif

TEST(OutputFile, TruncatesWhatWasThere) {
  const TempFolder folder;
  const std::string path = folder.file("a", "long old text");
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kTruncate));
  EXPECT_EQ("", read_file(path));
  EXPECT_TRUE(write_text(file, "new"));
  EXPECT_TRUE(write_text(file, ""));
  EXPECT_TRUE(write_text(file, std::string_view("\n\0\r", 3)));
  EXPECT_TRUE(file.set_end());
  EXPECT_TRUE(file.close());
  EXPECT_EQ(std::string("new\n\0\r", 6), read_file(path));
}

TEST(OutputFile, AppendsAtTheEnd) {
  const TempFolder folder;
  const std::string path = folder.path("a");
  for (const char* text : {"one", "two"}) {
    OutputFile file;
    ASSERT_TRUE(file.open(path.c_str(), OutputMode::kAppend));
    EXPECT_TRUE(file.set_end());  // before anything is written, too
    EXPECT_TRUE(write_text(file, text));
    EXPECT_TRUE(file.set_end());
    EXPECT_TRUE(file.close());
  }
  EXPECT_EQ("onetwo", read_file(path));
}

TEST(OutputFile, OverwritesAndKeepsNoOldBytesOnceItIsCut) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123456789");
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kOverwrite));
  EXPECT_TRUE(write_text(file, "ab"));
  EXPECT_TRUE(write_text(file, "c"));
#ifdef _WIN32
  EXPECT_EQ("abc", read_file(path)) << "cut when it was opened";
#else
  EXPECT_EQ("abc3456789", read_file(path));
#endif
  EXPECT_TRUE(file.set_end());
  EXPECT_TRUE(file.close());
  EXPECT_EQ("abc", read_file(path));
}

TEST(OutputFile, CutsNothingOffWhereTheFileEndsAnyway) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123");
  for (const char* text : {"abcd", "abcdef"}) {
    OutputFile file;
    ASSERT_TRUE(file.open(path.c_str(), OutputMode::kOverwrite));
    EXPECT_TRUE(write_text(file, text));
    EXPECT_TRUE(file.set_end());
    EXPECT_TRUE(file.close());
    EXPECT_EQ(text, read_file(path));
  }
}

TEST(OutputFile, CutsToNothingWhenNothingWasWritten) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123456789");
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kOverwrite));
  EXPECT_TRUE(file.set_end());
  EXPECT_TRUE(file.close());
  EXPECT_EQ("", read_file(path));
}

TEST(OutputFile, CreatesMissingFilesInEveryMode) {
  const TempFolder folder;
  int number = 0;
  for (const OutputMode mode :
       {OutputMode::kTruncate, OutputMode::kAppend, OutputMode::kOverwrite}) {
    const std::string path = folder.path(std::to_string(++number));
    OutputFile file;
    ASSERT_TRUE(file.open(path.c_str(), mode));
    EXPECT_TRUE(write_text(file, "x"));
    EXPECT_TRUE(file.close());
    EXPECT_EQ("x", read_file(path));
  }
}

TEST(OutputFile, FailsOnFoldersAndMissingFolders) {
  const TempFolder folder;
  OutputFile file;
  const std::string deep = folder.path("no") + kPathSeparator + "a";
  for (const std::string& path : {folder.path(), deep, std::string()}) {
    EXPECT_FALSE(file.open(path.c_str(), OutputMode::kTruncate));
    EXPECT_FALSE(file.is_open());
  }
  EXPECT_FALSE(file.set_end());
}

TEST(OutputFile, ClosesTwiceWithoutHarm) {
  const TempFolder folder;
  OutputFile file;
  EXPECT_TRUE(file.close());
  ASSERT_TRUE(file.open(folder.path("a").c_str(), OutputMode::kTruncate));
  EXPECT_TRUE(file.close());
  EXPECT_TRUE(file.close());
  EXPECT_FALSE(write_text(file, "x"));
}

TEST(OutputFile, CanBeReadWhileItIsOpen) {
  const TempFolder folder;
  const std::string path = folder.path("a");
  OutputFile output;
  InputFile input;
  ASSERT_TRUE(output.open(path.c_str(), OutputMode::kTruncate));
  ASSERT_TRUE(write_text(output, "abc"));
  ASSERT_TRUE(input.open(path.c_str()));
  EXPECT_EQ("abc", read_all(input, 10));
}

TEST(InputFile, OpensOrdinaryFilesUpToASizeWithTheirStamp) {
  const TempFolder folder;
  const std::string path = folder.file("a", "abc");
  InputFile file;
  FileStamp stamp;
  ASSERT_TRUE(file.open_ordinary(path.c_str(), 3, stamp));
  EXPECT_EQ("abc", read_all(file, 10));
  FileVersion version;
  ASSERT_TRUE(file.version(version));
  EXPECT_EQ(stamp.version, version);
  EXPECT_EQ(version.size, 3u);
  EXPECT_FALSE(file.open_ordinary(path.c_str(), 2, stamp));
  EXPECT_FALSE(file.is_open());
  EXPECT_FALSE(file.open_ordinary(folder.path().c_str(), 1 << 20, stamp));
  EXPECT_FALSE(file.open_ordinary(folder.path("b").c_str(), 3, stamp));
  EXPECT_FALSE(file.is_open());
}

}  // namespace
}  // namespace zenfo::platform
