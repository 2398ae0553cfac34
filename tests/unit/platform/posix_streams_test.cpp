// Reading and writing special files, and errors of the device.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::read_file;
using test::TempFolder;

// Writing beyond `size` fails while this object lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) {
    old_handler_ = signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const struct rlimit limit = {size, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    signal(SIGXFSZ, old_handler_);
  }

 private:
  struct rlimit old_limit_;
  sighandler_t old_handler_;
};

TEST(PosixInputFile, OpensNoPathThroughALinkWhenAskedNotTo) {
  const TempFolder folder;
  const std::string path = folder.file("folder/file", "text");
  ASSERT_EQ(symlink(path.c_str(), folder.path("link").c_str()), 0);
  ASSERT_EQ(
      symlink(folder.path("folder").c_str(), folder.path("linked").c_str()), 0);
  InputFile file;
  EXPECT_TRUE(file.open_without_links(path.c_str()));
  EXPECT_EQ(file.size(), 4);
  for (const char* name : {"link", "linked/file", "none"}) {
    EXPECT_FALSE(file.open_without_links(folder.path(name).c_str())) << name;
    EXPECT_FALSE(file.is_open());
  }
}

TEST(PosixInputFile, NeverWaitsForAPipe) {
  const TempFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  InputFile file;
  char byte;
  ASSERT_TRUE(file.open(path.c_str()));
  EXPECT_EQ(0, file.read(&byte, 1));
  EXPECT_EQ(-1, file.size());
  // With a writer that writes nothing.
  const int writer = open(path.c_str(), O_RDWR);
  ASSERT_GE(writer, 0);
  ASSERT_TRUE(file.open(path.c_str()));
  EXPECT_EQ(-1, file.read(&byte, 1));
  close(writer);
}

TEST(PosixInputFile, DevicesHaveNoSize) {
  InputFile file;
  ASSERT_TRUE(file.open("/dev/zero"));
  EXPECT_EQ(-1, file.size());
  ASSERT_TRUE(file.open("/proc/self/stat"));
  EXPECT_EQ(0, file.size());
}

TEST(PosixInputFile, ReportsAReadThatFails) {
  InputFile file;
  // An ordinary file whose first page is mapped nowhere.
  ASSERT_TRUE(file.open("/proc/self/mem"));
  char byte;
  EXPECT_EQ(-1, file.read(&byte, 1));
}

TEST(PosixInputFile, RefusesLinksThatLeadNowhere) {
  const TempFolder folder;
  ASSERT_EQ(0, symlink("loop", folder.path("loop").c_str()));
  ASSERT_EQ(0, symlink("nowhere", folder.path("broken").c_str()));
  InputFile file;
  for (const char* name : {"loop", "broken"}) {
    EXPECT_FALSE(file.open(folder.path(name).c_str())) << name;
  }
}

TEST(PosixInputFile, DoesNotReachTheProgramsItsHostStarts) {
  const TempFolder folder;
  const std::string path = folder.file("a", "x");
  const int next = open("/dev/null", O_RDONLY);
  close(next);
  InputFile file;
  ASSERT_TRUE(file.open(path.c_str()));
  EXPECT_EQ(FD_CLOEXEC, fcntl(next, F_GETFD));
  file.close();
  OutputFile output;
  ASSERT_TRUE(output.open(path.c_str(), OutputMode::kAppend));
  EXPECT_EQ(FD_CLOEXEC, fcntl(next, F_GETFD));
}

TEST(PosixOutputFile, ReportsAFullDevice) {
  OutputFile file;
  ASSERT_TRUE(file.open("/dev/full", OutputMode::kTruncate));
  EXPECT_FALSE(file.write("x", 1));
}

TEST(PosixOutputFile, ReportsAWriteCutShort) {
  const TempFolder folder;
  const std::string path = folder.path("a");
  const std::string text(100, 'x');
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kTruncate));
  {
    const FileSizeLimit limit(10);
    EXPECT_FALSE(file.write(text.data(), text.size()));
  }
  EXPECT_TRUE(file.close());
  EXPECT_EQ(std::string(10, 'x'), read_file(path));
}

TEST(PosixOutputFile, DoesNotWaitForTheReaderOfAPipe) {
  const TempFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  OutputFile file;
  EXPECT_FALSE(file.open(path.c_str(), OutputMode::kTruncate));
}

// Bytes that others appended meanwhile are cut off, too.
TEST(PosixOutputFile, CutsOffWhatTheFileHasGrownBy) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123");
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kOverwrite));
  EXPECT_TRUE(file.write("abcd", 4));
  OutputFile other;
  ASSERT_TRUE(other.open(path.c_str(), OutputMode::kAppend));
  EXPECT_TRUE(other.write("more", 4));
  EXPECT_TRUE(other.close());
  EXPECT_TRUE(file.set_end());
  EXPECT_TRUE(file.close());
  EXPECT_EQ("abcd", read_file(path));
}

TEST(PosixOutputFile, CannotEndADevice) {
  OutputFile file;
  ASSERT_TRUE(file.open("/dev/null", OutputMode::kOverwrite));
  EXPECT_FALSE(file.set_end());
}

// Writing waits for a slow reader: a full pipe is no error.
TEST(PosixOutputFile, WritesMoreThanAPipeHoldsAtOnce) {
  const TempFolder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  const std::string text(1 << 20, 'x');
  OutputFile file;
  ASSERT_TRUE(file.open(path.c_str(), OutputMode::kOverwrite));
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const bool written = file.write(text.data(), text.size());
    _exit(written ? 0 : 1);
  }
  file.close();
  fcntl(reader, F_SETFL, 0);
  char block[4096];
  size_t total = 0;
  for (ssize_t count; (count = read(reader, block, sizeof block)) > 0;) {
    total += static_cast<size_t>(count);
  }
  close(reader);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(0, status);
  EXPECT_EQ(text.size(), total);
}

}  // namespace
}  // namespace zenfo::platform
