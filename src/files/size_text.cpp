#include "files/size_text.h"

#include <cstdio>

namespace zenfo {
namespace {

struct Unit {
  double scale;
  const char* name;
};

constexpr Unit kUnits[] = {
    {1.0 / 1073741824, "GB"}, {1.0 / 1048576, "MB"}, {1.0 / 1024, "KB"}};

template <class... Values>
std::string format(const char* pattern, Values... values) {
  std::string text(
      static_cast<size_t>(std::snprintf(nullptr, 0, pattern, values...)), '\0');
  std::snprintf(text.data(), text.size() + 1, pattern, values...);
  return text;
}

const Unit* unit_for(double total) {
  for (const Unit& unit : kUnits) {
    if (total * unit.scale > 1.0) return &unit;
  }
  return nullptr;
}

}  // namespace

std::string size_text(uint64_t size) {
  const auto bytes = static_cast<double>(size);
  const double kilobytes = bytes * (1.0 / 1024);
  return kilobytes > 1.0 ? format("%01.1f KB", kilobytes)
                         : format("%01.0f B", bytes);
}

std::string short_total_text(double total) {
  const Unit* unit = unit_for(total);
  return unit != nullptr ? format("%01.02f %s", total * unit->scale, unit->name)
                         : format("%01.0f B", total);
}

std::string long_total_text(double total) {
  const Unit* unit = unit_for(total);
  return unit != nullptr ? format("%01.02f %s (%01.0f Bytes)",
                                  total * unit->scale, unit->name, total)
                         : format("%01.0f Bytes", total);
}

}  // namespace zenfo
