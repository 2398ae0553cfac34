#include "search/file_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "containers/string_pair.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using namespace std::string_literals;
using Next = FileSource::Next;

void append(ItemList& list, const char* path, uint32_t state) {
  auto entry = std::make_unique<FileEntry>(SharedText(std::string_view(path)));
  entry->state = state;
  list.append(std::move(entry));
}

TEST(ListSource, GivesTheSelectedEntriesWithACopy) {
  ItemList list;
  append(list, "a", 0);
  append(list, "b", 1);
  append(list, "c", 0);
  append(list, "d", 7);
  ListSource source(list);
  FileInHand file;
  ASSERT_EQ(source.next(file), Next::kFile);
  EXPECT_EQ(file.path.view(), "b");
  ASSERT_NE(file.copy, nullptr);
  EXPECT_NE(file.copy.get(), list.get(1));
  EXPECT_EQ(file.copy->full_name().view(), "b");
  file.found = 9;
  file.handled = file.recorded = true;
  ASSERT_EQ(source.next(file), Next::kFile);
  EXPECT_EQ(file.path.view(), "d");
  EXPECT_EQ(file.found, 0u) << "each file begins anew";
  EXPECT_FALSE(file.handled || file.recorded);
  EXPECT_EQ(source.next(file), Next::kEnd);
  EXPECT_EQ(source.next(file), Next::kEnd);
}

TEST(ListSource, NamesTheFilesThatComeNext) {
  ItemList list;
  for (const char* path : {"a", "b", "c", "d", "e"}) {
    append(list, path, path[0] != 'c');
  }
  ListSource source(list);
  FileInHand file;
  ASSERT_EQ(source.next(file), Next::kFile);
  std::string upcoming;
  for (const SharedText& path : source.upcoming(2)) upcoming += path.view();
  EXPECT_EQ(upcoming, "bd");
  EXPECT_EQ(source.upcoming(0).size(), 0u);
  EXPECT_EQ(source.upcoming(9).size(), 3u);
  ASSERT_EQ(source.next(file), Next::kFile);
  EXPECT_EQ(file.path.view(), "b") << "to look ahead takes nothing";
}

TEST(ListSource, FailsAtASelectedRecordThatIsNoFile) {
  ItemList list;
  list.append(std::make_unique<StringPair>("a", "b"));
  append(list, "c", 1);
  FileInHand file;
  {
    ListSource source(list);
    EXPECT_EQ(source.next(file), Next::kFile) << "not selected: passed over";
  }
  list.get(0)->state = 1;
  ListSource source(list);
  EXPECT_EQ(source.next(file), Next::kFailed);
}

TEST(ListSource, AsksTheListsHook) {
  ItemList list;
  list.set_interrupt_hook([](void*) { return 1; });
  ListSource source(list);
  int asked = 0;
  while (!source.interrupted()) ++asked;
  EXPECT_LE(asked, 100);
}

class LineSourceTest : public testing::Test {
 protected:
  std::vector<std::string> lines(const std::string& bytes) {
    FileContent poller;
    LineSource source(poller);
    EXPECT_TRUE(source.open(folder.file("list", bytes).c_str()));
    std::vector<std::string> all;
    FileInHand file;
    while (source.next(file) == Next::kFile) {
      all.emplace_back(file.path.view());
      EXPECT_EQ(file.copy, nullptr);
    }
    EXPECT_EQ(source.next(file), Next::kEnd);
    return all;
  }
  test::TempFolder folder;
};

using Lines = std::vector<std::string>;

TEST_F(LineSourceTest, CutsLinesAtCrLf) {
  EXPECT_EQ(lines(""), Lines{});
  EXPECT_EQ(lines("a\r\nb\r\n"), (Lines{"a", "b"}));
  EXPECT_EQ(lines("a\r\nb"), (Lines{"a", "b"}));
  EXPECT_EQ(lines("\r\na\r\n\r\n\r\nb\r\n\r\n"), (Lines{"a", "b"}));
  EXPECT_EQ(lines("a\rb\r\n"), (Lines{"a\rb"}));
  EXPECT_EQ(lines("a\r\r\n"), (Lines{"a\r"}));
}

// A piece ends after a bare LF.
TEST_F(LineSourceTest, ABareLfStaysPartOfThePath) {
  EXPECT_EQ(lines("a\n"), (Lines{"a\n"}));
  EXPECT_EQ(lines("a\nb\r\n"), (Lines{"a\n", "b"}));
  EXPECT_EQ(lines("\n\n"), (Lines{"\n", "\n"}));
}

TEST_F(LineSourceTest, EndsALineAtItsFirstNul) {
  EXPECT_EQ(lines("a\0b\r\nc"s), (Lines{"a", "c"}));
  EXPECT_EQ(lines("\0b\r\nc\0"s), (Lines{"c"}));
  EXPECT_EQ(lines("a\0\nb"s), (Lines{"a", "b"}));
}

TEST_F(LineSourceTest, ReadsPiecesOfAtMost4095Bytes) {
  const std::string most(4095, 'x');
  EXPECT_EQ(lines(most), (Lines{most}));
  EXPECT_EQ(lines(most + "a"), (Lines{most, "a"}));
  EXPECT_EQ(lines(most + "\r\nb"), (Lines{most, "b"}))
      << "what is left of the line is an empty one";
  EXPECT_EQ(lines(most + most + "c\r\n"), (Lines{most, most, "c"}));
  const std::string cut(4094, 'x');
  EXPECT_EQ(lines(cut + "\r\nb"), (Lines{cut + "\r", "\n", "b"}))
      << "a CR LF pair cut in two is none";
  const std::string fits(4093, 'x');
  EXPECT_EQ(lines(fits + "\r\nb"), (Lines{fits, "b"}));
}

TEST_F(LineSourceTest, NamesTheFilesThatComeNext) {
  FileContent poller;
  LineSource source(poller);
  const std::string bytes = "a\r\n\r\nb\0x\r\n\nc\nd\r\ne"s;
  ASSERT_TRUE(source.open(folder.file("list", bytes).c_str()));
  EXPECT_EQ(source.upcoming(9).size(), 0u) << "nothing is read yet";
  FileInHand file;
  ASSERT_EQ(source.next(file), Next::kFile);
  const auto upcoming = [&](size_t most) {
    std::vector<std::string> paths;
    for (const SharedText& path : source.upcoming(most)) {
      paths.emplace_back(path.view());
    }
    return paths;
  };
  EXPECT_EQ(upcoming(2), (Lines{"b", "\n"}));
  EXPECT_EQ(upcoming(9), (Lines{"b", "\n", "c\n", "d"}))
      << "the last line may become longer";
  EXPECT_EQ(upcoming(0), Lines{});
  ASSERT_EQ(source.next(file), Next::kFile);
  EXPECT_EQ(file.path.view(), "b") << "to look ahead takes nothing";
  while (source.next(file) == Next::kFile) {
  }
  EXPECT_EQ(upcoming(9), Lines{});
}

// The buffer ends within a line now and then.
TEST_F(LineSourceTest, NamesUpcomingFilesOfAnyListInOrder) {
  std::string bytes;
  for (int i = 0; i < 30000; ++i) bytes += std::to_string(i) + "\r\n";
  FileContent poller;
  LineSource source(poller);
  ASSERT_TRUE(source.open(folder.file("list", bytes).c_str()));
  FileInHand file;
  int named = 0;
  for (int i = 0; source.next(file) == Next::kFile; ++i) {
    int next = i + 1;
    for (const SharedText& path : source.upcoming(3)) {
      ASSERT_EQ(path.view(), std::to_string(next++));
      ++named;
    }
  }
  EXPECT_GT(named, 3 * 29900);
}

TEST_F(LineSourceTest, ReadsListsOfAnyLength) {
  std::string bytes;
  Lines expected;
  for (int i = 0; i < 60000; ++i) {
    expected.push_back("path" + std::to_string(i));
    bytes += expected.back() + "\r\n";
  }
  EXPECT_EQ(lines(bytes), expected);
}

TEST_F(LineSourceTest, CannotOpenWhatIsNoFile) {
  FileContent poller;
  LineSource source(poller);
  EXPECT_FALSE(source.open(folder.path("none").c_str()));
  EXPECT_FALSE(source.open(folder.path().c_str()));
}

}  // namespace
}  // namespace zenfo
