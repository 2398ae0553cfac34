// How two texts differ, line by line.
//
// Lines are compared in order. Where they differ, the nearest place is sought
// from which both texts agree again. The search is bounded, so that the time is
// linear in the size of the texts. Every change is reported, though perhaps
// with more lines than necessary.
//
// Tested by tests/cli/preview_test.cpp
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace zenfo::host {

// A removed line, '-', or an added one, '+', with its line number in the old
// text; added lines are numbered from the start of the difference.
using LineChanged =
    std::function<void(size_t number, char sign, std::string_view line)>;

void for_each_changed_line(std::string_view before, std::string_view after,
                           const LineChanged& visit);

}  // namespace zenfo::host
