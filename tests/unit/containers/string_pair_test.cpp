#include "containers/string_pair.h"

#include <gtest/gtest.h>

namespace zenfo {
namespace {

using namespace std::string_view_literals;

TEST(StringPair, KeepsEmptyTextsAsMissing) {
  StringPair pair("find", "");
  EXPECT_EQ(pair.text(TextSlot::kFirst), "find");
  EXPECT_EQ(pair.text(TextSlot::kSecond), std::nullopt);
  EXPECT_EQ(pair.text(TextSlot::kThird), std::nullopt);
  pair.set("", "a\0b"sv);
  EXPECT_EQ(pair.text(TextSlot::kFirst), std::nullopt);
  EXPECT_EQ(pair.text(TextSlot::kSecond), "a\0b"sv);
  EXPECT_EQ(pair.state, 0u);
  EXPECT_EQ(record_cast<StringPair>(static_cast<Record*>(&pair)), &pair);
}

TEST(ReplaceValue, HasAFirstTextOnly) {
  ReplaceValue value("v");
  EXPECT_EQ(value.text(TextSlot::kFirst), "v");
  EXPECT_EQ(value.text(TextSlot::kSecond), std::nullopt);
  EXPECT_EQ(ReplaceValue("").text(TextSlot::kFirst), std::nullopt);
  EXPECT_EQ(value.state, 0u);
  EXPECT_EQ(record_cast<StringPair>(static_cast<Record*>(&value)), nullptr);
}

}  // namespace
}  // namespace zenfo
