#include "text/out_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zenfo {
namespace {

using LineEnds = OutFile::LineEnds;
using platform::OutputMode;

class OutFileTest : public testing::Test {
 protected:
  void SetUp() override {
    char folder[] = "/tmp/zenfo_out_file_XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    folder_ = folder;
    path_ = folder_ + "/out.txt";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  bool open(OutFile& file, OutputMode mode, LineEnds line_ends) {
    return file.open(path_.c_str(), mode, line_ends);
  }
  std::string on_disk() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string folder_;
  std::string path_;
};

// Files of this process cannot grow beyond a size while the object lives:
// writes beyond it fail as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(size_t size) {
    former_handler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &former_);
    rlimit limit = former_;
    limit.rlim_cur = size;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, former_handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit former_{};
  void (*former_handler_)(int) = nullptr;
};

TEST_F(OutFileTest, RawWritesBytesAsGiven) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write(std::string_view("a\nb\r\n\0\xFF", 7)));
  EXPECT_TRUE(file.write('\n'));
  EXPECT_TRUE(file.write(""));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), std::string("a\nb\r\n\0\xFF\n", 8));
}

TEST_F(OutFileTest, ExpandWritesEveryLineFeedAsCrLf) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kExpand));
  EXPECT_TRUE(file.write("a\nb\n\nc"));
  EXPECT_TRUE(file.write('\n'));
  EXPECT_TRUE(file.write('x'));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "a\r\nb\r\n\r\nc\r\nx");
}

// Intended: "\r\n" in text mode gives CR CR LF.
TEST_F(OutFileTest, ExpandLeavesCarriageReturnsAlone) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kExpand));
  EXPECT_TRUE(file.write("a\r\nb\r"));
  EXPECT_TRUE(file.write("\n"));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "a\r\r\nb\r\r\n");
}

TEST_F(OutFileTest, WritesWithinATextModeFileUnchangedWhatIsToStay) {
  OutFile file;
  EXPECT_FALSE(file.write_unchanged("x")) << "nothing is open";
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kExpand));
  EXPECT_TRUE(file.write("a\n"));
  EXPECT_TRUE(file.write_unchanged("b\n"));
  EXPECT_TRUE(file.write("c\n"));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "a\r\nb\nc\r\n");
}

TEST_F(OutFileTest, TruncateEmptiesAndAppendKeepsWhatIsThere) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write("first"));
  ASSERT_TRUE(open(file, OutputMode::kAppend, LineEnds::kExpand));
  EXPECT_TRUE(file.write("\n"));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "first\r\n");
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "");
}

TEST_F(OutFileTest, AnOverwrittenFileEndsAfterTheLastByteWritten) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write("abcdef"));
  ASSERT_TRUE(open(file, OutputMode::kOverwrite, LineEnds::kRaw));
  EXPECT_TRUE(file.write("XY"));
  EXPECT_TRUE(file.flush());
  EXPECT_EQ(on_disk(), "XYcdef") << "until it is closed";
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "XY");
}

// The expected size does not change the bytes that are written.
TEST_F(OutFileTest, TakesMoreAndLessThanItExpects) {
  for (const size_t expected : {size_t{0}, size_t{3}, size_t{1} << 40}) {
    OutFile file;
    file.expect(expected);
    ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
    EXPECT_TRUE(file.write("abc"));
    EXPECT_TRUE(file.write(std::string(300'000, 'x')));
    EXPECT_TRUE(file.write("def"));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(on_disk(), "abc" + std::string(300'000, 'x') + "def");
  }
}

TEST_F(OutFileTest, WritesNumbersAsDecimalDigits) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write_number(0));
  EXPECT_TRUE(file.write(' '));
  EXPECT_TRUE(file.write_number(18446744073709551615u));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "0 18446744073709551615");
}

TEST_F(OutFileTest, FlushPutsTheBytesOnDisk) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write("abc"));
  EXPECT_EQ(on_disk(), "");
  EXPECT_TRUE(file.flush());
  EXPECT_EQ(on_disk(), "abc");
  EXPECT_TRUE(file.flush());
  EXPECT_TRUE(file.write("d"));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "abcd");
}

TEST_F(OutFileTest, DestructionWritesTheRest) {
  {
    OutFile file;
    ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
    EXPECT_TRUE(file.write("abc"));
  }
  EXPECT_EQ(on_disk(), "abc");
}

TEST_F(OutFileTest, KeepsTheOrderOfPiecesAroundTheBufferSize) {
  const size_t kBuffer = size_t{1} << 18;
  const size_t sizes[] = {kBuffer - 1, 1,           1,       kBuffer,
                          3,           kBuffer + 1, 2,       kBuffer * 3,
                          7,           kBuffer - 7, 100'000, 200'000};
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  std::string expected;
  char letter = 'a';
  for (const size_t size : sizes) {
    const std::string piece(size, letter++);
    EXPECT_TRUE(file.write(piece));
    expected += piece;
  }
  EXPECT_TRUE(file.close());
  EXPECT_TRUE(on_disk() == expected);
}

TEST_F(OutFileTest, LargeRawPieceGoesOutAtOnce) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  const std::string piece(size_t{1} << 18, 'x');
  EXPECT_TRUE(file.write("a"));
  EXPECT_TRUE(file.write(piece));
  EXPECT_TRUE(on_disk() == "a" + piece);
}

TEST_F(OutFileTest, ExpandsLargeTexts) {
  std::string text, expected;
  for (int line = 0; line < 100'000; ++line) {
    text += std::to_string(line) + "\n";
    expected += std::to_string(line) + "\r\n";
  }
  text.append(300'000, 'x').append("\n");
  expected.append(300'000, 'x').append("\r\n");
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kExpand));
  EXPECT_TRUE(file.write(text));
  EXPECT_TRUE(file.close());
  EXPECT_TRUE(on_disk() == expected);
}

TEST_F(OutFileTest, RefusesEverythingWhileNothingIsOpen) {
  OutFile file;
  EXPECT_FALSE(file.is_open());
  EXPECT_FALSE(file.write("a"));
  EXPECT_FALSE(file.write('a'));
  EXPECT_FALSE(file.write_number(1));
  EXPECT_FALSE(file.flush());
  EXPECT_TRUE(file.close());
}

TEST_F(OutFileTest, FailedOpenLeavesNothingOpen) {
  OutFile file;
  EXPECT_FALSE(file.open((folder_ + "/missing/out.txt").c_str(),
                         OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_FALSE(file.is_open());
  EXPECT_FALSE(file.write("a"));
}

TEST_F(OutFileTest, AfterAFailedWriteAllLaterOnesAndTheCloseFail) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  {
    const FileSizeLimit limit(10);
    EXPECT_TRUE(file.write("0123456789abc"));
    EXPECT_FALSE(file.flush());
  }
  EXPECT_FALSE(file.write("x"));
  EXPECT_FALSE(file.write_number(1));
  EXPECT_FALSE(file.flush());
  EXPECT_FALSE(file.close());
  EXPECT_FALSE(file.is_open());
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk().find('x'), std::string::npos);
}

TEST_F(OutFileTest, CloseReportsBytesThatCouldNotBeWritten) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write("0123456789abc"));
  const FileSizeLimit limit(10);
  EXPECT_FALSE(file.close());
}

TEST_F(OutFileTest, LargePieceReportsItsFailureAtOnce) {
  for (const LineEnds line_ends : {LineEnds::kRaw, LineEnds::kExpand}) {
    OutFile file;
    ASSERT_TRUE(open(file, OutputMode::kTruncate, line_ends));
    const FileSizeLimit limit(10);
    EXPECT_FALSE(file.write(std::string(size_t{1} << 18, 'x')));
    EXPECT_FALSE(file.close());
  }
}

TEST_F(OutFileTest, OpensAgainAfterAFailure) {
  OutFile file;
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  {
    const FileSizeLimit limit(10);
    EXPECT_TRUE(file.write("0123456789abc"));
    EXPECT_FALSE(file.flush());
  }
  ASSERT_TRUE(open(file, OutputMode::kTruncate, LineEnds::kRaw));
  EXPECT_TRUE(file.write("good"));
  EXPECT_TRUE(file.close());
  EXPECT_EQ(on_disk(), "good");
}

}  // namespace
}  // namespace zenfo
