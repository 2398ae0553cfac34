// Filename patterns with "*" and "?", as the Windows file search reads them,
// for systems whose own file search has no patterns.
//
// Tested by tests/unit/platform/wildcard_test.cpp
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo::platform {

// One pattern, compiled once and matched against bare names. ASCII letters
// match in either case. A name's extension is what follows its last point.
//   *    any run of bytes, an empty one too; right before a point it does not
//        run over the name's last point
//   ?    one character (of one or more bytes, if the name is UTF-8), never a
//        point; nothing before a point and at the name's end
//   .    before "*" or "?" also nothing, at the name's end
// Points that end the pattern are left out, so "*." takes names without a
// point and "*.*" takes every name. An empty pattern matches nothing.
// Example: "*.ht*" takes INDEX.HTM and a.b.html, not ht or a.txt.
class WildcardPattern {
 public:
  explicit WildcardPattern(std::string_view pattern);

  bool matches(std::string_view name) const;

 private:
  enum class Kind : unsigned char {
    kByte,        // that byte, folded
    kAny,         // "?"
    kRun,         // "*"
    kRunToPoint,  // "*" before a point
    kPointOrEnd,  // "." before a wildcard
  };
  struct Token {
    Kind kind;
    char byte;
  };
  struct Step;

  void compile(std::string_view pattern);
  bool is_run_and_text() const;
  bool ends_with_text(std::string_view name) const;
  bool simulate(std::string_view name) const;
  void skip_optional(std::string& active, const Step& step) const;
  void take_byte(std::string& active, const Step& step) const;

  std::vector<Token> tokens_;
  bool run_and_text_ = false;  // "*" and then plain bytes only
};

}  // namespace zenfo::platform
