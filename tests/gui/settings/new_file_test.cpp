#include "gui/settings/new_file.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

class NewFiles : public testing::Test {
 protected:
  const test::TempFolder folder_;
  const std::string path_ = folder_.path("new/out.csv");
};

TEST_F(NewFiles, ReplaceTheOldOneWhenTheyAreComplete) {
  folder_.file("new/out.csv", "old");
  NewFile file(path_);
  ASSERT_TRUE(file.open());
  EXPECT_TRUE(file.write("one "));
  EXPECT_TRUE(file.write("two\n"));
  EXPECT_EQ(test::read_file(path_), "old");
  EXPECT_TRUE(file.put_in_place());
  EXPECT_EQ(test::read_file(path_), "one two\n");
  EXPECT_FALSE(test::file_exists(path_ + ".new"));
}

TEST_F(NewFiles, LeaveTheOldOneWhenTheyAreGivenUp) {
  folder_.file("new/out.csv", "old");
  {
    NewFile file(path_);
    ASSERT_TRUE(file.open());
    EXPECT_TRUE(file.write("half"));
  }
  EXPECT_EQ(test::read_file(path_), "old");
  EXPECT_FALSE(test::file_exists(path_ + ".new"));
}

TEST_F(NewFiles, MakeTheirFolders) {
  std::string reason;
  EXPECT_TRUE(replace_file(path_, "x", &reason));
  EXPECT_EQ(test::read_file(path_), "x");
}

TEST_F(NewFiles, SayWhyTheyCannotBeWritten) {
  std::string reason;
  folder_.file("file", "");
  EXPECT_FALSE(replace_file(folder_.path("file/below"), "x", &reason));
  EXPECT_NE(reason, "");
  reason.clear();
  folder_.folder("taken/x");
  EXPECT_FALSE(replace_file(folder_.path("taken"), "x", &reason));
  EXPECT_NE(reason, "");
  EXPECT_FALSE(test::file_exists(folder_.path("taken.new")));
}

}  // namespace
}  // namespace zenfo::host::gui
