#include "gui/text/text_window.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "gui/words/unicode.h"
#include "shared/system/file_state.h"
#include "shared/system/system.h"

namespace zenfo::host::gui {

// Opens the file for a call.
class TextWindow::Opened {
 public:
  explicit Opened(TextWindow& window) : window_(window) {
    is_open_ = window.file_.open(window.path_);
    window.now_ = std::min(window.size_, window.file_.size());
  }
  ~Opened() { window_.file_.close(); }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  bool is_open() const { return is_open_; }

 private:
  TextWindow& window_;
  bool is_open_;
};

bool TextWindow::open(const std::string& path, std::vector<Match> matches,
                      std::string* reason) {
  path_ = path;
  matches_ = std::move(matches);
  marks_ = {};
  longest_match_ = 0;
  for (const Match& match : matches_) {
    longest_match_ = std::max(longest_match_, match.length);
  }
  const std::optional<FileFacts> facts = facts_of(path);
  size_ = facts ? facts->size : 0;
  modified_ = facts ? facts->modified : 0;
  if (Opened(*this).is_open()) return true;
  *reason = system::look_at(path).reason;
  if (reason->empty()) *reason = system::why_not_loaded(path, "cannot be read");
  size_ = 0;
  return false;
}

bool TextWindow::has_changed() const {
  const std::optional<FileFacts> facts = facts_of(path_);
  return !facts || facts->size != size_ || facts->modified != modified_;
}

bool TextWindow::begins_line(uint64_t offset) {
  return offset == 0 || file_.read(offset - 1, 1) == "\n";
}

// Where a line is cut at a multiple of kPiece, which is not 0; 0 if it is not.
uint64_t TextWindow::cut_near(uint64_t piece) {
  constexpr uint64_t kMost = 3;  // bytes of a character behind its first
  if (file_.read(piece - kPiece, kPiece).find('\n') != std::string_view::npos) {
    return 0;
  }
  const std::string_view near = file_.read(piece - kMost, 2 * kMost);
  const uint64_t cut = piece - kMost + whole_from(near, kMost);
  return cut < now_ ? cut : 0;
}

// The start of the row that contains the offset: after the nearest line end, or
// at a cut.
uint64_t TextWindow::start_of(uint64_t offset) {
  const uint64_t piece = offset / kPiece * kPiece;
  const std::string_view before =
      file_.read(piece, static_cast<size_t>(offset - piece));
  const size_t line_end = before.rfind('\n');
  if (line_end != std::string_view::npos) return piece + line_end + 1;
  if (begins_line(piece)) return piece;
  const uint64_t cut = cut_near(piece);
  if (cut != 0 && cut <= offset) return cut;
  if (cut != 0) return start_of(piece - 1);
  const std::string_view earlier = file_.read(piece - kPiece, kPiece);
  const size_t earlier_end = earlier.rfind('\n');
  if (earlier_end == std::string_view::npos) return start_of(piece - 1);
  return piece - kPiece + earlier_end + 1;
}

// Where the next row begins; the end of the file for the last one.
uint64_t TextWindow::end_of(uint64_t start) {
  // A piece is cut within twice kPiece.
  const std::string_view after = file_.read(start, 2 * kPiece);
  const size_t line_end = after.find('\n');
  uint64_t end = std::min<uint64_t>(start + after.size(), now_);
  if (line_end != std::string_view::npos) end = start + line_end + 1;
  const uint64_t first = (start / kPiece + 1) * kPiece;
  for (uint64_t piece = first; piece < end; piece += kPiece) {
    if (begins_line(piece)) return piece;
    if (const uint64_t cut = cut_near(piece); cut != 0) return cut;
  }
  return end;
}

uint64_t TextWindow::row_start(uint64_t offset) {
  const Opened opened(*this);
  if (now_ == 0) return 0;
  return start_of(std::min(offset, now_ - 1));
}

std::vector<TextRow> TextWindow::rows_from(uint64_t offset, size_t count) {
  const Opened opened(*this);
  std::vector<TextRow> rows;
  if (now_ == 0) return rows;
  uint64_t start = start_of(std::min(offset, now_ - 1));
  while (rows.size() < count && start < now_) {
    rows.push_back(row_at(start));
    if (rows.back().end <= start) break;  // cannot be read any more
    start = rows.back().end;
  }
  add_numbers(rows);
  return rows;
}

std::vector<TextRow> TextWindow::rows_before(uint64_t offset, size_t count) {
  const Opened opened(*this);
  std::vector<TextRow> rows;
  if (now_ == 0) return rows;
  uint64_t start = start_of(std::min(offset, now_ - 1));
  while (rows.size() < count && start > 0) {
    start = start_of(start - 1);
    rows.push_back(row_at(start));
  }
  std::reverse(rows.begin(), rows.end());
  add_numbers(rows);
  return rows;
}

TextRow TextWindow::row_at(uint64_t start) {
  TextRow row;
  row.offset = start;
  row.end = end_of(start);
  row.begins_line = begins_line(start);
  row.bytes = file_.read(start, static_cast<size_t>(row.end - start));
  if (row.bytes.ends_with('\n')) {
    row.bytes.pop_back();
    if (row.bytes.ends_with('\r')) row.bytes.pop_back();
  }
  add_marks(row);
  return row;
}

void TextWindow::add_marks(TextRow& row) const {
  const uint64_t end = row.offset + row.bytes.size();
  const uint64_t from =
      row.offset - std::min<uint64_t>(row.offset, longest_match_);
  auto match = std::lower_bound(
      matches_.begin(), matches_.end(), from,
      [](const Match& m, uint64_t offset) { return m.offset < offset; });
  for (; match != matches_.end() && match->offset < end; ++match) {
    const uint64_t first = std::max<uint64_t>(match->offset, row.offset);
    const uint64_t last =
        std::min<uint64_t>(uint64_t{match->offset} + match->length, end);
    if (last <= first) continue;
    row.marks.push_back({static_cast<uint32_t>(first - row.offset),
                         static_cast<uint32_t>(last - first),
                         static_cast<uint32_t>(match - matches_.begin())});
  }
}

// Numbers where they are known, without reading more than one MB.
void TextWindow::add_numbers(std::vector<TextRow>& rows) {
  if (rows.empty() || !marks_.knows(rows.front().offset)) return;
  std::optional<uint64_t> number =
      marks_.number_at(file_, rows.front().offset, [] { return false; });
  if (!number) return;
  for (TextRow& row : rows) {
    if (row.begins_line && &row != &rows.front()) ++*number;
    row.number = *number;
  }
}

std::optional<uint64_t> TextWindow::count_to(uint64_t offset,
                                             const LineMarks::Stop& stop) {
  const Opened opened(*this);
  if (now_ == 0) return 1;
  return marks_.number_at(file_, std::min(offset, now_ - 1), stop);
}

std::optional<uint64_t> TextWindow::line_start(uint64_t number,
                                               const LineMarks::Stop& stop) {
  const Opened opened(*this);
  if (number <= 1) return 0;
  LineMarks::Mark mark = marks_.mark_before_line(number);
  for (;;) {
    if (mark.offset >= now_ || stop()) return std::nullopt;
    const std::string_view part = file_.read(mark.offset, LineMarks::kStep);
    for (size_t at = 0; (at = part.find('\n', at)) < part.size();) {
      ++at;
      if (++mark.line_ends < number - 1) continue;
      const uint64_t start = mark.offset + at;
      return start < now_ ? std::optional(start) : std::nullopt;
    }
    if (part.empty()) return std::nullopt;
    mark.offset += part.size();
  }
}

}  // namespace zenfo::host::gui
