#include "search/file_source.h"

#include <algorithm>

namespace zenfo {

FileSource::Next ListSource::next(FileInHand& file) {
  while (position_ < list_.count()) {
    const Record* record = list_.get(position_++);
    if (record == nullptr) return Next::kFailed;
    if (record->state == 0) continue;
    const auto* entry = record_cast<FileEntry>(record);
    if (entry == nullptr) return Next::kFailed;
    file = {};
    file.path = entry->full_name();
    file.copy = std::make_unique<FileEntry>(*entry);
    return Next::kFile;
  }
  return Next::kEnd;
}

std::vector<SharedText> ListSource::upcoming(size_t most) {
  // Entries that are not selected cost time too.
  const size_t end = std::min<size_t>(list_.count(), position_ + 4 * most);
  std::vector<SharedText> paths;
  for (auto i = position_; i < end && paths.size() < most; ++i) {
    const Record* record = list_.get(i);
    if (record == nullptr || record->state == 0) continue;
    const auto* entry = record_cast<FileEntry>(record);
    if (entry != nullptr) paths.push_back(entry->full_name());
  }
  // The host does not see that the list's cursor was elsewhere.
  if (position_ > 0) list_.get(position_ - 1);
  return paths;
}

FileSource::Next LineSource::next(FileInHand& file) {
  for (;;) {
    const std::string_view piece = take_piece();
    if (piece.empty()) return Next::kEnd;
    const std::string_view path = path_of(piece);
    if (path.empty()) continue;
    file = {};
    file.path = SharedText(path);
    return Next::kFile;
  }
}

// Those in the buffer: the host may still change the rest of the list file.
std::vector<SharedText> LineSource::upcoming(size_t most) {
  std::vector<SharedText> paths;
  std::string_view rest = std::string_view(buffer_).substr(start_);
  while (paths.size() < most) {
    const size_t length = piece_length(rest);
    if (length == 0) break;
    const std::string_view path = path_of(rest.substr(0, length));
    if (!path.empty()) paths.emplace_back(path);
    rest.remove_prefix(length);
  }
  return paths;
}

std::string_view LineSource::path_of(std::string_view piece) {
  piece = piece.substr(0, piece.find('\0'));
  return piece.substr(0, piece.find("\r\n"));
}

// The text up to and including the next LF, or as much as a piece may contain;
// empty at the end of the file.
std::string_view LineSource::take_piece() {
  const auto first_piece = [&] {
    return piece_length(std::string_view(buffer_).substr(start_));
  };
  size_t length = first_piece();
  while (length == 0 && !at_end_) {
    fill();
    length = first_piece();
  }
  if (length == 0) length = buffer_.size() - start_;  // the last line
  const std::string_view piece(buffer_.data() + start_, length);
  start_ += length;
  return piece;
}

// Length of the first piece of these bytes; 0 when its end is not among them.
size_t LineSource::piece_length(std::string_view bytes) {
  bytes = bytes.substr(0, kLongestPiece);
  const size_t line_feed = bytes.find('\n');
  if (line_feed != std::string_view::npos) return line_feed + 1;
  return bytes.size() == kLongestPiece ? kLongestPiece : 0;
}

// Reads more after the bytes that are not taken yet.
void LineSource::fill() {
  constexpr size_t kRead = size_t{1} << 16;
  buffer_.erase(0, start_);
  start_ = 0;
  const size_t kept = buffer_.size();
  buffer_.resize(kept + kRead);
  const int64_t got = file_.read(buffer_.data() + kept, kRead);
  buffer_.resize(kept + static_cast<size_t>(std::max<int64_t>(got, 0)));
  at_end_ = got <= 0;
}

}  // namespace zenfo
