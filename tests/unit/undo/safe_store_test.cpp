#include "undo/safe_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "containers/string_pair.h"
#include "support/nobody.h"
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
    return *record_cast<UndoRecord>(store.undo_list.get(i));
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
  ASSERT_EQ(store.undo_list.count(), 1u);
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
  EXPECT_EQ(store.undo_list.count(), 0u);
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
  store.undo_list.sort(1, [](const Record* a, const Record* b) {
    return a->text(TextSlot::kSecond)->compare(*b->text(TextSlot::kSecond));
  });
  ASSERT_EQ(record(0).safe_copy.view(), in_store("a_1"));
  EXPECT_EQ(store.undo(), 0);
  EXPECT_EQ(read_file(one), "second") << "the later copy comes last";
  EXPECT_TRUE(store.undo_list.check());
}

TEST_F(SafeStoreTest, OtherRecordsStayWhereTheyAre) {
  store.undo_list.append(std::make_unique<StringPair>("a", "b"));
  store.undo_list.get(0)->state = 1;
  const auto one = file("a", "x");
  store.store_safe_copy(one.c_str());
  test::write_file(one, "y");
  EXPECT_EQ(store.undo(), 1);
  EXPECT_EQ(read_file(one), "x");
  EXPECT_EQ(read_file(undo_file), "");
}

TEST_F(SafeStoreTest, AMissingFieldCannotBeRestoredAndIsWrittenAsNull) {
  store.undo_list.append(std::make_unique<UndoRecord>(
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
  store.undo_list.get(1)->state = 0;
  EXPECT_EQ(store.undo(), 1);
  EXPECT_EQ(read_file(foreign), "x");
  EXPECT_EQ(store.load_undo_list(), 1);
}

// Also when the list file has to be overwritten in place.
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
  store.undo_list.get(0)->state = 0;
  EXPECT_EQ(store.undo(), -1);
}

// The list after two copies, one of them deselected.
class UndoListFile : public SafeStoreTest {
 protected:
  void SetUp() override {
    SafeStoreTest::SetUp();
    for (const char* name : {"a", "b"}) {
      const auto path = file(name, "old");
      ASSERT_EQ(store.store_safe_copy(path.c_str()), 1);
      test::write_file(path, "new");
    }
    store.undo_list.get(1)->state = 0;
  }
  struct stat stat_of_list() const {
    struct stat found = {};
    EXPECT_EQ(0, stat(undo_file.c_str(), &found));
    return found;
  }
};

TEST_F(UndoListFile, KeepsItsModeAndOwner) {
  ASSERT_EQ(0, chmod(undo_file.c_str(), 0620));
  if (geteuid() == 0) {
    ASSERT_EQ(0, chown(undo_file.c_str(), 12, 34));
  }
  const struct stat before = stat_of_list();
  EXPECT_EQ(store.undo(), 1);
  const struct stat after = stat_of_list();
  EXPECT_NE(before.st_ino, after.st_ino) << "a new file took its place";
  EXPECT_EQ(before.st_mode, after.st_mode);
  EXPECT_EQ(before.st_uid, after.st_uid);
  EXPECT_EQ(before.st_gid, after.st_gid);
  EXPECT_EQ(store.load_undo_list(), 1);
}

TEST_F(UndoListFile, ThatCannotBeWrittenKeepsUndoFromRestoring) {
  const auto before = read_file(undo_file);
  const auto error_file = folder.file("store/undo.error", "x");
  ASSERT_EQ(0, chmod(undo_file.c_str(), 0444));
  ASSERT_EQ(0, chmod(folder.path("store").c_str(), 0777));
  ASSERT_EQ(0, chmod(folder.path("a").c_str(), 0666));
  const test::AsNobody nobody(folder.path());
  ASSERT_TRUE(test::AsNobody::in_force());
  EXPECT_EQ(store.undo(), -1);
  EXPECT_EQ(read_file(folder.path("a")), "new");
  EXPECT_EQ(read_file(in_store("a_0")), "old");
  EXPECT_EQ(read_file(undo_file), before);
  EXPECT_TRUE(file_exists(error_file));
  EXPECT_EQ(store.undo_list.count(), 2u);
}

TEST_F(SafeStoreTest, UndoBringsSetuidAndSetgidBack) {
  ASSERT_EQ(0, chmod(folder.path("store").c_str(), 0777));
  ASSERT_EQ(0, chmod(undo_file.c_str(), 0666));
  const test::AsNobody nobody(folder.path());
  const auto one = file("a", "old");
  ASSERT_EQ(0, chmod(one.c_str(), 06755));
  ASSERT_EQ(store.store_safe_copy(one.c_str()), 1);
  test::write_file(one, "new");
  struct stat found = {};
  ASSERT_EQ(0, stat(one.c_str(), &found));
  ASSERT_EQ(mode_t{0755}, found.st_mode & 07777) << "writing takes them off";
  EXPECT_EQ(store.undo(), 0);
  EXPECT_EQ(read_file(one), "old");
  ASSERT_EQ(0, stat(one.c_str(), &found));
  EXPECT_EQ(mode_t{06755}, found.st_mode & 07777);
}

TEST_F(SafeStoreTest, ReadOnlyCopiesGoWithTheNextRun) {
  ASSERT_EQ(0, chmod(folder.path("store").c_str(), 0777));
  ASSERT_EQ(0, chmod(undo_file.c_str(), 0666));
  const test::AsNobody nobody(folder.path());
  const auto one = file("a", "x");
  ASSERT_EQ(0, chmod(one.c_str(), 0444));
  EXPECT_EQ(store.store_safe_copy(one.c_str()), 1);
  EXPECT_EQ(store.start_safe_store_run({}), 1);
  EXPECT_FALSE(file_exists(in_store("a_0")));
  EXPECT_EQ(store.store_safe_copy(one.c_str()), 1);
}

}  // namespace
}  // namespace zenfo
