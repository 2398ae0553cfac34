// Listing folders with links, pipes, sockets and names of any bytes, with one
// reading for all questions.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::TempFolder;
using Names = std::vector<std::string>;

// In the order given.
Names folders_of(FolderListing& listing) {
  Names names;
  listing.visit_folders([&](std::string_view name) {
    names.emplace_back(name);
    return true;
  });
  return names;
}

Names files_of(FolderListing& listing, const char* pattern = "*.*") {
  Names names;
  listing.visit_files(pattern, [&](std::string_view name) {
    names.emplace_back(name);
    return true;
  });
  return names;
}

void make_socket(const std::string& path) {
  const int handle = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  EXPECT_EQ(
      0, bind(handle, reinterpret_cast<sockaddr*>(&address), sizeof address));
  close(handle);
}

void make_one_of_each(const TempFolder& folder) {
  folder.file("file", "x");
  folder.folder("folder");
  const auto link = [&](const char* target, const char* name) {
    ASSERT_EQ(0, symlink(target, folder.path(name).c_str()));
  };
  link("file", "link-to-file");
  link("folder", "link-to-folder");
  link(".", "link-to-itself");
  link("nowhere", "link-to-nothing");
  link("link-loop", "link-loop");
  link("pipe", "link-to-pipe");
  ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
  make_socket(folder.path("socket"));
}

TEST(PosixFolderListing, FollowsLinksToFilesOnly) {
  const TempFolder folder;
  make_one_of_each(folder);
  FolderListing listing(folder.path());
  EXPECT_EQ((Names{"folder"}), folders_of(listing));
  EXPECT_EQ((Names{"file", "link-to-file"}), files_of(listing));
}

TEST(PosixFolderListing, ListsALinkToAFolderThatItIsGiven) {
  const TempFolder folder;
  make_one_of_each(folder);
  folder.file("folder/inside", "");
  FolderListing listing(folder.path("link-to-folder"));
  EXPECT_EQ((Names{"inside"}), files_of(listing));
}

TEST(PosixFolderListing, SortsByByte) {
  const TempFolder folder;
  const Names names = {"A",    "B",        "a",    "a b",
                       "a-",   "a.b",      "ab",   "\x7F",
                       "\x80", "\xC3\xA4", "\xFF", std::string(255, '\xFF')};
  for (auto name = names.rbegin(); name != names.rend(); ++name) {
    folder.file(*name, "");
  }
  FolderListing listing(folder.path());
  EXPECT_EQ(names, files_of(listing));
}

TEST(PosixFolderListing, SortsNamesThatBeginAlike) {
  const TempFolder folder;
  Names names;
  for (size_t length = 1; length <= 20; ++length) {
    const std::string alike(length, 'n');
    for (const char* rest : {"", "-", "\xFF", "a\x01", "a\x80"}) {
      names.push_back(alike + rest);
    }
  }
  for (const std::string& name : names) folder.file(name, "");
  std::sort(names.begin(), names.end());
  FolderListing listing(folder.path());
  EXPECT_EQ(names, files_of(listing));
}

TEST(PosixFolderListing, ReadsMoreThanOnePieceOfNames) {
  const TempFolder folder;
  Names names;
  for (int i = 0; i < 1000; ++i) {
    std::string name = std::to_string(10000 + i) + std::string(200, 'n');
    folder.file(name, "");
    names.push_back(std::move(name));
  }
  FolderListing listing(folder.path());
  EXPECT_EQ(names, files_of(listing));
}

TEST(PosixFolderListing, ReadsTheFolderOnceWhenFirstAsked) {
  const TempFolder folder;
  FolderListing listing(folder.path());
  folder.file("a", "");
  EXPECT_EQ(Names{}, folders_of(listing));
  folder.file("b", "");
  folder.folder("c");
  EXPECT_EQ((Names{"a"}), files_of(listing));
  EXPECT_EQ(Names{}, folders_of(listing));
}

TEST(PosixFolderListing, TakesAPatternThatEndsInAPointForNamesWithoutOne) {
  const TempFolder folder;
  for (const char* name : {"a.txt", "b", "c.", "dd"}) folder.file(name, "");
  FolderListing listing(folder.path());
  EXPECT_EQ((Names{"b", "dd"}), files_of(listing, "*."));
  EXPECT_EQ((Names{"b"}), files_of(listing, "?."));
}

TEST(PosixFolderListing, HasNoFilesForAnEmptyPattern) {
  const TempFolder folder;
  folder.file("a", "");
  FolderListing listing(folder.path());
  EXPECT_EQ(Names{}, files_of(listing, ""));
}

TEST(PosixFolderListing, GoesAsDeepAsPathsReach) {
  const TempFolder folder;
  std::string path = folder.path();
  const std::string name(200, 'd');
  while (path.size() + name.size() + 20 < 4096) {
    path += '/' + name;
    ASSERT_TRUE(create_folder(path.c_str()));
  }
  OutputFile file;
  ASSERT_TRUE(file.open((path + "/f").c_str(), OutputMode::kTruncate));
  FolderListing listing(path);
  EXPECT_EQ((Names{"f"}), files_of(listing));
}

// Its links lead to folders, its files have no size.
TEST(PosixFolderListing, ListsAFolderOfTheKernel) {
  FolderListing listing("/proc/self");
  const Names folders = folders_of(listing);
  const Names files = files_of(listing, "stat*");
  EXPECT_NE(0, std::count(folders.begin(), folders.end(), "fd"));
  EXPECT_EQ(0, std::count(folders.begin(), folders.end(), "cwd"));
  EXPECT_EQ((Names{"stat", "statm", "status"}), files);
}

TEST(PosixDeleteFilesIn, DeletesAllButFoldersAndLinksToFolders) {
  const TempFolder folder;
  const TempFolder other;
  make_one_of_each(folder);
  const std::string target = other.file("target", "x");
  ASSERT_EQ(0, symlink(target.c_str(), folder.path("far").c_str()));
  delete_files_in(folder.path().c_str(), [](std::string_view) { return true; });
  for (const char* name :
       {"file", "link-to-file", "link-to-nothing", "link-loop", "link-to-pipe",
        "pipe", "socket", "far"}) {
    EXPECT_FALSE(exists(folder.path(name).c_str())) << name;
  }
  for (const char* name : {"folder", "link-to-folder", "link-to-itself"}) {
    EXPECT_TRUE(exists(folder.path(name).c_str())) << name;
  }
  EXPECT_TRUE(is_file(target.c_str()));
}

}  // namespace
}  // namespace zenfo::platform
