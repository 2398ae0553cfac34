#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "shared/system/temporary_folder.h"
#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

namespace fs = std::filesystem;

class PosixTemporaryFolder : public ::testing::Test {
 protected:
  PosixTemporaryFolder() { setenv("TMPDIR", parent_.path().c_str(), 1); }
  ~PosixTemporaryFolder() override {
    temporary_folder::remove();
    unsetenv("TMPDIR");
  }

  static mode_t mode_of(const fs::path& path) {
    struct stat facts {};
    stat(path.c_str(), &facts);
    return facts.st_mode & 07777;
  }
  size_t folders() const {
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         fs::directory_iterator(parent_.path())) {
      ++count;
    }
    return count;
  }
  // Starts another process that makes a file and lives until it is killed.
  static pid_t start_other() {
    int ends[2];
    if (pipe(ends) != 0) return -1;
    const pid_t other = fork();
    if (other == 0) {
      temporary_folder::make_file();
      close(ends[1]);
      for (;;) pause();
    }
    close(ends[1]);
    char byte;
    static_cast<void>(!read(ends[0], &byte, 1));
    close(ends[0]);
    return other;
  }
  static void kill_other(pid_t other) {
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
  }

  test::TempFolder parent_;
};

TEST_F(PosixTemporaryFolder, IsTheUsersAlone) {
  const mode_t before = umask(0);
  const fs::path file = temporary_folder::make_file();
  umask(before);
  EXPECT_EQ(file.parent_path().parent_path(), parent_.path());
  EXPECT_EQ(mode_of(file.parent_path()), mode_t{0700});
  EXPECT_EQ(mode_of(file), mode_t{0600});
}

TEST_F(PosixTemporaryFolder, OfAKilledProcessIsRemovedByTheNext) {
  kill_other(start_other());
  ASSERT_EQ(folders(), 1u);
  temporary_folder::make_file();
  EXPECT_EQ(folders(), 1u);
  temporary_folder::remove();
  EXPECT_EQ(folders(), 0u);
}

// Without this, folders whose process ended before it locked them would stay
// forever.
TEST_F(PosixTemporaryFolder, WithoutALockIsRemovedWhenItIsOldAndEmpty) {
  for (const char* name : {"zenfo-OLDOLD", "zenfo-NEWNEW", "zenfo-FULLUP"}) {
    fs::create_directory(parent_.path(name));
  }
  parent_.file("zenfo-FULLUP/mine", "");
  const auto old = fs::file_time_type::clock::now() - std::chrono::hours(1);
  fs::last_write_time(parent_.path("zenfo-OLDOLD"), old);
  fs::last_write_time(parent_.path("zenfo-FULLUP"), old);
  temporary_folder::make_file();
  temporary_folder::remove();
  EXPECT_FALSE(fs::exists(parent_.path("zenfo-OLDOLD")));
  EXPECT_TRUE(fs::exists(parent_.path("zenfo-NEWNEW")));
  EXPECT_TRUE(fs::exists(parent_.path("zenfo-FULLUP/mine")));
}

TEST_F(PosixTemporaryFolder, OfALivingProcessStays) {
  const pid_t other = start_other();
  temporary_folder::make_file();
  EXPECT_EQ(folders(), 2u);
  temporary_folder::remove();
  EXPECT_EQ(folders(), 1u);
  kill_other(other);
}

TEST_F(PosixTemporaryFolder, TakesNothingElseForItsOwn) {
  parent_.file("zenfo-backup/mine", "");
  parent_.file("zenfo-abcdef", "");
  parent_.file("real/mine", "");
  parent_.file("real/zenfo.lock", "");
  fs::create_directory_symlink("real", parent_.path("zenfo-ABCDEF"));
  temporary_folder::make_file();
  temporary_folder::remove();
  EXPECT_EQ(folders(), 4u);
  EXPECT_TRUE(fs::exists(parent_.path("real/mine")));
  EXPECT_TRUE(fs::exists(parent_.path("zenfo-backup/mine")));
}

TEST_F(PosixTemporaryFolder, LiesElsewhereWhenItsPlaceIsGone) {
  setenv("TMPDIR", parent_.path("nowhere").c_str(), 1);
  EXPECT_TRUE(fs::exists(temporary_folder::make_file()));
}

}  // namespace
}  // namespace zenfo::host
