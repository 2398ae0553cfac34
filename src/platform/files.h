// Files, folders, attributes and times: the part of the platform seam that
// touches the file system. The files of win32/ and posix/ are twins; the build
// picks one folder, callers never ask which.
//
// Paths are narrow, zero-terminated texts, never null, stored and passed as
// given. Every call states what a failure leaves behind. None throws, except
// for lack of memory and what a visitor throws.
//
// Tested by tests/unit/platform/files_test.cpp,
// tests/unit/platform/folders_test.cpp, tests/unit/platform/streams_test.cpp,
// tests/unit/platform/copy_test.cpp, tests/unit/platform/paths_test.cpp,
// tests/unit/platform/times_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zenfo::platform {

#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
inline constexpr size_t kPathLimit =
    260;  // bytes of the longest path, with NUL
#else
inline constexpr char kPathSeparator = '/';
inline constexpr size_t kPathLimit = 4096;
#endif

// File-system attribute bits, the same numbers on both systems.
inline constexpr uint32_t kAttributeReadOnly = 1;
inline constexpr uint32_t kAttributeHidden = 2;
inline constexpr uint32_t kAttributeSystem = 4;
inline constexpr uint32_t kAttributeDirectory = 16;
inline constexpr uint32_t kAttributeArchive = 32;
inline constexpr uint32_t kAttributeNormal = 128;
inline constexpr uint32_t kAttributeCompressed = 2048;

// Facts of one file. `attributes` is never 0; `size` is 0 for what is no
// ordinary file. Natively a file is read-only when nobody may write it and
// hidden when its name begins with "."; where no creation time is kept, it is
// the write time. Times count 100 ns steps since 1601-01-01 UTC.
struct FileFacts {
  uint32_t attributes = 0;
  uint64_t size = 0;
  uint64_t creation_time = 0;
  uint64_t access_time = 0;
  uint64_t write_time = 0;
};

// Shows whether a file is the one that was examined before, unchanged: every
// write changes the time, as finely as the file system keeps it. The numbers
// mean something in comparison only.
struct FileVersion {
  uint64_t volume = 0;
  uint64_t number = 0;  // of the file on its volume
  uint64_t size = 0;
  uint64_t write_time = 0;

  bool operator==(const FileVersion&) const = default;
};

// Shows more: whether a file that was loaded would load in the same way now.
struct FileStamp {
  FileVersion version;
  // Natively that of content, rights and names; elsewhere 0.
  uint64_t change_time = 0;
  // False when the last change is so recent that the next may get the same
  // time, or when the system does not say.
  bool settled = false;
};

// Whether other parts of the process can delete, rename and lock a file that is
// open for reading.
#ifdef _WIN32
inline constexpr bool kReadingHindersNobody = false;
#else
inline constexpr bool kReadingHindersNobody = true;
#endif

// Remembers the folder of the path asked last, so that a walk over entries of
// one folder resolves only their bare names. Lives for one walk: a folder that
// is renamed meanwhile is still read under its old name.
class NearbyFolder {
 public:
  NearbyFolder();
  ~NearbyFolder();
  NearbyFolder(const NearbyFolder&) = delete;
  NearbyFolder& operator=(const NearbyFolder&) = delete;

  struct State;
  State& state() { return *state_; }

 private:
  std::unique_ptr<State> state_;
};

// Fills `facts` for a file or folder; false leaves it as it was. Links are
// followed. `nearby` may be null.
bool read_file_facts(const char* path, FileFacts& facts,
                     NearbyFolder* nearby = nullptr);

// The stamp of an ordinary file; false for all else. `nearby` may be null.
bool read_stamp(const char* path, FileStamp& stamp,
                NearbyFolder* nearby = nullptr);
// Whether the file has not changed since; true only for settled stamps.
bool has_stamp(const char* path, const FileStamp& stamp,
               NearbyFolder* nearby = nullptr);

bool is_file(const char* path);    // exists and is not a folder
bool is_folder(const char* path);  // exists and is a folder
// Something of that name exists, even a link that leads nowhere; a name with
// "*" or "?" is never found.
bool exists(const char* path);

// The two listings of one folder that the file search needs. The native build
// reads the folder once, at the first call, and keeps the names, sorted by
// byte; on Windows every listing is a query to the system. An empty path is the
// root. A folder that cannot be read has no names.
class FolderListing {
 public:
  // Visitors get a bare name, valid during the call, and answer false to stop
  // the listing. They may move the listing meanwhile, not destroy it.
  using Visitor = std::function<bool(std::string_view name)>;
  // Called after each answer of the system, wanted or not, and after the
  // visitor if that was called; returns false to stop the listing. Natively
  // that is after each name as the folder is read, and again after each that
  // was visited.
  using Answered = std::function<bool()>;

  explicit FolderListing(std::string path);
  ~FolderListing();
  FolderListing(FolderListing&&) noexcept;
  FolderListing& operator=(FolderListing&&) noexcept;

  const std::string& path() const { return path_; }

  // Every folder in it whose name does not begin with "."; no links to folders
  // (on Windows junctions, mounted volumes and symbolic links). False when
  // either of the two stopped it.
  bool visit_folders(const Visitor& visit, const Answered& answered = go_on);
  // Every file (no folder) matching the pattern whose name does not begin
  // with "."; natively only regular files and links to such. Case is ignored;
  // "*.*" matches every name, "*." names without a point; an empty pattern
  // natively none.
  bool visit_files(const char* pattern, const Visitor& visit,
                   const Answered& answered = go_on);

 private:
  static bool go_on() { return true; }

  struct State;
  std::string path_;
  std::unique_ptr<State> state_;
};

// A file opened for binary reading, closed by the destructor.
class InputFile {
 public:
  InputFile() = default;
  ~InputFile() { close(); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // False when the file cannot be opened; never waits for a writer of a pipe.
  // Folders, pipes and devices may open natively, because asking would cost one
  // call for every file: reading a folder fails, and size() returns -1 for all
  // of them. `nearby` may be null.
  bool open(const char* path, NearbyFolder* nearby = nullptr);
  // The same, but false for a path that leads through a link. On Windows only
  // the last part is checked.
  bool open_without_links(const char* path);
  // Opens only an ordinary file of at most `largest` bytes, and says its stamp
  // before it was read.
  bool open_ordinary(const char* path, uint64_t largest, FileStamp& stamp,
                     NearbyFolder* nearby = nullptr);
  // Reads up to `size` bytes, fewer only at an ordinary file's end; -1 on
  // error, with anything in the buffer.
  int64_t read(void* buffer, size_t size);
  // Size in bytes now; -1 on failure, or when it is not an ordinary file.
  int64_t size();
  // False when the system does not say, or when it is not an ordinary file.
  bool version(FileVersion& version) const;
  void close();
  bool is_open() const { return handle_ != kNone; }

 private:
  friend class FileView;
  static constexpr intptr_t kNone = -1;
  intptr_t handle_ = kNone;
};

enum class OutputMode {
  kTruncate,  // empty an existing file
  kAppend,    // write after what is there
  // Write from the start. The rest of the old content is removed by set_end();
  // on Windows at once, because only an attempt shows whether a file can be
  // cut. A file that cannot be cut, or is locked there, is not opened and keeps
  // its bytes.
  kOverwrite,
};

// The result of opening a file that was examined before.
enum class Opened {
  kOpen,
  kFailed,
  kChanged,  // another file, changed since, gone, or being rewritten by a run
};

// A file opened for binary writing, unbuffered.
class OutputFile {
 public:
  OutputFile() = default;
  ~OutputFile() { close(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Creates the file when missing; false leaves nothing open.
  bool open(const char* path, OutputMode mode);
  // Opens an existing file to overwrite it from its start (kOverwrite), if it
  // has the expected version. A file that does not open is not touched. While
  // it is open, no other process can open it in this way, where the system
  // supports that.
  Opened open_unchanged(const char* path, const FileVersion& expected);
  // All bytes, or false with some of them written.
  bool write(const void* data, size_t size);
  // Cuts the file after the bytes written so far. For kOverwrite; the other
  // modes write at the end anyway, so nothing changes.
  bool set_end();
  // False when the system reports that earlier writes were lost. Closing
  // twice is harmless.
  bool close();
  bool is_open() const { return handle_ != kNone; }

 private:
  static constexpr intptr_t kNone = -1;
  intptr_t handle_ = kNone;
  OutputMode mode_ = OutputMode::kTruncate;
};

// Copies a file with its attributes and times (natively its mode, access and
// write time, and the owner of a new file, as far as the system allows; setuid
// and setgid only where the owner or group is the same), replacing the content
// of `to` when it exists. False when the copy is not complete; natively a new
// file is deleted then. An existing one is never deleted: it is left alone if
// the disk has no room for the copy, and contains what was written so far if
// something else fails. Natively holes of the file stay holes. A file is never
// copied onto itself, and natively only ordinary files are copied, onto
// ordinary files; other attempts leave both alone. On Windows a hidden or
// system file is replaced too, a read-only one is not. `version`, when not
// null, becomes that of `from` before it was read.
bool copy_file(const char* from, const char* to,
               FileVersion* version = nullptr);
// Gives a file the mode and owner of another (on Windows the attributes), as
// far as the system allows.
void copy_rights(const char* from, const char* to);
bool delete_file(const char* path);
// Takes the read-only mark off a file that could not be deleted or written;
// true when it had one. Natively no such mark keeps a file from being deleted:
// always false.
bool clear_read_only(const char* path);
// Cuts an existing file to its first `size` bytes.
bool cut_file(const char* path, uint64_t size);
// Gives a file a new name in the same folder and replaces an ordinary file of
// that name, in one step. False leaves both as they were.
bool replace_file(const char* from, const char* to);
// False when it cannot be created, or exists.
bool create_folder(const char* path);
// Deletes every file in `folder` that `wanted` accepts, read-only ones too
// (subfolders and links to folders stay, failures are ignored). The names are
// gathered first.
void delete_files_in(const char* folder,
                     const std::function<bool(std::string_view name)>& wanted);
// Whether the path is the root of a drive or share ("C:", "C:\",
// "\\server\share", "/"), the empty path, or one that the system resolves to a
// root ("/tmp/..").
bool is_root_folder(std::string_view folder);
// Made absolute against the working folder; unchanged when that fails.
std::string absolute_path(const char* path);
// Whether two paths name the same file as far as the system compares names: by
// byte, on Windows without regard to case and to the kind of separator. Doubled
// separators, one at the end and "." parts do not count. No file is looked at.
bool same_path(std::string_view a, std::string_view b);
// The same text for all paths that lead to one file, links too, for sets of
// files. For a file that the system does not identify, it is the absolute path.
std::string file_key(const char* path);
// Whether two paths lead to one existing file, however they are written. Where
// the system numbers no files, their absolute paths are compared.
bool names_same_file(const char* a, const char* b);

// Broken-down local time.
struct LocalTime {
  int year = 0;   // four digits
  int month = 0;  // 1-12
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

LocalTime local_time_now();
// Converts a file time; false when it cannot be shown (2^63 and above).
bool to_local_time(uint64_t file_time, LocalTime& out);

}  // namespace zenfo::platform
