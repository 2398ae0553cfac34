// Random cases for the pattern language, to compare the engine with the slow
// model.
//
// A pattern is made of pieces (literals, classes with counts, lists, wildcard
// runs, escapes, caret names, plain junk). Every piece comes with a sample text
// that it might match. The text of a case is made of such samples, damaged
// samples and noise from the same few bytes, so that it contains matches often
// enough. The same seed gives the same cases with every compiler and library,
// because only raw 64-bit values of the generator are used.
//
// Tested by tests/unit/model/pattern_model_test.cpp
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo::model {

inline constexpr size_t kLongestRandomText = 60;

enum class AreaUse { kEverywhere, kInside, kOutside };

// 32 bits each, as in a match record; their sum may need more.
struct RandomArea {
  uint32_t offset = 0;
  uint32_t length = 0;
};

// Empty start and end texts mean null or empty markers.
struct RandomCase {
  size_t class_set = 0;  // row of kClassSets
  bool is_tag = false;   // start and end are the two texts of a tag
  bool count_start = false;
  std::string start;
  std::string main;
  std::string end;
  bool start_is_pattern = false;  // is-pattern flag of a tag, too
  bool main_is_pattern = false;
  bool end_is_pattern = false;
  bool convert_start = false;  // convert flag of a tag, too
  bool convert_main = false;
  bool convert_end = false;
  std::string text;  // never empty
  bool exact_case = false;
  bool whole_words = false;
  uint32_t maximum = 0;
  AreaUse area_use = AreaUse::kEverywhere;
  std::vector<RandomArea> areas;
};

// A definition file, and for some of its classes bytes that belong to them
// and bytes that do not.
struct NamedSample {
  std::string_view name;
  std::string_view members;
  std::string_view others;
};

struct ClassSet {
  std::string_view file;
  NamedSample samples[4];
};

inline constexpr ClassSet kClassSets[] = {
    {"name=digits\r\ninc_ranges=48-57\r\n"
     "name=alpha\r\ninc_ranges=65-90,97-122",
     {{"digits", "012", "ab "}, {"alpha", "abAB", "01 <"}}},
    // names inside names; the shorter one wins at the same place
    {"name=dig\r\ninc_ranges=48-57\r\nname=d\r\ninc_ranges=48-50\r\n"
     "name=digit\r\ninc_ranges=48-51\r\nname=ig\r\ninc_chars=97,98",
     {{"d", "012", "ab"}, {"ig", "ab", "01"}, {"dig", "012", "ab"}}},
    // exclusion, a range that ends the walk, characters cut to a byte
    {"name=odd\r\ninc_ranges=0-0,48-57\r\ninc_chars=97,300,\r\n"
     "name=vis\r\ninc_ranges=33-300\r\nexc_chars=98,60\r\n"
     "exc_ranges=48-48,0-0,49-57\r\n"
     "name=rev\r\ninc_ranges=57-48",
     {{"odd", "a,", "01b"}, {"vis", "aA1", "b0 "}, {"rev", "", "ab1"}}},
    // names of operator characters, blanks and high bytes
    {"name=q'\r\ninc_chars=97,39\r\nname=\xE9\r\ninc_ranges=128-255\r\n"
     "name=a b\r\ninc_ranges=97-98\r\nname=x[\r\ninc_ranges=48-57",
     {{"q'", "a'", "b0"},
      {"\xE9", "\x80\xFF", "ab"},
      {"a b", "ab", "01"},
      {"x[", "01", "ab"}}},
    // many names of one length, some alike but for their case
    {"name=aa\r\ninc_chars=97\r\nname=AA\r\ninc_chars=98\r\n"
     "name=bb\r\ninc_chars=48\r\nname=Aa\r\ninc_chars=49\r\n"
     "name=BB\r\ninc_chars=50\r\nname=bB\r\ninc_chars=60\r\n"
     "name=d\r\ninc_ranges=48-57\r\nname=aA\r\ninc_chars=62",
     {{"aa", "ab1>", "<"}, {"bb", "02<", "a"}, {"d", "012", "ab"}}},
    // names that end in the negation marker and in the escape
    {"name=k!\r\ninc_ranges=48-57\r\nname=w\\\r\ninc_ranges=97-98\r\n"
     "name=digits\r\ninc_ranges=48-57",
     {{"k!", "01", "ab"}, {"w\\", "ab", "01"}, {"digits", "012", "ab"}}},
    // no class at all
    {"name=\r\n", {}},
};

class RandomCases {
 public:
  explicit RandomCases(uint64_t seed) : random_(seed) {}

  RandomCase next() {
    RandomCase one;
    one.class_set = below(std::size(kClassSets));
    classes_ = &kClassSets[one.class_set];
    samples_[0].clear();
    samples_[1].clear();
    samples_[2].clear();
    one.exact_case = chance(55);
    if (chance(15)) {
      make_tag(one);
    } else {
      make_search(one);
    }
    one.whole_words = chance(15);
    if (chance(15)) one.maximum = 1 + small(3);
    make_text(one);
    if (chance(30)) make_areas(one);
    return one;
  }

  // Bytes for a definition file, most of them nearly well formed.
  std::string next_class_file() {
    constexpr std::string_view kParts[] = {
        "name=",      "digits",      "\r\n", "inc_chars=", "inc_ranges=",
        "exc_chars=", "exc_ranges=", "\r\n", "48-57",      "97",
        ",",          "-",           "=",    "0-0,",       "300",
        "\n",         "comment=",    "//",   "-1",         " +5",
        "x",          "\r",          "1-2-", "65-300",     "\r\nname=a"};
    std::string file = chance(70) ? "name=a\r\n" : "";
    for (size_t parts = below(24); parts > 0; --parts) {
      file += kParts[below(std::size(kParts))];
    }
    return file;
  }

 private:
  // 0 to bound - 1; the slight bias of the remainder is harmless.
  size_t below(size_t bound) {
    return static_cast<size_t>(random_() % static_cast<uint64_t>(bound));
  }
  uint32_t small(size_t bound) { return static_cast<uint32_t>(below(bound)); }
  bool chance(size_t percent) { return below(100) < percent; }

  char one_of(std::string_view bytes) { return bytes[below(bytes.size())]; }

  std::string some_of(std::string_view bytes, size_t least, size_t most) {
    std::string out;
    if (bytes.empty()) return out;
    for (size_t n = least + below(most - least + 1); n > 0; --n) {
      out += one_of(bytes);
    }
    return out;
  }

  static constexpr std::string_view kLetters = "aabbAB01<>x";
  static constexpr std::string_view kNoise{"aabbAB01<> \r\n\0\x80\xFF_d'", 19};
  static constexpr std::string_view kJunk = "ab1d!?'\"|\\[]-^M ";

  // ---- Pieces: source of the pattern, and a sample that it may match -------

  struct Bounds {
    std::string source;
    size_t least;
    size_t most;
  };

  Bounds make_count() {
    static const Bounds kBounds[] = {{"", 1, 4},
                                     {"", 1, 3},
                                     {"[1]", 1, 1},
                                     {"[2]", 2, 2},
                                     {"[3]", 3, 3},
                                     {"[1-2]", 1, 3},
                                     {"[2-3]", 2, 4},
                                     {"[2-]", 2, 4},
                                     {"[-2]", 1, 3},
                                     {"[0-]", 0, 2},
                                     {"[0]", 0, 2},
                                     {"[0-1]", 0, 2},
                                     {"[]", 1, 3},
                                     {"[-]", 1, 3},
                                     {"[3-2]", 2, 4},
                                     {"[5-2]", 2, 6},
                                     {"[3", 1, 2},
                                     {"[a]", 1, 2},
                                     {"[1-2-3]", 1, 2},
                                     {"[2-x]", 1, 2},
                                     {"[99999999999]", 1, 2},
                                     {"[-99999999999]", 1, 3}};
    // Well formed ones come first and are chosen more often.
    const size_t rows = chance(90) ? 14 : std::size(kBounds);
    return kBounds[below(rows)];
  }

  // An invalid count stays in the pattern as text.
  static std::string rejected_text(const Bounds& bounds) {
    const bool rejected = bounds.source == "[3" || bounds.source == "[a]" ||
                          bounds.source == "[1-2-3]" ||
                          bounds.source == "[2-x]";
    return rejected ? bounds.source : "";
  }

  void add_literal(std::string& source, std::string& sample) {
    const std::string text = some_of(kLetters, 1, chance(20) ? 3 : 1);
    source += text;
    sample += text;
  }

  void add_class(std::string& source, std::string& sample) {
    const NamedSample& named = classes_->samples[below(4)];
    if (named.name.empty()) return add_literal(source, sample);
    const bool negated = chance(20);
    const Bounds bounds = make_count();
    if (negated) source += '!';
    for (const char c : named.name) source += chance(10) ? flipped(c) : c;
    source += bounds.source;
    sample += some_of(negated ? named.others : named.members, bounds.least,
                      bounds.most);
    sample += rejected_text(bounds);
  }

  void add_char_list(std::string& source, std::string& sample) {
    const bool negated = chance(25);
    std::string chars = some_of("ab01<\\'|?", 1, 3);
    if (negated) source += '!';
    source += '\'';
    for (size_t i = 0; i < chars.size(); ++i) {
      if (i > 0) source += '|';
      if (chars[i] == '\\' || chars[i] == '\'' || chars[i] == '|' ||
          chars[i] == '?') {
        source += '\\';
      }
      source += chars[i];
    }
    source += '\'';
    const Bounds bounds = make_count();
    source += bounds.source;
    sample += some_of(negated ? std::string_view(">xB") : chars, bounds.least,
                      bounds.most);
    sample += rejected_text(bounds);
  }

  void add_string_list(std::string& source, std::string& sample) {
    const bool negated = chance(25);
    if (negated) source += '!';
    source += '"';
    std::string picked;
    const size_t count = 1 + below(3);
    for (size_t i = 0; i < count; ++i) {
      const std::string one = some_of("ab0", chance(10) ? 0 : 1, 3);
      if (i > 0) source += '|';
      source += one;
      if (chance(50) || picked.empty()) picked = one;
    }
    if (chance(5)) source += "\\\"";
    source += '"';
    sample += negated ? some_of(">xB1", 1, 3) : picked;
  }

  void add_wildcard(std::string& source) {
    if (chance(20)) source += '!';
    source.append(1 + below(2), '?');
  }

  void add_escape(std::string& source, std::string& sample) {
    constexpr std::string_view kSources[] = {R"(\\)", R"(\?)", R"(\??)",
                                             R"(\!)", R"(\')", R"(\")",
                                             R"(\|)", R"(\a)", R"(\!?)"};
    constexpr std::string_view kSamples[] = {R"(\)", "?", "??", "!", "'",
                                             R"(")", "|", "a",  "!?"};
    const size_t row = below(std::size(kSources) + 1);
    if (row < std::size(kSources)) {
      source += kSources[row];
      sample += kSamples[row];
      return;
    }
    const std::string_view name = classes_->samples[0].name;
    if (name.empty()) return;
    source += chance(50) ? "\\" : "\\!";
    if (source.back() == '!') sample += '!';
    source += name;
    sample += name;
  }

  // Without conversion the names match themselves, which the sample does not
  // show.
  void add_caret(std::string& source, std::string& sample) {
    constexpr std::string_view kSources[] = {
        "^M^J", "^J", "^M", "^[", R"(^\)", "^]", "^^M", "^_", R"(\^M)", "^A"};
    constexpr std::string_view kSamples[] = {
        "\r\n", "\n", "\r", "\x1B", "\x1C", "^]", "^\r", "\x1F", "^M", "\x01"};
    const size_t row = below(std::size(kSources));
    source += kSources[row];
    sample += kSamples[row];
  }

  void add_junk(std::string& source, std::string& sample) {
    const std::string text = some_of(kJunk, 1, 2);
    source += text;
    if (chance(50)) sample += text;
  }

  void add_piece(std::string& source, std::string& sample, bool convert) {
    const size_t kind = below(100);
    if (kind < 34) return add_literal(source, sample);
    if (kind < 62) return add_class(source, sample);
    if (kind < 74) return add_char_list(source, sample);
    if (kind < 82) return add_string_list(source, sample);
    if (kind < 87) return add_wildcard(source);
    if (kind < 92) return add_escape(source, sample);
    if (kind < 94 || convert) return add_caret(source, sample);
    if (kind < 96) return add_junk(source, sample);
    return add_literal(source, sample);
  }

  void make_pattern(std::string& source, std::string& sample, size_t most,
                    bool convert) {
    for (size_t pieces = 1 + below(most); pieces > 0; --pieces) {
      add_piece(source, sample, convert);
    }
    if (chance(1)) source += '\\';
  }

  void make_one(std::string& source, std::string& sample, size_t most,
                bool is_pattern, bool convert) {
    if (chance(4)) {
      source = some_of(kJunk, 1, 10);
      sample = chance(50) ? source : some_of(kLetters, 1, 2);
    } else if (is_pattern) {
      make_pattern(source, sample, most, convert);
    } else if (convert && chance(50)) {
      add_caret(source, sample);
    } else {
      source = sample = some_of(kLetters, 1, 3);
    }
    if (source.empty()) source = sample = "a";
  }

  // ---- Searches -----------------------------------------------------------

  void make_search(RandomCase& one) {
    one.main_is_pattern = chance(92);
    one.start_is_pattern = chance(60);
    one.end_is_pattern = chance(60);
    one.convert_main = chance(20);
    one.convert_start = chance(20);
    one.convert_end = chance(20);
    if (chance(20)) {
      make_one(one.start, samples_[0], 2, one.start_is_pattern,
               one.convert_start);
    }
    make_one(one.main, samples_[1], 4, one.main_is_pattern, one.convert_main);
    if (chance(20)) {
      make_one(one.end, samples_[2], 2, one.end_is_pattern, one.convert_end);
    }
  }

  void make_tag(RandomCase& one) {
    one.is_tag = true;
    one.count_start = chance(50);
    one.start_is_pattern = chance(60);
    one.convert_start = chance(20);
    make_one(one.start, samples_[0], 2, one.start_is_pattern,
             one.convert_start);
    samples_[1] = some_of(kNoise, 0, 4);
    make_one(one.end, samples_[2], 2, one.start_is_pattern, one.convert_start);
  }

  // ---- Texts --------------------------------------------------------------

  static char flipped(char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter ? static_cast<char>(c ^ 0x20) : c;
  }

  std::string sample(const RandomCase& one) {
    std::string text = samples_[0] + samples_[1] + samples_[2];
    if (!one.exact_case) {
      for (char& c : text) {
        if (chance(30)) c = flipped(c);
      }
    }
    if (chance(30)) damage(text);
    return text;
  }

  // Loses, changes, adds or doubles one byte, or changes the case of one.
  void damage(std::string& text) {
    if (text.empty()) return;
    const size_t at = below(text.size());
    switch (below(5)) {
      case 0:
        text.erase(at, 1);
        break;
      case 1:
        text[at] = one_of(kNoise);
        break;
      case 2:
        text.insert(at, 1, one_of(kNoise));
        break;
      case 3:
        text.insert(at, 1, text[at]);
        break;
      default:
        text[at] = flipped(text[at]);
        break;
    }
  }

  std::string noise() {
    constexpr std::string_view kBoundaries = " <>\r\n_";
    if (chance(40)) return std::string(1, one_of(kBoundaries));
    return some_of(kNoise, 0, 5);
  }

  void make_text(RandomCase& one) {
    for (size_t parts = 1 + below(5); parts > 0; --parts) {
      if (chance(70)) one.text += noise();
      one.text += sample(one);
    }
    if (chance(50)) one.text += noise();
    if (one.text.empty()) one.text = one_of(kNoise);
    if (one.text.size() > kLongestRandomText) {
      one.text.resize(kLongestRandomText);
    }
  }

  // Areas are mostly sorted and separate; sometimes they are any numbers, also
  // beyond the text.
  void make_areas(RandomCase& one) {
    one.area_use = chance(50) ? AreaUse::kInside : AreaUse::kOutside;
    const bool orderly = chance(75);
    const size_t bound = one.text.size() + 3;
    size_t cursor = 0;
    for (size_t n = below(5); n > 0; --n) {
      RandomArea area{small(bound), small(bound)};
      if (orderly) area = {static_cast<uint32_t>(cursor) + small(8), small(24)};
      if (chance(5)) area.length = 0xFFFFFFFF;
      cursor = std::min<size_t>(bound, size_t{area.offset} + area.length);
      one.areas.push_back(area);
    }
  }

  std::mt19937_64 random_;
  const ClassSet* classes_ = nullptr;
  std::string samples_[3];  // of start, main and end
};

// One case as text, for the message of a test that failed.
inline std::string describe(const RandomCase& one) {
  const auto quoted = [](std::string_view text) {
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string out = "`";
    for (const char c : text) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte >= 0x20 && byte < 0x7F) {
        out += c;
      } else {
        out += {'<', kHex[byte >> 4], kHex[byte & 15], '>'};
      }
    }
    return out + "`";
  };
  const auto flag = [](const char* name, bool set) {
    return set ? std::string(" ") + name : std::string();
  };
  std::string out = "class set " + std::to_string(one.class_set);
  out += one.is_tag ? " tag" : " search";
  out += flag("count-start", one.count_start);
  out += "\n start " + quoted(one.start) +
         flag("pattern", one.start_is_pattern) +
         flag("convert", one.convert_start);
  out += "\n main " + quoted(one.main) + flag("pattern", one.main_is_pattern) +
         flag("convert", one.convert_main);
  out += "\n end " + quoted(one.end) + flag("pattern", one.end_is_pattern) +
         flag("convert", one.convert_end);
  out += "\n text " + quoted(one.text) + flag("exact", one.exact_case) +
         flag("words", one.whole_words) + " maximum " +
         std::to_string(one.maximum);
  if (one.area_use == AreaUse::kEverywhere) return out;
  out += one.area_use == AreaUse::kInside ? "\n inside" : "\n outside";
  for (const RandomArea& area : one.areas) {
    out += " (" + std::to_string(area.offset) + "," +
           std::to_string(area.length) + ")";
  }
  return out;
}

}  // namespace zenfo::model
