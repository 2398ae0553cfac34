#include "platform/flush_set.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using zenfo::test::TempFolder;

TEST(FlushSet, NothingIsFlushedAtOnce) {
  FlushSet set;
  EXPECT_TRUE(set.flush());
}

TEST(FlushSet, FilesAreFlushedAndForgotten) {
  const TempFolder folder;
  FlushSet set;
  set.add(folder.file("one", "1").c_str());
  set.add(folder.file("two", "2").c_str());
  EXPECT_TRUE(set.flush());
  EXPECT_TRUE(set.flush());
}

TEST(FlushSet, AFileThatIsGoneNeedsNoFlush) {
  const TempFolder folder;
  FlushSet set;
  set.add(folder.path("none").c_str());
  set.add(folder.file("one", "1").c_str());
  EXPECT_TRUE(set.flush());
}

}  // namespace
}  // namespace zenfo::platform
