#include "gui/win32/panels/settings_dialog.h"

#include <algorithm>
#include <string>

#include "gui/win32/base/controls.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kDialogMargin = 14;
constexpr int kRowGap = 8;
constexpr int kFieldWidth = 300;
enum : int {
  kThemeField = 100,
  kSizeField,
  kWrapBox,
  kEditorField,
  kRememberBox
};

bool is_button(HWND control) {
  wchar_t name[16] = L"";
  if (control != nullptr) GetClassNameW(control, name, 16);
  return std::wstring_view(name) == WC_BUTTONW;
}

size_t choice_of(HWND control) {
  return static_cast<size_t>(SendMessageW(control, CB_GETCURSEL, 0, 0));
}

}  // namespace

SettingsDialog::SettingsDialog(HWND owner, const Look& look,
                               const Settings& settings)
    : owner_(owner), look_(look), sizes_{8, 9, 10, 11, 12, 14, 16, 18, 20, 24} {
  if (std::find(sizes_.begin(), sizes_.end(), settings.font_size) ==
      sizes_.end()) {
    sizes_.push_back(settings.font_size);
    std::sort(sizes_.begin(), sizes_.end());
  }
  const std::wstring title = wide(Text::kSettingsTitle);
  Shape shape;
  shape.class_name = L"zenfo-settings";
  shape.title = title.c_str();
  shape.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  shape.extended_style = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
  shape.parent = owner;
  create(shape);
  apply_to_frame(window(), look.theme);
  make_controls(settings);
  place_window();
}

// In the order of the Tab key.
void SettingsDialog::make_controls(const Settings& settings) {
  const HWND self = window();
  theme_label_ = make_label(self, wide(Text::kTheme), look_);
  theme_ = make_choice(self, kThemeField, look_,
                       {wide(Text::kThemeSystem), wide(Text::kThemeLight),
                        wide(Text::kThemeDark)});
  SendMessageW(theme_, CB_SETCURSEL, static_cast<WPARAM>(settings.theme), 0);
  std::vector<std::wstring> sizes;
  for (const int size : sizes_) {
    sizes.push_back(wide(format(Text::kPoints, {std::to_string(size)})));
  }
  size_label_ = make_label(self, wide(Text::kFontSize), look_);
  size_ = make_choice(self, kSizeField, look_, sizes);
  const auto size = std::find(sizes_.begin(), sizes_.end(), settings.font_size);
  SendMessageW(size_, CB_SETCURSEL, static_cast<WPARAM>(size - sizes_.begin()),
               0);
  wrap_ = make_button(self, kWrapBox, wide(Text::kWrapLines),
                      ButtonKind::kCheck, look_);
  set_checked(wrap_, settings.wrap);
  editor_label_ = make_label(self, wide(Text::kEditor), look_);
  editor_ = make_edit(self, kEditorField, look_);
  set_text(editor_, wide(settings.editor));
  hint_ = make_label(self, wide(Text::kEditorHint), look_);
  remember_ = make_button(self, kRememberBox, wide(Text::kRemember),
                          ButtonKind::kCheck, look_);
  set_checked(remember_, settings.history.remembers());
  ok_ = make_button(self, IDOK, wide(Text::kOk), ButtonKind::kDefault, look_);
  cancel_ = make_button(self, IDCANCEL, wide(Text::kDismiss), ButtonKind::kPush,
                        look_);
}

void SettingsDialog::lay_out() {
  RECT area{};
  GetClientRect(window(), &area);
  const int margin = look_.scale(kDialogMargin);
  const int gap = look_.scale(kRowGap);
  const int high = field_height(look_);
  const int left =
      margin + gap +
      std::max({width_of(theme_label_, look_), width_of(size_label_, look_),
                width_of(editor_label_, look_)});
  const int width = area.right - margin - left;
  int y = margin;
  const auto row = [&](HWND label, HWND field) {
    if (label != nullptr) place(label, margin, y, left - gap - margin, high);
    place(field, left, y, width, high);
    y += high + gap;
  };
  row(theme_label_, theme_);
  row(size_label_, size_);
  row(nullptr, wrap_);
  row(editor_label_, editor_);
  y -= gap;
  row(nullptr, hint_);
  row(nullptr, remember_);
  const int button = std::max(
      {look_.scale(90), width_of(ok_, look_), width_of(cancel_, look_)});
  y += gap;
  place(ok_, area.right - margin - 2 * button - gap, y, button, high);
  place(cancel_, area.right - margin - button, y, button, high);
}

// Over the middle of its owner.
void SettingsDialog::place_window() {
  const int margin = look_.scale(kDialogMargin);
  const int gap = look_.scale(kRowGap);
  const int labels =
      std::max({width_of(theme_label_, look_), width_of(size_label_, look_),
                width_of(editor_label_, look_)});
  const int fields = std::max(look_.scale(kFieldWidth), width_of(hint_, look_));
  RECT area{0, 0, 2 * margin + labels + gap + fields,
            2 * margin + 7 * field_height(look_) + 6 * gap};
  AdjustWindowRectEx(&area,
                     static_cast<DWORD>(GetWindowLongW(window(), GWL_STYLE)),
                     FALSE, WS_EX_DLGMODALFRAME);
  RECT around{};
  GetWindowRect(owner_, &around);
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  SetWindowPos(window(), nullptr, (around.left + around.right - width) / 2,
               (around.top + around.bottom - height) / 2, width, height,
               SWP_NOZORDER);
  lay_out();
}

bool SettingsDialog::run() {
  EnableWindow(owner_, FALSE);
  ShowWindow(window(), SW_SHOW);
  SetFocus(theme_);
  MSG message{};
  while (open_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN &&
        is_button(message.hwnd)) {
      SendMessageW(message.hwnd, BM_CLICK, 0, 0);
      continue;
    }
    if (IsDialogMessageW(window(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  // The program ends: its own loop has to hear of it.
  if (message.message == WM_QUIT) {
    PostQuitMessage(static_cast<int>(message.wParam));
  }
  return taken_;
}

// The owner first: else another program's window would come to the front.
void SettingsDialog::end(bool taken) {
  taken_ = taken;
  open_ = false;
  EnableWindow(owner_, TRUE);
  ShowWindow(window(), SW_HIDE);
}

void SettingsDialog::put_into(Settings& settings) const {
  settings.theme = static_cast<gui::Theme>(choice_of(theme_));
  settings.font_size = sizes_[choice_of(size_)];
  settings.wrap = is_checked(wrap_);
  settings.editor = narrow(text_of(editor_));
  settings.history.set_remembers(is_checked(remember_));
}

LRESULT SettingsDialog::on_message(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(word) == IDOK) end(true);
      if (LOWORD(word) == IDCANCEL) end(false);
      return 0;
    case WM_CLOSE:
      end(false);
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
