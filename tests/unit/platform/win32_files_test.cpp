// Files on Windows: attributes that forbid changes, mapped and locked files,
// many names for one file, links to folders.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace zenfo::platform {
namespace {

using test::read_file;
using test::TempFolder;

DWORD marks_of(const std::string& path) {
  return GetFileAttributesA(path.c_str()) &
         (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
          FILE_ATTRIBUTE_SYSTEM);
}

void mark(const std::string& path, DWORD marks) {
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), marks)) << path;
  ASSERT_EQ(marks, marks_of(path)) << "kept here";
}

// Another program's handle, which lets all others read and write.
class ForeignHandle {
 public:
  explicit ForeignHandle(const std::string& path)
      : handle_(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr)) {}
  ~ForeignHandle() { CloseHandle(handle_); }
  ForeignHandle(const ForeignHandle&) = delete;
  ForeignHandle& operator=(const ForeignHandle&) = delete;

  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

bool overwrite(const std::string& path, std::string_view text) {
  OutputFile file;
  return file.open(path.c_str(), OutputMode::kOverwrite) &&
         file.write(text.data(), text.size()) && file.set_end() && file.close();
}

TEST(Win32OutputFile, IsNotOpenedToOverwriteAMappedFile) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123456789");
  const ForeignHandle file(path);
  const HANDLE mapping =
      CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr);
  ASSERT_NE(nullptr, mapping);
  const void* view = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  ASSERT_NE(nullptr, view);
  EXPECT_FALSE(overwrite(path, "abc"));
  EXPECT_FALSE(overwrite(path, std::string(100000, 'x')));
  EXPECT_EQ("0123456789", read_file(path));
  UnmapViewOfFile(view);
  CloseHandle(mapping);
  EXPECT_TRUE(overwrite(path, "abc"));
  EXPECT_EQ("abc", read_file(path));
}

TEST(Win32OutputFile, IsNotOpenedToOverwriteALockedFile) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123456789");
  {
    const ForeignHandle file(path);
    ASSERT_TRUE(LockFile(file.get(), 8, 0, 1, 0));
    EXPECT_FALSE(overwrite(path, "abc"));
    UnlockFile(file.get(), 8, 0, 1, 0);
    EXPECT_EQ("0123456789", read_file(path));
    EXPECT_TRUE(overwrite(path, "abc")) << "open elsewhere, but not locked";
  }
  EXPECT_EQ("abc", read_file(path));
}

TEST(Win32OutputFile, OverwritesHiddenFilesAndKeepsTheirMarks) {
  const TempFolder folder;
  const std::string path = folder.file("a", "0123456789");
  constexpr DWORD kMarks = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  mark(path, kMarks);
  EXPECT_TRUE(overwrite(path, "abc"));
  EXPECT_EQ("abc", read_file(path));
  EXPECT_EQ(kMarks, marks_of(path));
}

TEST(Win32CopyFile, BringsTheMarks) {
  const TempFolder folder;
  for (const DWORD marks : {FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM,
                            FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN}) {
    const std::string from = folder.file("from", "content");
    const std::string to = folder.path("to");
    mark(from, marks);
    EXPECT_TRUE(copy_file(from.c_str(), to.c_str()));
    EXPECT_EQ("content", read_file(to));
    EXPECT_EQ(marks, marks_of(to));
    for (const std::string& path : {from, to}) {
      mark(path, 0);
      EXPECT_TRUE(delete_file(path.c_str()));
    }
  }
}

TEST(Win32CopyFile, ReplacesHiddenFilesByHiddenFiles) {
  const TempFolder folder;
  constexpr DWORD kMarks = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  const std::string from = folder.file("from", "new");
  const std::string to = folder.file("to", "old and longer");
  mark(from, kMarks);
  mark(to, kMarks);
  EXPECT_TRUE(copy_file(from.c_str(), to.c_str()));
  EXPECT_EQ("new", read_file(to));
  EXPECT_EQ(kMarks, marks_of(to));
}

TEST(Win32CopyFile, LeavesTheMarksOfATargetItCannotReplace) {
  const TempFolder folder;
  const std::string to = folder.file("to", "old");
  mark(to, FILE_ATTRIBUTE_HIDDEN);
  EXPECT_FALSE(copy_file(folder.path("missing").c_str(), to.c_str()));
  EXPECT_FALSE(copy_file(folder.path().c_str(), to.c_str()));
  EXPECT_EQ("old", read_file(to));
  EXPECT_EQ(DWORD{FILE_ATTRIBUTE_HIDDEN}, marks_of(to));
}

TEST(Win32ClearReadOnly, LetsAFileBeDeleted) {
  const TempFolder folder;
  const std::string path = folder.file("a", "x");
  EXPECT_FALSE(clear_read_only(path.c_str())) << "it has no such mark";
  mark(path, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
  EXPECT_FALSE(delete_file(path.c_str()));
  EXPECT_TRUE(clear_read_only(path.c_str()));
  EXPECT_EQ(DWORD{FILE_ATTRIBUTE_HIDDEN}, marks_of(path));
  EXPECT_TRUE(delete_file(path.c_str()));
  EXPECT_FALSE(clear_read_only(path.c_str()));
}

TEST(Win32DeleteFilesIn, DeletesReadOnlyFilesToo) {
  const TempFolder folder;
  const std::string wanted = folder.file("wanted", "x");
  const std::string kept = folder.file("kept", "x");
  mark(wanted, FILE_ATTRIBUTE_READONLY);
  mark(kept, FILE_ATTRIBUTE_READONLY);
  delete_files_in(folder.path().c_str(),
                  [](std::string_view name) { return name == "wanted"; });
  EXPECT_FALSE(exists(wanted.c_str()));
  EXPECT_TRUE(exists(kept.c_str()));
  EXPECT_EQ(DWORD{FILE_ATTRIBUTE_READONLY}, marks_of(kept));
  mark(kept, 0);
}

TEST(Win32CopyRights, GivesAFileTheMarksOfAnother) {
  const TempFolder folder;
  const std::string from = folder.file("from", "x");
  const std::string to = folder.file("to", "y");
  mark(from, FILE_ATTRIBUTE_HIDDEN);
  copy_rights(from.c_str(), to.c_str());
  EXPECT_EQ(DWORD{FILE_ATTRIBUTE_HIDDEN}, marks_of(to));
  copy_rights(folder.path("missing").c_str(), to.c_str());
  EXPECT_EQ(DWORD{FILE_ATTRIBUTE_HIDDEN}, marks_of(to));
}

std::string short_path(const std::string& path) {
  char text[MAX_PATH];
  const DWORD length = GetShortPathNameA(path.c_str(), text, sizeof text);
  return {text, length < sizeof text ? length : 0};
}

TEST(Win32NamesSameFile, SeesThroughAllSpellings) {
  const TempFolder folder;
  const std::string file = folder.file("a long name.text", "x");
  const std::string other = folder.file("another long name.text", "x");
  const std::string link = folder.path("link");
  ASSERT_TRUE(CreateHardLinkA(link.c_str(), file.c_str(), nullptr));
  for (const std::string& spelling :
       {file, link, "\\\\?\\" + file, short_path(file),
        folder.path("A LONG NAME.TEXT"), folder.path("./a long name.text")}) {
    SCOPED_TRACE(spelling);
    EXPECT_TRUE(names_same_file(file.c_str(), spelling.c_str()));
    EXPECT_TRUE(names_same_file(spelling.c_str(), link.c_str()));
    EXPECT_FALSE(names_same_file(other.c_str(), spelling.c_str()));
  }
  const std::string missing = folder.path("missing");
  EXPECT_FALSE(names_same_file(missing.c_str(), missing.c_str()));
  EXPECT_FALSE(names_same_file(missing.c_str(), file.c_str()));
  EXPECT_FALSE(names_same_file(file.c_str(), missing.c_str()));
}

// The path in the system around Wine; empty on Windows itself.
std::string unix_path(const std::string& path) {
  using GetUnixFileName = char*(__cdecl*)(const wchar_t*);
  const auto get =
      reinterpret_cast<GetUnixFileName>(reinterpret_cast<void*>(GetProcAddress(
          GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
  if (get == nullptr) return {};
  char* name = get(std::wstring(path.begin(), path.end()).c_str());
  if (name == nullptr) return {};
  const std::string copy = name;
  HeapFree(GetProcessHeap(), 0, name);
  return copy;
}

// Makes a link to a folder with a program of the system around Wine, because
// Windows needs special rights for it and Wine's own calls cannot make one.
bool link_folder(const std::string& target, const std::string& link) {
  const size_t name = link.rfind('\\');
  const std::string to = unix_path(target);
  const std::string in = unix_path(link.substr(0, name));
  if (to.empty() || in.empty()) return false;
  std::string command = "ln -s " + to + " " + in + "/" + link.substr(name + 1);
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process;
  if (!CreateProcessA("Z:\\bin\\ln", command.data(), nullptr, nullptr, FALSE, 0,
                      nullptr, nullptr, &startup, &process)) {
    return false;
  }
  for (int i = 0; i < 500 && !is_folder(link.c_str()); ++i) Sleep(10);
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  return is_folder(link.c_str());
}

TEST(Win32FolderListing, LeavesOutLinksToFolders) {
  const TempFolder folder;
  const std::string inner = folder.folder("inner");
  const std::string link = folder.path("link");
  if (!link_folder(inner, link)) GTEST_SKIP() << "no such link can be made";
  std::vector<std::string> names;
  FolderListing listing(folder.path());
  const auto take = [&](std::string_view name) {
    names.emplace_back(name);
    return true;
  };
  EXPECT_TRUE(listing.visit_folders(take));
  EXPECT_TRUE(listing.visit_files("*", take));
  EXPECT_EQ(std::vector<std::string>{"inner"}, names);
  EXPECT_TRUE(RemoveDirectoryA(link.c_str()));
}

}  // namespace
}  // namespace zenfo::platform
