// File times: steps of 100 ns since 1601-01-01 UTC.
#pragma once

#include <cstdint>

namespace zenfo::platform {

inline constexpr int64_t kSecondsFrom1601To1970 = 11644473600;
inline constexpr uint64_t kStepsPerSecond = 10000000;

}  // namespace zenfo::platform
