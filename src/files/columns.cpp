#include "files/columns.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "files/size_text.h"

namespace zenfo {
namespace {

bool append(std::string& text, std::optional<std::string_view> value) {
  if (!value) return false;
  text += *value;
  return true;
}

// Lists have several times for every file, so they are not left to printf.
char* put_two_digits(char* at, int number) {
  *at++ = static_cast<char>('0' + number / 10);
  *at++ = static_cast<char>('0' + number % 10);
  return at;
}

template <bool kSeconds>
bool append_time(std::string& text, uint64_t file_time) {
  platform::LocalTime t;
  if (!platform::to_local_time(file_time, t)) return false;
  constexpr size_t kLongest = sizeof "dd/mm/-2147483648 hh:mm:ss";
  char buffer[kLongest];
  char* at = put_two_digits(buffer, t.day);
  *at++ = '/';
  at = put_two_digits(at, t.month);
  *at++ = '/';
  at = std::to_chars(at, buffer + kLongest, t.year).ptr;
  *at++ = ' ';
  at = put_two_digits(at, t.hour);
  *at++ = ':';
  at = put_two_digits(at, t.minute);
  if constexpr (kSeconds) {
    *at++ = ':';
    at = put_two_digits(at, t.second);
  }
  text.append(buffer, static_cast<size_t>(at - buffer));
  return true;
}

bool append_attributes(std::string& text, uint32_t attributes) {
  struct Letter {
    uint32_t bit;
    char letter;
  };
  static constexpr Letter kLetters[] = {{platform::kAttributeReadOnly, 'R'},
                                        {platform::kAttributeHidden, 'H'},
                                        {platform::kAttributeArchive, 'A'},
                                        {platform::kAttributeSystem, 'S'},
                                        {platform::kAttributeCompressed, 'C'}};
  for (const Letter& row : kLetters) {
    if ((attributes & row.bit) != 0) text += row.letter;
  }
  return true;
}

using Appender = bool (*)(const FileEntry&, std::string&);

// In the order of Column.
constexpr Appender kAppenders[] = {
    [](const FileEntry& e, std::string& t) { return append(t, e.file_name()); },
    [](const FileEntry& e, std::string& t) { return append(t, e.folder()); },
    [](const FileEntry& e, std::string& t) { return append(t, e.type_name()); },
    [](const FileEntry& e, std::string& t) {
      return append_time<true>(t, e.facts.creation_time);
    },
    [](const FileEntry& e, std::string& t) {
      return append_time<false>(t, e.facts.access_time);
    },
    [](const FileEntry& e, std::string& t) {
      return append_time<true>(t, e.facts.write_time);
    },
    [](const FileEntry& e, std::string& t) {
      t += size_text(e.facts.size);
      return true;
    },
    [](const FileEntry& e, std::string& t) {
      return append_attributes(t, e.facts.attributes);
    },
};
static_assert(sizeof kAppenders / sizeof *kAppenders ==
              kLastColumn - kFirstColumn + 1);

}  // namespace

bool append_column(const FileEntry& entry, Column column, std::string& text) {
  const int row = static_cast<int>(column) - kFirstColumn;
  if (row < 0 || row > kLastColumn - kFirstColumn) return false;
  return kAppenders[row](entry, text);
}

}  // namespace zenfo
