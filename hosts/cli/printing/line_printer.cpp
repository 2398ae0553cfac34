#include "cli/printing/line_printer.h"

#include <algorithm>
#include <string>

#include "shared/text/binary.h"

namespace zenfo::host::cli {
namespace {

constexpr char kPathColour[] = "\x1b[35m";
constexpr char kNumberColour[] = "\x1b[32m";
constexpr char kSeparatorColour[] = "\x1b[36m";

std::string_view part(std::string_view text, size_t start, size_t end) {
  return text.substr(start, end - start);
}

// Where the output of lines stops: at the line with the first zero byte, or at
// the start of the text if the first block contains one.
size_t end_of_shown(std::string_view text) {
  const size_t zero = first_zero_byte(text);
  if (zero == text.size()) return zero;
  return zero < kFirstBlock ? 0 : start_of_line(text, zero);
}

}  // namespace

void put_marked(Output& output, std::string_view text, size_t start, size_t end,
                std::span<const Match> matches, bool colours) {
  size_t shown = start;
  for (const Match& match : matches) {
    const size_t from = std::max<size_t>(match.offset, shown);
    const size_t to = std::min(end_of(match), end);
    if (!colours || from >= to) continue;
    output.put(part(text, shown, from));
    output.put_bytes(kMatchColour);
    output.put(part(text, from, to));
    output.put_bytes(kPlainColour);
    shown = to;
  }
  if (shown < end) output.put(part(text, shown, end));
}

void LinePrinter::put(const char* colour, std::string_view text) {
  if (form_.colours) output_.put_bytes(colour);
  output_.put(text);
  if (form_.colours) output_.put_bytes(kPlainColour);
}

void LinePrinter::put_separator(char separator) {
  put(kSeparatorColour, std::string_view(&separator, 1));
}

// What is before the numbers of a line.
std::string LinePrinter::prefix(std::string_view path, char separator) const {
  if (!form_.paths) return "";
  const std::string name = output_.shown_name(path);
  if (!form_.colours) return name + (form_.null ? '\0' : separator);
  const std::string coloured = kPathColour + name + kPlainColour;
  return form_.null ? coloured + '\0'
                    : coloured + kSeparatorColour + separator + kPlainColour;
}

void LinePrinter::put_number(uint64_t number, char separator) {
  if (form_.colours) output_.put_bytes(kNumberColour);
  output_.put_number(number);
  if (form_.colours) output_.put_bytes(kPlainColour);
  put_separator(separator);
}

void LinePrinter::print_path(std::string_view path) {
  if (form_.colours) output_.put_bytes(kPathColour);
  output_.put_name(path);
  if (form_.colours) output_.put_bytes(kPlainColour);
  output_.put(form_.null ? '\0' : '\n');
}

void LinePrinter::print_count(std::string_view path, uint64_t count) {
  output_.put_bytes(prefix(path, ':'));
  output_.put_number(count);
  output_.put('\n');
}

class LinePrinter::Walk : public LineVisitor {
 public:
  Walk(LinePrinter& printer, std::string_view path, std::string_view text)
      : printer_(printer),
        form_(printer.form_),
        text_(text),
        numbers_(text),
        prefix_(printer.prefix(path, ':')),
        context_prefix_(printer.prefix(path, '-')) {}

  void note_line(size_t start, uint64_t number) {
    numbers_.note(start, number);
  }

  void gap() override {
    const bool wanted = form_.before > 0 || form_.after > 0;
    if (wanted && !form_.matches_only && printer_.any_) {
      printer_.put(kSeparatorColour, "--");
      printer_.output_.put('\n');
    }
    printer_.any_ = true;
  }

  void context(size_t start, size_t end) override { line(start, end, {}, '-'); }

  // A block of one line.
  void whole_line(const Block& block) {
    line(block.start, block.end, block.matches, ':');
  }

  void block(const Block& block) override {
    if (form_.matches_only) {
      for (const Match& match : block.matches) only(match);
      return;
    }
    std::span<const Match> matches = block.matches;
    for (size_t start = block.start; start < block.end;) {
      const size_t end = end_of_line(part(text_, 0, block.end), start);
      while (!matches.empty() && end_of(matches.front()) <= start) {
        matches = matches.subspan(1);
      }
      size_t count = 0;
      while (count < matches.size() && matches[count].offset < end) ++count;
      line(start, end, matches.first(count), ':');
      start = end;
    }
  }

 private:
  void prefix(size_t line_start, size_t offset, char separator) {
    printer_.output_.put_bytes(separator == ':' ? prefix_ : context_prefix_);
    if (form_.numbers) printer_.put_number(numbers_.at(line_start), separator);
    if (form_.offsets) printer_.put_number(offset, separator);
  }

  void line(size_t start, size_t end, std::span<const Match> matches,
            char separator) {
    prefix(start, start, separator);
    const size_t length = without_end(part(text_, start, end)).size();
    put_marked(printer_.output_, text_, start, start + length, matches,
               form_.colours);
    printer_.output_.put('\n');
  }

  void only(const Match& match) {
    // The line number of an offset within the line is that of the line.
    prefix(match.offset, match.offset, ':');
    printer_.put(kMatchColour, text_.substr(match.offset, match.length));
    printer_.output_.put('\n');
  }

  LinePrinter& printer_;
  const LineForm& form_;
  std::string_view text_;
  LineNumbers numbers_;
  const std::string prefix_;
  const std::string context_prefix_;
};

void LinePrinter::print_file(std::string_view path, std::string_view text,
                             std::span<const Match> matches) {
  if (prints_plain_lines()) {
    print_plain_lines(path, text, matches);
  } else {
    print_blocks(path, text, find_blocks(text, matches, form_.most_lines));
  }
}

// Without anything that depends on lines further on.
bool LinePrinter::prints_plain_lines() const {
  return !form_.matches_only && form_.before == 0 && form_.after == 0 &&
         form_.most_lines == LineForm{}.most_lines;
}

// One pass over the text, up to the last line with a match.
void LinePrinter::print_plain_lines(std::string_view path,
                                    std::string_view text,
                                    std::span<const Match> matches) {
  Walk walk(*this, path, text);
  LineScan scan(text);
  const std::string_view first_block = text.substr(0, kFirstBlock);
  bool binary =
      !form_.as_text && first_zero_byte(first_block) < first_block.size();
  while (!matches.empty()) {
    const Match& first = matches.front();
    if (first.offset >= text.size()) return;
    if (first.length == 0) {
      matches = matches.subspan(1);
      continue;
    }
    scan.move_to(first.offset);
    const size_t start = scan.start();
    walk.note_line(start, scan.number());
    size_t count = 0;
    for (; count < matches.size() && matches[count].offset < scan.end();
         ++count) {
      if (matches[count].length > 0) {
        scan.move_to(std::min(end_of(matches[count]), text.size()) - 1);
      }
    }
    binary |= !form_.as_text && scan.zero_met();
    if (binary) {
      print_binary(path);
      return;
    }
    any_ = true;
    const Block block{start, scan.end(), matches.first(count)};
    if (scan.start() == start) {
      walk.whole_line(block);
    } else {
      walk.block(block);
    }
    matches = matches.subspan(count);
  }
}

void LinePrinter::print_binary(std::string_view path) {
  output_.put("Binary file ");
  output_.put(path);
  output_.put(" matches\n");
}

void LinePrinter::print_blocks(std::string_view path, std::string_view text,
                               const std::vector<Block>& blocks) {
  if (blocks.empty()) return;
  const size_t end = form_.as_text ? text.size() : end_of_shown(text);
  const auto behind =
      std::find_if(blocks.begin(), blocks.end(),
                   [&](const Block& block) { return block.end > end; });
  print_text(path, text.substr(0, end), {blocks.begin(), behind});
  if (behind != blocks.end()) print_binary(path);
}

void LinePrinter::print_text(std::string_view path, std::string_view text,
                             const std::vector<Block>& blocks) {
  if (blocks.empty()) return;
  Walk walk(*this, path, text);
  const bool context = !form_.matches_only;
  visit_lines(text, blocks, context ? form_.before : 0,
              context ? form_.after : 0, walk);
}

}  // namespace zenfo::host::cli
