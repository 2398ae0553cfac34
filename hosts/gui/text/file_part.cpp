#include "gui/text/file_part.h"

#include <algorithm>
#include <optional>

namespace zenfo::host::gui {

bool FilePart::open(const std::string& path) {
  close();
  if (!reader_.open(path)) return false;
  size_ = reader_.size();
  return true;
}

void FilePart::close() {
  reader_.close();
  window_.clear();
  size_ = start_ = 0;
}

std::string_view FilePart::read(uint64_t offset, size_t length) {
  if (offset >= size_) return "";
  length = static_cast<size_t>(std::min<uint64_t>(length, size_ - offset));
  const bool has_all =
      offset >= start_ && offset + length <= start_ + window_.size();
  if (!has_all) fill(offset, length);
  const std::string_view window = window_;
  return window.substr(static_cast<size_t>(offset - start_), length);
}

// Small parts are mostly read near each other, forwards or backwards.
void FilePart::fill(uint64_t offset, size_t length) {
  start_ = offset;
  if (length < kWindow) {
    start_ -= std::min<uint64_t>(start_, (kWindow - length) / 2);
    length = kWindow;
  }
  window_.resize(
      static_cast<size_t>(std::min<uint64_t>(length, size_ - start_)));
  size_t got = 0;
  if (reader_.seek(start_)) {
    while (got < window_.size()) {
      const std::optional<size_t> more =
          reader_.read(window_.data() + got, window_.size() - got);
      if (!more || *more == 0) break;
      got += *more;
    }
  }
  window_.resize(got);
  if (offset > start_ + got) {
    start_ = offset;
    window_.clear();
  }
}

}  // namespace zenfo::host::gui
