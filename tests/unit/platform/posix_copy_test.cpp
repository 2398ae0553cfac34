// Copying a file: mode, times, links, special files, and an incomplete copy.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "platform/files.h"
#include "support/nobody.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::AsNobody;
using test::read_file;
using test::TempFolder;

struct stat stat_of(const std::string& path) {
  struct stat found = {};
  EXPECT_EQ(0, stat(path.c_str(), &found)) << path;
  return found;
}

// Copies while no file can grow beyond `size` bytes.
bool copy_with_limit(rlim_t size, const std::string& from,
                     const std::string& to) {
  const sighandler_t old_handler = signal(SIGXFSZ, SIG_IGN);
  struct rlimit old_limit;
  getrlimit(RLIMIT_FSIZE, &old_limit);
  const struct rlimit limit = {size, old_limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  const bool copied = copy_file(from.c_str(), to.c_str());
  setrlimit(RLIMIT_FSIZE, &old_limit);
  signal(SIGXFSZ, old_handler);
  return copied;
}

TEST(PosixCopyFile, KeepsModeAndTimesToTheNanosecond) {
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  const struct timespec times[] = {{1234567890, 123456789},
                                   {987654321, 987654321}};
  for (const mode_t mode : {0600, 0644, 0755, 0444, 0666}) {
    for (const bool target_exists : {false, true}) {
      const std::string to = folder.path("to");
      unlink(to.c_str());
      if (target_exists) folder.file("to", "old and longer content");
      ASSERT_EQ(0, chmod(from.c_str(), mode));
      ASSERT_EQ(0, utimensat(AT_FDCWD, from.c_str(), times, 0));
      ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
      const struct stat copy = stat_of(to);
      EXPECT_EQ(mode, copy.st_mode & 07777);
      EXPECT_EQ(times[0].tv_sec, copy.st_atim.tv_sec);
      EXPECT_EQ(times[0].tv_nsec, copy.st_atim.tv_nsec);
      EXPECT_EQ(times[1].tv_sec, copy.st_mtim.tv_sec);
      EXPECT_EQ(times[1].tv_nsec, copy.st_mtim.tv_nsec);
      EXPECT_EQ("content", read_file(to));
    }
  }
}

TEST(PosixCopyFile, TakesOffTheMarksOfAnExistingTarget) {
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  const std::string to = folder.file("to", "old");
  ASSERT_EQ(0, chmod(from.c_str(), 0755));
  for (const mode_t marks : {S_ISUID, S_ISGID, S_ISVTX}) {
    ASSERT_EQ(0, chmod(to.c_str(), 0755 | marks));
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ(mode_t{0755}, stat_of(to).st_mode & 07777);
  }
}

// Written and read by the same user, whoever it is.
void expect_marks_kept() {
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  const std::string to = folder.path("to");
  for (const mode_t mode : {04755, 02755, 06711, 01644, 04444}) {
    for (const mode_t old_mode : {0, 0644, 06755}) {
      unlink(to.c_str());
      if (old_mode != 0) {
        folder.file("to", "old and longer content");
        ASSERT_EQ(0, chmod(to.c_str(), old_mode));
      }
      ASSERT_EQ(0, chmod(from.c_str(), mode));
      ASSERT_EQ(mode, stat_of(from).st_mode & 07777);
      ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
      EXPECT_EQ(mode, stat_of(to).st_mode & 07777) << "over " << old_mode;
      EXPECT_EQ("content", read_file(to));
    }
  }
}

TEST(PosixCopyFile, KeepsSetuidSetgidAndSticky) {
  expect_marks_kept();
  const TempFolder folder;
  const AsNobody nobody(folder.path());
  expect_marks_kept();
}

TEST(PosixCopyFile, GivesANewFileItsOwnerAndMarks) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  ASSERT_EQ(0, chown(from.c_str(), 12, 34));
  ASSERT_EQ(0, chmod(from.c_str(), 06755));
  const std::string to = folder.path("to");
  ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
  EXPECT_EQ(12u, stat_of(to).st_uid);
  EXPECT_EQ(34u, stat_of(to).st_gid);
  EXPECT_EQ(mode_t{06755}, stat_of(to).st_mode & 07777);
}

// A user's setuid file would run with the rights of the user who copied it.
TEST(PosixCopyFile, LendsNobodyTheRightsOfAnotherOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const TempFolder folder;
  const std::string from = folder.file("from", "content");
  const std::string to = folder.file("to", "old");
  ASSERT_EQ(0, chown(from.c_str(), 12, 34));
  ASSERT_EQ(0, chmod(from.c_str(), 07755));
  ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
  EXPECT_EQ(0u, stat_of(to).st_uid) << "an existing file keeps its owner";
  EXPECT_EQ(mode_t{01755}, stat_of(to).st_mode & 07777);
  const AsNobody nobody(folder.path());
  const std::string own = folder.path("own");
  ASSERT_TRUE(copy_file(from.c_str(), own.c_str()));
  EXPECT_NE(12u, stat_of(own).st_uid);
  EXPECT_EQ(mode_t{01755}, stat_of(own).st_mode & 07777);
}

TEST(PosixCopyRights, GivesAFileModeAndOwnerOfAnother) {
  const TempFolder folder;
  const std::string from = folder.file("from", "a");
  const std::string to = folder.file("to", "b");
  ASSERT_EQ(0, chmod(from.c_str(), 0640));
  if (geteuid() == 0) {
    ASSERT_EQ(0, chown(from.c_str(), 12, 34));
  }
  copy_rights(from.c_str(), to.c_str());
  EXPECT_EQ(mode_t{0640}, stat_of(to).st_mode & 07777);
  EXPECT_EQ(stat_of(from).st_uid, stat_of(to).st_uid);
  EXPECT_EQ(stat_of(from).st_gid, stat_of(to).st_gid);
  copy_rights(folder.path("missing").c_str(), to.c_str());
  EXPECT_EQ(mode_t{0640}, stat_of(to).st_mode & 07777);
}

TEST(PosixCopyRights, TouchesNothingThroughALink) {
  const TempFolder folder;
  const std::string from = folder.file("from", "a");
  const std::string file = folder.file("file", "b");
  const std::string link = folder.path("link");
  ASSERT_EQ(0, symlink("file", link.c_str()));
  ASSERT_EQ(0, chmod(from.c_str(), 0600));
  ASSERT_EQ(0, chmod(file.c_str(), 0644));
  copy_rights(from.c_str(), link.c_str());
  EXPECT_EQ(mode_t{0644}, stat_of(file).st_mode & 07777);
}

TEST(PosixCopyFile, TakesLinksForWhatTheyLeadTo) {
  const TempFolder folder;
  const std::string file = folder.file("file", "content");
  const std::string other = folder.file("other", "other");
  const std::string link = folder.path("link");
  const std::string twin = folder.path("twin");
  ASSERT_EQ(0, symlink("file", link.c_str()));
  ASSERT_EQ(0, ::link(file.c_str(), twin.c_str()));
  for (const std::string& same : {link, twin}) {
    EXPECT_FALSE(copy_file(file.c_str(), same.c_str()));
    EXPECT_FALSE(copy_file(same.c_str(), file.c_str()));
  }
  EXPECT_EQ("content", read_file(file));
  EXPECT_TRUE(copy_file(other.c_str(), link.c_str()));
  EXPECT_EQ("other", read_file(file));
}

TEST(PosixCopyFile, RefusesWhatIsNoOrdinaryFile) {
  const TempFolder folder;
  const std::string pipe = folder.path("pipe");
  const std::string to = folder.path("to");
  const std::string file = folder.file("file", "content");
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  EXPECT_FALSE(copy_file(pipe.c_str(), to.c_str()));
  EXPECT_FALSE(copy_file("/dev/null", to.c_str()));
  EXPECT_FALSE(exists(to.c_str()));
  EXPECT_FALSE(copy_file(file.c_str(), pipe.c_str()));
  EXPECT_FALSE(copy_file(file.c_str(), "/dev/null"));
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_FALSE(copy_file(file.c_str(), pipe.c_str()));
  close(reader);
  EXPECT_TRUE(exists(pipe.c_str()));
}

// Its size is 0 and the system's own copy finds nothing in it.
TEST(PosixCopyFile, CopiesFilesThatHideTheirSize) {
  const TempFolder folder;
  const std::string to = folder.path("to");
  ASSERT_TRUE(copy_file("/proc/self/cmdline", to.c_str()));
  EXPECT_EQ(read_file("/proc/self/cmdline"), read_file(to));
  EXPECT_NE("", read_file(to));
}

TEST(PosixCopyFile, RemovesACopyCutShort) {
  const TempFolder folder;
  const std::string from = folder.file("from", std::string(100000, 'x'));
  const std::string to = folder.path("to");
  EXPECT_FALSE(copy_with_limit(5000, from, to));
  EXPECT_FALSE(exists(to.c_str()));
  EXPECT_TRUE(copy_with_limit(100000, from, to));
  EXPECT_EQ(read_file(from), read_file(to));
}

TEST(PosixCopyFile, NeverRemovesAFileThatWasThere) {
  const TempFolder folder;
  const std::string from = folder.file("from", std::string(100000, 'x'));
  const std::string file = folder.file("file", "old");
  const std::string link = folder.path("link");
  ASSERT_EQ(0, symlink("file", link.c_str()));
  for (const std::string& to : {file, link}) {
    EXPECT_FALSE(copy_with_limit(5000, from, to));
    EXPECT_TRUE(exists(to.c_str()));
    EXPECT_EQ(stat_of(file).st_size, 5000);
  }
  EXPECT_FALSE(copy_file("/proc/self/mem", file.c_str()));
  EXPECT_TRUE(exists(file.c_str()));
}

// A very small disk mounted in a folder.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& folder)
      : folder_(folder),
        mounted_(mount("none", folder.c_str(), "tmpfs", 0, "size=64k") == 0) {}
  ~SmallDisk() {
    if (mounted_) umount(folder_.c_str());
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool mounted() const { return mounted_; }

 private:
  std::string folder_;
  bool mounted_;
};

TEST(PosixCopyFile, TouchesNothingWhereThereIsNoRoom) {
  const TempFolder folder;
  const TempFolder other;
  const std::string from = other.file("from", std::string(100000, 'x'));
  const SmallDisk disk(folder.path());
  if (!disk.mounted()) GTEST_SKIP() << "no disk may be mounted here";
  const std::string to = folder.file("to", "old");
  EXPECT_FALSE(copy_file(from.c_str(), to.c_str()));
  EXPECT_EQ("old", read_file(to));
}

TEST(PosixCopyFile, LeavesAFileAloneThatAnotherRunRewrites) {
  const TempFolder folder;
  const std::string from = folder.file("from", "new");
  const std::string to = folder.file("to", "old");
  const int file = open(to.c_str(), O_WRONLY);
  ASSERT_EQ(0, flock(file, LOCK_EX));
  EXPECT_FALSE(copy_file(from.c_str(), to.c_str()));
  EXPECT_EQ("old", read_file(to));
  close(file);
  EXPECT_TRUE(copy_file(from.c_str(), to.c_str()));
}

// This file system keeps files in memory and cannot reserve space.
TEST(PosixCopyFile, TakesThePlaceWhereNoRoomCanBeReserved) {
  const TempFolder folder;
  if (mount("none", folder.path().c_str(), "ramfs", 0, "") != 0) {
    GTEST_SKIP() << "no disk may be mounted here";
  }
  const std::string source = folder.file("source", "new");
  const std::string to = folder.file("to", "old text");
  const std::string two_names = folder.file("two", "old text");
  ASSERT_EQ(0, link(two_names.c_str(), folder.path("names").c_str()));
  chmod(to.c_str(), 0600);
  chmod(source.c_str(), 0644);
  const auto inode = stat_of(to).st_ino;
  const auto kept = stat_of(two_names).st_ino;
  EXPECT_TRUE(copy_file(source.c_str(), to.c_str()));
  EXPECT_TRUE(copy_file(source.c_str(), two_names.c_str()));
  EXPECT_EQ("newnew", read_file(to) + read_file(folder.path("names")));
  EXPECT_NE(inode, stat_of(to).st_ino);
  EXPECT_EQ(mode_t{0644}, stat_of(to).st_mode & 07777);
  EXPECT_EQ(kept, stat_of(two_names).st_ino);
  umount2(folder.path().c_str(), MNT_DETACH);
}

TEST(PosixCopyFile, KeepsHolesAsHoles) {
  constexpr off_t kSize = 8 << 20;
  const TempFolder folder;
  const std::string from = folder.file("from", std::string(5000, 'a'));
  ASSERT_EQ(0, truncate(from.c_str(), kSize / 2));
  const int file = open(from.c_str(), O_WRONLY);
  ASSERT_EQ(1, pwrite(file, "b", 1, kSize / 2));
  close(file);
  ASSERT_EQ(0, truncate(from.c_str(), kSize));
  const std::string fresh = folder.path("fresh");
  const std::string full =
      folder.file("full", std::string(static_cast<size_t>(kSize) + 9, 'z'));
  for (const std::string& to : {fresh, full}) {
    ASSERT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ(read_file(from), read_file(to));
    EXPECT_LT(stat_of(to).st_blocks * 512, kSize / 4) << to;
  }
}

TEST(PosixCopyFile, RemovesTheTargetWhenTheSourceCannotBeRead) {
  const TempFolder folder;
  const std::string to = folder.path("to");
  EXPECT_FALSE(copy_file("/proc/self/mem", to.c_str()));
  EXPECT_FALSE(exists(to.c_str()));
}

}  // namespace
}  // namespace zenfo::platform
