// Tested by tests/unit/platform/next_version_test.cpp
#include "platform/next_version.h"

#include <aclapi.h>

#include <string>

#include "platform/win32/system.h"
#include "platform/win32/version.h"

namespace zenfo::platform {

struct NextVersion::State {
  std::string path;
  FileVersion version;
  DWORD attributes = 0;
};

namespace {

class OpenFile {
 public:
  explicit OpenFile(const char* path)
      : handle_(CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ,
                            nullptr, OPEN_EXISTING,
                            FILE_FLAG_OPEN_REPARSE_POINT, nullptr)) {}
  ~OpenFile() {
    if (is_open()) CloseHandle(handle_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

// What an open file's owner is, freed with the object.
class Owner {
 public:
  explicit Owner(HANDLE file) {
    if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION,
                        &owner_, nullptr, nullptr, nullptr,
                        &descriptor_) != ERROR_SUCCESS) {
      owner_ = nullptr;
    }
  }
  ~Owner() { LocalFree(descriptor_); }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  bool is(const Owner& other) const {
    return owner_ != nullptr && other.owner_ != nullptr &&
           EqualSid(owner_, other.owner_) != 0;
  }

 private:
  PSID owner_ = nullptr;
  PSECURITY_DESCRIPTOR descriptor_ = nullptr;
};

// Everything else that a file has is copied to the file that replaces it.
bool has_one_name(HANDLE file) {
  constexpr DWORD kSpecial =
      FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
  BY_HANDLE_FILE_INFORMATION facts;
  return GetFileInformationByHandle(file, &facts) != 0 &&
         facts.nNumberOfLinks == 1 && (facts.dwFileAttributes & kSpecial) == 0;
}

// Creates an empty file under an unused name and returns that name; empty when
// it fails.
std::string create_beside(const std::string& path) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    const std::string fresh = path + ".zenfo-" +
                              std::to_string(GetCurrentProcessId()) + '-' +
                              std::to_string(i);
    const HANDLE file = CreateFileA(fresh.c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
      CloseHandle(file);
      return fresh;
    }
    if (GetLastError() != ERROR_FILE_EXISTS) return "";
  }
  return "";
}

bool is_of_version(const std::string& path, const FileVersion& expected) {
  const OpenFile file(path.c_str());
  FileVersion version;
  return file.is_open() && read_version(file.get(), version) &&
         version == expected;
}

}  // namespace

NextVersion::NextVersion() : state_(std::make_unique<State>()) {}
NextVersion::~NextVersion() { discard(); }

void NextVersion::discard() {
  if (begun()) DeleteFileA(path());
  fresh_.clear();
}

Opened NextVersion::lock_and_create(const char* path,
                                    const FileVersion& expected) {
  const OpenFile old(path);
  FileVersion version;
  if (!old.is_open() || !read_version(old.get(), version)) {
    return Opened::kFailed;
  }
  if (version != expected) return Opened::kChanged;
  if (!has_one_name(old.get())) return Opened::kFailed;
  state_->path = path;
  state_->attributes = GetFileAttributesA(path);
  state_->version = expected;
  fresh_ = create_beside(state_->path);
  if (!begun()) return Opened::kFailed;
  const OpenFile fresh(this->path());
  return fresh.is_open() && Owner(fresh.get()).is(Owner(old.get()))
             ? Opened::kOpen
             : Opened::kFailed;
}

// The system gives the new file the access list, the streams and the time of
// creation of the old one.
Opened NextVersion::take_place() {
  Opened result = Opened::kChanged;
  if (is_of_version(state_->path, state_->version)) {
    const bool placed =
        ReplaceFileA(state_->path.c_str(), path(), nullptr,
                     REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0;
    if (placed) {
      fresh_.clear();
      SetFileAttributesA(state_->path.c_str(), state_->attributes);
    }
    result = placed ? Opened::kOpen : Opened::kFailed;
  }
  discard();
  return result;
}

}  // namespace zenfo::platform
