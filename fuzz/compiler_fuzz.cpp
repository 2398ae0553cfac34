// Compiles any texts with any class definitions; the elements must equal the
// model's.
//
// Input: 2 bytes of options, the definition file, start, main and end text.
#include "fuzz/input.h"
#include "support/engine_beside_model.h"

namespace zenfo::fuzz {
namespace {

// The model looks for every class name at every byte of every text, and cuts
// the text again on each level. A longer input would not show more.
constexpr size_t kMostBytes = 1024;

void run(Input input) {
  const uint8_t flags = input.byte();
  const uint8_t more = input.byte();
  model::RandomCase one;
  one.is_tag = bit(flags, 0);
  one.count_start = bit(flags, 1);
  one.start_is_pattern = bit(flags, 2);
  one.main_is_pattern = !bit(flags, 3);
  one.end_is_pattern = bit(flags, 4);
  one.convert_start = bit(more, 0);
  one.convert_main = bit(more, 1);
  one.convert_end = bit(more, 2);
  const std::string classes = input.text();
  one.start = input.text();
  one.main = input.text();
  one.end = input.text();
  test::EngineBesideModel sides;
  expect_none(sides.define_classes(classes), classes);
  expect_none(sides.compile(one), describe(one) + "\n " + sides.elements());
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > zenfo::fuzz::kMostBytes) return -1;
  zenfo::fuzz::run({data, size});
  return 0;
}
