#include "gui/settings/settings_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

class SettingsFile : public testing::Test {
 protected:
  Settings load() {
    message_.clear();
    return load_settings(path_, &message_, &may_write_);
  }

  const test::TempFolder folder_;
  const std::string path_ = folder_.path("new/gui.json");
  std::string message_;
  bool may_write_ = false;
};

TEST_F(SettingsFile, IsWrittenAndRead) {
  Settings settings = load();
  EXPECT_EQ(message_, "");
  EXPECT_TRUE(may_write_);
  settings.font_size = 15;
  std::string reason;
  ASSERT_TRUE(save_settings(path_, settings, &reason)) << reason;
  EXPECT_EQ(load().font_size, 15);
  settings.font_size = 16;
  ASSERT_TRUE(save_settings(path_, settings, &reason)) << reason;
  EXPECT_EQ(load().font_size, 16);
  // Nothing is left beside it.
  int files = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(test::native(folder_.path("new")))) {
    files += entry.is_regular_file();
  }
  EXPECT_EQ(files, 1);
}

TEST_F(SettingsFile, ABrokenOneIsSetAside) {
  for (const std::string text : {"{\"font_size\": 15", "[]", ""}) {
    folder_.file("new/gui.json", text);
    EXPECT_EQ(load().font_size, Settings().font_size);
    EXPECT_NE(message_.find("they were kept as " + path_ + ".broken"),
              std::string::npos)
        << message_;
    EXPECT_TRUE(may_write_);
    EXPECT_EQ(test::read_file(path_ + ".broken"), text);
    EXPECT_FALSE(test::file_exists(path_));
  }
}

TEST_F(SettingsFile, OneThatCannotBeReadIsNotWritten) {
  folder_.folder("new/gui.json");
  EXPECT_EQ(load().font_size, Settings().font_size);
  EXPECT_NE(message_, "");
  EXPECT_FALSE(may_write_);
}

TEST_F(SettingsFile, MayBeginWithAByteOrderMark) {
  folder_.file("new/gui.json", "\xEF\xBB\xBF{\"font_size\": 15}");
  EXPECT_EQ(load().font_size, 15);
  EXPECT_EQ(message_, "");
}

TEST_F(SettingsFile, TheOldOneStaysWhenItCannotBeWritten) {
  std::string reason;
  folder_.folder("new/gui.json/x");
  EXPECT_FALSE(save_settings(path_, Settings(), &reason));
  EXPECT_NE(reason, "");
  EXPECT_FALSE(test::file_exists(path_ + ".new"));
}

}  // namespace
}  // namespace zenfo::host::gui
