#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "library.h"
#include "support/temp_folder.h"

namespace zenfo::cli {
namespace {

TEST(Session, ComplainsOnceAboutWhatTheLibraryNoted) {
  const test::TempFolder folder;
  setenv("TMPDIR", folder.path().c_str(), 1);
  {
    Session session;
    session.append_paths({"/some/file"});
    SetFullName(ZENFO_LIST_FILES, 0, "");  // refused and logged
    testing::internal::CaptureStderr();
    session.complain_about_errors();
    session.complain_about_errors();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zenfo: SetFullName: The text pointer is NULL "
              "(Getting parameters)\n");
    EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  unsetenv("TMPDIR");
}

TEST(Session, EntersPathsAsTheyAre) {
  Session session;
  session.append_paths({"b", "a;*", "b"});
  session.append_paths({"c"});
  ASSERT_EQ(session.count(), 4u);
  EXPECT_EQ(session.full_name(0), "b");
  EXPECT_EQ(session.full_name(1), "a;*");
  EXPECT_EQ(session.full_name(2), "b");
  EXPECT_EQ(session.full_name(3), "c");
}

}  // namespace
}  // namespace zenfo::cli
