#include "display/layout.h"

#include <algorithm>
#include <vector>

#include "frame/callbacks.h"
#include "frame/guard.h"
#include "pattern/match_record.h"
#include "text/substring.h"

namespace zenfo {
namespace {

constexpr std::string_view kDefaultSeparator = "\n\r";

// One match or area; `end` is the first offset after it.
struct Range {
  uint32_t offset;
  uint32_t end;
};

// Collects the ranges of a layout in their order, each a group.
class Gathering {
 public:
  Gathering(DisplayState& state, bool silent)
      : state_(state), silent_(silent), stamp_(state.stamp()) {}

  // False when a record is missing or the host asked to stop.
  bool run(int32_t mode) {
    if (state_.areas() == nullptr) return add_matches_up_to(UINT32_MAX);
    return mode == 0 ? mark_areas() : mark_between_areas();
  }

  std::vector<SpanGroup> groups;
  std::vector<Piece> matches;  // not yet disjoint, none empty
  std::vector<Piece> areas;    // likewise

 private:
  // Reads a record, cut at the text's end; false when it is missing.
  bool fetch(ItemList& list, uint32_t index, Range* range) const {
    const auto* record = record_cast<MatchRecord>(list.get(index));
    if (record == nullptr) return false;
    const auto length = static_cast<uint32_t>(state_.text().size());
    range->offset = std::min(record->offset, length);
    range->end =
        range->offset + std::min(record->length, length - range->offset);
    return true;
  }

  // The next unused match; false when its record is missing. `left` receives
  // whether there was one.
  bool peek_match(Range* match, bool* left) const {
    *left = next_match_ < state_.matches()->count();
    return !*left || fetch(*state_.matches(), next_match_, match);
  }

  bool add(SpanKind kind, const Range& range) {
    const auto group = static_cast<uint32_t>(groups.size());
    groups.push_back({.colours = state_.colours().of(kind), .kind = kind});
    if (range.offset < range.end) {
      auto& pieces = kind == SpanKind::kMatch ? matches : areas;
      pieces.push_back({range.offset, range.end - range.offset, group});
    }
    return !stopped();
  }

  // The host may reset or lay out again while it is asked.
  bool stopped() {
    if (silent_) return false;
    const bool stop = state_.poll_interrupt() != 0;
    if (!stop) state_.report_reset();
    return stop || state_.stamp() != stamp_;
  }

  // All matches that start at or before an offset.
  bool add_matches_up_to(uint32_t last_start) {
    Range match;
    bool left;
    while (true) {
      if (!peek_match(&match, &left)) return false;
      if (!left || match.offset > last_start) return true;
      ++next_match_;
      if (!add(SpanKind::kMatch, match)) return false;
    }
  }

  bool mark_areas() {
    const uint32_t count = state_.areas()->count();
    for (uint32_t i = 0; i < count; ++i) {
      Range area;
      if (!fetch(*state_.areas(), i, &area)) return false;
      if (!add_matches_up_to(area.offset)) return false;
      if (!add(SpanKind::kArea, area)) return false;
    }
    return add_matches_up_to(UINT32_MAX);
  }

  // The complement: the gaps between the areas, and the matches in them.
  bool mark_between_areas() {
    const uint32_t count = state_.areas()->count();
    uint32_t cursor = 0;
    for (uint32_t i = 0; i < count; ++i) {
      Range area;
      if (!fetch(*state_.areas(), i, &area)) return false;
      if (area.offset > cursor &&
          !add(SpanKind::kArea, {cursor, area.offset})) {
        return false;
      }
      cursor = area.end;
      if (!add_matches_within(area)) return false;
    }
    const auto length = static_cast<uint32_t>(state_.text().size());
    return cursor >= length || add(SpanKind::kArea, {cursor, length});
  }

  // The matches that start in an area; those before it are skipped.
  bool add_matches_within(const Range& area) {
    Range match;
    bool left;
    while (true) {
      if (!peek_match(&match, &left)) return false;
      if (!left || match.offset >= area.end) return true;
      ++next_match_;
      if (match.offset < area.offset) continue;
      if (!add(SpanKind::kMatch, match)) return false;
    }
  }

  DisplayState& state_;
  const bool silent_;
  const uint32_t stamp_;
  uint32_t next_match_ = 0;
};

// Sorts by start and cuts each piece where earlier ones end.
void make_disjoint(std::vector<Piece>& pieces) {
  const auto by_start = [](const Piece& a, const Piece& b) {
    return a.offset < b.offset;
  };
  if (!std::is_sorted(pieces.begin(), pieces.end(), by_start)) {
    std::stable_sort(pieces.begin(), pieces.end(), by_start);
  }
  uint32_t covered = 0;
  size_t kept = 0;
  for (const Piece piece : pieces) {
    const uint32_t start = std::max(piece.offset, covered);
    if (start >= piece.end()) continue;
    covered = piece.end();
    pieces[kept++] = {start, covered - start, piece.group};
  }
  pieces.resize(kept);
}

// Both disjoint and sorted: all matches, and the rest of the areas.
std::vector<Piece> matches_over_areas(const std::vector<Piece>& matches,
                                      const std::vector<Piece>& areas) {
  std::vector<Piece> merged;
  merged.reserve(matches.size() + areas.size());
  auto match = matches.begin();
  uint32_t covered = 0;  // up to here everything has been taken
  const auto add_area = [&](const Piece& area, uint32_t end) {
    const uint32_t start = std::max(area.offset, covered);
    if (start < end) merged.push_back({start, end - start, area.group});
  };
  for (const Piece& area : areas) {
    for (; match != matches.end() && match->offset < area.end(); ++match) {
      add_area(area, match->offset);
      merged.push_back(*match);
      covered = match->end();
    }
    add_area(area, area.end());
  }
  merged.insert(merged.end(), match, matches.end());
  return merged;
}

std::vector<Piece> cut(Gathering& gathered) {
  make_disjoint(gathered.matches);
  if (gathered.areas.empty()) return std::move(gathered.matches);
  make_disjoint(gathered.areas);
  return matches_over_areas(gathered.matches, gathered.areas);
}

void note_first_pieces(const std::vector<Piece>& pieces,
                       std::vector<SpanGroup>& groups) {
  for (size_t i = 0; i < pieces.size(); ++i) {
    SpanGroup& group = groups[pieces[i].group];
    if (group.empty()) group.first_piece = static_cast<uint32_t>(i);
  }
}

void split_lines(DisplayState& state) {
  const std::string_view text = state.text();
  const std::string_view separator = state.separator();
  const char* const end = text.data() + text.size();
  const SubstringSearcher searcher(separator, true);
  state.begin_lines(static_cast<uint32_t>(separator.size()));
  const char* line = text.data();
  while (true) {
    state.add_line(static_cast<uint32_t>(line - text.data()));
    const char* found = line < end ? searcher.find(line, end) : nullptr;
    const char* line_end = found != nullptr ? found : end;
    state.width = std::max(state.width, static_cast<uint32_t>(line_end - line));
    if (found == nullptr) return;
    line = found + separator.size();
  }
}

void split_hex_lines(DisplayState& state, uint32_t bytes_per_line) {
  // Two digits, a blank and a character for each byte, two columns between the
  // parts.
  const auto capped = [](uint64_t value) {
    return static_cast<uint32_t>(
        std::min<uint64_t>(value, kLargestScrollValue));
  };
  state.width = capped(uint64_t{bytes_per_line} * 4 + 2);
  state.layout_word = capped(uint64_t{bytes_per_line} * 3);
  state.set_hex_lines(bytes_per_line);
}

bool can_lay_out(const DisplayState& state, uint32_t bytes_per_line) {
  return !state.text().empty() && state.text().size() <= INT32_MAX &&
         state.matches() != nullptr &&
         (bytes_per_line != 0 || !state.separator().empty());
}

int32_t lay_out(DisplayState& state, int32_t mode, bool silent) {
  const uint32_t bytes_per_line = state.bytes_per_line;
  if (!can_lay_out(state, bytes_per_line)) return -1;
  state.begin_layout();
  Gathering gathering(state, silent);
  if (!gathering.run(mode)) return -1;
  std::vector<Piece> pieces = cut(gathering);
  note_first_pieces(pieces, gathering.groups);
  if (bytes_per_line != 0) {
    split_hex_lines(state, bytes_per_line);
  } else {
    split_lines(state);
  }
  state.set_marks(std::move(gathering.groups), std::move(pieces));
  return 1;
}

void choose_separator(DisplayState& state, std::string_view separator) {
  if (!separator.empty()) {
    state.set_separator(separator);
  } else if (!state.has_separator()) {
    state.set_separator(kDefaultSeparator);
  }
}

// Hooks of the library itself call nobody if the host has no such callback.
bool is_heard(const DisplayState& state) {
  const CallbackTable& host = host_callbacks();
  const bool interrupts = state.interrupt_hook() != nullptr &&
                          (state.interrupt_hook() != interr || host.interrupt);
  const bool reports = state.report_hook() != nullptr &&
                       (state.report_hook() != report || host.report);
  return interrupts || reports;
}

// With areas the number of ranges, each a poll, is known only afterwards.
bool can_wait(const DisplayState& state) {
  return can_lay_out(state, state.bytes_per_line) && state.areas() == nullptr &&
         state.window == nullptr && !is_heard(state);
}

}  // namespace

int32_t prepare_display_now(DisplayState& state, std::string_view separator,
                            int32_t mode) {
  return unlogged(-1, [&] {
    choose_separator(state, separator);
    if (lay_out(state, mode, state.silent()) != 1) return -1;
    state.set_scroll_ranges(false);
    return 1;
  });
}

int32_t prepare_display(DisplayState& state, std::string_view separator,
                        int32_t mode) {
  return unlogged(-1, [&] {
    choose_separator(state, separator);
    if (!can_wait(state)) return prepare_display_now(state, {}, mode);
    state.begin_layout();
    state.defer_layout(mode);
    state.skip(state.matches()->count());
    return 1;
  });
}

void make_deferred_layout(DisplayState& state) {
  const std::optional<int32_t> mode = state.take_deferred();
  if (mode) unlogged(-1, [&] { return lay_out(state, *mode, true); });
}

}  // namespace zenfo
