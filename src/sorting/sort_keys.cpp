#include "sorting/sort_keys.h"

#include "files/file_entry.h"
#include "frame/guard.h"
#include "text/byte_tables.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

using Text = std::optional<std::string_view>;

const FileEntry* entry_of(const Record* record) {
  return record_cast<FileEntry>(record);
}

Text cut(Text text) {
  if (text) text = up_to_nul(*text);
  return text;
}

uint64_t state_of(const Record* record) { return record->state; }

uint64_t icon_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return as_unsigned_order(entry != nullptr ? entry->icon : 0);
}

uint64_t flag_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return as_unsigned_order(entry != nullptr ? entry->flag : 0);
}

uint64_t size_of(const Record* record) { return facts_of(record).size; }

uint64_t attributes_of(const Record* record) {
  return facts_of(record).attributes;
}

uint64_t creation_time_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return entry != nullptr ? entry->facts.creation_time : 0;
}

uint64_t access_time_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return entry != nullptr ? entry->facts.access_time : 0;
}

uint64_t write_time_of(const Record* record) {
  return facts_of(record).write_time;
}

Text directory_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return entry != nullptr ? cut(entry->folder()) : std::nullopt;
}

Text type_name_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return entry != nullptr ? cut(entry->type_name()) : std::nullopt;
}

template <TextSlot kSlot>
Text slot_of(const Record* record) {
  return cut(record->text(kSlot));
}

int32_t three_way(uint64_t a, uint64_t b) { return (a > b) - (a < b); }

int32_t compare_texts(const Text& a, const Text& b) {
  if (!a) return -1;
  if (!b) return 1;
  return compare_ignoring_case(*a, *b);
}

template <NumberOf kOf>
int32_t by_number(const Record* a, const Record* b) {
  return three_way(kOf(a), kOf(b));
}

template <TextOf kOf>
int32_t by_text(const Record* a, const Record* b) {
  return compare_texts(kOf(a), kOf(b));
}

template <TextOf kOf>
int32_t by_text_or_none(const Record* a, const Record* b) {
  const Text first = kOf(a);
  const Text second = kOf(b);
  return !first && !second ? 0 : compare_texts(first, second);
}

template <NumberOf kOf>
int32_t by_time(const Record* a, const Record* b) {
  return compare_times(kOf(a), kOf(b));
}

int32_t compare_full(const Record* a, const Record* b) {
  if (a == nullptr) return b != nullptr ? -1 : 0;
  if (b == nullptr) return 1;
  const int32_t by_name = by_text<file_name_of>(a, b);
  if (by_name != 0) return by_name;
  const FullFacts first = facts_of(a);
  const FullFacts second = facts_of(b);
  const int32_t by_size = three_way(first.size, second.size);
  if (by_size != 0) return by_size;
  const int32_t by_write_time =
      compare_times(first.write_time, second.write_time);
  if (by_write_time != 0) return by_write_time;
  return three_way(first.attributes, second.attributes);
}

template <NumberOf kOf>
constexpr SortKey number_key(uint32_t row) {
  return {row, KeyKind::kNumber, by_number<kOf>, kOf, nullptr};
}

template <NumberOf kOf>
constexpr SortKey time_key(uint32_t row) {
  return {row, KeyKind::kTime, by_time<kOf>, kOf, nullptr};
}

template <TextOf kOf>
constexpr SortKey text_key(uint32_t row) {
  return {row, KeyKind::kText, by_text<kOf>, nullptr, kOf};
}

constexpr TextOf kFirstText = slot_of<TextSlot::kFirst>;
constexpr TextOf kSecondText = slot_of<TextSlot::kSecond>;
constexpr TextOf kThirdText = slot_of<TextSlot::kThird>;

}  // namespace

FullFacts facts_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  if (entry == nullptr) return {as_unsigned_order(0), 0, 0};
  return {as_unsigned_order(static_cast<int64_t>(entry->facts.size)),
          entry->facts.write_time, entry->facts.attributes};
}

std::optional<std::string_view> file_name_of(const Record* record) {
  const FileEntry* entry = entry_of(record);
  return entry != nullptr ? cut(entry->file_name()) : std::nullopt;
}

int32_t compare_times(uint64_t a, uint64_t b) {
  const auto high = static_cast<uint32_t>((a >> 32) - (b >> 32));
  const auto low = static_cast<uint32_t>(a) - static_cast<uint32_t>(b);
  return static_cast<int32_t>(high != 0 ? high : low);
}

int32_t comp_file_full(const Record* a, const Record* b) {
  return caught("comp_file_full", 0, [&] { return compare_full(a, b); });
}

const std::array<SortKey, kSortKeys> kSortTable = {{
    number_key<state_of>(0),
    number_key<icon_of>(1),
    text_key<file_name_of>(2),
    text_key<directory_of>(3),
    {4, KeyKind::kTextOrNone, by_text_or_none<type_name_of>, nullptr,
     type_name_of},
    time_key<creation_time_of>(5),
    time_key<access_time_of>(6),
    time_key<write_time_of>(7),
    number_key<size_of>(8),
    number_key<attributes_of>(9),
    text_key<kFirstText>(10),
    {11, KeyKind::kFileNameFull, comp_file_full, nullptr, nullptr},
    // String pairs, and the last options of Sort.
    number_key<state_of>(12),
    text_key<kFirstText>(13),
    text_key<kSecondText>(14),
    // Safe copies.
    number_key<state_of>(15),
    text_key<kFirstText>(16),
    text_key<kSecondText>(17),
    text_key<kThirdText>(18),
    // Results.
    number_key<flag_of>(19),
    text_key<file_name_of>(20),
    text_key<directory_of>(21),
    number_key<flag_of>(22),
    // Replace values.
    number_key<state_of>(23),
    text_key<kFirstText>(24),
}};

}  // namespace zenfo
