#include "files/preloader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "files/file_content.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::TempFolder;

class PreloaderTest : public testing::TestWithParam<size_t> {
 protected:
  // Adds a file of these bytes.
  void add(Preloader& loader, std::string_view bytes) {
    add_path(loader, folder.file(std::to_string(number_++), bytes));
  }
  static void add_path(Preloader& loader, const std::string& path) {
    const SharedText text{std::string_view(path)};
    loader.add({&text, 1});
  }
  static std::string_view bytes(const PreloadedFile& file) {
    return {file.bytes.data(), file.size};
  }
  TempFolder folder;

 private:
  int number_ = 0;
};

// Without threads the user loads everything.
INSTANTIATE_TEST_SUITE_P(Threads, PreloaderTest, testing::Values(0, 1, 2, 7));

TEST_P(PreloaderTest, GivesTheFilesInTheirOrder) {
  Preloader loader(GetParam());
  EXPECT_EQ(loader.threads(), GetParam());
  int added = 0;
  for (int taken = 0; taken < 500; ++taken) {
    while (loader.waiting() < Preloader::kMostWaiting && added < 500) {
      add(loader, "text " + std::to_string(added++));
    }
    const std::string path = loader.next_path();
    const PreloadedFile& file = loader.take();
    EXPECT_EQ(file.path, path);
    ASSERT_TRUE(file.done) << file.path;
    EXPECT_EQ(bytes(file), "text " + std::to_string(taken));
    EXPECT_GT(file.bytes.capacity(), file.size);
    EXPECT_EQ(file.stamp.version.size, file.size);
  }
  EXPECT_EQ(loader.waiting(), 0u);
}

TEST_P(PreloaderTest, LeavesToTheUserWhatItCannotLoad) {
  Preloader loader(GetParam());
  add(loader, "");
  add_path(loader, folder.path("missing"));
  add_path(loader, folder.path());
  add_path(loader, "");
  add(loader, std::string(FileContent::kLargestTaken + 1, 'x'));
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(loader.take().done) << i;
  add(loader, std::string(FileContent::kLargestTaken, 'x'));
  EXPECT_TRUE(loader.take().done);
}

TEST_P(PreloaderTest, ForgetsFilesThatAreNotWanted) {
  Preloader loader(GetParam());
  for (int round = 0; round < 50; ++round) {
    for (int i = 0; i < 20; ++i) add(loader, "old");
    loader.drop();
    EXPECT_EQ(loader.waiting(), 0u);
    add(loader, "new");
    EXPECT_EQ(bytes(loader.take()), "new");
  }
}

#ifndef _WIN32
TEST_P(PreloaderTest, HasNothingOpenWhileItRests) {
  const auto open_files = [] {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::distance(begin(all), end(all));
  };
  const auto before = open_files();
  Preloader loader(GetParam());
  for (int i = 0; i < 50; ++i) add(loader, "text");
  for (int i = 0; i < 30; ++i) loader.take();
  {
    const Preloader::Rest rest(loader);
    EXPECT_EQ(open_files(), before);
  }
  for (int i = 0; i < 20; ++i) EXPECT_EQ(bytes(loader.take()), "text");
}
#endif

TEST_P(PreloaderTest, EndsWithFilesThatNobodyTook) {
  for (int round = 0; round < 20; ++round) {
    Preloader loader(GetParam());
    for (int i = 0; i < 30; ++i) add(loader, "text");
  }
}

}  // namespace
}  // namespace zenfo
