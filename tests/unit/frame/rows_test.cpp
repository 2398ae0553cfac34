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

// Operations that empty a list or start the library again must not run inside
// another operation.
TEST(Rows, WhatDestroysRecordsWantsTheLibraryAlone) {
  for (const ExportRow* row : {&row::Initialize, &row::Terminate, &row::Clear,
                               &row::FindFiles, &row::AddFileToList}) {
    EXPECT_EQ(row->access, Access::kAlone) << row->routine;
  }
}

// All operations that a host may call inside its callbacks.
TEST(Rows, OperationsThatReadMayRunInsideOthers) {
  // clang-format off
  const std::set<std::string> expected = {
    "SaveFileList", "SaveResultFileList", "GetFilename", "GetFullName",
    "SetFullName", "GetDirectory", "GetType", "GetCTime", "GetATime",
    "GetMTime", "GetSize", "GetAttributes", "SetCallBacks", "SetState",
    "GetState", "GetFlag", "IsTrashed", "GetCount", "GetFileFlagCount",
    "Refresh", "SaveSelection", "GetSizeSelection", "GetSizeTotal",
    "FindInList", "GetIcon", "CopyToClipboard", "UpdateStringPair",
    "SaveStringPair", "GetFindString", "GetReplaceString", "SetUndoFile",
    "SetErrorFile", "GetOrigFile", "GetSafeFile", "GetSafeTime",
    "GetMatchOffset", "GetMatchLength", "GetMatchText", "GetDisplayLineCount",
    "GetDisplayWidth", "GetDisplayTopLine", "HighlightGroup", "PaintDisplay",
    "GetDisplayPageLines", "GetDisplayLeftColumn", "HitTestDisplay",
    "RepaintDisplay", "PrepareDisplay", "ClearHighlight", "MarkGroups",
    "save_replace_list", "get_replace_value", "GetMatchReplace",
    "get_match_flag", "ResetDisplay", "SetBytesPerLine", "GetBytesPerLine",
    "save_occurrences", "SetDisplayWindow", "GetDisplayScrollPos",
    "GetDisplayScrollTrackPos", "GetLineSeparator",
  };
  // clang-format on
  std::set<std::string> shared;
  for (const ExportRow& row : kExportRows) {
    if (row.access == Access::kShared) shared.insert(row.routine);
  }
  EXPECT_EQ(shared, expected);
}

}  // namespace
}  // namespace zenfo
