#include "search/read_ahead.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "frame/callbacks.h"
#include "support/environment.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::EnvironmentVariable;
using test::TempFolder;

TEST(Threads, AreAsManyAsAskedForOrAsProcessors) {
  EXPECT_EQ(parse_threads("1", 4), 1u);
  EXPECT_EQ(parse_threads("3", 1), 3u);
  EXPECT_EQ(parse_threads("", 4), 4u);
  EXPECT_EQ(parse_threads("", 64), 8u);
  EXPECT_EQ(parse_threads("9", 2), 8u);
  EXPECT_EQ(parse_threads("99999999999999999999999", 2), 2u);
  for (const char* no_number : {"0", "-1", "x", "2x", " 2", "2 "}) {
    EXPECT_EQ(parse_threads(no_number, 4), 4u) << no_number;
  }
}

class ReadAheadRun : public testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 60; ++i) {
      paths.push_back(folder.file(std::to_string(i), "old"));
      auto entry =
          std::make_unique<FileEntry>(SharedText(std::string_view(paths[i])));
      entry->state = 1;
      list.append(std::move(entry));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }
  void TearDown() override { host_callbacks() = {}; }

  // Loads the next file; its text.
  std::string load() {
    FileInHand file;
    EXPECT_EQ(source.next(file), FileSource::Next::kFile);
    return ahead.load(file.path, source) >= 0 ? std::string(content.bytes())
                                              : "failed";
  }
  // Until the next files have probably been read.
  void load_some() {
    for (int i = 0; i < 5; ++i) EXPECT_EQ(load(), "old");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }

  TempFolder folder;
  std::vector<std::string> paths;
  const EnvironmentVariable threads{"ZENFO_THREADS", "3"};
  ItemList list;
  ListSource source{list};
  FileContent content;
  ReadAhead ahead{content};
};

TEST_F(ReadAheadRun, LoadsEveryFile) {
  for (const std::string& path : paths) {
    EXPECT_EQ(load(), "old");
    EXPECT_EQ(content.path(), path);
  }
}

TEST_F(ReadAheadRun, LoadsItsOutputsAtTheirTurn) {
  ahead.add_output(nullptr);
  ahead.add_output("");
  ahead.add_output(paths[8].c_str());
  load_some();
  test::write_file(paths[8], "new");
  for (int i = 5; i < 8; ++i) EXPECT_EQ(load(), "old");
  EXPECT_EQ(load(), "new");
}

TEST_F(ReadAheadRun, LoadsAnOutputThatAppearsLater) {
  std::filesystem::remove(paths[9]);
  ahead.add_output(paths[9].c_str());
  for (int i = 0; i < 5; ++i) EXPECT_EQ(load(), "old");
  test::write_file(paths[9], "one");
  ahead.look_at_outputs();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  test::write_file(paths[9], "two");
  for (int i = 5; i < 9; ++i) EXPECT_EQ(load(), "old");
  EXPECT_EQ(load(), "two");
}

#ifndef _WIN32
TEST_F(ReadAheadRun, AsksAgainWhenTheHostHasCallbacks) {
  host_callbacks().interrupt = [] { return 0; };
  load_some();
  test::write_file(paths[8], "new");
  std::filesystem::remove(paths[9]);
  for (int i = 5; i < 8; ++i) EXPECT_EQ(load(), "old");
  EXPECT_EQ(load(), "new");
  EXPECT_EQ(load(), "failed");
  EXPECT_EQ(load(), "old");
}
#endif

// Files are chosen and given up while others are read ahead.
TEST_F(ReadAheadRun, FollowsTheChoiceOfTheHost) {
  load_some();
  list.get(6)->state = 0;
  for (size_t i = 5; i < paths.size(); ++i) {
    if (i == 6) continue;
    EXPECT_EQ(load(), "old");
    EXPECT_EQ(content.path(), paths[i]);
  }
}

}  // namespace
}  // namespace zenfo
