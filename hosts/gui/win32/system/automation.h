// Answers tests, when the program was started with --automation: WM_COPYDATA
// with one JSON object asks, WM_COPYDATA to the sender answers.
//
//   {"command": "search"}   carries out a command, as its menu item would
//   {"get": "idle"}         answered when nothing is left to do
//   {"picture": "PATH"}     saves what the window, or its
//                           open dialog, shows as a PNG file
//   {"get": "status"}       texts of the window, numbers of rows
//
// Tested by tests/gui/window/window_test.cpp
#pragma once

#include <optional>
#include <string>

#include "gui/win32/base/system.h"
#include "gui/words/json_value.h"

namespace zenfo::host::gui::win32 {

struct Request {
  std::string command;  // empty: a question
  std::string get;
  std::string picture;
};

// No value for a message of another kind, or that is no such object.
std::optional<Request> request_in(const COPYDATASTRUCT& data);
void answer(HWND self, HWND asker, const JsonValue& reply);

}  // namespace zenfo::host::gui::win32
