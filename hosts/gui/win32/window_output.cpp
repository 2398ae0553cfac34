// Exports and copies of the main window: made on another thread, of the results
// as they were when the user asked.
#include <algorithm>
#include <memory>
#include <utility>

#include "gui/settings/new_file.h"
#include "gui/win32/base/messages.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "gui/win32/system/clipboard.h"
#include "gui/win32/system/folder_dialog.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr UINT kShowProgress = 300;  // milliseconds
constexpr wchar_t kExportKinds[] =
    L"CSV (*.csv)\0*.csv\0TSV (*.tsv)\0*.tsv\0JSON Lines (*.jsonl)\0*.jsonl\0"
    L"Text (*.txt)\0*.txt\0Paths (*.txt)\0*.txt\0";
constexpr ExportForm kExportForms[] = {ExportForm::kCsv, ExportForm::kTsv,
                                       ExportForm::kJsonLines,
                                       ExportForm::kText, ExportForm::kPaths};

// An export to a file, on another thread.
struct FileExport {
  std::shared_ptr<const ResultSet> set;  // of the source
  ExportSource source;
  std::string path;
  ExportResult result;
  std::string failure;

  void run(SideThread::Control& control) {
    control.all = source.files().size();
    NewFile file(path);
    bool good = file.open();
    if (good) {
      result = export_results(
          source,
          [&](std::string_view lines) {
            good = file.write(lines);
            return good && !control.stop;
          },
          &control.done);
    }
    if (good && !result.stopped) good = file.put_in_place();
    if (!good) failure = file.reason();
  }
};

}  // namespace

void MainWindow::begin_output(Text label, SideThread::Work work,
                              SideThread::Then then) {
  output_label_ = label;
  SetTimer(window(), kOutputTimer, kShowProgress, nullptr);
  writer_->start(std::move(work), [this, then = std::move(then)] {
    KillTimer(window(), kOutputTimer);
    if (info_->action() == CommandId::kStop) info_->show("");
    then();
  });
}

// Not before it has taken a while.
void MainWindow::show_output() {
  if (!writer_->busy()) return;
  const SideThread::Control& control = writer_->control();
  info_->show(
      format(output_label_, {grouped(control.done), grouped(control.all)}),
      CommandId::kStop);
}

void MainWindow::copy_selected(CopyForm form) {
  const auto copy = std::make_shared<RowCopy>(tab(), form);
  begin_output(
      Text::kCopying,
      [copy](SideThread::Control& control) { copy->run(control); },
      [this, copy] {
        if (writer_->stopped()) return;
        if (copy->too_long() || !writer_->failure().empty()) {
          info_->show(std::string(text(Text::kCopyTooLong)));
        } else if (!copy_text(window(), copy->text())) {
          info_->show(std::string(text(Text::kNotCopied)));
        }
      });
}

void MainWindow::export_rows() {
  const auto wish = ask_where_to_save(window(), kExportKinds, L"zenfo.csv");
  if (!wish || writer_->busy()) return;
  const size_t form = std::min<size_t>(wish->kind, std::size(kExportForms) - 1);
  const std::vector<uint32_t>& files =
      tab().list(ResultState::kFound).rows.files();
  const auto output = std::make_shared<FileExport>(
      tab().shared_set(), ExportSource(tab().set(), files, kExportForms[form]),
      wish->path, ExportResult(), std::string());
  begin_output(
      Text::kExporting,
      [output](SideThread::Control& control) { output->run(control); },
      [this, output] {
        const std::string& broken = writer_->failure();
        end_export(output->path, output->result,
                   broken.empty() ? output->failure : broken);
      });
}

void MainWindow::end_export(const std::string& path, const ExportResult& result,
                            const std::string& failure) {
  if (!failure.empty()) {
    return info_->show(format(Text::kNotExported, {path, failure}));
  }
  if (result.stopped) {
    return info_->show(std::string(text(Text::kExportStopped)));
  }
  const std::string matches = counted_matches(result.matches);
  const std::string files = counted_files(result.files);
  info_->show(
      result.unread.empty()
          ? format(Text::kExported, {matches, files, path})
          : format(Text::kExportUnread, {matches, files, path,
                                         counted_files(result.unread.size())}));
}

}  // namespace zenfo::host::gui::win32
