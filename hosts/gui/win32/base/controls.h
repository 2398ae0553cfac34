// The system's controls, painted in the colours of the program. They keep their
// roles, names and states, so that readers and other tools know them.
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "gui/win32/base/look.h"

namespace zenfo::host::gui::win32 {

// kToggle is a check box that looks like a button, kTab a radio button that
// does.
enum class ButtonKind { kPush, kDefault, kToggle, kCheck, kTab };

// The look must outlive the control. `face` is shown instead of the name.
HWND make_button(HWND parent, int id, std::wstring_view name, ButtonKind kind,
                 const Look& look, const wchar_t* face = nullptr);
// A field with a list of earlier entries.
HWND make_field(HWND parent, int id, const Look& look);
// A list of which one is chosen.
HWND make_choice(HWND parent, int id, const Look& look,
                 const std::vector<std::wstring>& choices);
HWND make_edit(HWND parent, int id, const Look& look);
// Its "&" gives the next control an access key.
HWND make_label(HWND parent, std::wstring_view text, const Look& look);

std::wstring text_of(HWND control);
void set_text(HWND control, const std::wstring& text);
// Does nothing if the text is the same, so nothing blinks.
void change_text(HWND control, const std::wstring& text);
void set_font(HWND control, const Look& look);
bool is_checked(HWND button);
void set_checked(HWND button, bool on);

// The arrow keys stay between a control that begins a group and the next one
// that does.
void begin_group(HWND control);

// The width that a button or label needs.
int width_of(HWND control, const Look& look);
// The height of fields and buttons.
int field_height(const Look& look);
// Moves a control; a combo box gets room for its list below.
void place(HWND control, int x, int y, int width, int height);

// Paints the ground of a panel.
void fill_panel(HWND panel, HDC device, const Look& look);
// Answers WM_CTLCOLOR messages in a panel's colours.
LRESULT control_colour(UINT message, HDC device, const Look& look);

}  // namespace zenfo::host::gui::win32
