// Reads any bytes as class definitions; the classes, their order and their
// members must equal the model's.
#include "fuzz/input.h"
#include "support/engine_beside_model.h"

namespace zenfo::fuzz {
namespace {

// The model sorts all classes again after each one, and a name takes 7 bytes.
constexpr size_t kMostBytes = 2048;

void run(Input input) {
  const std::string file = input.rest();
  test::EngineBesideModel sides;
  expect_none(sides.define_classes(file), file);
}

}  // namespace
}  // namespace zenfo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > zenfo::fuzz::kMostBytes) return -1;
  zenfo::fuzz::run({data, size});
  return 0;
}
