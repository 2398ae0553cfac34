// Searches any text with any pattern, on both paths of the engine, storing and
// counting; the matches must equal the model's.
//
// Input: 4 bytes of options, up to 4 areas of 2 bytes, start, main and end
// text, then the text that is searched.
#include <memory>
#include <vector>

#include "fuzz/input.h"
#include "support/engine_beside_model.h"

namespace zenfo::fuzz {
namespace {

// The model starts every attempt from scratch, so its time is quadratic; a few
// hundred bytes are enough for every constellation.
constexpr size_t kMostBytes = 512;

model::RandomCase read_case(Input& input) {
  const uint8_t flags = input.byte();
  const uint8_t pattern_flags = input.byte();
  const uint8_t maximum = input.byte();
  const uint8_t areas = input.byte();
  model::RandomCase one;
  one.class_set = size_t{flags} % std::size(model::kClassSets);
  one.exact_case = bit(flags, 3);
  one.whole_words = bit(flags, 4);
  one.is_tag = bit(flags, 5);
  one.count_start = bit(flags, 6);
  one.start_is_pattern = bit(pattern_flags, 0);
  one.main_is_pattern = !bit(pattern_flags, 1);
  one.end_is_pattern = bit(pattern_flags, 2);
  one.convert_start = one.convert_main = one.convert_end =
      bit(pattern_flags, 3);
  // Small numbers stop a run in the middle, all others do not limit it.
  one.maximum = maximum < 8 ? maximum : 0;
  one.area_use = static_cast<model::AreaUse>(areas % 3);
  if (one.area_use != model::AreaUse::kEverywhere) {
    for (int n = areas / 3 % 5; n > 0; --n) {
      const uint32_t offset = input.byte();
      const uint8_t length = input.byte();
      // 255 means an area that ends far after the text.
      one.areas.push_back({offset, length == 255 ? UINT32_MAX : length});
    }
  }
  one.start = input.text();
  one.main = input.text();
  one.end = input.text();
  one.text = input.rest();
  return one;
}

test::EngineBesideModel& sides_of(size_t class_set) {
  static const auto sides = [] {
    std::vector<std::unique_ptr<test::EngineBesideModel>> out;
    for (const model::ClassSet& set : model::kClassSets) {
      out.push_back(std::make_unique<test::EngineBesideModel>(set.file));
    }
    return out;
  }();
  return *sides[class_set];
}

void run(Input input) {
  const model::RandomCase one = read_case(input);
  // Other tests distinguish a null text from an empty one.
  if (one.text.empty()) return;
  test::EngineBesideModel& sides = sides_of(one.class_set);
  const std::string difference = sides.compile_and_search(one);
  if (difference.empty()) return;  // saves making the message
  expect_none(difference, describe(one) + "\n " + sides.elements());
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > zenfo::fuzz::kMostBytes) return -1;
  zenfo::fuzz::run({data, size});
  return 0;
}
