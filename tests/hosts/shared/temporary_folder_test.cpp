#include "shared/system/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "shared/system/paths.h"
#include "support/temp_folder.h"

namespace zenfo::host {
namespace {

namespace fs = std::filesystem;

TEST(TemporaryFolder, HoldsEmptyFilesUntilItIsRemoved) {
  const fs::path one = to_path(temporary_folder::make_file());
  const fs::path other = to_path(temporary_folder::make_file());
  EXPECT_NE(one, other);
  EXPECT_EQ(one.parent_path(), other.parent_path());
  EXPECT_EQ(fs::file_size(one), 0u);
  temporary_folder::remove();
  EXPECT_FALSE(fs::exists(one.parent_path()));
}

TEST(TemporaryFolder, HasANewNameEachTime) {
  const fs::path one = to_path(temporary_folder::make_file());
  temporary_folder::remove();
  const fs::path other = to_path(temporary_folder::make_file());
  temporary_folder::remove();
  EXPECT_NE(one.parent_path(), other.parent_path());
}

}  // namespace
}  // namespace zenfo::host
