#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "files/file_entry.h"
#include "library/library.h"
#include "support/error_records.h"
#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

TEST(EntryTimes, OnlyTheCreationTimeIsLoggedWhenItCannotBeShown) {
  test::TempFolder folder;
  const std::string log = folder.path("errors");
  ASSERT_EQ(Initialize(), 1);
  ASSERT_EQ(SetErrorFile(log.c_str()), 1);
  auto entry = std::make_unique<FileEntry>(SharedText("/a"));
  entry->facts.creation_time = entry->facts.access_time =
      entry->facts.write_time = uint64_t{1} << 63;
  library().other_files->append(std::move(entry));

  char buffer[64] = "#";
  for (const auto accessor : {GetATime, GetMTime}) {
    EXPECT_EQ(accessor(0, 0, buffer, 0), -1);
    EXPECT_STREQ(buffer, "");
  }
  EXPECT_FALSE(test::file_exists(log));
  EXPECT_EQ(GetCTime(ZENFO_LIST_OTHER_FILES, 0, buffer, 0), -1);
  EXPECT_STREQ(buffer, "");
  const std::vector<test::ErrorRecord> records = {
      {"Getting local time failed", "Getting local time", "GetCTime"}};
  EXPECT_EQ(test::read_error_records(log), records);
  Terminate();
}

}  // namespace
}  // namespace zenfo
