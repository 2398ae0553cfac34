#include "gui/win32/panels/query_panel.h"

#include <algorithm>
#include <utility>

#include "gui/query/area_kinds.h"
#include "gui/query/query_text.h"
#include "gui/win32/base/command_ids.h"
#include "gui/win32/base/controls.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/system/clipboard.h"
#include "gui/win32/system/folder_dialog.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kGap = 6;
constexpr int kMargin = 8;

// Identifiers of fields; buttons bear those of their commands.
enum : int {
  kFindField = 100,
  kFoldersField,
  kSubfoldersBox,
  kIncludeField,
  kExcludeField,
  kAreaUseField,
  kAreaKindField,
  kAreaPatternField,
  kAreaStartField,
  kAreaEndField,
  kBinaryBox
};

void fill_list(HWND field, const std::vector<std::string>& entries) {
  const std::wstring text = text_of(field);
  const LRESULT selected = SendMessageW(field, CB_GETEDITSEL, 0, 0);
  SendMessageW(field, CB_RESETCONTENT, 0, 0);
  for (const std::string& entry : entries) {
    SendMessageW(field, CB_ADDSTRING, 0,
                 reinterpret_cast<LPARAM>(wide(entry).c_str()));
  }
  set_text(field, text);
  SendMessageW(field, CB_SETEDITSEL, 0, selected);
}

// Several lines are pasted with signs for their breaks; the field alone would
// take the first one only. A break at their end is seldom meant.
LRESULT CALLBACK on_find_edit(HWND edit, UINT message, WPARAM word,
                              LPARAM value, UINT_PTR id, DWORD_PTR) {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, on_find_edit, id);
  if (message != WM_PASTE) return DefSubclassProc(edit, message, word, value);
  std::string lines = typed_form(narrow(copied_text(edit)));
  if (lines.ends_with('\n')) lines.pop_back();
  if (lines.empty()) return 0;
  SendMessageW(edit, EM_REPLACESEL, TRUE,
               reinterpret_cast<LPARAM>(wide(field_form(lines)).c_str()));
  return 0;
}

std::string utf8_of_field(HWND field) { return narrow(text_of(field)); }
void set_field(HWND field, std::string_view text) {
  set_text(field, wide(text));
}

int chosen(HWND choice) {
  return static_cast<int>(SendMessageW(choice, CB_GETCURSEL, 0, 0));
}
void choose(HWND choice, int index) {
  SendMessageW(choice, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

// The name of a toggle with its key, for readers.
std::wstring name_of(CommandId id) {
  return wide(plain_text(command(id).label));
}

}  // namespace

QueryPanel::QueryPanel(HWND parent, const Look& look) : look_(look) {
  Shape shape;
  shape.class_name = L"zenfo-query";
  shape.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
  shape.extended_style = WS_EX_CONTROLPARENT;
  shape.parent = parent;
  create(shape);
  make_controls();
  make_tips();
  show_more(false);
}

// In the order of the Tab key.
void QueryPanel::make_controls() {
  const HWND self = window();
  const auto toggle = [&](CommandId id, const wchar_t* face) {
    return make_button(self, number_of(id), name_of(id), ButtonKind::kToggle,
                       look_, face);
  };
  find_label_ = make_label(self, wide(Text::kFind), look_);
  find_ = make_field(self, kFindField, look_);
  SetWindowSubclass(GetWindow(find_, GW_CHILD), on_find_edit, 1, 0);
  match_case_ = toggle(CommandId::kMatchCase, L"Aa");
  whole_words_ = toggle(CommandId::kWholeWords, L"W");
  pattern_ = toggle(CommandId::kPattern, L"#");
  caret_ = toggle(CommandId::kCaret, L"^");
  search_ =
      make_button(self, number_of(CommandId::kSearch),
                  name_of(CommandId::kSearch), ButtonKind::kDefault, look_);
  folders_label_ = make_label(self, wide(Text::kFolders), look_);
  folders_ = make_field(self, kFoldersField, look_);
  choose_ = make_button(self, number_of(CommandId::kChooseFolder),
                        name_of(CommandId::kChooseFolder), ButtonKind::kPush,
                        look_, L"...");
  subfolders_ = make_button(self, kSubfoldersBox, wide(Text::kSubfolders),
                            ButtonKind::kCheck, look_);
  include_label_ = make_label(self, wide(Text::kIncludeNames), look_);
  include_ = make_field(self, kIncludeField, look_);
  exclude_label_ = make_label(self, wide(Text::kExcludeNames), look_);
  exclude_ = make_field(self, kExcludeField, look_);
  more_ = make_button(self, number_of(CommandId::kMore),
                      wide(Text::kCommandMore), ButtonKind::kToggle, look_);
  make_areas();
}

// What the signs on buttons mean, for those who use the mouse.
void QueryPanel::make_tips() {
  const HWND tips = CreateWindowExW(
      WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0,
      0, 0, window(), nullptr, GetModuleHandleW(nullptr), nullptr);
  for (const HWND button :
       {match_case_, whole_words_, pattern_, caret_, choose_}) {
    std::wstring text = text_of(button);
    TTTOOLINFOW tool{};
    tool.cbSize = sizeof tool;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window();
    tool.uId = reinterpret_cast<UINT_PTR>(button);
    tool.lpszText = text.data();
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

void QueryPanel::make_areas() {
  const HWND self = window();
  areas_label_ = make_label(self, wide(Text::kAreas), look_);
  area_use_ = make_choice(
      self, kAreaUseField, look_,
      {wide(Text::kEverywhere), wide(Text::kOutside), wide(Text::kInside)});
  std::vector<std::wstring> kinds;
  for (const AreaKind& kind : area_kinds()) kinds.push_back(wide(kind.label));
  kinds.push_back(wide(Text::kOwnPattern));
  area_kind_ = make_choice(self, kAreaKindField, look_, kinds);
  area_pattern_label_ = make_label(self, wide(Text::kAreaPattern), look_);
  area_pattern_ = make_edit(self, kAreaPatternField, look_);
  area_start_label_ = make_label(self, wide(Text::kAreaStart), look_);
  area_start_ = make_edit(self, kAreaStartField, look_);
  area_end_label_ = make_label(self, wide(Text::kAreaEnd), look_);
  area_end_ = make_edit(self, kAreaEndField, look_);
  binary_ = make_button(self, kBinaryBox, wide(Text::kSearchBinary),
                        ButtonKind::kCheck, look_);
}

Query QueryPanel::query() const {
  Query query;
  query.text = text_of_field(utf8_of_field(find_));
  query.match_case = is_checked(match_case_);
  query.whole_words = is_checked(whole_words_);
  query.is_pattern = is_checked(pattern_);
  query.caret = is_checked(caret_);
  query.folders = split_list(utf8_of_field(folders_));
  query.subfolders = is_checked(subfolders_);
  query.include_names = split_list(utf8_of_field(include_));
  query.exclude_names = split_list(utf8_of_field(exclude_));
  query.areas = areas();
  query.binary =
      is_checked(binary_) ? BinaryFiles::kSearch : BinaryFiles::kSkip;
  return query;
}

void QueryPanel::set_query(const Query& query) {
  set_field(find_, field_form(query.text));
  set_checked(match_case_, query.match_case);
  set_checked(whole_words_, query.whole_words);
  set_checked(pattern_, query.is_pattern);
  set_checked(caret_, query.caret);
  set_field(folders_, join_list(query.folders));
  set_checked(subfolders_, query.subfolders);
  set_field(include_, join_list(query.include_names));
  set_field(exclude_, join_list(query.exclude_names));
  set_areas(query.areas);
  set_checked(binary_, query.binary == BinaryFiles::kSearch);
  // As after Ctrl+F: what is typed next replaces the text.
  SendMessageW(find_, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

AreaChoice QueryPanel::areas() const {
  AreaChoice areas;
  areas.use = static_cast<AreaUse>(chosen(area_use_));
  if (areas.use == AreaUse::kEverywhere) return areas;
  const auto kind = static_cast<size_t>(chosen(area_kind_));
  if (kind < area_kinds().size()) {
    areas.kind = area_kinds()[kind].name;
    return areas;
  }
  areas.pattern = utf8_of_field(area_pattern_);
  areas.start = utf8_of_field(area_start_);
  areas.end = utf8_of_field(area_end_);
  return areas;
}

void QueryPanel::set_areas(const AreaChoice& areas) {
  choose(area_use_, static_cast<int>(areas.use));
  int kind = static_cast<int>(area_kinds().size());
  for (size_t i = 0; i < area_kinds().size(); ++i) {
    if (area_kinds()[i].name == areas.kind) kind = static_cast<int>(i);
  }
  const bool none = areas.kind.empty() && areas.pattern.empty();
  choose(area_kind_, none ? 0 : kind);
  set_field(area_pattern_, areas.pattern);
  set_field(area_start_, areas.start);
  set_field(area_end_, areas.end);
  update_areas();
}

void QueryPanel::show_history(const History& history) {
  fill_list(find_, history.entries(HistoryField::kFind));
  fill_list(folders_, history.entries(HistoryField::kFolders));
  fill_list(include_, history.entries(HistoryField::kIncludeNames));
  fill_list(exclude_, history.entries(HistoryField::kExcludeNames));
}

void QueryPanel::remember(History& history) const {
  history.add(HistoryField::kFind, utf8_of_field(find_));
  history.add(HistoryField::kFolders, utf8_of_field(folders_));
  history.add(HistoryField::kIncludeNames, utf8_of_field(include_));
  history.add(HistoryField::kExcludeNames, utf8_of_field(exclude_));
}

void QueryPanel::show_more(bool on) {
  more_shown_ = on;
  set_checked(more_, on);
  for (const HWND control :
       {areas_label_, area_use_, area_kind_, area_pattern_label_, area_pattern_,
        area_start_label_, area_start_, area_end_label_, area_end_, binary_}) {
    ShowWindow(control, on ? SW_SHOW : SW_HIDE);
  }
  update_areas();
  lay_out();
}

// Fields that mean nothing now are grey.
void QueryPanel::update_areas() {
  const bool any = chosen(area_use_) > 0;
  const bool own =
      any && chosen(area_kind_) == static_cast<int>(area_kinds().size());
  EnableWindow(area_kind_, any);
  for (const HWND field : {area_pattern_, area_start_, area_end_}) {
    EnableWindow(field, own);
  }
}

// The same button, in the same place.
void QueryPanel::set_running(bool on) {
  const Text label = on ? Text::kCommandStop : Text::kCommandSearch;
  change_text(search_, wide(plain_text(label)));
}

int QueryPanel::row_height() const {
  return field_height(look_) + look_.scale(kGap);
}

int QueryPanel::height() const {
  return look_.scale(kMargin) + row_height() * (more_shown_ ? 5 : 3);
}

void QueryPanel::restyle() {
  for (HWND child = GetWindow(window(), GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    set_font(child, look_);
  }
  lay_out();
  RedrawWindow(window(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

int QueryPanel::label_width() const {
  int width = 0;
  for (const HWND label :
       {find_label_, folders_label_, include_label_, areas_label_}) {
    width = std::max(width, width_of(label, look_));
  }
  return width;
}

void QueryPanel::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  const int margin = look_.scale(kMargin);
  const int gap = look_.scale(kGap);
  const int high = field_height(look_);
  const int left = margin + label_width() + gap;
  const int right = area.right - margin;
  const int toggle = high + look_.scale(4);
  const int button = std::max(
      {width_of(search_, look_), look_.scale(90), width_of(more_, look_)});
  const int last = right - button;  // the column of Search and More
  const int middle = last - 4 * (toggle + look_.scale(2)) - gap;

  int y = margin;
  place(find_label_, margin, y, label_width(), high);
  place(find_, left, y, middle - gap - left, high);
  int x = middle;
  for (const HWND one : {match_case_, whole_words_, pattern_, caret_}) {
    place(one, x, y, toggle, high);
    x += toggle + look_.scale(2);
  }
  place(search_, last, y, button, high);

  y += row_height();
  const int subfolders = width_of(subfolders_, look_);
  place(folders_label_, margin, y, label_width(), high);
  place(folders_, left, y, right - subfolders - toggle - 2 * gap - left, high);
  place(choose_, right - subfolders - toggle - gap, y, toggle, high);
  place(subfolders_, right - subfolders, y, subfolders, high);

  y += row_height();
  const int exclude_label = width_of(exclude_label_, look_);
  const int half = (last - gap - left - exclude_label - 2 * gap) / 2;
  place(include_label_, margin, y, label_width(), high);
  place(include_, left, y, half, high);
  place(exclude_label_, left + half + gap, y, exclude_label, high);
  place(exclude_, left + half + exclude_label + 2 * gap, y, half, high);
  place(more_, last, y, button, high);

  lay_out_more(y + row_height(), left, right);
}

void QueryPanel::lay_out_more(int y, int left, int right) {
  const int margin = look_.scale(kMargin);
  const int gap = look_.scale(kGap);
  const int high = field_height(look_);
  const int use = look_.scale(110);
  const int binary = width_of(binary_, look_);
  place(areas_label_, margin, y, label_width(), high);
  place(area_use_, left, y, use, high);
  const int kind = left + use + gap;
  place(area_kind_, kind, y, right - binary - gap - kind, high);
  place(binary_, right - binary, y, binary, high);

  y += row_height();
  const std::pair<HWND, HWND> fields[] = {{area_pattern_label_, area_pattern_},
                                          {area_start_label_, area_start_},
                                          {area_end_label_, area_end_}};
  int labels = 0;
  for (const auto& [label, field] : fields) labels += width_of(label, look_);
  const int width = (right - left - labels - 5 * gap) / 3;
  int x = left;
  for (const auto& [label, field] : fields) {
    const int label_size = width_of(label, look_);
    place(label, x, y, label_size, high);
    place(field, x + label_size + gap, y, width, high);
    x += label_size + width + 2 * gap;
  }
}

void QueryPanel::focus_on(QueryField field) {
  const HWND fields[] = {find_, folders_, include_, exclude_, area_pattern_};
  if (field == QueryField::kAreas && !more_shown_) {
    SendMessageW(GetParent(window()), WM_COMMAND,
                 static_cast<WPARAM>(number_of(CommandId::kMore)), 0);
  }
  const HWND target = fields[static_cast<size_t>(field)];
  SetFocus(target);
  SendMessageW(target, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

void QueryPanel::insert_line_break() {
  const HWND edit = GetWindow(find_, GW_CHILD);
  if (GetFocus() != edit) {
    SetFocus(edit);
    const int end = GetWindowTextLengthW(edit);
    SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(end), end);
  }
  SendMessageW(edit, EM_REPLACESEL, TRUE,
               reinterpret_cast<LPARAM>(wide(kLineBreakSign).c_str()));
}

void QueryPanel::click(CommandId toggle) {
  const HWND button = GetDlgItem(window(), number_of(toggle));
  set_checked(button, !is_checked(button));
  SendMessageW(GetParent(window()), WM_COMMAND, kChanged, 0);
}

void QueryPanel::choose_folder() {
  const auto folder = ask_for_folder(window());
  if (folder) add_folders({*folder}, false);
}

void QueryPanel::add_folders(const std::vector<std::string>& paths, bool keep) {
  std::vector<std::string> folders;
  if (keep) folders = split_list(utf8_of_field(folders_));
  folders.insert(folders.end(), paths.begin(), paths.end());
  set_field(folders_, join_list(folders));
  SendMessageW(GetParent(window()), WM_COMMAND, kChanged, 0);
}

bool QueryPanel::has_focus() const {
  return IsChild(window(), GetFocus()) != 0;
}

namespace {

// The combo box of the focus, which is it or its edit field; or null.
HWND focused_combo(HWND panel) {
  HWND control = GetFocus();
  if (GetParent(control) != panel) control = GetParent(control);
  wchar_t name[16] = L"";
  if (control != nullptr) GetClassNameW(control, name, 16);
  return std::wstring_view(name) == WC_COMBOBOXW ? control : nullptr;
}

std::wstring entry_text(HWND combo, LRESULT entry) {
  const auto index = static_cast<WPARAM>(entry);
  std::wstring text(
      static_cast<size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, index, 0)) + 1,
      L'\0');
  text.resize(static_cast<size_t>(SendMessageW(
      combo, CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

}  // namespace

bool QueryPanel::list_shown() const {
  const HWND combo = focused_combo(window());
  return combo != nullptr && SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0;
}

bool QueryPanel::forget_entry(History& history) {
  const std::pair<HWND, HistoryField> fields[] = {
      {find_, HistoryField::kFind},
      {folders_, HistoryField::kFolders},
      {include_, HistoryField::kIncludeNames},
      {exclude_, HistoryField::kExcludeNames}};
  const HWND combo = focused_combo(window());
  for (const auto& [field, name] : fields) {
    if (field != combo) continue;
    const LRESULT entry = SendMessageW(combo, CB_GETCURSEL, 0, 0);
    if (entry == CB_ERR) return false;
    history.remove(name, narrow(entry_text(combo, entry)));
    const LRESULT left =
        SendMessageW(combo, CB_DELETESTRING, static_cast<WPARAM>(entry), 0);
    const LRESULT next = std::min(entry, left - 1);  // or none
    SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(next), 0);
    return true;
  }
  return false;
}

void QueryPanel::show_list() const {
  const HWND combo = focused_combo(window());
  if (combo != nullptr) SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
}

void QueryPanel::on_command(WPARAM word, LPARAM value) {
  const HWND parent = GetParent(window());
  const int code = HIWORD(word);
  const auto sender = reinterpret_cast<HWND>(value);
  if (code == CBN_SELCHANGE && (sender == area_use_ || sender == area_kind_)) {
    update_areas();
  }
  if (code == CBN_SETFOCUS || code == CBN_KILLFOCUS) {
    InvalidateRect(sender, nullptr, FALSE);
  }
  const auto id = command_of(LOWORD(word));
  const bool box = sender == match_case_ || sender == whole_words_ ||
                   sender == pattern_ || sender == caret_ || !id;
  // A toggle that was clicked has changed by itself.
  if (box) {
    SendMessageW(parent, WM_COMMAND, kChanged, 0);
  } else if (code == BN_CLICKED) {
    SendMessageW(parent, WM_COMMAND, LOWORD(word),
                 reinterpret_cast<LPARAM>(window()));
  }
}

LRESULT QueryPanel::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_SIZE:
      lay_out();
      return 0;
    case WM_COMMAND:
      on_command(word, value);
      return 0;
    case WM_ERASEBKGND:
      fill_panel(window(), reinterpret_cast<HDC>(word), look_);
      return 1;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      return control_colour(message, reinterpret_cast<HDC>(word), look_);
    default:
      return by_default(message, word, value);
  }
}

}  // namespace zenfo::host::gui::win32
