// Rows as one text for the clipboard: made on another thread, because many
// lines are to be read.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "gui/engine/side_thread.h"
#include "gui/win32/list/result_tab.h"
#include "gui/win32/list/row_text.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui::win32 {

// kLines copies the lines of matches as the files have them, each once.
enum class CopyForm { kPaths, kNames, kRows, kLines };

class RowCopy {
 public:
  // Takes the selected rows of the list in view.
  RowCopy(const ResultTab& tab, CopyForm form);

  void run(SideThread::Control& control);
  const std::wstring& text() const { return text_; }
  // Whether the text was cut off, because a clipboard has to hold it.
  bool too_long() const { return text_.size() > kMost; }

 private:
  struct File {
    const ResultFile* facts;
    const std::string* reason;
    bool row;  // of its own
    size_t matches;
  };
  static constexpr size_t kMost = size_t{16} << 20;  // characters

  void take_rows(const ResultTab& tab);
  void add_file(const File& file, const Match* matches);
  void add_matches(const std::string& path, std::span<const Match> matches);
  void add_lines(const std::string& path, std::span<const Match> matches);
  bool with_matches() const {
    return form_ == CopyForm::kRows || form_ == CopyForm::kLines;
  }
  void add(const std::wstring& row);

  const std::shared_ptr<const ResultSet> set_;
  const CopyForm form_;
  const std::vector<Column>& columns_;
  std::vector<File> files_;
  std::vector<Match> matches_;  // of all files
  FileBytes bytes_;
  std::wstring text_;
};

}  // namespace zenfo::host::gui::win32
