// A test of searches.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "support/run_fixture.h"

namespace zenfo::test {

class SearchTest : public RunTest {
 protected:
  std::string report() const { return work().path("report"); }
  // Resets the poll counter of counts: the next 100 records do not poll.
  static void start_counting_polls(HostRecorder& host) {
    while (GetCount(ZENFO_LIST_PAIRS, -1) < 101) AddStringPair("x", "");
    const auto interrupt = std::exchange(host.interrupt, [] { return 1; });
    GetCount(ZENFO_LIST_PAIRS, 0);  // up to a poll that interrupts
    host.interrupt = interrupt;
    host.interrupt_polls = 0;
  }
};

}  // namespace zenfo::test
