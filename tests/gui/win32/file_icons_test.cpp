#include "gui/win32/list/file_icons.h"

#include <gtest/gtest.h>

#include <semaphore>
#include <string>

namespace zenfo::host::gui::win32 {
namespace {

class Icons : public testing::Test {
 protected:
  Icons() {
    icons_.on_new = [this] { ++news_; };
  }
  void finish() {
    while (icons_.waiting()) {
      ended_.acquire();
      icons_.finish();
    }
  }

  std::counting_semaphore<> ended_{0};
  int news_ = 0;
  FileIcons icons_{[this] { ended_.release(); }};
};

TEST_F(Icons, ComeLaterAndStay) {
  EXPECT_FALSE(icons_.waiting());
  EXPECT_EQ(icons_.find("txt"), nullptr);
  EXPECT_TRUE(icons_.waiting());
  EXPECT_EQ(icons_.find("exe"), nullptr);  // while the other is fetched
  finish();
  EXPECT_EQ(news_, 2);
  const HICON icon = icons_.find("TXT");
  EXPECT_NE(icon, nullptr);
  EXPECT_EQ(icons_.find("txt"), icon);
  EXPECT_NE(icons_.find("exe"), nullptr);
  EXPECT_FALSE(icons_.waiting());
}

TEST_F(Icons, OfVeryManyExtensionsAreNotFetched) {
  for (int i = 0; i < 400; ++i) icons_.find(std::to_string(i));
  finish();
  EXPECT_NE(icons_.find("299"), nullptr);
  EXPECT_EQ(icons_.find("399"), nullptr);
  EXPECT_FALSE(icons_.waiting());
}

}  // namespace
}  // namespace zenfo::host::gui::win32
