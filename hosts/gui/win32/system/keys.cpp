#include "gui/win32/system/keys.h"

namespace zenfo::host::gui::win32 {
namespace {

struct Row {
  WPARAM key;
  KeyCode code;
};

constexpr Row kRows[] = {{VK_RETURN, KeyCode::kEnter},
                         {VK_ESCAPE, KeyCode::kEscape},
                         {VK_SPACE, KeyCode::kSpace},
                         {VK_DELETE, KeyCode::kDelete},
                         {VK_TAB, KeyCode::kTab},
                         {VK_LEFT, KeyCode::kLeft},
                         {VK_RIGHT, KeyCode::kRight},
                         {VK_DOWN, KeyCode::kDown},
                         {VK_PRIOR, KeyCode::kPageUp},
                         {VK_NEXT, KeyCode::kPageDown},
                         {VK_OEM_PLUS, KeyCode::kPlus},
                         {VK_ADD, KeyCode::kPlus},
                         {VK_OEM_MINUS, KeyCode::kMinus},
                         {VK_SUBTRACT, KeyCode::kMinus},
                         {VK_OEM_COMMA, KeyCode::kComma},
                         {VK_F1, KeyCode::kF1},
                         {VK_F3, KeyCode::kF3},
                         {VK_F5, KeyCode::kF5},
                         {VK_F6, KeyCode::kF6},
                         {VK_F7, KeyCode::kF7},
                         {VK_F9, KeyCode::kF9}};

bool is_character(WPARAM key) {
  return (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
}

}  // namespace

Key key_of_message(const MSG& message) {
  Key key;
  if (is_character(message.wParam)) {
    key.code = KeyCode::kCharacter;
    key.character = static_cast<char>(message.wParam);
  } else if (message.wParam == VK_NUMPAD0) {
    key.code = KeyCode::kCharacter;
    key.character = '0';
  }
  for (const Row& row : kRows) {
    if (row.key == message.wParam) key.code = row.code;
  }
  if (key.code == KeyCode::kNone) return {};
  key.control = GetKeyState(VK_CONTROL) < 0;
  key.shift = GetKeyState(VK_SHIFT) < 0;
  key.alt = GetKeyState(VK_MENU) < 0;
  return key;
}

}  // namespace zenfo::host::gui::win32
