// Listing folders, on both systems.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;
using Names = std::vector<std::string>;

Names sorted(Names names) {
  std::sort(names.begin(), names.end());
  return names;
}

Names folders_of(FolderListing& listing) {
  Names names;
  EXPECT_TRUE(listing.visit_folders([&](std::string_view name) {
    names.emplace_back(name);
    return true;
  }));
  return sorted(names);
}

Names files_of(FolderListing& listing, const char* pattern) {
  Names names;
  EXPECT_TRUE(listing.visit_files(pattern, [&](std::string_view name) {
    names.emplace_back(name);
    return true;
  }));
  return sorted(names);
}

TEST(FolderListing, MarksFoldersAsFolders) {
  const TempFolder folder;
  for (const char* name : {"b.txt", "a.log", "c", ".hidden"}) {
    folder.file(name, "");
  }
  for (const char* name : {"y", "x.txt", ".git"}) folder.folder(name);
  FolderListing listing(folder.path());
  EXPECT_EQ(folder.path(), listing.path());
  EXPECT_EQ((Names{"x.txt", "y"}), folders_of(listing));
  EXPECT_EQ((Names{"a.log", "b.txt", "c"}), files_of(listing, "*.*"));
  EXPECT_EQ((Names{"a.log", "b.txt", "c"}), files_of(listing, "*"));
}

TEST(FolderListing, TakesOnePatternAfterTheOther) {
  const TempFolder folder;
  for (const char* name : {"a.txt", "B.TXT", "c.log", "d", "e.txt.bak"}) {
    folder.file(name, "");
  }
  FolderListing listing(folder.path());
  EXPECT_EQ((Names{"B.TXT", "a.txt"}), files_of(listing, "*.txt"));
  EXPECT_EQ((Names{"c.log"}), files_of(listing, "C.*"));
  EXPECT_EQ((Names{"d"}), files_of(listing, "?"));
  EXPECT_EQ((Names{"a.txt"}), files_of(listing, "A.TXT"));
  EXPECT_EQ((Names{"e.txt.bak"}), files_of(listing, "*.bak"));
  EXPECT_EQ(Names{}, files_of(listing, "*.none"));
}

TEST(FolderListing, StopsWhenTheVisitorSaysSo) {
  const TempFolder folder;
  for (const char* name : {"a", "b", "c"}) {
    folder.file(name, "");
    folder.folder(std::string("f") + name);
  }
  FolderListing listing(folder.path());
  int calls = 0;
  const auto stop_at_second = [&](std::string_view) { return ++calls < 2; };
  EXPECT_FALSE(listing.visit_files("*", stop_at_second));
  EXPECT_EQ(2, calls);
  calls = 0;
  EXPECT_FALSE(listing.visit_folders(stop_at_second));
  EXPECT_EQ(2, calls);
}

TEST(FolderListing, ReportsAnswersThatAreNotWanted) {
  const TempFolder folder;
  for (const char* name : {"a", "b", ".hidden"}) folder.file(name, "");
  folder.folder("f");
  FolderListing listing(folder.path());
  int answers = 0;
  Names names;
  const auto visit = [&](std::string_view name) {
    names.emplace_back(name);
    return true;
  };
  EXPECT_TRUE(listing.visit_folders(visit, [&] { return ++answers > 0; }));
  EXPECT_EQ((Names{"f"}), names);
  EXPECT_GE(answers, 4);
}

TEST(FolderListing, StopsAtAnAnswerThatIsNotWanted) {
  const TempFolder folder;
  for (const char* name : {"a", "b"}) folder.folder(name);
  FolderListing listing(folder.path());
  const auto visit = [](std::string_view) { return true; };
  EXPECT_FALSE(listing.visit_files("*", visit, [] { return false; }));
  EXPECT_EQ((Names{"a", "b"}), folders_of(listing)) << "listed anew";
}

TEST(FolderListing, LetsWhatTheVisitorThrowsPass) {
  const TempFolder folder;
  folder.file("a", "");
  FolderListing listing(folder.path());
  EXPECT_THROW(listing.visit_files("*",
                                   [](std::string_view) -> bool {
                                     throw std::runtime_error("visitor");
                                   }),
               std::runtime_error);
  EXPECT_EQ((Names{"a"}), files_of(listing, "*"));
}

TEST(FolderListing, MayBeMovedByItsVisitor) {
  const TempFolder folder;
  folder.folder("a");
  folder.folder("b");
  std::vector<FolderListing> listings;
  listings.emplace_back(folder.path());
  Names names;
  EXPECT_TRUE(listings[0].visit_folders([&](std::string_view name) {
    listings.emplace_back(folder.path(name));
    listings.shrink_to_fit();
    names.emplace_back(name);
    return true;
  }));
  EXPECT_EQ((Names{"a", "b"}), sorted(names));
  EXPECT_EQ(folder.path("b"), listings[2].path());
  EXPECT_EQ((Names{"a", "b"}), folders_of(listings[0]));
}

TEST(FolderListing, HasNoNamesWhenTheFolderCannotBeRead) {
  const TempFolder folder;
  const std::string file = folder.file("file", "");
  for (const std::string& path :
       {file, folder.path("missing"), std::string(100000, 'x')}) {
    FolderListing listing(path);
    EXPECT_EQ(Names{}, folders_of(listing));
    EXPECT_EQ(Names{}, files_of(listing, "*"));
  }
}

TEST(FolderListing, HasNoNamesInAnEmptyFolder) {
  const TempFolder folder;
  FolderListing listing(folder.path());
  EXPECT_EQ(Names{}, folders_of(listing));
  EXPECT_EQ(Names{}, files_of(listing, "*.*"));
}

TEST(FolderListing, ListsTheRootForAnEmptyPath) {
  // Uses the drive of the temporary folder: the folders of another drive, which
  // may show a whole Linux system, may all be mounted and so count as links.
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::temp_directory_path());
  FolderListing listing("");
  EXPECT_NE(Names{}, folders_of(listing));
  std::filesystem::current_path(before);
}

TEST(DeleteFilesIn, DeletesWantedFilesAndKeepsFolders) {
  const TempFolder folder;
  for (const char* name : {"a.txt", "b.txt", ".hidden", "keep"}) {
    folder.file(name, "x");
  }
  folder.folder("inner");
  folder.file(std::string("inner") + kPathSeparator + "c.txt", "x");
  Names asked;
  delete_files_in(folder.path().c_str(), [&](std::string_view name) {
    asked.emplace_back(name);
    return name != "keep";
  });
  EXPECT_EQ((Names{".hidden", "a.txt", "b.txt", "keep"}), sorted(asked));
  FolderListing listing(folder.path());
  EXPECT_EQ((Names{"keep"}), files_of(listing, "*"));
  EXPECT_FALSE(exists(folder.path(".hidden").c_str()));
  FolderListing inner(folder.path("inner"));
  EXPECT_EQ((Names{"c.txt"}), files_of(inner, "*"));
}

TEST(DeleteFilesIn, AsksNothingInAFolderThatCannotBeRead) {
  const TempFolder folder;
  const std::string file = folder.file("file", "");
  for (const std::string& path : {file, folder.path("missing")}) {
    int asked = 0;
    delete_files_in(path.c_str(), [&](std::string_view) {
      ++asked;
      return true;
    });
    EXPECT_EQ(0, asked);
  }
  EXPECT_TRUE(is_file(file.c_str()));
}

}  // namespace
}  // namespace zenfo::platform
