#include "files/size_text.h"

#include <gtest/gtest.h>

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
