// The columns of a list, as the user arranged them.
//
// Tested by tests/gui/settings/column_order_test.cpp
#pragma once

#include <span>
#include <string>
#include <vector>

#include "gui/settings/settings.h"

namespace zenfo::host::gui {

inline constexpr int kLeastColumn = 24;  // pixels of 96 dpi

// The known columns in the order of the kept ones, with their widths. Known
// ones that were not kept come last, as known. The first known one stays first:
// it bears the signs of a row.
std::vector<ColumnSetting> ordered_columns(std::span<const ColumnSetting> known,
                                           std::span<const ColumnSetting> kept);

// What is to be kept: the columns as they are, then kept ones that this version
// does not know.
std::vector<ColumnSetting> columns_to_keep(std::span<const ColumnSetting> shown,
                                           std::span<const ColumnSetting> kept);

}  // namespace zenfo::host::gui
