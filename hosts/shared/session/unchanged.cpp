#include "shared/session/unchanged.h"

#include <algorithm>
#include <vector>

#include "shared/text/found_text.h"
#include "zenfofr130.h"

namespace zenfo::host {
namespace {

bool is_capital(char c) { return c >= 'A' && c <= 'Z'; }
bool is_small(char c) { return c >= 'a' && c <= 'z'; }

// Removes what a search may ignore: blanks and, on demand, case.
std::string bare(const std::string& text, bool ignore_case) {
  std::string kept;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) <= ' ') continue;
    kept += ignore_case && is_capital(c) ? static_cast<char>(c | 0x20) : c;
  }
  return kept;
}

// Whether a match may differ from the one text sought.
bool finds_many(const SearchOptions& search) {
  return search.is_pattern || search.caret || search.between ||
         search.texts.size() != 1;
}

// Whether the library will replace the match by the same text. It appends a
// mark to texts that it cuts.
bool own_replacement_is(uint32_t index, std::string_view matched) {
  constexpr std::string_view kMark = " ...";
  constexpr size_t kRoom = 16;
  if (matched.ends_with(kMark)) return false;
  std::vector<char> text(matched.size() + 2 * kRoom);
  const auto size = static_cast<uint32_t>(matched.size() + kRoom);
  return GetMatchReplace(ZENFO_LIST_MATCHES, index, text.data(), size) == 1 &&
         matched == text.data();
}

}  // namespace

Stays stays_as(const SearchOptions& search, const std::string& replacement) {
  const auto same = [&](const std::string& text) {
    return bare(text, search.ignore_case) ==
           bare(replacement, search.ignore_case);
  };
  if (replacement.empty()) return nullptr;
  if (!finds_many(search) && !same(search.texts.front())) return nullptr;
  return [replacement](std::string_view matched) {
    return matched == replacement;
  };
}

Stays stays_in_case(const SearchOptions& search, bool upper) {
  const auto changes = upper ? is_small : is_capital;
  const auto stays = [changes](std::string_view text) {
    return std::none_of(text.begin(), text.end(), changes);
  };
  const bool exact = !finds_many(search) && !search.ignore_case;
  if (exact && !stays(search.texts.front())) return nullptr;
  return stays;
}

bool stays_never(std::string_view) { return false; }

void deselect_unchanged(const std::string& path, const Stays& stays) {
  FileBytes bytes;
  if (!bytes.load(path)) return;
  const uint32_t count = matches_in_hand();
  for (uint32_t i = 0; i < count; ++i) {
    const Match match = match_in_hand(i);
    if (match.offset > bytes.view().size()) return;
    const std::string_view matched =
        bytes.view().substr(match.offset, match.length);
    if (stays(matched) || own_replacement_is(i, matched)) {
      SetState(ZENFO_LIST_MATCHES, static_cast<int32_t>(i), 0);
    }
  }
}

}  // namespace zenfo::host
