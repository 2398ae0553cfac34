#include "pattern/literal_with_runs.h"

namespace zenfo {

std::optional<LiteralWithRuns> LiteralWithRuns::of(
    const CompiledPattern& pattern) {
  if (!pattern.has_main()) return std::nullopt;
  LiteralWithRuns shape;
  for (const auto& element : pattern.elements) {
    if (!shape.add(*element)) return std::nullopt;
  }
  if (shape.literal_ == nullptr) return std::nullopt;
  shape.first_main_ = pattern.elements[pattern.start_count].get();
  shape.last_main_ = pattern.elements[pattern.main_end() - 1].get();
  return shape;
}

// False for an element that does not fit in.
bool LiteralWithRuns::add(Element& element) {
  switch (element.kind()) {
    case ElementKind::kLiteral: {
      auto& literal = static_cast<LiteralElement&>(element);
      if (literal_ != nullptr || literal.ignore_blanks) return false;
      literal_ = &literal;
      return true;
    }
    case ElementKind::kClass:
    case ElementKind::kCharList: {
      auto& run = static_cast<RunElement&>(element);
      if (literal_ != nullptr) {
        after_.push_back(&run);
        return true;
      }
      if (before_ != nullptr || run.maximum != 0) return false;
      before_ = &run;
      return true;
    }
    default:
      return false;
  }
}

void LiteralWithRuns::enter(const char* text, size_t area_end) {
  scope_ = {text, area_end, 0};
  literal_->forget();
  for (RunElement* run : after_) run->forget();
}

bool LiteralWithRuns::find_from(size_t s) {
  while (s < scope_.area_end) {
    const size_t at = literal_->next_at(scope_, s);
    if (at == kNoPosition) break;
    if (!measure_before(s, at)) {
      s = at + 1;
      continue;
    }
    if (fit_after(at + literal_->length) && match_length() > 0) return true;
    s = next_start_;
  }
  next_start_ = kNoPosition;
  return false;
}

// False when the run that ends at the literal is too short. Then the attempts
// in it and the one at the literal fail.
bool LiteralWithRuns::measure_before(size_t s, size_t at) {
  scope_.attempt_start = s;
  if (before_ == nullptr) return true;
  const char* start =
      before_->counted().run_start(scope_.text + s, scope_.text + at);
  before_->start = static_cast<size_t>(start - scope_.text);
  before_->length = at - before_->start;
  scope_.attempt_start = before_->start;
  return before_->length >= before_->minimum;
}

// Sets the next start as Attempt does for what follows the last literal. All
// positions are above the attempt's start, for the literal is before them.
bool LiteralWithRuns::fit_after(size_t position) {
  size_t resume = 0;
  for (RunElement* run : after_) {
    if (!run->fit(scope_, position, scope_.area_end)) {
      next_start_ = resume != 0 ? resume : position;
      if (run->next == scope_.area_end) next_start_ = kNoPosition;
      return false;
    }
    resume = run->resume;
    position += run->length;
  }
  next_start_ = position;
  if (!after_.empty() && after_.back()->length == 0) ++next_start_;
  return true;
}

}  // namespace zenfo
