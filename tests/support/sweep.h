// A long sweep: a test that repeats itself for n = 1, 2, 3 and so on, such as
// one that kills a command before each of its calls. It takes every few n only,
// and others every day. ZENFO_SWEEP=1 takes all; ZENFO_SWEEP_SEED=N repeats the
// choice of a day whose seed was N.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace zenfo::test {

class Sweep {
 public:
  // `usual_step`: unless ZENFO_SWEEP says otherwise.
  explicit Sweep(int usual_step)
      : step_(positive("ZENFO_SWEEP", usual_step)),
        seed_(positive("ZENFO_SWEEP_SEED",
                       static_cast<int>(std::time(nullptr) / kDay))) {
    std::printf("sweep: from %d in steps of %d (ZENFO_SWEEP_SEED=%d)\n",
                first(), step_, seed_);
  }
  int first() const { return 1 + seed_ % step_; }
  int step() const { return step_; }

 private:
  static constexpr std::time_t kDay = 24 * 60 * 60;

  static int positive(const char* variable, int otherwise) {
    const char* text = std::getenv(variable);
    const int number = text != nullptr ? std::atoi(text) : 0;
    return number > 0 ? number : otherwise;
  }

  int step_;
  int seed_;
};

}  // namespace zenfo::test
