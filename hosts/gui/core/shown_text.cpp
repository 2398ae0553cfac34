#include "gui/core/shown_text.h"

#include <algorithm>

#include "gui/core/unicode.h"
#include "shared/text/json_text.h"

namespace zenfo::host::gui {
namespace {

constexpr char32_t kPictures = 0x2400;
constexpr char32_t kPictureOfDelete = 0x2421;
constexpr char32_t kDelete = 0x7F;

char32_t shown(char32_t code) {
  if (code == '\t') return code;
  if (code < ' ') return kPictures + code;
  return code == kDelete ? kPictureOfDelete : code;
}

// Moves the ends of marks from bytes to units while the text is built. Marks
// may overlap, so starts and ends are two lists of their own.
class MarkMover {
 public:
  MarkMover(const std::vector<Mark>& marks, size_t size) {
    for (const Mark& mark : marks) {
      if (mark.start >= size) continue;
      const size_t end =
          std::min<size_t>(size, size_t{mark.start} + mark.length);
      const auto index = static_cast<uint32_t>(moved_.size());
      moved_.push_back({0, 0, mark.match});
      starts_.push_back({mark.start, index});
      ends_.push_back({end, index});
    }
    std::sort(starts_.begin(), starts_.end());
    std::sort(ends_.begin(), ends_.end());
  }

  // The bytes from `from` to `to` become the units from `unit` to `end`.
  void pass(size_t from, size_t to, size_t unit, size_t end) {
    for (; start_ < starts_.size() && starts_[start_].at < to; ++start_) {
      moved_[starts_[start_].mark].start = static_cast<uint32_t>(unit);
    }
    for (; end_ < ends_.size() && ends_[end_].at <= to; ++end_) {
      const size_t last = ends_[end_].at > from ? end : unit;
      moved_[ends_[end_].mark].length = static_cast<uint32_t>(last);
    }
  }

  // Until now the lengths are places of ends.
  std::vector<Mark> take() {
    for (Mark& mark : moved_) {
      mark.length -= std::min(mark.start, mark.length);
    }
    return std::move(moved_);
  }

 private:
  struct End {
    size_t at;
    uint32_t mark;
    auto operator<=>(const End&) const = default;
  };

  std::vector<Mark> moved_;
  std::vector<End> starts_, ends_;
  size_t start_ = 0;
  size_t end_ = 0;
};

}  // namespace

ShownText shown_text(std::string_view bytes, const std::vector<Mark>& marks,
                     const CodePage& page) {
  const bool utf8 = is_utf8(bytes);
  MarkMover mover(marks, bytes.size());
  ShownText result;
  result.text.reserve(bytes.size());
  for (size_t at = 0; at < bytes.size();) {
    Character character{page.at(bytes[at]), 1, true};
    if (utf8) character = first_character(bytes.substr(at));
    const bool any = bytes[at] == '\0' || character.code != 0;
    const size_t unit = result.text.size();
    append_utf16(result.text, any ? shown(character.code) : U'.');
    mover.pass(at, at + character.length, unit, result.text.size());
    at += character.length;
  }
  result.marks = mover.take();
  return result;
}

}  // namespace zenfo::host::gui
