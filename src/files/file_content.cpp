#include "files/file_content.h"

#include <algorithm>
#include <cstring>

#include "frame/guard.h"
#include "text/c_text.h"
#include "text/simd.h"

namespace zenfo {
namespace {

constexpr uint32_t kBlock = 50000;
// Lengths are answered as signed 32-bit numbers.
constexpr uint64_t kSizeLimit = INT32_MAX;
constexpr uint32_t kReportsPerFile = 100;
// From here on a view costs less than a copy: the copy no longer stays in the
// cache of the processor.
constexpr uint32_t kViewed = 1 << 20;

// Process-wide: see the header.
uint32_t poll_counter = 0;
uint32_t last_progress_step = 0;

int32_t double_precision_percent(uint32_t done, uint32_t total) {
  // Rounded to double at each step whatever the unit computes in.
  volatile double quotient = static_cast<double>(done) / total;
  volatile double product = quotient * 100.0;
  return static_cast<int32_t>(product);
}

bool is_non_printable(unsigned char byte) {
  return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

Vector16 non_printable(const char* at) {
  const Vector16 bytes = Vector16::load(at);
  const Vector16 allowed = (bytes == Vector16::fill('\t')) |
                           (bytes == Vector16::fill('\n')) |
                           (bytes == Vector16::fill('\r'));
  return (bytes <= Vector16::fill(0x1f)) & ~allowed;
}

// Checks 64 bytes at a time. Stops before 64 bytes with a non-printable one, or
// when fewer than 64 are left.
const char* skip_printable(const char* at, const char* end) {
  constexpr ptrdiff_t kTurn = 64;
  for (; end - at >= kTurn; at += kTurn) {
    fetch_ahead(at);
    const Vector16 any = non_printable(at) | non_printable(at + 16) |
                         non_printable(at + 32) | non_printable(at + 48);
    if (any.mask() != 0) break;
  }
  return at;
}

}  // namespace

size_t find_control_byte(std::string_view text, size_t from) {
  if (from >= text.size()) return text.size();
  const char* const end = text.data() + text.size();
  const char* const found =
      std::find_if(skip_printable(text.data() + from, end), end, [](char byte) {
        return is_non_printable(static_cast<unsigned char>(byte));
      });
  return static_cast<size_t>(found - text.data());
}

uint32_t FileContent::poll_interrupt(uint32_t every) {
  if (interrupt_hook_ == nullptr) return 0;
  const uint32_t old = poll_counter++;
  if (old < every) return 0;
  poll_counter = 0;
  return static_cast<uint32_t>(interrupt_hook_(&interrupt_word_));
}

void FileContent::progress_step(uint32_t done, uint32_t total) {
  if (progress_hook_ == nullptr || total == 0) return;
  if (done == 0) {
    last_progress_step = 0;
  } else {
    const uint32_t step = done / std::max(total / kReportsPerFile, 1u);
    if (step <= last_progress_step) return;
    last_progress_step = step;
  }
  progress_ = {total, done, double_precision_percent(done, total)};
  progress_hook_(&progress_);
}

void FileContent::clear() {
  loaded_ = false;
  length_ = 0;
  view_.close();
  file_.close();
  data_ = buffer_.data();
}

bool FileContent::intact() {
  return !unread() || (!view_.lost() && file_.size() >= length_);
}

std::string_view FileContent::text() const {
  std::string_view all = bytes();
  const void* nul =
      all.empty() ? nullptr : std::memchr(all.data(), '\0', all.size());
  if (nul == nullptr) return all;
  return all.substr(
      0, static_cast<size_t>(static_cast<const char*>(nul) - all.data()));
}

int32_t FileContent::load_file_content(const char* path,
                                       platform::NearbyFolder* nearby) {
  clear();
  file_size_ = 0;
  opened_ = false;
  path_ = or_empty(path);
  if (path_.empty()) return -1;
  const int32_t length = load(path_.c_str(), nearby);
  if (length < 0) clear();  // releases a view too
  if (!unread()) file_.close();
  return length;
}

int32_t FileContent::take_file_content(const char* path,
                                       platform::KeptBuffer& bytes,
                                       uint32_t size) {
  clear();
  path_ = path;
  opened_ = true;
  version_known_ = false;
  buffer_.swap(bytes);
  data_ = buffer_.data();
  file_size_ = size;
  if (size >= kBlock) return load_in_steps(size);
  progress_step(0, 1);
  return finish(size, 1);
}

void FileContent::pass_over(uint32_t size) {
  clear();
  for (uint32_t k = 0; k < size / kBlock; ++k) poll_interrupt(1);
}

// The first read asks for one block. A short answer is the whole file, and
// its size; only a full block needs to ask for the size.
int32_t FileContent::load(const char* path, platform::NearbyFolder* nearby) {
  const bool opened = links_refused_ ? file_.open_without_links(path)
                                     : file_.open(path, nearby);
  if (!opened) {
    // An empty file counts as loaded even if it may not be opened.
    platform::FileFacts facts;
    const bool empty =
        platform::read_file_facts(path, facts, nearby) &&
        (facts.attributes & platform::kAttributeDirectory) == 0 &&
        facts.size == 0;
    return empty && platform::is_file(path) ? 0 : -1;
  }
  opened_ = true;
  version_known_ = versions_wanted_ && file_.version(version_);
  if (!may_load() || !buffer_.reserve(kBlock + 1, 0)) return -1;
  data_ = buffer_.data();
  const int64_t got = file_.read(data_, kBlock);
  if (got < 0) return -1;
  if (got == 0) return file_.size() == 0 ? 0 : -1;
  if (got == kBlock) return load_large();
  file_size_ = static_cast<uint64_t>(got);
  progress_step(0, 1);
  return finish(static_cast<uint32_t>(got), 1);
}

// The first block is in the buffer.
int32_t FileContent::load_large() {
  const int64_t size = file_.size();
  if (size < kBlock || static_cast<uint64_t>(size) >= kSizeLimit) return -1;
  file_size_ = static_cast<uint64_t>(size);
  if (!make_room(static_cast<uint32_t>(size))) return -1;
  return load_in_steps(static_cast<uint32_t>(size));
}

// Reads what follows the first block. Without a file all of it is there
// already.
int32_t FileContent::load_in_steps(uint32_t size) {
  const uint32_t blocks = size / kBlock;
  const uint32_t rest = size % kBlock;
  const uint32_t steps = blocks + 1;
  progress_step(0, steps);
  uint32_t total = kBlock;
  for (uint32_t k = 0; k < blocks; ++k) {
    if (k > 0) {
      if (!read_exactly(uint64_t{k} * kBlock, kBlock)) return -1;
      total += kBlock;
    }
    if (poll_interrupt(1) != 0) break;
    progress_step(k, steps);
  }
  if (!read_exactly(uint64_t{blocks} * kBlock, rest)) return -1;
  if (view_.is_open() && !unread() && file_.size() < size) return -1;
  // After an interrupt the content extends into blocks that were never read.
  if (total < blocks * kBlock) std::memset(data_ + total, 0, rest);
  return finish(total + rest, steps);
}

// Makes room for the whole file and a NUL; the first block, or all, is there.
bool FileContent::make_room(uint32_t size) {
  if (views_allowed_ && size >= kViewed && view_.open(file_, size)) {
    data_ = view_.data();
    return true;
  }
  if (!buffer_.reserve(size_t{size} + 1, kBlock)) return false;
  data_ = buffer_.data();
  return true;
}

// False when it cannot be read, or the file has shrunk: then a read is short.
bool FileContent::read_exactly(uint64_t offset, uint32_t size) {
  if (size == 0 || !file_.is_open() || unread()) return true;
  if (view_.is_open()) return view_.fill(offset, offset + size);
  return file_.read(data_ + offset, size) == static_cast<int64_t>(size);
}

int32_t FileContent::finish(uint32_t total, uint32_t steps) {
  data_[total] = '\0';
  loaded_ = true;
  length_ = total;
  progress_step(steps, steps);
  return static_cast<int32_t>(total);
}

int32_t FileContent::find_non_printable() {
  if (!loaded_) return 0;
  return unlogged(-1, [&]() -> int32_t {
    progress_step(0, length_);
    const size_t found = find_control_byte(bytes(), 1);
    progress_step(1, 1);
    return found < length_ ? static_cast<int32_t>(found) : 0;
  });
}

}  // namespace zenfo
