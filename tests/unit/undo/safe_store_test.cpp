#include "undo/safe_store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "listops/string_pair.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

using test::file_exists;
using test::read_file;

class SafeStoreTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(store.set_undo_file(undo_file.c_str()), 1);
  }
  const UndoRecord& record(uint32_t i) {
    return *record_cast<UndoRecord>(store.undo_list.Get(i));
  }
  std::string file(const char* name, const char* bytes) {
    return folder.file(name, bytes);
  }
  std::string in_store(const char* name) {
    return folder.path("store") + "/" + name;
  }

  test::TempFolder folder;
  const std::string undo_file = folder.path("store/undo");
  SafeStore store;
};

TEST_F(SafeStoreTest, StoresACopyALineAndARecord) {
  const auto one = file("a.txt", "text");
  EXPECT_EQ(store.store_safe_copy(one.c_str()), 1);
  EXPECT_EQ(read_file(in_store("a.txt_0")), "text");
  ASSERT_EQ(store.undo_list.Count(), 1u);
  EXPECT_EQ(record(0).original.view(), one);
  EXPECT_EQ(record(0).safe_copy.view(), in_store("a.txt_0"));
  EXPECT_EQ(record(0).state, 1u);
  EXPECT_EQ(read_file(undo_file), one + "\t" + in_store("a.txt_0") + "\t" +
                                      std::string(record(0).time.view()) +
                                      "\r\n");
}

TEST_F(SafeStoreTest, StoresNothingWithoutAFileToStore) {
  EXPECT_EQ(store.store_safe_copy(nullptr), -1);
  EXPECT_EQ(store.store_safe_copy(""), -1);
  EXPECT_EQ(store.store_safe_copy(folder.path("none").c_str()), -1);
  EXPECT_EQ(store.store_safe_copy(folder.path().c_str()), -1);
  EXPECT_EQ(read_file(undo_file), "");
  SafeStore none;
  EXPECT_EQ(none.store_safe_copy(file("a", "x").c_str()), -1);
  EXPECT_EQ(none.start_safe_store_run({}), 1);
  EXPECT_EQ(none.load_undo_list(), -1);
  EXPECT_EQ(none.undo(), -1);
}

TEST_F(SafeStoreTest, ACopyOverwritesWhatHasItsName) {
  folder.file("store/a_0", "a much longer text of old");
  EXPECT_EQ(store.store_safe_copy(file("a", "new").c_str()), 1);
  EXPECT_EQ(read_file(in_store("a_0")), "new");
}

TEST_F(SafeStoreTest, TheCounterNamesCopiesAndStartsAgainWithARun) {
  const auto one = file("a", "x");
  store.store_safe_copy(one.c_str());
  store.store_safe_copy(one.c_str());
  EXPECT_TRUE(file_exists(in_store("a_1")));
  EXPECT_EQ(store.start_safe_store_run({}), 1);
  EXPECT_FALSE(file_exists(in_store("a_0")) || file_exists(in_store("a_1")));
  EXPECT_EQ(store.undo_list.Count(), 0u);
  store.store_safe_copy(one.c_str());
  EXPECT_TRUE(file_exists(in_store("a_0")));
}

TEST_F(SafeStoreTest, ACounterPassesTheStoresOwnNames) {
  for (const char* name : {"undo_0", "u_0"}) {
    ASSERT_EQ(store.set_undo_file(in_store(name).c_str()), 1);
    store.start_safe_store_run({});
    const std::string bare =
        std::string(name).substr(0, std::string(name).size() - 2);
    EXPECT_EQ(store.store_safe_copy(file(bare.c_str(), "x").c_str()), 1);
    EXPECT_EQ(record(0).safe_copy.view(), in_store((bare + "_1").c_str()));
  }
}

TEST_F(SafeStoreTest, ARunSparesOpenFilesAndSubfolders) {
  const auto open = folder.file("store/open", "x");
  folder.file("store/other", "x");
  folder.file("store/sub/file", "x");
  std::filesystem::create_symlink(open, folder.path("link"));
  EXPECT_EQ(store.start_safe_store_run({folder.path("link")}), 1);
  EXPECT_TRUE(file_exists(open));
  EXPECT_FALSE(file_exists(in_store("other")));
  EXPECT_FALSE(file_exists(undo_file));
  EXPECT_TRUE(file_exists(in_store("sub/file")));
}

TEST_F(SafeStoreTest, AnOpenFileIsNoPlaceForACopy) {
  const auto open = folder.file("store/a_0", "x");
  store.start_safe_store_run({open});
  EXPECT_EQ(store.store_safe_copy(file("a", "y").c_str()), 1);
  EXPECT_EQ(read_file(open), "x");
  EXPECT_EQ(read_file(in_store("a_1")), "y");
}

TEST_F(SafeStoreTest, TheUndoFileComesBackWithTheFirstCopy) {
  store.start_safe_store_run({});
  EXPECT_FALSE(file_exists(undo_file));
  EXPECT_EQ(store.load_undo_list(), 0);
  EXPECT_EQ(store.store_safe_copy(file("a", "x").c_str()), 1);
  EXPECT_EQ(store.load_undo_list(), 1);
}

TEST_F(SafeStoreTest, UndoGoesInTheOrderOfTheCopiesHoweverTheListIsSorted) {
  const auto one = file("a", "first");
  store.store_safe_copy(one.c_str());
  test::write_file(one, "second");
  store.store_safe_copy(one.c_str());
  store.undo_list.Sort(1, [](const Record* a, const Record* b) {
    return a->text(TextSlot::kSecond)->compare(*b->text(TextSlot::kSecond));
  });
  ASSERT_EQ(record(0).safe_copy.view(), in_store("a_1"));
  EXPECT_EQ(store.undo(), 0);
  EXPECT_EQ(read_file(one), "second") << "the later copy comes last";
  EXPECT_TRUE(store.undo_list.Check());
}

TEST_F(SafeStoreTest, OtherRecordsStayWhereTheyAre) {
  store.undo_list.Append(std::make_unique<StringPair>("a", "b"));
  store.undo_list.Get(0)->state = 1;
  const auto one = file("a", "x");
  store.store_safe_copy(one.c_str());
  test::write_file(one, "y");
  EXPECT_EQ(store.undo(), 1);
  EXPECT_EQ(read_file(one), "x");
  EXPECT_EQ(read_file(undo_file), "");
}

TEST_F(SafeStoreTest, AMissingFieldCannotBeRestoredAndIsWrittenAsNull) {
  store.undo_list.Append(std::make_unique<UndoRecord>(
      SharedText(), SharedText(std::string_view("b")), SharedText()));
  EXPECT_EQ(store.undo(), 1);
  EXPECT_EQ(read_file(undo_file + ".error"), "(null)\tb\t(null)\r\n");
  EXPECT_EQ(read_file(undo_file), "(null)\tb\t(null)\r\r\n");
}

TEST_F(SafeStoreTest, UndoSparesAFileWhoseNameItsNewListWouldTake) {
  const auto foreign = folder.file("store/undo.new", "x");
  const auto one = file("a", "x");
  store.store_safe_copy(one.c_str());
  store.store_safe_copy(file("b", "y").c_str());
  store.undo_list.Get(1)->state = 0;
  EXPECT_EQ(store.undo(), 1);
  EXPECT_EQ(read_file(foreign), "x");
  EXPECT_EQ(store.load_undo_list(), 1);
}

// Also when the list has to be written where it stands.
TEST_F(SafeStoreTest, LinesThatAreNoRecordsSurviveARewriting) {
  const auto one = file("a", "x");
  for (const bool in_place : {false, true}) {
    store.start_safe_store_run({});
    store.store_safe_copy(one.c_str());
    const std::string unread = "no record\n\r\nb\tc\td\r\n";
    test::write_file(undo_file, read_file(undo_file) + unread);
    EXPECT_EQ(store.load_undo_list(), 1);
    if (in_place) folder.file("store/undo.new", "");
    EXPECT_EQ(store.undo(), 0);
    EXPECT_EQ(read_file(undo_file), unread);
  }
}

TEST_F(SafeStoreTest, UndoFailsWhenItsFilesCannotBeWritten) {
  store.store_safe_copy(file("a", "x").c_str());
  ASSERT_EQ(store.set_undo_file("/dev/full"), 1);
  store.undo_list.Get(0)->state = 0;
  EXPECT_EQ(store.undo(), -1);
}

}  // namespace
}  // namespace zenfo
