// Searches any text for any needle with every set of kernels that the processor
// supports; the occurrences must equal those of the plain loop.
//
// Input: 1 byte of options, 1 byte for how often the needle is repeated, 1 byte
// for how often the text is, the needle up to a zero byte (or, by an option, of
// any 4 bytes), the text.
#include <algorithm>
#include <vector>

#include "fuzz/input.h"
#include "model/naive_substring.h"
#include "text/simd.h"
#include "text/substring.h"

namespace zenfo::fuzz {
namespace {

// The plain loop compares the needle at every position. The kernels take 64
// positions at a time, so repeating makes long needles and texts from few
// bytes.
constexpr size_t kMostBytes = 512;
constexpr size_t kLongestText = 2048;
constexpr size_t kLongestNeedle = 100;

std::string repeated(const std::string& text, size_t times, size_t longest) {
  std::string out = text;
  while (times-- > 0 && out.size() + text.size() <= longest) out += text;
  return out;
}

// A copy of the exact size, so that the sanitizer notices reads outside.
std::vector<char> copy_of(const std::string& text) {
  return {text.begin(), text.end()};
}

std::string as_words(const std::vector<size_t>& offsets) {
  std::string out;
  for (const size_t offset : offsets) out += " " + std::to_string(offset);
  return out;
}

std::vector<size_t> found(const SubstringSearcher& searcher,
                          const std::vector<char>& text, size_t step,
                          size_t capacity) {
  std::vector<size_t> offsets;
  std::vector<const char*> places(capacity);
  const char* from = text.data();
  const char* const end = text.data() + text.size();
  while (from < end) {
    const size_t count =
        searcher.find_many(from, end, step, places.data(), capacity);
    for (size_t i = 0; i < count; ++i) {
      offsets.push_back(static_cast<size_t>(places[i] - text.data()));
    }
  }
  return offsets;
}

void compare_kernels(const KernelSet& kernels, const std::vector<char>& text,
                     const std::vector<char>& needle, bool exact,
                     size_t capacity) {
  use_kernels(&kernels);
  const std::string_view wanted(needle.data(), needle.size());
  const std::string_view haystack(text.data(), text.size());
  const SubstringSearcher searcher(wanted, exact);
  for (const size_t step : {size_t{1}, std::max(wanted.size(), size_t{1})}) {
    const auto expected = model::find_all(haystack, wanted, exact, step);
    const auto offsets = found(searcher, text, step, capacity);
    if (offsets == expected) continue;
    expect_none(std::string(kernels.name) + ":" + as_words(offsets),
                "plain:" + as_words(expected));
  }
}

void compare_skipping(const std::vector<char>& text,
                      const std::vector<char>& needle, bool exact) {
  const char* const text_end = text.data() + text.size();
  const char* const needle_end = needle.data() + needle.size();
  size_t length = 0;
  const char* const place = find_substring(text.data(), needle.data(), text_end,
                                           needle_end, exact, true, &length);
  const model::Found expected = model::find_substring(
      text.data(), needle.data(), text_end, needle_end, exact, true);
  if (place == expected.start && length == expected.length) return;
  expect_none("skipping blanks", std::to_string(length) + " instead of " +
                                     std::to_string(expected.length));
}

void run(Input input) {
  const uint8_t flags = input.byte();
  const size_t needle_times = input.byte();
  const size_t text_times = input.byte();
  std::string needle;
  if (bit(flags, 1)) {
    for (int i = 0; i < 4; ++i) needle += static_cast<char>(input.byte());
  } else {
    needle = input.text();
  }
  const auto needle_bytes =
      copy_of(repeated(needle, needle_times, kLongestNeedle));
  const auto text = copy_of(repeated(input.rest(), text_times, kLongestText));
  const bool exact = bit(flags, 0);
  // One occurrence, or more than the 64 that a kernel stores at a time.
  const size_t capacity = bit(flags, 2) ? 1 : 65 + flags / 8;
  compare_kernels(kSse2Kernels, text, needle_bytes, exact, capacity);
  if (processor_has_avx2()) {
    compare_kernels(kAvx2Kernels, text, needle_bytes, exact, capacity);
  }
  use_kernels(nullptr);
  compare_skipping(text, needle_bytes, exact);
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > zenfo::fuzz::kMostBytes) return -1;
  zenfo::fuzz::run({data, size});
  return 0;
}
