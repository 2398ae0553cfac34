#include "cli/printing/columns.h"

#include <algorithm>
#include <charconv>

#include "shared/text/json_text.h"

namespace zenfo::host::cli {
namespace {

constexpr Column kColumns[] = {
    {"name", ZENFO_OPTION_FILE_NAME, 2, GetFilename, false},
    {"folder", ZENFO_OPTION_FOLDER, 3, GetDirectory, false},
    {"type", ZENFO_OPTION_TYPE, 4, GetType, false},
    {"created", ZENFO_OPTION_ATTRIBUTES, 5, GetCTime, false},
    {"accessed", ZENFO_OPTION_ATTRIBUTES, 6, GetATime, false},
    {"modified", ZENFO_OPTION_ATTRIBUTES, 7, GetMTime, false},
    {"size", ZENFO_OPTION_ATTRIBUTES, 8, GetSize, true},
    {"attributes", ZENFO_OPTION_ATTRIBUTES, 9, GetAttributes, false},
    {"path", 0, 0, nullptr, false},
};

constexpr size_t kBetweenColumns = 2;

bool continues_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The number in "1536 Bytes" and in "1.50 KB (1536 Bytes)".
uint64_t bytes_of(std::string_view long_text) {
  const size_t open = long_text.find('(');
  if (open != std::string_view::npos) long_text.remove_prefix(open + 1);
  uint64_t bytes = 0;
  std::from_chars(long_text.data(), long_text.data() + long_text.size(), bytes);
  return bytes;
}

}  // namespace

std::string column_names() {
  std::string names;
  for (const Column& column : kColumns) {
    if (!names.empty()) names += ", ";
    names += column.name;
  }
  return names;
}

const Column* find_column(std::string_view name) {
  for (const Column& column : kColumns) {
    if (name == column.name) return &column;
  }
  return nullptr;
}

size_t width_of(std::string_view text) {
  size_t width = 0;
  for (const char byte : text) width += !continues_character(byte);
  return width;
}

void CellTexts::add(std::optional<std::string_view> text) {
  if (text) bytes_ += *text;
  texts_.push_back({bytes_.size(), !text});
}

void CellTexts::clear() {
  bytes_.clear();
  texts_.clear();
}

void CellTexts::get(size_t first, size_t count, Cells& cells) const {
  cells.clear();
  size_t begin = first > 0 ? texts_[first - 1].end : 0;
  for (size_t i = first; i < first + count; ++i) {
    const Text& text = texts_[i];
    if (text.missing) {
      cells.emplace_back();
    } else {
      cells.emplace_back(
          std::string_view(bytes_).substr(begin, text.end - begin));
    }
    begin = text.end;
  }
}

void align(const std::vector<const Column*>& columns, const Cells& cells,
           const std::vector<size_t>& widths, std::string& line) {
  line.clear();
  size_t blanks = 0;  // written only before the next text
  for (size_t i = 0; i < cells.size(); ++i) {
    const std::string_view text = cells[i] ? *cells[i] : std::string_view();
    const size_t rest = widths[i] - std::min(widths[i], width_of(text));
    if (columns[i]->to_the_right) blanks += rest;
    if (!text.empty()) {
      line.append(blanks, ' ').append(text);
      blanks = 0;
    }
    if (!columns[i]->to_the_right) blanks += rest;
    blanks += kBetweenColumns;
  }
}

std::string json_line(const std::vector<const Column*>& columns,
                      const Cells& cells) {
  std::string line = "{";
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += ',';
    line += json_text(columns[i]->name) + ':';
    line += cells[i] ? json_text(*cells[i]) : "null";
  }
  return line + '}';
}

std::string json_total(uint32_t files, const SizeTotal& total) {
  return "{\"files\":" + std::to_string(files) +
         ",\"bytes\":" + std::to_string(bytes_of(total.long_text)) +
         ",\"size\":" + json_text(total.short_text) + '}';
}

std::string tabbed_line(const Cells& cells) {
  std::string line;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += '\t';
    line += cells[i].value_or("");
  }
  return line;
}

}  // namespace zenfo::host::cli
