#include "shared/text/found_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>
#include <future>
#include <limits>
#include <new>
#include <numeric>
#include <optional>
#include <tuple>

#include "shared/system/byte_marks.h"
#include "shared/system/input_stream.h"
#include "shared/system/paths.h"
#include "shared/system/work_thread.h"

namespace zenfo::host {
namespace {

// In bytes; so many are counted without looking for the last line end.
constexpr size_t kFar = 2 * kCountStep;

// Of the buffer, in bytes.
constexpr size_t kLeastCapacity = size_t{256} * 1024;

// Counts in one-byte sums, which the compiler keeps in a vector.
uint64_t count_line_ends(std::string_view text) {
  constexpr size_t kSums = 32;
  uint64_t lines = 0;
  while (text.size() >= kSums) {
    const size_t turns = std::min<size_t>(text.size() / kSums, UINT8_MAX);
    std::array<uint8_t, kSums> sums{};
    for (size_t turn = 0; turn < turns; ++turn) {
      const char* bytes = text.data() + turn * kSums;
      for (size_t i = 0; i < kSums; ++i) sums[i] += bytes[i] == '\n';
    }
    lines = std::accumulate(sums.begin(), sums.end(), lines);
    text.remove_prefix(turns * kSums);
  }
  return lines +
         static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

// As count_marks(), but a very long way is shared between two threads.
ByteMarkCount count_far(std::string_view text, size_t* at, size_t end) {
  constexpr size_t kWorthAThread = size_t{8} << 20;
  if (end - *at < kWorthAThread || !may_use_threads()) {
    return count_marks(text, at, end);
  }
  size_t first = *at;
  const size_t middle = first + (end - first) / 2 / kCountStep * kCountStep;
  std::future<ByteMarkCount> beside =
      std::async([=]() mutable { return count_marks(text, &first, middle); });
  *at = middle;
  ByteMarkCount count = count_marks(text, at, end);
  const ByteMarkCount before = beside.get();
  count.line_ends += before.line_ends;
  count.zeros |= before.zeros;
  return count;
}

// The offset of a match's last byte in the text. The match must begin within
// the text.
size_t last_byte(std::string_view text, const Match& match) {
  return std::min<size_t>(text.size(), size_t{match.offset} + match.length) - 1;
}

// Cuts the last block, and its matches, to the lines that are left.
void cut(std::string_view text, Block& block, uint64_t lines) {
  size_t end = block.start;
  for (; lines > 0; --lines) end = end_of_line(text, end);
  block.end = end;
  const auto behind =
      std::find_if(block.matches.begin(), block.matches.end(),
                   [&](const Match& match) { return match.offset >= end; });
  block.matches = {block.matches.begin(), behind};
}

void limit(std::string_view text, std::vector<Block>& blocks,
           uint64_t most_lines) {
  for (size_t i = 0; i < blocks.size(); ++i) {
    Block& block = blocks[i];
    const uint64_t lines =
        count_lines(text.substr(block.start, block.end - block.start));
    if (lines < most_lines) {
      most_lines -= lines;
      continue;
    }
    if (lines > most_lines) cut(text, block, most_lines);
    blocks.resize(most_lines == 0 ? i : i + 1);
    return;
  }
}

}  // namespace

void unite(std::vector<Match>& matches) {
  std::sort(matches.begin(), matches.end(), [](const Match& a, const Match& b) {
    return std::tie(a.offset, b.length) < std::tie(b.offset, a.length);
  });
  matches.erase(std::unique(matches.begin(), matches.end()), matches.end());
}

bool FileBytes::load_or_map(const std::string& path) {
  mapped_.close();
  size_ = 0;
  if (!reader_.open(path)) return false;
  const bool good =
      (MappedFile::is_worth(reader_.size()) && mapped_.open(path)) ||
      read_to_end();
  reader_.close();
  return good;
}

bool FileBytes::load(const std::string& path) {
  mapped_.close();
  size_ = 0;
  const bool good = reader_.open(path) && read_to_end();
  reader_.close();
  return good;
}

// When all bytes were read that the file had when it was opened, there is no
// need to ask for more.
bool FileBytes::read_to_end() {
  const auto expected =
      static_cast<size_t>(std::min<uint64_t>(reader_.size(), SIZE_MAX / 2));
  for (;;) {
    if (size_ == capacity_ &&
        !grow(std::max({kLeastCapacity, 2 * capacity_, expected + 1}))) {
      break;
    }
    const std::optional<size_t> got =
        reader_.read(bytes_.get() + size_, capacity_ - size_);
    if (!got) break;
    size_ += *got;
    if (*got == 0 || (size_ == expected && size_ < capacity_)) return true;
  }
  size_ = 0;
  return false;
}

bool FileBytes::load_start(const std::string& path, size_t most) {
  const InputStream file = without_buffer(open_file(path, "rb"));
  mapped_.close();
  size_ = 0;
  bool good = file != nullptr;
  for (size_t got = 1; good && got > 0 && size_ < most; size_ += got) {
    if (size_ == capacity_ && !grow(std::max(kLeastCapacity, 2 * capacity_))) {
      good = false;
      break;
    }
    got = std::fread(bytes_.get() + size_, 1, std::min(capacity_, most) - size_,
                     file.get());
    good = std::ferror(file.get()) == 0;
  }
  if (!good) size_ = 0;
  return good;
}

// Large files are given their full size at once, because moving a gigabyte
// takes long.
bool FileBytes::grow(size_t capacity) {
  std::unique_ptr<char[]> bytes(new (std::nothrow) char[capacity]);
  if (bytes == nullptr) return false;
  if (size_ > 0) std::memcpy(bytes.get(), bytes_.get(), size_);
  bytes_ = std::move(bytes);
  capacity_ = capacity;
  return true;
}

std::vector<Block> find_blocks(std::string_view text,
                               std::span<const Match> matches,
                               uint64_t most_lines) {
  std::vector<Block> blocks;
  for (size_t i = 0; i < matches.size(); ++i) {
    const Match& match = matches[i];
    if (match.offset >= text.size() || match.length == 0) continue;
    const size_t last = last_byte(text, match);
    if (!blocks.empty() && match.offset < blocks.back().end) {
      Block& block = blocks.back();
      if (last >= block.end) block.end = end_of_line(text, last);
      block.matches = {block.matches.data(), &match + 1};
    } else {
      blocks.push_back({start_of_line(text, match.offset),
                        end_of_line(text, last),
                        {&match, 1}});
    }
  }
  if (most_lines < std::numeric_limits<uint64_t>::max()) {
    limit(text, blocks, most_lines);
  }
  return blocks;
}

uint64_t count_matching_lines(std::string_view text,
                              std::span<const Match> matches) {
  uint64_t lines = 0;
  size_t counted = 0;  // the end of the last line that was counted
  for (const Match& match : matches) {
    if (match.offset >= text.size() || match.length == 0) continue;
    const size_t last = last_byte(text, match);
    if (last < counted) continue;
    const size_t first = std::max<size_t>(match.offset, counted);
    lines += 1 + count_line_ends(text.substr(first, last - first));
    counted = end_of_line(text, last);
  }
  return lines;
}

uint64_t count_lines(std::string_view text) {
  if (text.empty()) return 0;
  return count_line_ends(text) + (text.back() != '\n');
}

size_t end_of_line(std::string_view text, size_t offset) {
  const size_t end = text.find('\n', offset);
  return end == std::string_view::npos ? text.size() : end + 1;
}

size_t start_of_line(std::string_view text, size_t offset) {
  text = text.substr(0, offset);
  for (size_t at = text.size(); at > 0;) {
    at -= std::min(at, kMarkedBytes);
    const uint32_t ends = marks_of(text, at).line_ends;
    if (ends != 0) return at + static_cast<size_t>(std::bit_width(ends));
  }
  return 0;
}

std::string_view without_end(std::string_view line) {
  if (!line.ends_with('\n')) return line;
  line.remove_suffix(line.ends_with("\r\n") ? 2 : 1);
  return line;
}

uint64_t LineNumbers::at(size_t offset) {
  if (counted_ < offset) {
    number_ += count_line_ends(text_.substr(counted_, offset - counted_));
    counted_ = offset;
  }
  return number_;
}

void LineScan::move_to(size_t offset) {
  if (offset < end_) return;
  start_ = end_;
  ++number_;
  count_to(offset);
  find_end(offset);
}

// Counts the line ends from the present end to the offset; start_ becomes the
// start of the line there.
void LineScan::count_to(size_t offset) {
  size_t at = end_;
  ByteMarkCount far;
  if (offset - at >= kFar) {
    far = count_far(text_, &at, offset);
    number_ += far.line_ends;
    zero_met_ |= far.zeros;
  }
  const size_t near = at;
  size_t start = 0;  // behind the last line end from there on
  for (; at < offset; at += kMarkedBytes) {
    const ByteMarks marks = marks_of(text_, at);
    const size_t left = std::min(offset - at, kMarkedBytes);
    const uint32_t wanted = (1U << left) - 1;
    zero_met_ |= (marks.zeros & wanted) != 0;
    uint32_t ends = marks.line_ends & wanted;
    if (ends == 0) continue;
    start = at + static_cast<size_t>(std::bit_width(ends));
    for (; ends != 0; ends &= ends - 1) ++number_;
  }
  if (start == 0 && far.line_ends > 0) start = start_of_line(text_, near);
  if (start > 0) start_ = start;
}

void LineScan::find_end(size_t offset) {
  for (size_t at = offset; at < text_.size(); at += kMarkedBytes) {
    const ByteMarks marks = marks_of(text_, at);
    const uint32_t before = (marks.line_ends & (0U - marks.line_ends)) - 1U;
    zero_met_ |= (marks.zeros & before) != 0;
    if (marks.line_ends == 0) continue;
    end_ = at + static_cast<size_t>(std::countr_zero(marks.line_ends)) + 1;
    return;
  }
  end_ = text_.size();
}

void visit_lines(std::string_view text, const std::vector<Block>& blocks,
                 uint64_t before, uint64_t after, LineVisitor& visitor) {
  size_t shown = 0;  // everything before was visited or left out
  for (size_t i = 0; i < blocks.size(); ++i) {
    size_t from = blocks[i].start;
    for (uint64_t n = 0; n < before && from > shown; ++n) {
      from = start_of_line(text, from - 1);
    }
    if (i == 0 || from > shown) visitor.gap();
    auto context = [&](size_t start) {
      shown = end_of_line(text, start);
      visitor.context(start, shown);
    };
    while (from < blocks[i].start) {
      context(from);
      from = shown;
    }
    visitor.block(blocks[i]);
    shown = blocks[i].end;
    const size_t limit =
        i + 1 < blocks.size() ? blocks[i + 1].start : text.size();
    for (uint64_t n = 0; n < after && shown < limit; ++n) context(shown);
  }
}

}  // namespace zenfo::host
