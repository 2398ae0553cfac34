// Shared by the pattern tests: contexts with the usual user classes, compiled
// elements and matches as texts, searches in one call.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pattern/compiler.h"
#include "pattern/context.h"
#include "pattern/match_record.h"
#include "pattern/matcher.h"

namespace zenfo::pattern_test {

// User classes: digits = 48-57, alpha = 65-90 and 97-122.
class TestContext : public PatternContext {
 public:
  TestContext();
  // Compiles a main text without markers.
  int32_t compile(const char* main, bool is_pattern = true,
                  bool convert = false);
};

// One element as the whole pattern: a class without bounds, a literal.
void compile_class(PatternContext& context, const CharClass& only);
void compile_literal(PatternContext& context, std::string_view only);

// "L(a) W(?){2,2} L(b)": L literal, C class, W wildcard, H character list, S
// string list, a leading ! for negated; control and high bytes as <0D>.
std::string spell_elements(const PatternContext& context);
// "(0,3) (11,3)", or "none".
std::string spell_matches(PatternContext& context);
// Replaces "<CR>" and "<LF>" in a text by their bytes.
std::string with_line_ends(std::string text);

struct Span {
  uint32_t offset;
  uint32_t length;
};
// Puts areas into a context's match list.
void set_areas(PatternContext& context, const std::vector<Span>& areas);

// The polls and reports of a run in order, such as "0% 50% poll".
class HookLog {
 public:
  // Installs recording hooks; the poll with this number returns 1 (0: none).
  HookLog(PatternContext& context, uint32_t interval, int cancel_at = 0,
          bool with_polls = true, bool with_reports = true);
  static const std::string& text();
  static int polls();
};

inline std::string spell_bytes(std::string_view bytes) {
  std::string spelt;
  for (char c : bytes) {
    auto byte = static_cast<unsigned char>(c);
    if (byte >= 32 && byte < 127) {
      spelt += c;
      continue;
    }
    char hex[5];
    std::snprintf(hex, sizeof hex, "<%02X>", byte);
    spelt += hex;
  }
  return spelt;
}

inline std::string spell_number(uint32_t number) {
  return number == UINT32_MAX ? "max" : std::to_string(number);
}

inline std::string spell_run(const RunElement& run, const std::string& inside) {
  return (run.negated ? "!" : "") +
         std::string(run.kind() == ElementKind::kClass      ? "C("
                     : run.kind() == ElementKind::kWildcard ? "W("
                                                            : "H(") +
         inside + "){" + spell_number(run.minimum) + "," +
         spell_number(run.maximum) + "}";
}

inline std::string spell(const Element& element) {
  switch (element.kind()) {
    case ElementKind::kLiteral:
      return "L(" +
             spell_bytes(static_cast<const LiteralElement&>(element).text()) +
             ")";
    case ElementKind::kStringList: {
      const auto& list = static_cast<const StringListElement&>(element);
      std::string inside;
      for (size_t i = 0; i < list.alternatives.count(); ++i) {
        inside += (i > 0 ? "," : "") + spell_bytes(list.alternatives.at(i));
      }
      return (list.negated ? "!S(" : "S(") + inside + ")";
    }
    case ElementKind::kCharList: {
      const auto& list = static_cast<const CharListElement&>(element);
      std::string inside;
      for (char c : list.chars()) {
        inside += (inside.empty() ? "" : ",") + spell_bytes({&c, 1});
      }
      return spell_run(list, inside);
    }
    default: {
      const auto& one = static_cast<const ClassElement&>(element);
      const std::string& name = one.char_class().name();
      return spell_run(one, name.empty() ? "0-255" : name);
    }
  }
}

inline std::string log_text;
inline int log_polls = 0;
inline int log_cancel_at = 0;

inline int32_t record_poll(void*) {
  log_text += " poll";
  return ++log_polls == log_cancel_at ? 1 : 0;
}

inline int32_t record_report(ProgressRecord* record) {
  log_text += " " + std::to_string(record->position) + "/" +
              std::to_string(record->total) + "=" +
              std::to_string(record->percent) + "%";
  return 1;
}

inline TestContext::TestContext() {
  auto digits = std::make_unique<CharClass>("digits");
  digits->add_include_range(48, 57);
  add_user_class(std::move(digits));
  auto alpha = std::make_unique<CharClass>("alpha");
  alpha->add_include_range(65, 90);
  alpha->add_include_range(97, 122);
  add_user_class(std::move(alpha));
}

inline int32_t TestContext::compile(const char* main, bool is_pattern,
                                    bool convert) {
  return compile_search(*this, {}, {main, is_pattern, convert}, {});
}

inline void compile_only(PatternContext& context,
                         std::unique_ptr<Element> only) {
  context.pattern.clear();
  context.pattern.elements.push_back(std::move(only));
}

inline void compile_class(PatternContext& context, const CharClass& only) {
  compile_only(context, std::make_unique<ClassElement>(only, 0, 0, false));
}

inline void compile_literal(PatternContext& context, std::string_view only) {
  compile_only(context, std::make_unique<LiteralElement>(only));
}

inline std::string spell_elements(const PatternContext& context) {
  std::string spelt;
  for (const auto& element : context.pattern.elements) {
    spelt += (spelt.empty() ? "" : " ") + spell(*element);
  }
  return spelt;
}

inline std::string spell_matches(PatternContext& context) {
  std::string spelt;
  for (uint32_t i = 0; i < context.matches.count(); ++i) {
    const auto* match = record_cast<MatchRecord>(context.matches.get(i));
    if (match == nullptr) return "not a match";
    if (match->begin() != context.text() + match->offset) return "astray";
    spelt += (spelt.empty() ? "(" : " (") + std::to_string(match->offset) +
             "," + std::to_string(match->length) + ")";
  }
  return spelt.empty() ? "none" : spelt;
}

inline std::string with_line_ends(std::string text) {
  for (const auto& [name, byte] : {std::pair{"<CR>", '\r'}, {"<LF>", '\n'}}) {
    for (size_t at; (at = text.find(name)) != std::string::npos;) {
      text.replace(at, 4, 1, byte);
    }
  }
  return text;
}

inline void set_areas(PatternContext& context, const std::vector<Span>& areas) {
  context.clear_matches();
  for (const Span& area : areas) {
    context.matches.append(
        std::make_unique<MatchRecord>(nullptr, area.length, area.offset));
  }
}

inline HookLog::HookLog(PatternContext& context, uint32_t interval,
                        int cancel_at, bool with_polls, bool with_reports) {
  log_text.clear();
  log_polls = 0;
  log_cancel_at = cancel_at;
  search_counters() = {};
  context.set_poll_interval(interval);
  context.set_interrupt_hook(with_polls ? record_poll : nullptr);
  context.set_report_hook(with_reports ? record_report : nullptr);
}

inline const std::string& HookLog::text() { return log_text; }
inline int HookLog::polls() { return log_polls; }

}  // namespace zenfo::pattern_test
