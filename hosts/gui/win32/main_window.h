// The main window: puts the parts together, pulls news from the engine thread,
// carries out commands.
//
// The sources are main_window.cpp (parts, layout, messages),
// window_commands.cpp (commands), window_search.cpp (searches and tabs),
// window_page.cpp (the file beside the results) and window_output.cpp (exports
// and copies).
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gui/engine/areas_job.h"
#include "gui/engine/display_job.h"
#include "gui/engine/engine_thread.h"
#include "gui/engine/search_job.h"
#include "gui/engine/side_thread.h"
#include "gui/results/export.h"
#include "gui/results/news_queue.h"
#include "gui/settings/key_map.h"
#include "gui/settings/settings.h"
#include "gui/win32/base/look.h"
#include "gui/win32/base/window_base.h"
#include "gui/win32/list/file_icons.h"
#include "gui/win32/list/line_cache.h"
#include "gui/win32/list/result_list.h"
#include "gui/win32/list/result_tab.h"
#include "gui/win32/list/row_copy.h"
#include "gui/win32/page/bytes_view.h"
#include "gui/win32/page/text_view.h"
#include "gui/win32/panels/info_bar.h"
#include "gui/win32/panels/query_panel.h"
#include "gui/win32/panels/status_line.h"
#include "gui/win32/panels/tab_strip.h"
#include "gui/win32/panels/view_bar.h"
#include "gui/win32/system/startup.h"
#include "gui/win32/system/taskbar.h"

namespace zenfo::host::gui::win32 {

inline constexpr wchar_t kMainClass[] = L"zenfo-gui";

class MainWindow : public WindowBase {
 public:
  // What makes the job of a query; tests have their own.
  using JobMaker = std::function<std::unique_ptr<Job>(const Query& query)>;
  explicit MainWindow(Startup startup, JobMaker make_job = {});
  ~MainWindow() override;

  void open(int show);
  // Whether nothing is left to do but what the user wants next.
  bool is_idle() const;
  // Keys that mean commands; true if the message is done with.
  bool take_key(const MSG& message);

 protected:
  LRESULT on_message(UINT message, WPARAM word, LPARAM value) override;

 private:
  // --- main_window.cpp
  void make_parts();
  void load();
  void save();
  void place_window();
  void lay_out();
  void restyle(unsigned dpi);
  bool on_command(int number, bool from_control);
  bool on_copied(HWND sender, const COPYDATASTRUCT& data);
  void on_drop(HDROP drop);
  void on_menu_of_rows(LPARAM at);
  bool on_key_in_parts(const Key& key);
  void go_to_control(WPARAM word, bool is_control);
  LRESULT on_end_of_focus(WPARAM active);
  LRESULT on_notify(const NMHDR* header);
  bool on_splitter(UINT message, LPARAM value);
  RECT splitter() const;
  LRESULT on_system_message(UINT message, WPARAM word, LPARAM value);
  std::string settings_path() const;

  // --- window_search.cpp
  void search(Query query, SearchJob::Paths paths = {});
  void start_search();
  void search_in_files();
  void stop_search();
  void add_tab();
  void close_tab(int index);
  void show_tab(int index);
  ResultTab& tab() { return *tabs_[current_]; }
  const ResultTab& tab() const { return *tabs_[current_]; }
  void pull();
  void take_news(JobNews news);
  void arrange(bool anew);
  bool arrange_list(ResultTab& owner, ListState& list);
  void pull_later(DWORD spent);
  void show_state();
  bool any_running() const;
  void tell_if_idle();
  void take_picture();
  void take_over(const ProgramOptions& options);

  // --- window_page.cpp
  void show_page();
  void show_page_again();
  void clear_page();
  void choose_page(PageKind kind);
  HWND page_window() const;
  bool page_is_busy() const;
  void show_text();
  void show_bytes(bool same_file);
  void show_display();
  void on_display_news(const JobNews& news);
  void want_areas();
  void on_areas_news(const JobNews& news);
  std::optional<uint32_t> match_of_page() const;
  void go_to_match_at(uint32_t offset);
  void on_menu_of_text(LPARAM at);
  void copy_place();
  void open_at_text();
  void find_text();

  // --- window_commands.cpp
  void run(CommandId id);
  CommandState state() const;
  static bool is_on(CommandId id, const void* owner);
  void step_match(bool forward);
  void step_file(bool forward);
  void open_all(bool on);
  void open_in_editor();
  void show_folder();
  void remove_selected();
  void zoom(int percent);
  void step_pane(bool forward);
  void show_keys();
  std::vector<uint32_t> selected_files() const;
  void choice_changed();
  void on_sorted();
  void change_settings();

  // --- window_output.cpp
  void copy_selected(CopyForm form);
  void export_rows();
  void begin_output(Text label, SideThread::Work work, SideThread::Then then);
  void show_output();
  void end_export(const std::string& path, const ExportResult& result,
                  const std::string& failure);

  Startup startup_;
  JobMaker make_job_;
  Settings settings_;
  bool may_write_settings_ = true;
  std::string load_message_;
  KeyMap keys_;
  Look look_;

  std::unique_ptr<LineCache> lines_;
  std::unique_ptr<FileIcons> icons_;
  std::unique_ptr<QueryPanel> panel_;
  std::unique_ptr<TabStrip> strip_;
  std::unique_ptr<InfoBar> info_;
  std::unique_ptr<ViewBar> view_;
  std::unique_ptr<ResultList> list_;
  std::unique_ptr<TextView> page_;
  std::unique_ptr<BytesView> bytes_;
  std::unique_ptr<StatusLine> status_;
  Taskbar taskbar_;

  std::vector<std::unique_ptr<ResultTab>> tabs_;
  size_t current_ = 0;
  bool opens_files_ = true;  // new results show their matches
  int pulls_ = 0;            // since the last search began
  ULONGLONG sorted_ = 0;     // when results were sorted last
  RECT middle_{};            // of the window: list, splitter and page
  bool splitting_ = false;   // the mouse holds the splitter
  PageKind page_kind_ = PageKind::kText;
  ResultRow page_row_;         // what the page shows
  uint16_t page_serial_ = 0;   // of the search it belongs to; 0: none
  JobId areas_job_ = 0;        // finds areas of what the page shows
  AreasJob::Parts areas_;      // found by it
  bool areas_wanted_ = false;  // when no search runs
  JobId display_job_ = 0;      // the last one that shows bytes
  std::shared_ptr<BytesDisplay> display_;  // its display
  HWND focus_ = nullptr;  // where it was when the window lost it
  bool picture_taken_ = false;
  std::vector<HWND> wait_for_idle_;  // windows of tests

  NewsQueue news_;
  Text output_label_ = Text::kExporting;

  // Last, so that they end first.
  std::unique_ptr<SideThread> arranger_;
  std::unique_ptr<SideThread> writer_;
  std::unique_ptr<EngineThread> engine_;
};

}  // namespace zenfo::host::gui::win32
