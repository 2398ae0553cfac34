#include "gui/results/export_lines.h"

#include <algorithm>

#include "gui/words/code_page.h"
#include "gui/words/unicode.h"
#include "shared/text/json_text.h"

namespace zenfo::host::gui {

bool holds(std::string_view text, const Match& match) {
  return uint64_t{match.offset} + match.length <= text.size();
}

void for_each_match(std::string_view path, std::string_view text,
                    std::span<const Match> matches,
                    const std::function<void(const ExportedMatch&)>& visit) {
  LineNumbers numbers(text);
  for (const Match& match : matches) {
    const size_t start = start_of_line(text, match.offset);
    const size_t end = end_of_line(text, match.offset);
    ExportedMatch exported;
    exported.path = path;
    exported.line_number = numbers.at(match.offset);
    exported.column = match.offset - start + 1;
    exported.offset = match.offset;
    exported.length = match.length;
    exported.text = text.substr(match.offset, match.length);
    exported.line = without_end(text.substr(start, end - start));
    visit(exported);
  }
}

std::string utf8_of(std::string_view bytes) {
  if (is_utf8(bytes)) return std::string(bytes);
  std::u16string wide;
  for (const char byte : bytes) {
    const char16_t character = CodePage::western().at(byte);
    wide += character == 0 && byte != '\0' ? u'\uFFFD' : character;
  }
  return to_utf8(wide);
}

}  // namespace zenfo::host::gui
