#include "files/entry_ops.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "files/file_entry.h"
#include "support/error_records.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

TEST(EntryOps, OfTimesThatCannotBeShownOnlyTheCreationTimeIsLogged) {
  test::TempFolder folder;
  const std::string log = folder.path("errors");
  Library library;
  ASSERT_EQ(library.initialize(), 1);
  library.error_log->SetFile(log.c_str());
  auto entry = std::make_unique<FileEntry>(SharedText("/a"));
  entry->facts.creation_time = entry->facts.access_time =
      entry->facts.write_time = uint64_t{1} << 63;
  library.first_files->Append(std::move(entry));

  char buffer[64] = "#";
  for (const auto accessor : {get_atime, get_mtime}) {
    EXPECT_EQ(accessor(library, 0, 0, buffer, 0), -1);
    EXPECT_STREQ(buffer, "");
  }
  EXPECT_FALSE(test::file_exists(log));
  EXPECT_EQ(get_ctime(library, 0, 0, buffer, 0), -1);
  EXPECT_STREQ(buffer, "");
  const std::vector<test::ErrorRecord> records = {
      {"Getting local time failed", "Getting local time", "GetCTime"}};
  EXPECT_EQ(test::read_error_records(log), records);
  library.terminate();
}

}  // namespace
}  // namespace zenfo
