// Wide texts: the buffer, the conversion, its limits.
#include "platform/wide_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace zenfo::platform {
namespace {

using WideString = std::basic_string<WideChar>;

class WideText : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(nullptr, buffer_.get());
    std::fill_n(buffer_.get(), kWideBufferLength, WideChar{'?'});
  }
  WideString convert(const std::string& text) {
    to_wide(text.c_str(), buffer_.get());
    return buffer_.get();
  }
  static WideString widened(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
  }

  const std::unique_ptr<WideChar, void (*)(WideChar*)> buffer_{
      allocate_wide_buffer(), free_wide_buffer};
};

TEST(WideBuffer, BeginsEmptyAndIsFreedEvenWhenNull) {
  WideChar* buffer = allocate_wide_buffer();
  ASSERT_NE(nullptr, buffer);
  EXPECT_EQ(0, buffer[0]);
  buffer[kWideBufferLength - 1] = 'x';  // all of it can be written
  free_wide_buffer(buffer);
  free_wide_buffer(nullptr);
}

TEST_F(WideText, ConvertsAscii) {
  EXPECT_EQ(widened("Now loading file C:\\a.txt"),
            convert("Now loading file C:\\a.txt"));
  EXPECT_EQ(WideString(), convert(""));
}

TEST_F(WideText, TakesATextThatJustFits) {
  const std::string text(kWideBufferLength - 1, 'x');
  EXPECT_EQ(widened(text), convert(text));
}

TEST_F(WideText, EndsInItsLastPlaceWhenTheTextDoesNotFit) {
  for (const size_t length : {kWideBufferLength, size_t{100000}}) {
    convert(std::string(length, 'x'));
    EXPECT_EQ(0, buffer_.get()[kWideBufferLength - 1]);
    EXPECT_EQ(WideChar{'x'}, buffer_.get()[kWideBufferLength - 2]);
  }
}

#ifndef _WIN32
TEST_F(WideText, ConvertsUtf8) {
  EXPECT_EQ(u"\u00E4", convert("\xC3\xA4"));
  EXPECT_EQ(u"\u20ACx", convert("\xE2\x82\xACx"));
  EXPECT_EQ(u"\U0001F600x", convert("\xF0\x9F\x98\x80x"));
  EXPECT_EQ(u"\u007F\u0080", convert("\x7F\xC2\x80"));
  EXPECT_EQ(u"\u07FF\u0800", convert("\xDF\xBF\xE0\xA0\x80"));
  EXPECT_EQ(u"\uFFFF\U00010000", convert("\xEF\xBF\xBF\xF0\x90\x80\x80"));
  EXPECT_EQ(u"\uD7FF\uE000", convert("\xED\x9F\xBF\xEE\x80\x80"));
  EXPECT_EQ(u"\U0010FFFF", convert("\xF4\x8F\xBF\xBF"));
}

TEST_F(WideText, GivesBytesThatAreNoUtf8TheirOwnNumber) {
  for (const std::string& text :
       {std::string("\x80"), std::string("\xE4\xF6\xFC"),  // Latin-1
        std::string("\xC3"), std::string("\xE2\x82"),      // cut off
        std::string("\xF0\x9F\x98"), std::string("\xC3x"),
        std::string("\xC0\x80"), std::string("\xC1\xBF"),  // overlong
        std::string("\xE0\x9F\xBF"), std::string("\xF0\x8F\xBF\xBF"),
        std::string("\xED\xA0\x80"), std::string("\xED\xBF\xBF"),  // surrogates
        std::string("\xF4\x90\x80\x80"), std::string("\xF8\x88\x80\x80\x80"),
        std::string("\xFE\xFF")}) {
    std::u16string expected;
    for (const char c : text) expected += static_cast<unsigned char>(c);
    EXPECT_EQ(expected, convert(text));
  }
}

TEST_F(WideText, NeverKeepsHalfAPair) {
  const std::string filler(kWideBufferLength - 2, 'x');
  EXPECT_EQ(widened(filler), convert(filler + "\xF0\x9F\x98\x80"));
  EXPECT_EQ(0, buffer_.get()[kWideBufferLength - 1]);
  const std::string shorter(kWideBufferLength - 3, 'x');
  EXPECT_EQ(widened(shorter) + u"\U0001F600",
            convert(shorter + "\xF0\x9F\x98\x80"));
}
#endif

}  // namespace
}  // namespace zenfo::platform
