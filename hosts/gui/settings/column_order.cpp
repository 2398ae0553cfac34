#include "gui/settings/column_order.h"

#include <algorithm>

namespace zenfo::host::gui {
namespace {

using Columns = std::span<const ColumnSetting>;

const ColumnSetting* find_column(Columns columns, const std::string& name) {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [&](const ColumnSetting& one) { return one.name == name; });
  return found == columns.end() ? nullptr : &*found;
}

}  // namespace

std::vector<ColumnSetting> ordered_columns(Columns known, Columns kept) {
  std::vector<ColumnSetting> ordered;
  const auto add = [&](const ColumnSetting& column) {
    if (find_column(ordered, column.name) == nullptr) ordered.push_back(column);
  };
  if (!known.empty()) {
    const ColumnSetting* first = find_column(kept, known.front().name);
    add(first == nullptr ? known.front() : *first);
  }
  for (const ColumnSetting& column : kept) {
    if (find_column(known, column.name) != nullptr) add(column);
  }
  for (const ColumnSetting& column : known) add(column);
  for (ColumnSetting& column : ordered) {
    column.width = std::max(column.width, kLeastColumn);
  }
  return ordered;
}

std::vector<ColumnSetting> columns_to_keep(Columns shown, Columns kept) {
  std::vector<ColumnSetting> all(shown.begin(), shown.end());
  for (const ColumnSetting& column : kept) {
    if (find_column(all, column.name) == nullptr) all.push_back(column);
  }
  return all;
}

}  // namespace zenfo::host::gui
