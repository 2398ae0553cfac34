#include "platform/file_view.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

#ifdef _WIN32
constexpr bool kHasViews = false;
#else
constexpr bool kHasViews = true;
#endif

TEST(FileView, IsToBeHadNativelyOnly) {
  const test::TempFolder folder;
  const std::string path = folder.file("f", "text");
  InputFile file;
  ASSERT_TRUE(file.open(path.c_str()));
  FileView view;
  ASSERT_EQ(view.open(file, 4), kHasViews);
  ASSERT_EQ(view.is_open(), kHasViews);
  EXPECT_EQ(view.fill(0, 4), kHasViews);
  if (view.is_open()) {
    EXPECT_EQ(std::string_view(view.data(), 4), "text");
  }
  view.close();
  EXPECT_FALSE(view.is_open());
}

}  // namespace
}  // namespace zenfo::platform
