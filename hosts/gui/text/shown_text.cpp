#include "gui/text/shown_text.h"

#include <algorithm>

#include "gui/words/unicode.h"
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

// Calls visit(offset, length in bytes, code) for each character; a byte that
// has none is '.'.
template <class Visit>
void each_character(std::string_view bytes, const CodePage& page, Visit visit) {
  const bool utf8 = is_utf8(bytes);
  for (size_t at = 0; at < bytes.size();) {
    Character character{page.at(bytes[at]), 1, true};
    if (utf8) character = first_character(bytes.substr(at));
    const bool any = bytes[at] == '\0' || character.code != 0;
    visit(at, character.length, any ? character.code : U'.');
    at += character.length;
  }
}

}  // namespace

ShownText shown_text(std::string_view bytes, const std::vector<Mark>& marks,
                     const CodePage& page) {
  MarkMover mover(marks, bytes.size());
  ShownText result;
  result.text.reserve(bytes.size());
  each_character(bytes, page, [&](size_t at, size_t length, char32_t code) {
    const size_t unit = result.text.size();
    append_utf16(result.text, shown(code));
    mover.pass(at, at + length, unit, result.text.size());
  });
  result.marks = mover.take();
  return result;
}

std::vector<uint32_t> bytes_of_units(std::string_view bytes,
                                     const CodePage& page) {
  std::vector<uint32_t> places;
  places.reserve(bytes.size() + 1);
  each_character(bytes, page, [&](size_t at, size_t, char32_t code) {
    const size_t units = code > 0xFFFF ? 2 : 1;
    places.insert(places.end(), units, static_cast<uint32_t>(at));
  });
  places.push_back(static_cast<uint32_t>(bytes.size()));
  return places;
}

std::u16string plain_text_of(std::string_view bytes, const CodePage& page) {
  std::u16string text;
  text.reserve(bytes.size());
  each_character(bytes, page, [&](size_t, size_t, char32_t code) {
    append_utf16(text, code == 0 ? kPictures : code);
  });
  return text;
}

}  // namespace zenfo::host::gui
