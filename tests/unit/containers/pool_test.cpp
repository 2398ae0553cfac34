#include "containers/pool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace zenfo {
namespace {

TEST(Pool, HandsOutPiecesThatDoNotOverlap) {
  auto& pool = Pool<48>::instance();
  std::vector<char*> pieces;
  for (int i = 0; i < 10000; ++i) {
    pieces.push_back(static_cast<char*>(pool.allocate()));
    std::memset(pieces.back(), i % 251, 48);
  }
  EXPECT_EQ(std::set<char*>(pieces.begin(), pieces.end()).size(), 10000u);
  for (int i = 0; i < 10000; ++i) {
    for (int b = 0; b < 48; ++b) ASSERT_EQ(pieces[i][b], char(i % 251));
  }
  for (char* piece : pieces) pool.deallocate(piece);
}

struct Thing : Pooled<Thing> {
  virtual ~Thing() { ++destroyed; }
  long payload[3] = {};
  static inline int destroyed = 0;
};
struct LargerThing : Thing {
  long more[40] = {};
};

TEST(Pooled, DestroysThroughTheBaseWhateverTheSize) {
  Thing::destroyed = 0;
  std::vector<Thing*> things;
  for (int i = 0; i < 1000; ++i) {
    things.push_back(i % 3 == 0 ? new LargerThing : new Thing);
  }
  for (Thing* thing : things) delete thing;
  EXPECT_EQ(Thing::destroyed, 1000);
}

#ifndef ZENFO_ADDRESS_SANITIZER
TEST(Pool, StartsOverWhenTheLastPieceComesBack) {
  auto& pool = Pool<64>::instance();
  std::vector<void*> first;
  for (int i = 0; i < 50000; ++i) first.push_back(pool.allocate());
  EXPECT_EQ(pool.live(), 50000u);
  for (void* piece : first) pool.deallocate(piece);
  EXPECT_EQ(pool.live(), 0u);
  void* a = pool.allocate();
  void* b = pool.allocate();
  EXPECT_EQ(static_cast<char*>(b) - static_cast<char*>(a), 64);
  pool.deallocate(a);
  EXPECT_EQ(pool.allocate(), a) << "the piece freed last is used first";
  pool.deallocate(a);
  pool.deallocate(b);
}
#endif

}  // namespace
}  // namespace zenfo
