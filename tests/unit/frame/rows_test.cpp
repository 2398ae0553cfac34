#include "frame/rows.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace zenfo {
namespace {

TEST(Rows, EachConstantIsItsRowOfTheTable) {
  EXPECT_EQ(row::FindFiles.ordinal, 3);
  EXPECT_STREQ(row::FindFiles.routine, "FindFiles");
  EXPECT_EQ(row::FindFiles.arguments, 4);
  EXPECT_EQ(row::FindFiles.failure, -1);
  EXPECT_EQ(row::FindFiles.log, FaultLog::kLogged);
  EXPECT_EQ(row::FindFiles.access, Access::kAlone);
  EXPECT_EQ(row::Clear.failure, 0);
  EXPECT_EQ(row::get_match_flag.ordinal, 107);
  EXPECT_EQ(row::get_match_flag.access, Access::kShared);
}

TEST(Rows, TheTableHoldsEachOrdinalAndNameOnce) {
  std::set<int> ordinals;
  std::set<std::string> names;
  for (const ExportRow& row : kExportRows) {
    EXPECT_TRUE(ordinals.insert(row.ordinal).second) << row.routine;
    EXPECT_TRUE(names.insert(row.routine).second) << row.routine;
  }
}

// Whatever empties a list or starts the library anew must not run inside
// another operation.
TEST(Rows, WhatDestroysRecordsWantsTheLibraryAlone) {
  for (const ExportRow* row : {&row::Initialize, &row::Terminate, &row::Clear,
                               &row::FindFiles, &row::AddFileToList}) {
    EXPECT_EQ(row->access, Access::kAlone) << row->routine;
  }
}

}  // namespace
}  // namespace zenfo
