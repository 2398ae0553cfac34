#include "files/size_text.h"

#include <charconv>
#include <clocale>
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

// Up to kExact a double holds the size and the kilobytes exactly, so that
// "%01.1f" rounds the tenths to the nearest, ties to the even one. Lists show
// the size of every file; integers give the same in a fraction of the time.
std::string size_text(uint64_t size) {
  constexpr uint64_t kExact = uint64_t{1} << 53;
  if (size <= 1024) return std::to_string(size) + " B";
  if (size > kExact) {
    return format("%01.1f KB", static_cast<double>(size) * (1.0 / 1024));
  }
  const uint64_t rest = size * 10 % 1024;
  uint64_t tenths = size * 10 / 1024;
  if (rest > 512 || (rest == 512 && tenths % 2 != 0)) ++tenths;
  char digits[32];
  char* end = std::to_chars(digits, digits + sizeof digits, tenths / 10).ptr;
  std::string text(digits, end);
  text += std::localeconv()->decimal_point;  // a host may have chosen a comma
  text += static_cast<char>('0' + tenths % 10);
  return text += " KB";
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
