#include "gui/win32/main_window.h"

#include <algorithm>
#include <utility>

#include "gui/settings/settings_file.h"
#include "gui/win32/base/command_ids.h"
#include "gui/win32/base/controls.h"
#include "gui/win32/base/messages.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/system/automation.h"
#include "gui/win32/system/instance.h"
#include "gui/win32/system/keys.h"
#include "gui/win32/system/menu.h"
#include "viewer/screenshot.h"

// After windows.h.
#include <shellapi.h>
#include <shlobj.h>

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kStripId = 300;
constexpr int kListId = 301;
constexpr SIZE kFirstSize = {1000, 680};
constexpr SIZE kLeastSize = {640, 400};

std::string folder_of_settings() {
  wchar_t path[MAX_PATH] = L"";
  SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, 0, path);
  return narrow(path) + "\\zenfo";
}

std::string beside_program(const wchar_t* name) {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(),
                                 static_cast<DWORD>(path.size())));
  return narrow(path.substr(0, path.find_last_of(L'\\') + 1) + name);
}

}  // namespace

MainWindow::MainWindow(Startup startup, JobMaker make_job)
    : startup_(std::move(startup)), make_job_(std::move(make_job)) {
  load();
  Shape shape;
  shape.class_name = kMainClass;
  shape.title = L"Zenfo";
  shape.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
  shape.extended_style = WS_EX_CONTROLPARENT | WS_EX_ACCEPTFILES;
  create(shape);
  make_parts();
  place_window();
  restyle(startup_.dpi != 0 ? startup_.dpi : dpi_of(window()));
  const HWND self = window();
  const auto ended = [self] { PostMessageW(self, kWorkEnded, 0, 0); };
  arranger_ = std::make_unique<SideThread>(ended);
  writer_ = std::make_unique<SideThread>(ended);
  engine_ = std::make_unique<EngineThread>(
      [self] { PostMessageW(self, kWake, 0, 0); });
  add_tab();
  panel_->set_query(settings_.last_query);
  panel_->show_history(settings_.history);
  panel_->show_more(settings_.more_shown);
  info_->show(load_message_);
  lay_out();
}

MainWindow::~MainWindow() {
  engine_.reset();
  writer_.reset();
  arranger_.reset();
}

// A file beside the program is for those who carry it around.
std::string MainWindow::settings_path() const {
  if (!startup_.settings.empty()) return startup_.settings;
  const std::string portable = beside_program(L"zenfo-gui.json");
  if (GetFileAttributesW(wide(portable).c_str()) != INVALID_FILE_ATTRIBUTES) {
    return portable;
  }
  return folder_of_settings() + "\\gui.json";
}

void MainWindow::load() {
  if (startup_.apart() && startup_.settings.empty()) {
    may_write_settings_ = false;
  } else {
    settings_ =
        load_settings(settings_path(), &load_message_, &may_write_settings_);
  }
  if (startup_.theme_given) settings_.theme = startup_.theme;
  keys_ = KeyMap(settings_.keys);
}

void MainWindow::save() {
  if (!may_write_settings_) return;
  WINDOWPLACEMENT placement{};
  placement.length = sizeof placement;
  GetWindowPlacement(window(), &placement);
  const RECT& area = placement.rcNormalPosition;
  const auto plain = [&](LONG size) {
    return MulDiv(size, 96, static_cast<int>(look_.dpi));
  };
  settings_.window = {
      plain(area.left), plain(area.top), plain(area.right - area.left),
      plain(area.bottom - area.top), placement.showCmd == SW_SHOWMAXIMIZED};
  list_->keep_columns();
  settings_.more_shown = panel_->more_shown();
  settings_.last_query = panel_->query();
  std::string reason;  // The window is gone; nobody could read it.
  save_settings(settings_path(), settings_, &reason);
}

// In the order of the Tab key.
void MainWindow::make_parts() {
  const HWND self = window();
  update(look_, dpi_of(self), settings_.theme);
  lines_ = std::make_unique<LineCache>(
      [self] { PostMessageW(self, kLinesRead, 0, 0); });
  icons_ = std::make_unique<FileIcons>(
      [self] { PostMessageW(self, kWorkEnded, 0, 0); });
  icons_->on_new = [this] { InvalidateRect(list_->window(), nullptr, FALSE); };
  panel_ = std::make_unique<QueryPanel>(self, look_);
  info_ = std::make_unique<InfoBar>(self, look_);
  strip_ = std::make_unique<TabStrip>(self, kStripId, look_);
  strip_->on_close = [this](int index) { close_tab(index); };
  view_ = std::make_unique<ViewBar>(self, look_);
  ResultList::Events events;
  events.focus_moved = [this] { show_page(); };
  events.choice_changed = [this] { choice_changed(); };
  events.activated = [this] { open_in_editor(); };
  events.sorted = [this] { on_sorted(); };
  list_ = std::make_unique<ResultList>(self, kListId, look_, *lines_, *icons_,
                                       settings_.columns, std::move(events));
  page_ = std::make_unique<TextView>(self, look_.theme);
  page_->set_font(settings_.font, settings_.font_size);
  page_->set_zoom(settings_.zoom_percent);
  page_->set_wrap(settings_.wrap);
  page_->on_step = [this](int step) { step_match(step > 0); };
  page_->on_zoom = [this](int percent) { settings_.zoom_percent = percent; };
  page_->on_numbers = [self] { PostMessageW(self, kCheckIdle, 0, 0); };
  bytes_ = std::make_unique<BytesView>(self, look_);
  bytes_->on_match = [this](uint32_t offset) { go_to_match_at(offset); };
  bytes_->on_fit_changed = [this] { show_page_again(); };
  status_ = std::make_unique<StatusLine>(self, look_);
  SetMenu(self, make_menu_bar(keys_));
}

void MainWindow::place_window() {
  const HWND self = window();
  const WindowPlace& place = settings_.window;
  const unsigned dpi = startup_.dpi != 0 ? startup_.dpi : look_.dpi;
  RECT area{0, 0, scaled(kFirstSize.cx, dpi), scaled(kFirstSize.cy, dpi)};
  if (startup_.width > 0) area.right = startup_.width;
  if (startup_.height > 0) area.bottom = startup_.height;
  AdjustWindowRectEx(&area, WS_OVERLAPPEDWINDOW, TRUE, 0);
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  if (place.width == 0 || startup_.width > 0) {
    SetWindowPos(self, nullptr, 0, 0, width, height, SWP_NOZORDER);
    return;
  }
  // Where it was, unless that screen is gone.
  const RECT was{scaled(place.x, dpi), scaled(place.y, dpi),
                 scaled(place.x + place.width, dpi),
                 scaled(place.y + place.height, dpi)};
  const bool seen = MonitorFromRect(&was, MONITOR_DEFAULTTONULL) != nullptr;
  SetWindowPos(self, nullptr, was.left, was.top, was.right - was.left,
               was.bottom - was.top,
               SWP_NOZORDER | (seen ? 0U : static_cast<UINT>(SWP_NOMOVE)));
}

void MainWindow::open(int show) {
  const bool maximised = settings_.window.maximised && startup_.width == 0;
  ShowWindow(window(), maximised ? SW_SHOWMAXIMIZED : show);
  UpdateWindow(window());
  panel_->focus_on(QueryField::kText);
  if (startup_.bytes) choose_page(PageKind::kBytes);
  take_over(startup_.options);
}

void MainWindow::restyle(unsigned dpi) {
  update(look_, dpi, settings_.theme);
  apply_to_frame(window(), look_.theme);
  panel_->restyle();
  info_->restyle();
  strip_->restyle();
  view_->restyle();
  list_->restyle();
  status_->restyle();
  page_->scale(dpi);
  page_->theme_changed();
  bytes_->restyle();
  lay_out();
  InvalidateRect(window(), nullptr, TRUE);
}

// From top to bottom; the results take what is left.
void MainWindow::lay_out() {
  if (!status_ || !status_->window()) return;
  RECT area{};
  GetClientRect(window(), &area);
  int y = 0;
  const auto put = [&](HWND part, int height) {
    place(part, 0, y, area.right, height);
    y += height;
  };
  put(panel_->window(), panel_->height());
  if (info_->height() > 0) put(info_->window(), info_->height());
  put(strip_->window(), strip_->height());
  put(view_->window(), view_->height());
  const int status = status_->height();
  middle_ = {0, y, area.right, std::max<LONG>(area.bottom - status, y)};
  const bool shown = settings_.preview_shown;
  const RECT bar = splitter();
  const int high = middle_.bottom - middle_.top;
  const HWND page = page_window();
  const HWND hidden =
      page == page_->window() ? bytes_->window() : page_->window();
  ShowWindow(hidden, SW_HIDE);
  ShowWindow(page, shown ? SW_SHOWNA : SW_HIDE);
  if (!shown) {
    place(list_->window(), 0, y, area.right, high);
  } else if (settings_.preview_below) {
    place(list_->window(), 0, y, area.right, bar.top - y);
    place(page, 0, bar.bottom, area.right, middle_.bottom - bar.bottom);
  } else {
    place(list_->window(), 0, y, bar.left, high);
    place(page, bar.right, y, area.right - bar.right, high);
  }
  place(status_->window(), 0, area.bottom - status, area.right, status);
}

// Between the list and the page.
RECT MainWindow::splitter() const {
  const int wide = look_.scale(5);
  RECT bar = middle_;
  const int percent = settings_.splitter_percent;
  if (settings_.preview_below) {
    bar.top += MulDiv(middle_.bottom - middle_.top - wide, percent, 100);
    bar.bottom = bar.top + wide;
  } else {
    bar.left += MulDiv(middle_.right - middle_.left - wide, percent, 100);
    bar.right = bar.left + wide;
  }
  return bar;
}

bool MainWindow::on_splitter(UINT message, LPARAM value) {
  const POINT at{GET_X_LPARAM(value), GET_Y_LPARAM(value)};
  const RECT bar = splitter();
  if (message == WM_LBUTTONDOWN) {
    if (!settings_.preview_shown || !PtInRect(&bar, at)) return false;
    splitting_ = true;
    SetCapture(window());
  } else if (message == WM_LBUTTONUP) {
    if (splitting_) ReleaseCapture();
    splitting_ = false;
  } else if (splitting_) {
    const int long_side = settings_.preview_below
                              ? middle_.bottom - middle_.top
                              : middle_.right - middle_.left;
    const int from =
        settings_.preview_below ? at.y - middle_.top : at.x - middle_.left;
    settings_.splitter_percent =
        std::clamp(MulDiv(from, 100, std::max(long_side, 1)), 10, 90);
    lay_out();
  }
  return splitting_;
}

bool MainWindow::on_command(int number, bool from_control) {
  switch (number) {
    case QueryPanel::kChanged:
      return true;
    case ViewBar::kListChosen:
      list_->leave();
      tab().shown = view_->shown();
      list_->show(tab());
      show_state();
      show_page();
      return true;
    case ViewBar::kFilterChanged:
      tab().filter(view_->filter());
      arrange(true);
      return true;
    case ViewBar::kPageChosen:
      choose_page(view_->page());
      return true;
    case InfoBar::kResized:
      lay_out();
      return true;
    default:
      break;
  }
  const auto id = command_of(number);
  if (!id) return false;
  const bool is_search_button = *id == CommandId::kSearch && from_control;
  if (is_search_button && tab().running()) {
    stop_search();
  } else if (command(*id).enabled(state())) {
    run(*id);
    // Its dialog may have kept someone waiting.
    if (!wait_for_idle_.empty()) PostMessageW(window(), kCheckIdle, 0, 0);
  }
  return true;
}

bool MainWindow::on_copied(HWND sender, const COPYDATASTRUCT& data) {
  if (const auto arguments = arguments_in(data)) {
    std::string fault;
    const ProgramOptions options = read_program_options(*arguments, &fault);
    if (!fault.empty()) return false;
    add_tab();
    take_over(options);
    return true;
  }
  if (!startup_.automation) return false;
  const auto request = request_in(data);
  if (!request) return false;
  if (!request->command.empty()) {
    const Command* wanted = find_command(request->command);
    if (wanted == nullptr || !wanted->enabled(state())) return false;
    PostMessageW(window(), WM_COMMAND,
                 static_cast<WPARAM>(number_of(wanted->id)), 0);
    return true;
  }
  if (!request->picture.empty()) {
    const HWND front = GetLastActivePopup(window());  // or itself
    RedrawWindow(front, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return viewer::save_screenshot(front, wide(request->picture));
  }
  if (request->get == "idle") {
    wait_for_idle_.push_back(sender);
    PostMessageW(window(), kCheckIdle, 0, 0);
    return true;
  }
  if (request->get != "status") return false;
  JsonValue reply;
  reply["status"] = narrow(status_->text());
  reply["info"] = narrow(info_->text());
  reply["rows"] = static_cast<int64_t>(tab().list().rows.count());
  reply["top"] = static_cast<int64_t>(bytes_->top());
  reply["selected"] = static_cast<int64_t>(tab().list().selection.count());
  answer(window(), sender, reply);
  return true;
}

void MainWindow::on_drop(HDROP drop) {
  std::vector<std::string> paths;
  const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
  for (UINT i = 0; i < count; ++i) {
    std::wstring path(DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
    path.resize(
        DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size())));
    paths.push_back(narrow(path));
  }
  DragFinish(drop);
  panel_->add_folders(paths, GetKeyState(VK_CONTROL) < 0);
}

void MainWindow::on_menu_of_rows(LPARAM at) {
  POINT point{GET_X_LPARAM(at), GET_Y_LPARAM(at)};
  if (at == -1) {  // by a key
    RECT area{};
    GetWindowRect(list_->window(), &area);
    point = {area.left + look_.scale(40), area.top + look_.scale(40)};
  }
  const HMENU menu = make_row_menu(keys_);
  update_menu(menu, state(), is_on, this);
  TrackPopupMenu(menu, TPM_RIGHTBUTTON, point.x, point.y, 0, window(), nullptr);
  DestroyMenu(menu);
}

// What keys mean in parts, apart from the table.
bool MainWindow::on_key_in_parts(const Key& key) {
  const bool plain = !key.control && !key.alt && !key.shift;
  if (key.code == KeyCode::kEnter && plain) {
    wchar_t name[16] = L"";
    GetClassNameW(GetFocus(), name, 16);
    const bool button = std::wstring_view(name) == WC_BUTTONW;
    if (panel_->has_focus() && !button) {
      run(CommandId::kSearch);
      return true;
    }
    if (view_->filter_has_focus()) {
      SetFocus(list_->window());
      return true;
    }
    if (button) {
      SendMessageW(GetFocus(), BM_CLICK, 0, 0);
      return true;
    }
  }
  if (key.code == KeyCode::kEscape && plain && !tab().running()) {
    panel_->focus_on(QueryField::kText);
    return true;
  }
  return false;
}

bool MainWindow::take_key(const MSG& message) {
  if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) {
    return false;
  }
  if (message.hwnd != window() && !IsChild(window(), message.hwnd)) {
    return false;
  }
  const Key key = key_of_message(message);
  if (key.code == KeyCode::kNone) return false;
  // An open list of a field has keys of its own.
  if (panel_->list_shown() && !key.control && !key.alt) {
    return key.code == KeyCode::kDelete && !key.shift &&
           panel_->forget_entry(settings_.history);
  }
  KeyPlace place = KeyPlace::kFields;
  if (message.hwnd == list_->window()) place = KeyPlace::kList;
  if (message.hwnd == page_->window()) place = KeyPlace::kTextPage;
  const Command* found = keys_.find(key, place);
  if (found != nullptr && found->enabled(state())) {
    run(found->id);
    return true;
  }
  return on_key_in_parts(key);
}

// As a dialog does. Of a label's key come two messages: one with the label, one
// that asks for the control after it.
void MainWindow::go_to_control(WPARAM word, bool is_control) {
  const HWND control = is_control
                           ? reinterpret_cast<HWND>(word)
                           : GetNextDlgTabItem(window(), GetFocus(), word != 0);
  SetFocus(control);
  const HWND focus = GetFocus();
  const LRESULT code = SendMessageW(focus, WM_GETDLGCODE, 0, 0);
  if ((code & DLGC_HASSETSEL) != 0) SendMessageW(focus, EM_SETSEL, 0, -1);
}

LRESULT MainWindow::on_end_of_focus(WPARAM active) {
  if (LOWORD(active) == WA_INACTIVE) {
    focus_ = GetFocus();
  } else if (focus_ != nullptr) {
    SetFocus(focus_);
  }
  return 0;
}

LRESULT MainWindow::on_message(UINT message, WPARAM word, LPARAM value) {
  if (!status_ || !engine_) return by_default(message, word, value);
  switch (message) {
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_COMMAND:
      return on_command(LOWORD(word), value != 0) ? 0 : 1;
    case WM_NEXTDLGCTL:  // of a label's access key
      go_to_control(word, LOWORD(value) != 0);
      return 0;
    case WM_NOTIFY:
      return on_notify(reinterpret_cast<const NMHDR*>(value));
    case WM_TIMER:
      if (word == kOutputTimer) {
        show_output();
      } else {
        pull();
      }
      return 0;
    case kWorkEnded:
      arranger_->finish();
      writer_->finish();
      icons_->finish();
      tell_if_idle();
      return 0;
    case kWake:
      pull();
      return 0;
    case kLinesRead:
      if (lines_->take()) list_->lines_read();
      tell_if_idle();
      return 0;
    case kCheckIdle:
      tell_if_idle();
      return 0;
    case WM_COPYDATA:
      return on_copied(reinterpret_cast<HWND>(word),
                       *reinterpret_cast<const COPYDATASTRUCT*>(value));
    case WM_DROPFILES:
      on_drop(reinterpret_cast<HDROP>(word));
      return 0;
    case WM_CONTEXTMENU:
      if (reinterpret_cast<HWND>(word) == list_->window()) {
        on_menu_of_rows(value);
      } else if (reinterpret_cast<HWND>(word) == page_->window()) {
        on_menu_of_text(value);
      }
      return 0;
    case WM_INITMENUPOPUP:
      update_menu(reinterpret_cast<HMENU>(word), state(), is_on, this);
      return 0;
    case WM_ACTIVATE:
      return on_end_of_focus(word);
    default:
      return on_system_message(message, word, value);
  }
}

LRESULT MainWindow::on_notify(const NMHDR* header) {
  LRESULT answer = 0;
  if (list_->on_notify(header, &answer)) return answer;
  if (header->hwndFrom == strip_->window() && header->code == TCN_SELCHANGE) {
    show_tab(strip_->current());
  }
  return 0;
}

LRESULT MainWindow::on_system_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_ERASEBKGND: {
      RECT area{};
      GetClientRect(window(), &area);
      fill(reinterpret_cast<HDC>(word), area, look_.theme.panel);
      return 1;
    }
    case WM_GETMINMAXINFO: {
      auto& limits = *reinterpret_cast<MINMAXINFO*>(value);
      limits.ptMinTrackSize = {look_.scale(kLeastSize.cx),
                               look_.scale(kLeastSize.cy)};
      return 0;
    }
    case WM_DPICHANGED: {
      const auto& area = *reinterpret_cast<const RECT*>(value);
      restyle(LOWORD(word));
      SetWindowPos(window(), nullptr, area.left, area.top,
                   area.right - area.left, area.bottom - area.top,
                   SWP_NOZORDER | SWP_NOACTIVATE);
      return 0;
    }
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
    case WM_SYSCOLORCHANGE:
      restyle(look_.dpi);
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
      on_splitter(message, value);
      return 0;
    case WM_CAPTURECHANGED:
      splitting_ = false;
      return 0;
    case WM_SETCURSOR: {
      POINT at{};
      GetCursorPos(&at);
      ScreenToClient(window(), &at);
      const RECT bar = splitter();
      const bool over = settings_.preview_shown && PtInRect(&bar, at);
      if (LOWORD(value) != HTCLIENT || !over) {
        return by_default(message, word, value);
      }
      SetCursor(LoadCursorW(nullptr,
                            settings_.preview_below ? IDC_SIZENS : IDC_SIZEWE));
      return 1;
    }
    case WM_CLOSE:
      save();
      engine_->stop_all();
      DestroyWindow(window());
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
    default:
      return by_default(message, word, value);
  }
}

}  // namespace zenfo::host::gui::win32
