// Everything that a user can command: one table, from which menus, keys and
// buttons are made.
//
// Tested by tests/gui/settings/commands_test.cpp
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "gui/words/strings.h"

namespace zenfo::host::gui {

enum class CommandId : uint16_t {
  kSearch,
  kStop,
  kSearchInFiles,
  kMatchCase,
  kWholeWords,
  kPattern,
  kCaret,
  kMore,
  kGoToFind,
  kGoToFolders,
  kGoToFilter,
  kChooseFolder,
  kShowHistory,
  kInsertLineBreak,
  kClearHistory,
  kNewTab,
  kCloseTab,
  kNextTab,
  kPreviousTab,
  kNextMatch,
  kPreviousMatch,
  kNextFile,
  kPreviousFile,
  kToggleChosen,
  kChooseAll,
  kChooseNone,
  kInvertChoice,
  kSelectAll,
  kOpenFile,
  kCloseFile,
  kOpenAllFiles,
  kCloseAllFiles,
  kOpenInEditor,
  kShowFolder,
  kRemoveFromResults,
  kCopyPaths,
  kCopyRows,
  kCopyLines,
  kCopyNames,
  kExport,
  kNextPane,
  kPreviousPane,
  kShowPreview,
  kPreviewBelow,
  kWrapLines,
  kShowWhiteSpace,
  kShowText,
  kShowBytes,
  kCopyText,
  kSelectAllText,
  kCopyPlace,
  kOpenAtText,
  kFindText,
  kZoomIn,
  kZoomOut,
  kZoomNormal,
  kSettings,
  kShowKeys,
  kExit
};

enum class Menu : uint8_t {
  kNone,
  kFile,
  kEdit,
  kSearch,
  kResults,
  kView,
  kHelp,
  kTextPage  // not in the bar
};

// Keys beside letters and digits.
enum class KeyCode : uint8_t {
  kNone,
  kCharacter,
  kEnter,
  kEscape,
  kSpace,
  kDelete,
  kTab,
  kLeft,
  kRight,
  kDown,
  kPageUp,
  kPageDown,
  kPlus,
  kMinus,
  kComma,
  kF1,
  kF3,
  kF5,
  kF6,
  kF7,
  kF9
};

struct Key {
  KeyCode code = KeyCode::kNone;
  char character = 0;  // a capital letter or digit, for kCharacter
  bool control = false;
  bool shift = false;
  bool alt = false;

  bool operator==(const Key&) const = default;
};

// "Ctrl+Shift+F"; empty for no key.
std::string key_name(const Key& key);
// No key for a text that names none.
Key key_of(std::string_view name);

// Where a key means a command: lists and pages have keys that fields need for
// text.
enum class KeyPlace : uint8_t { kAnywhere, kFields, kList, kTextPage };

// What commands depend on.
struct CommandState {
  bool running = false;       // a search of the tab in view
  bool can_search = false;    // the fields make a query without faults
  bool any_result = false;    // the list has rows
  bool any_match = false;     // with matches
  bool any_selected = false;  // rows
  bool row_in_focus = false;  // a row has the focus
  bool any_chosen = false;    // matches
  bool several_tabs = false;
  bool any_text = false;       // the text page shows a file
  bool text_selected = false;  // some of it
  bool writing = false;        // an export or a large copy
};

struct Command {
  CommandId id;
  std::string_view name;  // in settings, never changed
  Text label;
  Key key;  // unless the user chose another, see key_map.h
  KeyPlace place;
  Menu menu;
  // Whether a line stands before it in its menu.
  bool begins_group;
  bool (*enabled)(const CommandState& state);
};

// In the order of the menus.
std::span<const Command> commands();
const Command& command(CommandId id);
// Null for an unknown name.
const Command* find_command(std::string_view name);

}  // namespace zenfo::host::gui
