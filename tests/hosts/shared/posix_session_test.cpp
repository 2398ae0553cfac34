#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "shared/session/session.h"
#include "support/host_messages.h"
#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

TEST(Session, ComplainsOnceAboutWhatTheLibraryNoted) {
  const test::TempFolder folder;
  setenv("TMPDIR", folder.path().c_str(), 1);
  {
    test::KeptMessages messages;
    test::NoProgress progress;
    Session session(messages, progress);
    session.append_paths({"/some/file"});
    SetFullName(ZENFO_LIST_RUN_FILES, 0, "");  // refused and logged
    session.complain_about_errors();
    session.complain_about_errors();
    EXPECT_EQ(messages.all(),
              std::vector<std::string>({"SetFullName: The text pointer is NULL "
                                        "(Getting parameters)"}));
    EXPECT_FALSE(std::filesystem::is_empty(folder.path()));
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  unsetenv("TMPDIR");
}

TEST(Session, EntersPathsAsTheyAre) {
  test::KeptMessages messages;
  test::NoProgress progress;
  Session session(messages, progress);
  session.append_paths({"b", "a;*", "b"});
  session.append_paths({"c"});
  ASSERT_EQ(session.count(), 4u);
  EXPECT_EQ(session.full_name(0), "b");
  EXPECT_EQ(session.full_name(1), "a;*");
  EXPECT_EQ(session.full_name(2), "b");
  EXPECT_EQ(session.full_name(3), "c");
}

}  // namespace
}  // namespace zenfo::host
