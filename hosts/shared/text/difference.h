// How a text differs from another, in lines.
//
// Lines are compared in order. Where they differ, the nearest place is sought
// at which both texts go on alike; the search is bounded, so that large texts
// take time in proportion to their size. Every change is met, though perhaps
// with more lines than needed.
//
// Tested by tests/cli/preview_test.cpp
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace zenfo::host {

// A line that was removed, '-', or takes the place of others, '+', with the
// number at which it stood or would have stood.
using LineChanged =
    std::function<void(size_t number, char sign, std::string_view line)>;

void for_each_changed_line(std::string_view before, std::string_view after,
                           const LineChanged& visit);

}  // namespace zenfo::host
