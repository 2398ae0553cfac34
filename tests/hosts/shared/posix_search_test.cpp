#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "shared/session/search.h"
#include "shared/session/session.h"
#include "support/host_messages.h"
#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

// The class of all bytes comes from a temporary file.
TEST(Search, OfWholeFilesNeedsNoPlaceForTemporaryFiles) {
  const test::TempFolder temporary;
  const test::TempFolder folder;
  setenv("TMPDIR", temporary.path().c_str(), 1);
  test::KeptMessages messages;
  test::NoProgress progress;
  Session session(messages, progress);
  unsetenv("TMPDIR");
  std::error_code ignored;
  std::filesystem::remove_all(temporary.path(), ignored);

  session.append_paths({folder.file("a", "a plum, a plum"),
                        folder.file("b", "a plum\x01, a plum"),
                        folder.file("c", "a pear")});
  session.select_all(true);
  SearchOptions options;
  options.texts = {"plum"};
  ASSERT_TRUE(search_once_a_file(options));
  Search search(session, options);
  search.compile();
  EXPECT_EQ(search.run(nullptr), 3u);
  EXPECT_EQ(session.count(ZENFO_LIST_RESULT), 2u);
  EXPECT_EQ(session.count(ZENFO_LIST_NO_MATCH), 1u);
}

}  // namespace
}  // namespace zenfo::host
