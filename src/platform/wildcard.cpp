// Filename patterns. The pattern becomes a row of tokens; a set of states, one
// for each number of tokens passed, walks over the name once, so the cost is
// at most name length times pattern length whatever the pattern. By far the
// most patterns are "*" or "*.extension" and need one comparison of the end.
//
// Tested by tests/unit/platform/wildcard_test.cpp
#include "platform/wildcard.h"

namespace zenfo::platform {
namespace {

constexpr char kPoint = '.';

char folded(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool is_wildcard(char c) { return c == '*' || c == '?'; }

// Whether the byte at `position` continues a UTF-8 character.
bool continues_character(std::string_view name, size_t position) {
  const auto byte = [&](size_t i) {
    return static_cast<unsigned char>(name[i]);
  };
  return position > 0 && (byte(position) & 0xC0) == 0x80 &&
         byte(position - 1) >= 0x80;
}

std::string_view without_end_points(std::string_view pattern) {
  while (!pattern.empty() && pattern.back() == kPoint) {
    pattern.remove_suffix(1);
  }
  return pattern;
}

}  // namespace

// One byte of the name, or its end.
struct WildcardPattern::Step {
  char byte = 0;
  bool at_end = false;
  bool at_last_point = false;
  bool continues_character = false;

  bool at_point() const { return !at_end && byte == kPoint; }
};

WildcardPattern::WildcardPattern(std::string_view pattern) {
  compile(pattern);
  run_and_text_ = is_run_and_text();
}

void WildcardPattern::compile(std::string_view pattern) {
  if (pattern == "*.*") pattern = "*";  // the same, and decided at once
  const std::string_view text = without_end_points(pattern);
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    // Of the points that were left out, the first is still there, after the
    // text.
    const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
    if (c == '*') {
      if (next == '*') continue;  // a row of them is one
      tokens_.push_back({next == kPoint ? Kind::kRunToPoint : Kind::kRun, 0});
    } else if (c == '?') {
      tokens_.push_back({Kind::kAny, 0});
    } else if (c == kPoint && is_wildcard(next)) {
      tokens_.push_back({Kind::kPointOrEnd, 0});
    } else {
      tokens_.push_back({Kind::kByte, folded(c)});
    }
  }
}

// A run before a point counts only with that point as the token after it: the
// point must be found then, so the run need not stop by itself.
bool WildcardPattern::is_run_and_text() const {
  if (tokens_.empty()) return false;
  const Kind first = tokens_.front().kind;
  if (first == Kind::kRunToPoint && tokens_.size() == 1) return false;
  if (first != Kind::kRun && first != Kind::kRunToPoint) return false;
  for (size_t i = 1; i < tokens_.size(); ++i) {
    if (tokens_[i].kind != Kind::kByte) return false;
  }
  return true;
}

bool WildcardPattern::matches(std::string_view name) const {
  return run_and_text_ ? ends_with_text(name) : simulate(name);
}

bool WildcardPattern::ends_with_text(std::string_view name) const {
  const size_t length = tokens_.size() - 1;
  if (name.size() < length) return false;
  const std::string_view end = name.substr(name.size() - length);
  for (size_t i = 0; i < length; ++i) {
    if (folded(end[i]) != tokens_[i + 1].byte) return false;
  }
  return true;
}

bool WildcardPattern::simulate(std::string_view name) const {
  if (tokens_.empty()) return false;
  const size_t last_point = name.rfind(kPoint);
  std::string active(tokens_.size() + 1, 0);
  active[0] = 1;
  for (size_t i = 0; i < name.size(); ++i) {
    const Step step{name[i], false, i == last_point,
                    continues_character(name, i)};
    skip_optional(active, step);
    take_byte(active, step);
  }
  skip_optional(active, Step{0, true, false, false});
  return active.back() != 0;
}

// Passes the tokens that may take nothing here.
void WildcardPattern::skip_optional(std::string& active,
                                    const Step& step) const {
  for (size_t i = 0; i < tokens_.size(); ++i) {
    const Kind kind = tokens_[i].kind;
    const bool run = kind == Kind::kRun || kind == Kind::kRunToPoint;
    const bool any = kind == Kind::kAny && (step.at_end || step.at_point());
    const bool point = kind == Kind::kPointOrEnd && step.at_end;
    if (active[i] && (run || any || point)) active[i + 1] = 1;
  }
}

// From the back, so that every state still sees the one before the byte.
void WildcardPattern::take_byte(std::string& active, const Step& step) const {
  const char byte = folded(step.byte);
  for (size_t i = tokens_.size() + 1; i-- > 0;) {
    bool reached = false;
    if (active[i] && i < tokens_.size()) {
      const Kind kind = tokens_[i].kind;
      reached = kind == Kind::kRun ||
                (kind == Kind::kRunToPoint && !step.at_last_point);
    }
    if (i > 0) {
      const Token& token = tokens_[i - 1];
      if (token.kind == Kind::kAny && step.continues_character) {
        reached |= active[i] != 0;
      } else if (active[i - 1]) {
        reached |= (token.kind == Kind::kByte && token.byte == byte) ||
                   (token.kind == Kind::kAny && !step.at_point()) ||
                   (token.kind == Kind::kPointOrEnd && step.at_point());
      }
    }
    active[i] = reached;
  }
}

}  // namespace zenfo::platform
