// Runs the pattern engine and its slow model with the same class definitions,
// patterns and searches, and describes every difference in words.
//
// Used by tests/unit/model/engine_against_model_test.cpp and fuzz/
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/pattern_model.h"
#include "model/random_cases.h"
#include "pattern/class_file.h"
#include "pattern/compiler.h"
#include "pattern/context.h"
#include "pattern/match_record.h"
#include "pattern/matcher.h"

namespace zenfo::test {

// An element of either side. Classes are identified by their name and the bytes
// that belong to them.
struct ToldElement {
  model::Kind kind = model::Kind::kLiteral;
  std::string text;
  std::vector<std::string> alternatives;
  std::string chars;
  std::string class_name;
  std::string members;  // one of '0', '1' for each byte value
  uint32_t minimum = 0;
  uint32_t maximum = 0;
  bool negated = false;
  bool operator==(const ToldElement&) const = default;
};

inline std::string members_of(const model::CharClass& one) {
  std::string members(256, '0');
  for (size_t byte = 0; byte < 256; ++byte) {
    if (model::is_member(one, static_cast<unsigned char>(byte))) {
      members[byte] = '1';
    }
  }
  return members;
}

inline std::string members_of(const CharClass& one) {
  std::string members(256, '0');
  for (size_t byte = 0; byte < 256; ++byte) {
    if (one.contains(static_cast<uint8_t>(byte))) members[byte] = '1';
  }
  return members;
}

inline ToldElement told(const model::Element& element) {
  ToldElement out{
      element.kind, element.text,    element.alternatives, element.chars,  "",
      "",           element.minimum, element.maximum,      element.negated};
  if (element.kind == model::Kind::kClass ||
      element.kind == model::Kind::kWildcard) {
    out.class_name = element.char_class.name;
    out.members = members_of(element.char_class);
  }
  return out;
}

inline void tell_run(const RunElement& run, ToldElement& out) {
  out.minimum = run.minimum;
  out.maximum = run.maximum;
  out.negated = run.negated;
}

inline ToldElement told(const Element& element) {
  ToldElement out;
  switch (element.kind()) {
    case ElementKind::kLiteral:
      out.text = static_cast<const LiteralElement&>(element).text();
      break;
    case ElementKind::kStringList: {
      const auto& list = static_cast<const StringListElement&>(element);
      out.kind = model::Kind::kStringList;
      out.negated = list.negated;
      for (size_t i = 0; i < list.alternatives.count(); ++i) {
        out.alternatives.push_back(list.alternatives.at(i));
      }
      break;
    }
    case ElementKind::kCharList:
      out.kind = model::Kind::kCharList;
      tell_run(static_cast<const CharListElement&>(element), out);
      out.chars = static_cast<const CharListElement&>(element).chars();
      break;
    case ElementKind::kClass:
    case ElementKind::kWildcard: {
      const auto& one = static_cast<const ClassElement&>(element);
      out.kind = element.kind() == ElementKind::kClass ? model::Kind::kClass
                                                       : model::Kind::kWildcard;
      tell_run(one, out);
      out.class_name = one.char_class().name();
      out.members = members_of(one.char_class());
      break;
    }
  }
  return out;
}

inline std::string in_words(std::string_view what, int64_t engine,
                            int64_t expected) {
  return std::string(what) + ": engine " + std::to_string(engine) + ", model " +
         std::to_string(expected);
}

inline std::string in_words(const std::vector<model::Match>& matches) {
  std::string out;
  for (const model::Match& match : matches) {
    out += " (" + std::to_string(match.offset) + "," +
           std::to_string(match.length) + ")";
  }
  return out.empty() ? " none" : out;
}

// One pattern context for each side. The functions describe the differences; an
// empty text means none.
class EngineBesideModel {
 public:
  EngineBesideModel() = default;
  explicit EngineBesideModel(std::string_view class_file) {
    define_classes(class_file);
  }

  std::string define_classes(std::string_view file) {
    PatternContext* const contexts[] = {&engine_};
    const int32_t answer = apply_class_definitions(file, contexts);
    const int expected = model::set_operators(model_, std::string(file));
    if (answer != expected) return in_words("answer", answer, expected);
    return compare_classes();
  }

  std::string compile(const model::RandomCase& one) {
    const int32_t answer = compile_engine(one);
    const int expected = compile_model(one);
    if (answer != expected) return in_words("compile", answer, expected);
    return compare_patterns();
  }

  // Searches with the pattern compiled last, on both paths of the engine,
  // storing and counting.
  std::string search(const model::RandomCase& one) {
    const model::Found expected = search_model(one);
    found_ = expected.matches.size();
    // A heap copy of the exact size, so that the sanitizer notices reads
    // outside.
    const std::vector<char> text(one.text.begin(), one.text.end());
    fill_areas(one);
    for (const SearchPath path : {SearchPath::kFast, SearchPath::kPlain}) {
      for (const bool store : {true, false}) {
        const std::string name =
            std::string(path == SearchPath::kFast ? "fast" : "plain") +
            (store ? " storing" : " counting");
        const int32_t answer = search_engine(one, text, path, store);
        if (answer != expected.count) {
          return in_words(name, answer, expected.count) + ":" +
                 in_words(expected.matches);
        }
        const std::string astray = compare_records(
            store ? expected.matches : std::vector<model::Match>(), text);
        if (!astray.empty()) return name + ": " + astray;
      }
    }
    return "";
  }

  std::string compile_and_search(const model::RandomCase& one) {
    const std::string difference = compile(one);
    return difference.empty() ? search(one) : difference;
  }

  // What both sides compiled and found last.
  std::string elements() const { return model::dump(model_.elements); }
  size_t found() const { return found_; }
  size_t class_count() const { return model_.sorted_classes.size(); }

 private:
  std::string compare_classes() const {
    const ClassList& classes = engine_.user_classes;
    const auto& expected = model_.sorted_classes;
    if (classes.count() != expected.size()) {
      return in_words("classes", static_cast<int64_t>(classes.count()),
                      static_cast<int64_t>(expected.size()));
    }
    for (size_t i = 0; i < expected.size(); ++i) {
      const std::string at = "class " + std::to_string(i);
      if (classes.at(i).name() != expected[i].name) {
        return at + ": engine " + classes.at(i).name() + ", model " +
               expected[i].name;
      }
      const std::string members = members_of(classes.at(i));
      if (members != members_of(expected[i])) return at + ": other members";
      const ByteSet set = classes.at(i).members(false);
      for (size_t byte = 0; byte < 256; ++byte) {
        if (set.contains(static_cast<char>(byte)) != (members[byte] == '1')) {
          return at + ": its byte set differs from the class";
        }
      }
    }
    return "";
  }

  int32_t compile_engine(const model::RandomCase& one) {
    if (one.is_tag) {
      return compile_tag(engine_, one.start.c_str(), one.end.c_str(),
                         one.count_start, one.start_is_pattern,
                         one.convert_start);
    }
    return compile_search(
        engine_, {one.start.c_str(), one.start_is_pattern, one.convert_start},
        {one.main.c_str(), one.main_is_pattern, one.convert_main},
        {one.end.c_str(), one.end_is_pattern, one.convert_end});
  }

  int compile_model(const model::RandomCase& one) {
    if (one.is_tag) {
      return model::set_pattern_tag(model_, one.start, one.end, one.count_start,
                                    one.start_is_pattern, one.convert_start);
    }
    return model::set_pattern(
        model_, {one.start, one.main, one.end, one.start_is_pattern,
                 one.main_is_pattern, one.end_is_pattern, one.convert_start,
                 one.convert_main, one.convert_end});
  }

  std::string compare_patterns() const {
    const CompiledPattern& pattern = engine_.pattern;
    if (pattern.elements.size() != model_.elements.size()) {
      return in_words("elements", static_cast<int64_t>(pattern.elements.size()),
                      static_cast<int64_t>(model_.elements.size()));
    }
    if (pattern.start_count != model_.start_count) {
      return in_words("start count", static_cast<int64_t>(pattern.start_count),
                      static_cast<int64_t>(model_.start_count));
    }
    if (pattern.last_main != model_.last_main) {
      return in_words("last main", pattern.last_main, model_.last_main);
    }
    for (size_t i = 0; i < pattern.elements.size(); ++i) {
      if (told(*pattern.elements[i]) != told(model_.elements[i])) {
        return "element " + std::to_string(i) + ", model " +
               model::dump({model_.elements[i]});
      }
    }
    return "";
  }

  void fill_areas(const model::RandomCase& one) {
    areas_.clear_matches();
    for (const model::RandomArea& area : one.areas) {
      areas_.matches.append(
          std::make_unique<MatchRecord>(nullptr, area.length, area.offset));
    }
  }

  int32_t search_engine(const model::RandomCase& one,
                        const std::vector<char>& text, SearchPath path,
                        bool store) {
    const FindOptions options{.case_flag = one.exact_case,
                              .whole_words = one.whole_words,
                              .store = store,
                              .maximum = one.maximum,
                              .path = path};
    if (one.area_use == model::AreaUse::kEverywhere) {
      return find_all(engine_, text.data(), text.size(), options);
    }
    return find_all_by_areas(engine_, text.data(), text.size(), options,
                             &areas_, one.area_use == model::AreaUse::kInside);
  }

  model::Found search_model(const model::RandomCase& one) const {
    std::vector<model::Match> areas;
    for (const model::RandomArea& area : one.areas) {
      areas.push_back({area.offset, area.length});
    }
    const bool everywhere = one.area_use == model::AreaUse::kEverywhere;
    return model::find_all_by_areas(
        model_, one.text, {one.exact_case, one.whole_words, one.maximum},
        everywhere ? nullptr : &areas, one.area_use == model::AreaUse::kInside);
  }

  std::string compare_records(const std::vector<model::Match>& expected,
                              const std::vector<char>& text) {
    std::vector<model::Match> matches;
    for (uint32_t i = 0; i < engine_.matches.count(); ++i) {
      const auto* match = record_cast<MatchRecord>(engine_.matches.get(i));
      if (match == nullptr) return "a record that is no match";
      if (match->begin() != text.data() + match->offset) {
        return "a match that points elsewhere";
      }
      matches.push_back({match->offset, match->length});
    }
    if (matches == expected) return "";
    return "engine" + in_words(matches) + ", model" + in_words(expected);
  }

  PatternContext engine_;
  PatternContext areas_;
  model::Context model_;
  size_t found_ = 0;
};

}  // namespace zenfo::test
