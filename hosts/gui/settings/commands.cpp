#include "gui/settings/commands.h"

#include <cctype>

namespace zenfo::host::gui {
namespace {

using State = CommandState;

bool always(const State&) { return true; }
bool may_search(const State& s) { return !s.running && s.can_search; }
bool running(const State& s) { return s.running || s.writing; }
bool any_result(const State& s) { return s.any_result; }
bool any_match(const State& s) { return s.any_match; }
bool any_selected(const State& s) { return s.any_selected; }
bool row_in_focus(const State& s) { return s.row_in_focus; }
bool may_export(const State& s) { return s.any_chosen && !s.writing; }
bool may_copy(const State& s) { return s.any_selected && !s.writing; }
bool any_text(const State& s) { return s.any_text; }
bool text_selected(const State& s) { return s.text_selected; }
bool several_tabs(const State& s) { return s.several_tabs; }
bool may_search_again(const State& s) { return may_search(s) && s.any_match; }

constexpr Key plain(KeyCode code) { return {code}; }
constexpr Key shift(KeyCode code) { return {code, 0, false, true}; }
constexpr Key ctrl(KeyCode code) { return {code, 0, true}; }
constexpr Key ctrl_shift(KeyCode code) { return {code, 0, true, true}; }
constexpr Key alt(KeyCode code) { return {code, 0, false, false, true}; }
constexpr Key letter(char c) { return {KeyCode::kCharacter, c, true}; }
constexpr Key shift_letter(char c) {
  return {KeyCode::kCharacter, c, true, true};
}
constexpr Key alt_letter(char c) {
  return {KeyCode::kCharacter, c, false, false, true};
}
constexpr Key ctrl_alt_letter(char c) {
  return {KeyCode::kCharacter, c, true, false, true};
}

using enum CommandId;
constexpr auto kAll = KeyPlace::kAnywhere;
constexpr auto kInFields = KeyPlace::kFields;
constexpr auto kInList = KeyPlace::kList;
constexpr auto kInText = KeyPlace::kTextPage;

// clang-format off
constexpr Command kCommands[] = {
    {kNewTab, "tab.new", Text::kCommandNewTab, letter('T'), kAll, Menu::kFile, false, always},
    {kCloseTab, "tab.close", Text::kCommandCloseTab, letter('W'), kAll, Menu::kFile, false, several_tabs},
    {kNextTab, "tab.next", Text::kCommandNextTab, ctrl(KeyCode::kTab), kAll, Menu::kFile, false, several_tabs},
    {kPreviousTab, "tab.previous", Text::kCommandPreviousTab, ctrl_shift(KeyCode::kTab), kAll, Menu::kFile, false, several_tabs},
    {kExport, "results.export", Text::kCommandExport, letter('E'), kAll, Menu::kFile, true, may_export},
    {kExit, "exit", Text::kCommandExit, {}, kAll, Menu::kFile, true, always},

    {kCopyPaths, "copy.paths", Text::kCommandCopyPaths, letter('C'), kInList, Menu::kEdit, false, may_copy},
    {kCopyRows, "copy.rows", Text::kCommandCopyRows, shift_letter('C'), kInList, Menu::kEdit, false, may_copy},
    {kCopyLines, "copy.lines", Text::kCommandCopyLines, shift_letter('L'), kInList, Menu::kEdit, false, may_copy},
    {kCopyNames, "copy.names", Text::kCommandCopyNames, ctrl_alt_letter('C'), kInList, Menu::kEdit, false, may_copy},
    {kSelectAll, "select.all", Text::kCommandSelectAll, letter('A'), kInList, Menu::kEdit, true, any_result},
    {kShowHistory, "history.show", Text::kCommandShowHistory, alt(KeyCode::kDown), kInFields, Menu::kEdit, true, always},
    {kInsertLineBreak, "line_break", Text::kCommandInsertLineBreak, shift(KeyCode::kEnter), kInFields, Menu::kEdit, false, always},
    {kClearHistory, "history.clear", Text::kCommandClearHistory, {}, kAll, Menu::kEdit, false, always},
    {kSettings, "settings", Text::kCommandSettings, ctrl(KeyCode::kComma), kAll, Menu::kEdit, true, always},

    {kSearch, "search", Text::kCommandSearch, plain(KeyCode::kF5), kAll, Menu::kSearch, false, may_search},
    {kSearchInFiles, "search.in_files", Text::kCommandSearchInFiles, ctrl(KeyCode::kEnter), kAll, Menu::kSearch, false, may_search_again},
    {kStop, "stop", Text::kCommandStop, plain(KeyCode::kEscape), kAll, Menu::kSearch, false, running},
    {kMatchCase, "option.match_case", Text::kCommandMatchCase, alt_letter('C'), kAll, Menu::kSearch, true, always},
    {kWholeWords, "option.whole_words", Text::kCommandWholeWords, alt_letter('W'), kAll, Menu::kSearch, false, always},
    {kPattern, "option.pattern", Text::kCommandPattern, alt_letter('P'), kAll, Menu::kSearch, false, always},
    {kCaret, "option.caret", Text::kCommandCaret, alt_letter('K'), kAll, Menu::kSearch, false, always},
    {kGoToFind, "go.find", Text::kCommandGoToFind, letter('F'), kAll, Menu::kSearch, true, always},
    {kGoToFolders, "go.folders", Text::kCommandGoToFolders, letter('L'), kAll, Menu::kSearch, false, always},
    {kChooseFolder, "choose.folder", Text::kCommandChooseFolder, {}, kAll, Menu::kSearch, false, always},
    {kMore, "more", Text::kCommandMore, {}, kAll, Menu::kSearch, false, always},

    {kNextMatch, "match.next", Text::kCommandNextMatch, plain(KeyCode::kF3), kAll, Menu::kResults, false, any_match},
    {kPreviousMatch, "match.previous", Text::kCommandPreviousMatch, shift(KeyCode::kF3), kAll, Menu::kResults, false, any_match},
    {kNextFile, "file.next", Text::kCommandNextFile, ctrl(KeyCode::kPageDown), kAll, Menu::kResults, false, any_result},
    {kPreviousFile, "file.previous", Text::kCommandPreviousFile, ctrl(KeyCode::kPageUp), kAll, Menu::kResults, false, any_result},
    {kOpenInEditor, "open", Text::kCommandOpenInEditor, plain(KeyCode::kEnter), kInList, Menu::kResults, true, row_in_focus},
    {kShowFolder, "open.folder", Text::kCommandShowFolder, shift(KeyCode::kEnter), kInList, Menu::kResults, false, row_in_focus},
    {kOpenFile, "file.open", Text::kCommandOpenFile, plain(KeyCode::kRight), kInList, Menu::kResults, true, row_in_focus},
    {kCloseFile, "file.close", Text::kCommandCloseFile, plain(KeyCode::kLeft), kInList, Menu::kResults, false, row_in_focus},
    {kOpenAllFiles, "file.open_all", Text::kCommandOpenAllFiles, ctrl_shift(KeyCode::kRight), kInList, Menu::kResults, false, any_match},
    {kCloseAllFiles, "file.close_all", Text::kCommandCloseAllFiles, ctrl_shift(KeyCode::kLeft), kInList, Menu::kResults, false, any_match},
    {kToggleChosen, "check.toggle", Text::kCommandToggleChosen, plain(KeyCode::kSpace), kInList, Menu::kResults, true, row_in_focus},
    {kChooseAll, "check.all", Text::kCommandChooseAll, {}, kAll, Menu::kResults, false, any_match},
    {kChooseNone, "check.none", Text::kCommandChooseNone, {}, kAll, Menu::kResults, false, any_match},
    {kInvertChoice, "check.invert", Text::kCommandInvertChoice, {}, kAll, Menu::kResults, false, any_match},
    {kRemoveFromResults, "results.remove", Text::kCommandRemove, plain(KeyCode::kDelete), kInList, Menu::kResults, true, any_selected},
    {kGoToFilter, "go.filter", Text::kCommandGoToFilter, shift_letter('F'), kAll, Menu::kResults, true, any_result},

    {kShowPreview, "preview", Text::kCommandShowPreview, shift_letter('P'), kAll, Menu::kView, false, always},
    {kPreviewBelow, "preview.below", Text::kCommandPreviewBelow, shift_letter('B'), kAll, Menu::kView, false, always},
    {kShowText, "view.text", Text::kCommandShowText, plain(KeyCode::kF7), kAll, Menu::kView, false, always},
    {kShowBytes, "view.bytes", Text::kCommandShowBytes, plain(KeyCode::kF9), kAll, Menu::kView, false, always},
    {kWrapLines, "view.wrap", Text::kCommandWrapLines, alt_letter('Z'), kAll, Menu::kView, true, always},
    {kShowWhiteSpace, "view.white_space", Text::kCommandShowWhiteSpace, {}, kAll, Menu::kView, false, always},
    {kZoomIn, "zoom.in", Text::kCommandZoomIn, ctrl(KeyCode::kPlus), kAll, Menu::kView, true, always},
    {kZoomOut, "zoom.out", Text::kCommandZoomOut, ctrl(KeyCode::kMinus), kAll, Menu::kView, false, always},
    {kZoomNormal, "zoom.normal", Text::kCommandZoomNormal, letter('0'), kAll, Menu::kView, false, always},
    {kNextPane, "pane.next", Text::kCommandNextPane, plain(KeyCode::kF6), kAll, Menu::kView, true, always},
    {kPreviousPane, "pane.previous", Text::kCommandPreviousPane, shift(KeyCode::kF6), kAll, Menu::kView, false, always},

    {kShowKeys, "keys", Text::kCommandShowKeys, plain(KeyCode::kF1), kAll, Menu::kHelp, false, always},

    {kCopyText, "text.copy", Text::kCommandCopyText, letter('C'), kInText, Menu::kTextPage, false, text_selected},
    {kSelectAllText, "text.select_all", Text::kCommandSelectAllText, letter('A'), kInText, Menu::kTextPage, false, any_text},
    {kCopyPlace, "text.copy_place", Text::kCommandCopyPlace, shift_letter('C'), kInText, Menu::kTextPage, true, any_text},
    {kOpenAtText, "text.open", Text::kCommandOpenAtText, plain(KeyCode::kEnter), kInText, Menu::kTextPage, false, any_text},
    {kFindText, "text.find", Text::kCommandFindText, {}, kInText, Menu::kTextPage, true, text_selected},
};
// clang-format on

struct CodeName {
  KeyCode code;
  std::string_view name;
};

constexpr CodeName kCodeNames[] = {
    {KeyCode::kEnter, "Enter"}, {KeyCode::kEscape, "Esc"},
    {KeyCode::kSpace, "Space"}, {KeyCode::kDelete, "Del"},
    {KeyCode::kTab, "Tab"},     {KeyCode::kLeft, "Left"},
    {KeyCode::kRight, "Right"}, {KeyCode::kDown, "Down"},
    {KeyCode::kPageUp, "PgUp"}, {KeyCode::kPageDown, "PgDn"},
    {KeyCode::kPlus, "Plus"},   {KeyCode::kMinus, "Minus"},
    {KeyCode::kComma, "Comma"}, {KeyCode::kF1, "F1"},
    {KeyCode::kF3, "F3"},       {KeyCode::kF5, "F5"},
    {KeyCode::kF6, "F6"},       {KeyCode::kF7, "F7"},
    {KeyCode::kF9, "F9"},
};

bool take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

}  // namespace

std::string key_name(const Key& key) {
  if (key.code == KeyCode::kNone) return "";
  std::string name;
  if (key.control) name += "Ctrl+";
  if (key.alt) name += "Alt+";
  if (key.shift) name += "Shift+";
  if (key.code == KeyCode::kCharacter) return name + key.character;
  for (const auto& [code, text] : kCodeNames) {
    if (code == key.code) name += text;
  }
  return name;
}

Key key_of(std::string_view name) {
  Key key;
  key.control = take(name, "Ctrl+");
  key.alt = take(name, "Alt+");
  key.shift = take(name, "Shift+");
  for (const auto& [code, text] : kCodeNames) {
    if (text != name) continue;
    key.code = code;
    return key;
  }
  const bool is_character =
      name.size() == 1 && (std::isupper(static_cast<unsigned char>(name[0])) ||
                           std::isdigit(static_cast<unsigned char>(name[0])));
  if (!is_character) return {};
  key.code = KeyCode::kCharacter;
  key.character = name[0];
  return key;
}

std::span<const Command> commands() { return kCommands; }

const Command& command(CommandId id) {
  for (const Command& row : kCommands) {
    if (row.id == id) return row;
  }
  return kCommands[0];  // every id has a row
}

const Command* find_command(std::string_view name) {
  for (const Command& row : kCommands) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

}  // namespace zenfo::host::gui
