// Matches as rows of a hex dump, in the layout of the library's display:
// sixteen bytes a row, then the same bytes as characters.
//
//   path
//   00000010  63 61 74 20 63 6F 6E 63 61 74 20 63 61 74 0D 0A   cat concat
//   cat..
//
// Only rows with bytes of a match are shown; "--" separates rows that are not
// consecutive.
//
// Tested by tests/cli/hex_printer_test.cpp
#pragma once

#include <span>
#include <string_view>

#include "cli/terminal/output.h"
#include "shared/text/found_text.h"

namespace zenfo::host::cli {

class HexPrinter {
 public:
  HexPrinter(bool paths, bool colours, Output& output)
      : paths_(paths), colours_(colours), output_(output) {}

  // The matches must be sorted by offset.
  void print_file(std::string_view path, std::string_view text,
                  std::span<const Match> matches);

 private:
  static constexpr size_t kRow = 16;

  void print_row(std::string_view text, size_t start,
                 std::span<const Match> matches);
  void put_marked(bool marked, std::string_view text);

  bool paths_;
  bool colours_;
  Output& output_;
};

}  // namespace zenfo::host::cli
