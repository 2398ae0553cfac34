#include "files/file_entry.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"
#include "zenfofr130.h"

namespace zenfo {
namespace {

using test::kSeparator;
using test::TempFolder;

// Paths of the tests are written with slashes.
std::string native(std::string path) {
  for (char& c : path) {
    if (c == '/') c = kSeparator;
  }
  return path;
}

FileEntry entry(const std::string& path) {
  return FileEntry(SharedText(native(path)));
}

TEST(FileEntry, KnowsOnlyItsFullNameAtFirst) {
  FileEntry e = entry("/data/notes.txt");
  EXPECT_EQ(e.full_name().view(), native("/data/notes.txt"));
  EXPECT_FALSE(e.file_name().has_value());
  EXPECT_FALSE(e.folder().has_value());
  EXPECT_FALSE(e.type_name().has_value());
  EXPECT_EQ(e.state, 0u);
  EXPECT_EQ(e.flag, 0);
}

struct NameCase {
  const char* path;
  bool named;
  const char* file_name;
  const char* folder;
};

TEST(FileEntry, CutsFolderAndNameAtTheLastSeparator) {
  const NameCase cases[] = {
      {"/data/notes.txt", true, "notes.txt", "/data"},
      {"/notes.txt", true, "notes.txt", ""},
      {"notes.txt", true, "notes.txt", ""},
      {"/a/b/", false, "", "/a/b"},
      {"/a//b", true, "b", "/a/"},
  };
  for (const NameCase& c : cases) {
    FileEntry e = entry(c.path);
    EXPECT_EQ(e.derive_file_name(), c.named) << c.path;
    EXPECT_EQ(e.file_name().has_value(), c.named) << c.path;
    if (c.named) {
      EXPECT_EQ(*e.file_name(), c.file_name);
    }
    EXPECT_TRUE(e.derive_folder());
    EXPECT_EQ(*e.folder(), native(c.folder)) << c.path;
  }
}

TEST(FileEntry, SettingTheNameDerivesFolderAndName) {
  FileEntry e = entry("/old/name");
  e.set_full_name(native("/recycler/x.c"));
  EXPECT_EQ(e.full_name().view(), native("/recycler/x.c"));
  EXPECT_EQ(*e.file_name(), "x.c");
  EXPECT_EQ(*e.folder(), native("/recycler"));
  EXPECT_TRUE(e.trashed());
}

TEST(FileEntry, LiesInTheTrashBelowARecycleBinInAnyCase) {
  for (const char* path : {"C:/RECYCLED/x", "/a/recycler/b/x", "/a/Recycled"}) {
    EXPECT_TRUE(entry(path).trashed()) << path;
  }
  for (const char* path :
       {"/a/recycle/x", "/recycled2/x", "/xrecycler/y", "plain", ""}) {
    EXPECT_FALSE(entry(path).trashed()) << path;
  }
}

TEST(FileEntry, TextSlotsAreFullNameFolderAndFileName) {
  FileEntry e = entry("/data/notes.txt");
  EXPECT_EQ(e.text(TextSlot::kFirst), native("/data/notes.txt"));
  EXPECT_FALSE(e.text(TextSlot::kSecond).has_value());
  EXPECT_FALSE(e.text(TextSlot::kThird).has_value());
  e.set_full_name(native("/data/notes.txt"));
  EXPECT_EQ(e.text(TextSlot::kSecond), native("/data"));
  EXPECT_EQ(e.text(TextSlot::kThird), "notes.txt");
}

TEST(FileEntry, GathersFactsOfAFile) {
  TempFolder folder;
  FileEntry e{SharedText(folder.file("five.txt", "12345"))};
  EXPECT_TRUE(e.gather_attributes(nullptr));
  EXPECT_EQ(e.facts.size, 5u);
  EXPECT_EQ(e.facts.attributes & platform::kAttributeDirectory, 0u);
  EXPECT_NE(e.facts.write_time, 0u);
  EXPECT_TRUE(e.gather_type_name());
  EXPECT_TRUE(e.type_name().has_value());
  EXPECT_TRUE(e.gather_icon());
}

TEST(FileEntry, AFactThatCannotBeHadLeavesWhatWasThere) {
  TempFolder folder;
  FileEntry e{SharedText(folder.path("missing"))};
  e.facts.size = 77;
  EXPECT_FALSE(e.gather_attributes(nullptr));
  EXPECT_EQ(e.facts.size, 77u);
}

TEST(FileEntry, ACopyHoldsAllFactsStateAndFlag) {
  FileEntry e = entry("/data/notes.txt");
  e.set_full_name(native("/data/notes.txt"));
  e.state = 1;
  e.flag = -1;
  e.facts.size = 9;
  e.icon = 4;
  FileEntry copy = e;
  e.set_full_name(native("/other"));
  EXPECT_EQ(copy.full_name().view(), native("/data/notes.txt"));
  EXPECT_EQ(*copy.file_name(), "notes.txt");
  EXPECT_EQ(copy.state, 1u);
  EXPECT_EQ(copy.flag, -1);
  EXPECT_EQ(copy.facts.size, 9u);
  EXPECT_EQ(copy.icon, 4);
}

TEST(FactOptions, ReadsBytesOneToNine) {
  for (int i = 0; i < 10; ++i) {
    unsigned char bytes[10] = {};
    bytes[i] = 200;
    FactOptions options(bytes);
    EXPECT_EQ(options.icon, i == 1);
    EXPECT_EQ(options.file_name, i == 2);
    EXPECT_EQ(options.folder, i == 3);
    EXPECT_EQ(options.type_name, i == 4);
    EXPECT_EQ(options.attributes, i >= 5);
  }
}

TEST(FileEntry, GathersOnlyWhatIsAsked) {
  TempFolder folder;
  const std::string path = folder.file("a.txt", "x");
  unsigned char bytes[10] = {};
  bytes[ZENFO_OPTION_FOLDER] = 1;
  FileEntry e{SharedText(path)};
  EXPECT_TRUE(e.gather(FactOptions(bytes), nullptr));
  EXPECT_EQ(*e.folder(), folder.path());
  EXPECT_EQ(e.facts.size, 0u);
  bytes[9] = 1;
  EXPECT_TRUE(e.gather(FactOptions(bytes), nullptr));
  EXPECT_EQ(e.facts.size, 1u);
  FileEntry missing{SharedText(folder.path("none"))};
  EXPECT_FALSE(missing.gather(FactOptions(bytes), nullptr));
  EXPECT_TRUE(missing.folder().has_value()) << "the other facts are gathered";
}

}  // namespace
}  // namespace zenfo
