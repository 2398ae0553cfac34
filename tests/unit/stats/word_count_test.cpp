#include "stats/word_count.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "unit/pattern/pattern_support.h"

namespace zenfo {
namespace {

using pattern_test::HookLog;

// The number of bytes counted in one step.
constexpr size_t kPiece = 32768;

// Which callbacks exist, and when they stop the count.
struct Listeners {
  uint32_t interval = 100;
  int cancel_at = 0;
  bool polls = true;
  bool reports = true;
};

// The result of a count and its calls.
struct Counted {
  int32_t words = 0;
  int32_t lines = 0;
  std::string calls;
  uint32_t polls_left = 0;  // carried over to the next search
  uint32_t report_step = 0;
  bool operator==(const Counted&) const = default;
};

void PrintTo(const Counted& counted, std::ostream* out) {
  *out << counted.words << " words " << counted.lines << " lines,"
       << counted.calls;
}

Counted counted_by(const std::function<int32_t()>& words,
                   const std::function<int32_t()>& lines) {
  Counted counted;
  counted.words = words();
  if (counted.words >= 0) counted.lines = lines();
  counted.calls = HookLog::text();
  counted.polls_left = search_counters().polls;
  counted.report_step = search_counters().report_step;
  return counted;
}

// The definition: a search for words, then one for line ends.
Counted count_by_searching(std::string_view text, const Listeners& listeners,
                           SearchPath path) {
  PatternContext context;
  const HookLog log(context, listeners.interval, listeners.cancel_at,
                    listeners.polls, listeners.reports);
  const FindOptions options{.store = false, .path = path};
  const auto search = [&] {
    return find_all(context, text.data(), text.size(), options);
  };
  return counted_by(
      [&] {
        CharClass word_bytes;
        word_bytes.add_include_range(33, 255);
        word_bytes.add_exclude_range(127, 127);
        pattern_test::compile_class(context, word_bytes);
        return search();
      },
      [&] {
        pattern_test::compile_literal(context, "\r\n");
        return search();
      });
}

Counted count_at_once(std::string_view text, const Listeners& listeners) {
  PatternContext context;
  const HookLog log(context, listeners.interval, listeners.cancel_at,
                    listeners.polls, listeners.reports);
  WordCount count(context, text);
  return counted_by([&] { return count.words(); },
                    [&] { return count.lines(); });
}

void expect_same(std::string_view text, const Listeners& listeners,
                 SearchPath path = SearchPath::kPlain) {
  EXPECT_EQ(count_at_once(text, listeners),
            count_by_searching(text, listeners, path))
      << "text of " << text.size() << ", interval " << listeners.interval
      << ", stop at poll " << listeners.cancel_at;
}

// All texts of up to five bytes, stopped at each possible poll.
TEST(WordCount, CountsSmallTextsAsTwoSearchesDo) {
  const std::string_view alphabet = "a \r\n";
  std::vector<std::string> texts = {""};
  for (size_t i = 0; i < texts.size() && texts[i].size() < 5; ++i) {
    for (const char c : alphabet) texts.push_back(texts[i] + c);
  }
  ASSERT_EQ(texts.size(), 1365u);
  for (const std::string& text : texts) {
    for (const bool reports : {false, true}) {
      expect_same(text, {.polls = false, .reports = reports});
      for (int cancel_at = 0; cancel_at < 8; ++cancel_at) {
        expect_same(text, {1, cancel_at, true, reports});
      }
    }
  }
}

std::string random_text(std::mt19937& random, size_t length) {
  // Few or many of each, and sometimes long stretches of one kind.
  const std::string_view alphabets[] = {
      "a \r\n", "aaaaaaaa ", "\r\n", "a", " ", "aa\x80\x7f \r\n\r\n"};
  std::string text;
  while (text.size() < length) {
    const std::string_view alphabet = alphabets[random() % 6];
    for (size_t n = random() % 3000; n > 0; --n) {
      text += alphabet[random() % alphabet.size()];
    }
  }
  text.resize(length);
  return text;
}

TEST(WordCount, CountsTextsOfSomePiecesAsTwoSearchesDo) {
#if defined(ZENFO_ADDRESS_SANITIZER)
  constexpr int kRounds = 100;
#else
  constexpr int kRounds = 400;
#endif
  std::mt19937 random(11);
  for (int round = 0; round < kRounds; ++round) {
    const size_t around = kPiece * (random() % 5);
    const size_t length = around + random() % (round % 2 == 0 ? 3 : 6000);
    const std::string text = random_text(random, length);
    const Listeners listeners{1 + static_cast<uint32_t>(random() % 300),
                              static_cast<int>(random() % 900) - 300,
                              random() % 4 != 0, random() % 4 != 0};
    expect_same(text, listeners);
    expect_same(text, listeners, SearchPath::kFast);
  }
}

// Words and line ends across the border of two pieces.
TEST(WordCount, CountsAcrossTheBordersOfPieces) {
  for (size_t at = kPiece - 4; at <= kPiece + 2; ++at) {
    for (const std::string_view what : {"\r\n", "a", " ", "\r\n\r\n", "ab"}) {
      for (const char around : {'x', ' ', '\r', '\n'}) {
        std::string text(40000, around);
        text.replace(at, what.size(), what);
        expect_same(text, {.polls = false, .reports = false});
        expect_same(text, {.interval = 7, .reports = false});
        expect_same(text, {.interval = 9});
        text.resize(at + what.size());
        expect_same(text, {.interval = 1, .reports = false});
      }
    }
  }
}

// In a text of a hundred pieces a report is due exactly where each begins.
TEST(WordCount, ReportsAtTheBordersOfPieces) {
  std::mt19937 random(13);
  for (const size_t step : {kPiece - 1, kPiece, kPiece + 1}) {
    for (int round = 0; round < 4; ++round) {
      const std::string text = random_text(random, 100 * step);
      expect_same(text, {.interval = 1000}, SearchPath::kFast);
    }
  }
}

TEST(WordCount, ListenersThatComeAfterTheWordsHearOfTheLines) {
  const std::string text = "a\r\nb\r\nc";
  PatternContext context;
  const HookLog none(context, 1, 0, false, false);
  WordCount count(context, text);
  EXPECT_EQ(count.words(), 3);
  EXPECT_EQ(HookLog::text(), "");
  const HookLog log(context, 1);
  EXPECT_EQ(count.lines(), 2);
  EXPECT_EQ(HookLog::text(), " 0/7=0% 3/7=42% poll 6/7=85% poll");
}

}  // namespace
}  // namespace zenfo
