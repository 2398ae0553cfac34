#include "undo/undo_record.h"

#include <gtest/gtest.h>

#include "containers/record.h"

namespace zenfo {
namespace {

// Otherwise Undo right after loading the undo list would restore nothing.
TEST(UndoRecord, IsSelectedFromTheStart) {
  EXPECT_EQ(UndoRecord(SharedText("a"), SharedText("b"), SharedText("c")).state,
            1u);
}

TEST(UndoRecord, ItsTextsAreOriginalSafeCopyAndTime) {
  const UndoRecord record(SharedText("original"), SharedText("copy"),
                          SharedText("time"));
  EXPECT_EQ(record.text(TextSlot::kFirst), "original");
  EXPECT_EQ(record.text(TextSlot::kSecond), "copy");
  EXPECT_EQ(record.text(TextSlot::kThird), "time");
}

TEST(UndoRecord, AMissingTextStaysMissing) {
  const UndoRecord record(SharedText("original"), SharedText(), SharedText(""));
  EXPECT_EQ(record.text(TextSlot::kSecond), std::nullopt);
  EXPECT_EQ(record.text(TextSlot::kThird), "");
}

TEST(UndoRecord, IsOfItsOwnKind) {
  UndoRecord record{SharedText(), SharedText(), SharedText()};
  Record* base = &record;
  EXPECT_EQ(base->kind(), RecordKind::kUndoRecord);
  EXPECT_EQ(record_cast<UndoRecord>(base), &record);
}

}  // namespace
}  // namespace zenfo
