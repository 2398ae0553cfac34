#include "gui/settings/column_order.h"

#include <gtest/gtest.h>

#include <vector>

namespace zenfo::host::gui {
namespace {

using Columns = std::vector<ColumnSetting>;

const Columns kKnown = {{"name", 100}, {"size", 50}, {"type", 40}};

TEST(ColumnOrder, IsThatOfTheKeptColumns) {
  EXPECT_EQ(ordered_columns(kKnown, {}), kKnown);
  const Columns kept = {{"name", 120}, {"type", 44}, {"size", 55}};
  EXPECT_EQ(ordered_columns(kKnown, kept), kept);
}

TEST(ColumnOrder, NewColumnsComeLastAndUnknownOnesAreLeftOut) {
  const Columns kept = {{"name", 120}, {"odd", 9}, {"type", 44}};
  const Columns expected = {{"name", 120}, {"type", 44}, {"size", 50}};
  EXPECT_EQ(ordered_columns(kKnown, kept), expected);
}

TEST(ColumnOrder, TheFirstColumnStaysFirst) {
  const Columns kept = {{"size", 55}, {"name", 120}};
  const Columns expected = {{"name", 120}, {"size", 55}, {"type", 40}};
  EXPECT_EQ(ordered_columns(kKnown, kept), expected);
}

TEST(ColumnOrder, OddSettingsDoNoHarm) {
  const Columns kept = {{"type", 0}, {"type", 70}, {"name", 3}};
  const Columns expected = {
      {"name", kLeastColumn}, {"type", kLeastColumn}, {"size", 50}};
  EXPECT_EQ(ordered_columns(kKnown, kept), expected);
  EXPECT_TRUE(ordered_columns({}, kept).empty());
}

TEST(ColumnOrder, WhatIsNotKnownIsKept) {
  const Columns kept = {{"name", 120}, {"odd", 9}};
  const Columns expected = {
      {"name", 100}, {"size", 50}, {"type", 40}, {"odd", 9}};
  EXPECT_EQ(columns_to_keep(kKnown, kept), expected);
}

}  // namespace
}  // namespace zenfo::host::gui
