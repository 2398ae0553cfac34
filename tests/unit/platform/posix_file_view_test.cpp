#include "platform/file_view.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/posix/bus_guard.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::read_file;
using test::TempFolder;

const size_t kPage = static_cast<size_t>(sysconf(_SC_PAGESIZE));

std::string pattern_of(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251 + 1);
  return bytes;
}

class PosixFileViewTest : public testing::Test {
 protected:
  void open(const std::string& bytes) {
    path = folder.file("f", bytes);
    ASSERT_TRUE(file.open(path.c_str()));
    ASSERT_TRUE(view.open(file, bytes.size()));
    size = bytes.size();
  }
  std::string_view bytes() { return {view.data(), size}; }

  TempFolder folder;
  std::string path;
  InputFile file;
  FileView view;
  size_t size = 0;
};

struct sigaction bus_handler() {
  struct sigaction handler;
  sigaction(SIGBUS, nullptr, &handler);
  return handler;
}

TEST_F(PosixFileViewTest, ShowsTheBytesAndOneAfterThem) {
  for (const size_t length :
       {size_t{1}, kPage - 1, kPage, kPage + 1, size_t{5} << 20}) {
    const std::string expected = pattern_of(length);
    open(expected);
    EXPECT_TRUE(view.fill(0, length));
    EXPECT_TRUE(bytes() == expected) << length;
    EXPECT_EQ(view.data()[length], '\0') << length;
    view.data()[length] = 'x';
  }
}

TEST_F(PosixFileViewTest, WritingToItLeavesTheFileAlone) {
  const std::string original = pattern_of(2 * kPage);
  open(original);
  view.data()[0] = 'x';
  view.data()[kPage] = 'x';
  view.close();
  EXPECT_FALSE(view.is_open());
  EXPECT_TRUE(read_file(path) == original);
}

TEST_F(PosixFileViewTest, CannotFillWhatTheFileNoLongerHas) {
  open(pattern_of(size_t{6} << 20));
  EXPECT_TRUE(view.fill(0, 100));
  EXPECT_FALSE(view.lost());
  std::filesystem::resize_file(path, kPage);
  EXPECT_FALSE(view.fill(100, size));
  EXPECT_TRUE(view.lost());
  open(pattern_of(kPage));
  EXPECT_FALSE(view.lost()) << "of a file viewed before";
}

TEST_F(PosixFileViewTest, SaysWhenZerosStandForWhatWasUsed) {
  open(pattern_of(4 * kPage));
  FileView other;
  ASSERT_TRUE(other.open(file, size));
  std::filesystem::resize_file(path, 2 * kPage);
  EXPECT_EQ(view.data()[0], '\x1');
  EXPECT_FALSE(view.lost());
  EXPECT_EQ(view.data()[3 * kPage], '\0');
  EXPECT_TRUE(view.lost());
  EXPECT_FALSE(other.lost());
}

TEST_F(PosixFileViewTest, FillsFromWhereItIsAskedTo) {
  open(pattern_of(size_t{6} << 20));
  EXPECT_TRUE(view.fill(size - 10, size));
  EXPECT_EQ(view.data()[size - 1], static_cast<char>((size - 1) % 251 + 1));
}

TEST_F(PosixFileViewTest, IsNotToBeHadForWhatIsNoOrdinaryFile) {
  ASSERT_TRUE(file.open(folder.path().c_str()));
  EXPECT_FALSE(view.open(file, kPage));
  EXPECT_FALSE(view.is_open());
}

TEST_F(PosixFileViewTest, WhatAFileLosesReadsAsZeros) {
  const std::string original = pattern_of(8 * kPage);
  open(original);
  ASSERT_TRUE(view.fill(0, size));
  std::filesystem::resize_file(path, 3 * kPage);
  const std::string expected =
      original.substr(0, 3 * kPage) + std::string(5 * kPage, '\0');
  EXPECT_TRUE(bytes() == expected);
  view.data()[size] = 'x';
  view.data()[size - 1] = 'x';
}

TEST_F(PosixFileViewTest, SeveralViewsAreGuardedAtATime) {
  open(pattern_of(4 * kPage));
  FileView other;
  ASSERT_TRUE(other.open(file, size));
  std::filesystem::resize_file(path, 0);
  EXPECT_EQ(other.data()[kPage], '\0');
  other.close();
  EXPECT_EQ(view.data()[kPage], '\0');
}

TEST_F(PosixFileViewTest, ThereIsNoViewBeyondThoseThatCanBeGuarded) {
  open(pattern_of(4 * kPage));
  FileView others[16];
  for (int i = 0; i < 15; ++i) EXPECT_TRUE(others[i].open(file, size)) << i;
  EXPECT_FALSE(others[15].open(file, size));
  others[3].close();
  EXPECT_TRUE(others[15].open(file, size));
}

TEST_F(PosixFileViewTest, TheHandlerIsThereWhileItIsNeeded) {
  const struct sigaction before = bus_handler();
  open(pattern_of(kPage));
  FileView other;
  ASSERT_TRUE(other.open(file, size));
  EXPECT_NE(bus_handler().sa_sigaction, before.sa_sigaction);
  view.close();
  EXPECT_NE(bus_handler().sa_sigaction, before.sa_sigaction);
  other.close();
  EXPECT_EQ(bus_handler().sa_sigaction, before.sa_sigaction);
}

TEST_F(PosixFileViewTest, AHandlerPutInItsPlaceStays) {
  const struct sigaction before = bus_handler();
  open(pattern_of(kPage));
  ::signal(SIGBUS, SIG_IGN);
  view.close();
  EXPECT_EQ(bus_handler().sa_handler, SIG_IGN);
  sigaction(SIGBUS, &before, nullptr);
}

// Causes a fault in a mapping that is not a view.
void touch_lost_page(const TempFolder& folder) {
  const std::string path = folder.file("lost", "x");
  InputFile file;
  file.open(path.c_str());
  FileView view;
  view.open(file, 1);
  auto* lost = view.data();
  release_range(lost);
  std::filesystem::resize_file(path, 0);
  const volatile char* byte = lost;
  static_cast<void>(*byte);
}

using PosixFileViewDeathTest = PosixFileViewTest;

TEST_F(PosixFileViewDeathTest, FaultsElsewhereStillEndTheProcess) {
  open(pattern_of(kPage));
  EXPECT_EXIT(
      {
        ::signal(SIGBUS, SIG_DFL);  // a sanitizer may have its own
        view.close();
        open(pattern_of(kPage));
        touch_lost_page(folder);
      },
      testing::KilledBySignal(SIGBUS), "");
}

TEST_F(PosixFileViewDeathTest, ASignalThatIsSentStillEndsTheProcess) {
  EXPECT_EXIT(
      {
        ::signal(SIGBUS, SIG_DFL);
        open(pattern_of(kPage));
        raise(SIGBUS);
      },
      testing::KilledBySignal(SIGBUS), "");
}

TEST_F(PosixFileViewDeathTest, FaultsElsewhereGoToTheHostsHandler) {
  EXPECT_EXIT(
      {
        ::signal(SIGBUS, [](int) { _exit(7); });
        open(pattern_of(kPage));
        touch_lost_page(folder);
      },
      testing::ExitedWithCode(7), "");
  EXPECT_EXIT(
      {
        struct sigaction handler = {};
        handler.sa_flags = SA_SIGINFO;
        handler.sa_sigaction = [](int, siginfo_t* info, void*) {
          _exit(info->si_code > 0 ? 8 : 9);
        };
        sigaction(SIGBUS, &handler, nullptr);
        open(pattern_of(kPage));
        touch_lost_page(folder);
      },
      testing::ExitedWithCode(8), "");
}

struct sigaction found_by_host;

// The host installs its handler later and passes signals on to the previous
// one.
TEST_F(PosixFileViewDeathTest, HandlersThatPassOnToEachOtherEnd) {
  EXPECT_EXIT(
      {
        ::signal(SIGBUS, SIG_DFL);
        open(pattern_of(kPage));
        struct sigaction handler = {};
        handler.sa_flags = SA_SIGINFO;
        handler.sa_sigaction = [](int number, siginfo_t* info, void* context) {
          found_by_host.sa_sigaction(number, info, context);
        };
        sigaction(SIGBUS, &handler, &found_by_host);
        view.close();
        open(pattern_of(kPage));  // finds the host's
        touch_lost_page(folder);
      },
      testing::KilledBySignal(SIGBUS), "");
}

}  // namespace
}  // namespace zenfo::platform
