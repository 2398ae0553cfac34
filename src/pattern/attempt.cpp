#include "pattern/attempt.h"

#include <algorithm>

namespace zenfo {

Attempt::Attempt(const CompiledPattern& pattern)
    : has_main_(pattern.has_main()),
      first_main_(pattern.start_count),
      main_end_(pattern.main_end()) {
  list_elements(pattern);
}

void Attempt::list_elements(const CompiledPattern& pattern) {
  size_t gap_begin = 0;
  for (const auto& element : pattern.elements) {
    const size_t index = elements_.size();
    elements_.push_back(element.get());
    if (element->kind() != ElementKind::kLiteral) continue;
    bool adjacent = index > 0 && gap_begin == index;
    anchors_.push_back({static_cast<LiteralElement*>(element.get()), gap_begin,
                        index, adjacent});
    gap_begin = index + 1;
  }
}

void Attempt::enter(const char* text, size_t area_end) {
  scope_ = {text, area_end, 0};
  for (Element* element : elements_) element->forget();
}

bool Attempt::try_at(size_t s) {
  next_start_ = kNoPosition;
  if (!has_main_ || locate(s) == Located::kMissing) return false;
  bool matched = next_start_ == kNoPosition && fit(s);
  next_start_ = std::max(next_start_, s + 1);
  return matched;
}

// kMissing leaves no next start: from later positions the literals only move
// to the right. kApart sets the next start.
Attempt::Located Attempt::locate(size_t s) {
  size_t position = s;
  for (const Anchor& anchor : anchors_) {
    LiteralElement& literal = *anchor.literal;
    if (!literal.locate(scope_, position)) {
      for (Element* element : elements_) element->clear_match();
      return Located::kMissing;
    }
    if (anchor.adjacent && literal.start != position) {
      // Intended: the end of the pattern's first literal, wherever the pair
      // that is apart is.
      const LiteralElement& first = *anchors_.front().literal;
      next_start_ = first.start + first.length;
      return Located::kApart;
    }
    position = literal.start + literal.length;
  }
  return Located::kAll;
}

bool Attempt::fit(size_t s) {
  scope_.attempt_start = s;
  size_t position = s;
  for (const Anchor& anchor : anchors_) {
    if (!fit_gap(anchor, position)) return false;
    position = anchor.literal->start + anchor.literal->length;
  }
  return fit_tail(position) && take_result();
}

bool Attempt::fit_gap(const Anchor& anchor, size_t& position) {
  if (anchor.gap_begin == anchor.index) return true;
  const size_t limit = anchor.literal->start;
  size_t resume = 0;
  for (size_t i = anchor.gap_begin; i < anchor.index; ++i) {
    Element& element = *elements_[i];
    if (!element.match(scope_, position, limit)) {
      const size_t q = element.next;
      if (q == position) {
        next_start_ = i == 0 ? position + 1 : position;
      } else {
        // Intended: q itself is skipped.
        next_start_ = q + 1;
      }
      if (resume != 0) next_start_ = resume;
      return false;
    }
    resume = element.resume;
    position += element.length;
  }
  if (position == limit) return true;
  const size_t q = elements_[anchor.index - 1]->next;
  next_start_ = q == limit ? limit + 1 : q;
  return false;
}

bool Attempt::fit_tail(size_t position) {
  const size_t s = scope_.attempt_start;
  size_t first = anchors_.empty() ? 0 : anchors_.back().index + 1;
  size_t resume = 0;
  for (size_t i = first; i < elements_.size(); ++i) {
    Element& element = *elements_[i];
    if (!element.match(scope_, position, scope_.area_end)) {
      const size_t q = element.next;
      if (q == scope_.area_end) {
        next_start_ = q + 1;
      } else if (resume != 0) {
        next_start_ = resume;
      } else {
        next_start_ = position > s ? position : q + 1;
      }
      return false;
    }
    resume = element.resume;
    position += element.length;
  }
  return true;
}

bool Attempt::take_result() {
  match_start_ = elements_[first_main_]->start;
  match_length_ = 0;
  for (size_t i = first_main_; i < main_end_; ++i) {
    match_length_ += elements_[i]->length;
  }
  const Element& last = *elements_.back();
  next_start_ = last.start + last.length;
  if (last.length == 0 && last.kind() != ElementKind::kWildcard) ++next_start_;
  return match_length_ != 0;
}

}  // namespace zenfo
