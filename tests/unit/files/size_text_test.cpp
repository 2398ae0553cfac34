#include "files/size_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <string>

namespace zenfo {
namespace {

TEST(SizeText, TakesKilobytesOnlyAboveOne) {
  EXPECT_EQ(size_text(0), "0 B");
  EXPECT_EQ(size_text(1), "1 B");
  EXPECT_EQ(size_text(1023), "1023 B");
  EXPECT_EQ(size_text(1024), "1024 B");
  EXPECT_EQ(size_text(1025), "1.0 KB");
  EXPECT_EQ(size_text(1536), "1.5 KB");
  EXPECT_EQ(size_text(5ull << 30), "5242880.0 KB");
}

std::string printed(uint64_t size) {
  char text[64];
  const double kilobytes = static_cast<double>(size) / 1024;
  std::snprintf(text, sizeof text, kilobytes > 1.0 ? "%01.1f KB" : "%01.0f B",
                kilobytes > 1.0 ? kilobytes : static_cast<double>(size));
  return text;
}

TEST(SizeText, IsWhatPrintfMakesOfKilobytes) {
  // All remainders of a kilobyte, with even and odd tenths before a tie.
  for (uint64_t size = 0; size < 8192; ++size) {
    ASSERT_EQ(size_text(size), printed(size));
  }
  uint64_t size = 1;
  for (int i = 0; i < 20000; ++i) {
    size = size * 6364136223846793005u + 1442695040888963407u;
    const uint64_t one = size >> (i % 64);
    ASSERT_EQ(size_text(one), printed(one)) << one;
  }
  for (const uint64_t edge : {uint64_t{1} << 53, UINT64_MAX}) {
    ASSERT_EQ(size_text(edge - 1), printed(edge - 1));
    ASSERT_EQ(size_text(edge), printed(edge));
  }
}

// Where neither name is known, the point stays.
TEST(SizeText, HasTheDecimalPointOfTheLocale) {
  for (const char* name : {"de_DE.UTF-8", "German"}) {
    std::setlocale(LC_NUMERIC, name);
    EXPECT_EQ(size_text(1536), printed(1536)) << name;
  }
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(size_text(1536), "1.5 KB");
}

struct TotalCase {
  double total;
  const char* short_text;
  const char* long_text;
};

TEST(TotalText, FallsToTheSmallerUnitAtEachBoundary) {
  const TotalCase cases[] = {
      {0, "0 B", "0 Bytes"},
      {1, "1 B", "1 Bytes"},
      {1024, "1024 B", "1024 Bytes"},
      {1025, "1.00 KB", "1.00 KB (1025 Bytes)"},
      {1536, "1.50 KB", "1.50 KB (1536 Bytes)"},
      {1048576, "1024.00 KB", "1024.00 KB (1048576 Bytes)"},
      {1048577, "1.00 MB", "1.00 MB (1048577 Bytes)"},
      {1073741824, "1024.00 MB", "1024.00 MB (1073741824 Bytes)"},
      {1610612736, "1.50 GB", "1.50 GB (1610612736 Bytes)"},
  };
  for (const TotalCase& c : cases) {
    EXPECT_EQ(short_total_text(c.total), c.short_text);
    EXPECT_EQ(long_total_text(c.total), c.long_text);
  }
}

}  // namespace
}  // namespace zenfo
