#include "gui/text/file_part.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

TEST(FilePart, ReadsAnyPart) {
  const test::TempFolder folder;
  std::string text;
  for (int i = 0; i < 60'000; ++i) text += std::to_string(i);
  const std::string path = folder.file("a", text);
  FilePart file;
  ASSERT_TRUE(file.open(path));
  EXPECT_EQ(file.size(), text.size());
  std::mt19937 random(5);
  for (int step = 0; step < 300; ++step) {
    const size_t offset = random() % (text.size() + 10);
    const size_t length = random() % (step % 3 == 0 ? 200'000 : 100);
    const std::string expected =
        offset < text.size() ? text.substr(offset, length) : "";
    ASSERT_EQ(file.read(offset, length), expected) << offset << ' ' << length;
  }
}

TEST(FilePart, AFileThatShrinksHasFewerBytes) {
  const test::TempFolder folder;
  const std::string path = folder.file("a", std::string(300'000, 'x'));
  FilePart file;
  ASSERT_TRUE(file.open(path));
  std::filesystem::resize_file(test::native(path), 10);
  EXPECT_EQ(file.read(0, 20), std::string(10, 'x'));
  EXPECT_EQ(file.read(200'000, 20), "");
}

TEST(FilePart, OnlyFilesCanBeOpened) {
  const test::TempFolder folder;
  FilePart file;
  EXPECT_FALSE(file.open(folder.path("none")));
  ASSERT_TRUE(file.open(folder.file("empty", "")));
  EXPECT_EQ(file.read(0, 5), "");
}

}  // namespace
}  // namespace zenfo::host::gui
