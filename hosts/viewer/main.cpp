// zenfo-view: shows a file in a window, with the matches of a text or pattern.
// It is the smallest host with a window, to copy from: the search is here, the
// window in window.cpp.
//
// Exit status: 0 shown, 1 nothing found, 2 an error.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "viewer/command_line.h"
#include "viewer/screenshot.h"
#include "viewer/window.h"
#include "zenfofr130.h"

namespace zenfo::viewer {
namespace {

enum Status : int { kShown = 0, kNothingFound = 1, kError = 2 };

constexpr int32_t kStop = 2;  // answer to an option question

// Global, because callbacks have no argument for the host's data.
const CommandLine* wanted = nullptr;
Status status = kNothingFound;

// Uses a message box when there is no error output.
Status complain(const std::wstring& message, Status why = kError) {
  const HANDLE output = GetStdHandle(STD_ERROR_HANDLE);
  if (GetFileType(output) == FILE_TYPE_UNKNOWN) {
    MessageBoxW(nullptr, message.c_str(), L"zenfo-view", MB_ICONWARNING);
  } else {
    const std::string bytes = narrow(message).value_or("unsayable") + '\n';
    std::fputs(("zenfo-view: " + bytes).c_str(), stderr);
  }
  return why;
}

Status show() {
  Window window(wanted->file, wanted->hex);
  if (!window.open()) return complain(L"the window cannot be opened");
  if (wanted->shot.empty()) {
    window.run();
  } else if (!save_screenshot(window.handle(), wanted->shot)) {
    return complain(L"cannot write " + wanted->shot);
  }
  return kShown;
}

// The engine waits here while the user looks, because matches and display are
// gone after the answer. No exception may pass through the engine.
int32_t ZENFO_CALL on_question(const ZenfoWideChar*, int32_t) {
  try {
    status = show();
  } catch (...) {
    status = kError;
  }
  return kStop;
}

std::wstring full_path(const std::wstring& path) {
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()),
                               full.data(), nullptr));
  return full;
}

// Puts the file into the list of files for runs and selects it.
bool list_file(const std::wstring& file) {
  const auto path = narrow(full_path(file));
  // ";" and "|" separate the paths of a specification.
  if (!path || path->find_first_of(";|") != std::string::npos) return false;
  const unsigned char no_facts[ZENFO_OPTION_COUNT] = {};
  FindFiles(ZENFO_LIST_RUN_FILES, ('0' + *path).c_str(), no_facts, "");
  return SetState(ZENFO_LIST_RUN_FILES, -1, 1) == 1;
}

bool set_pattern(const CommandLine& line) {
  const auto text = narrow(line.text);
  return text && SetPattern(nullptr, text->c_str(), nullptr, 0, line.pattern, 0,
                            0, 0, 0) == 1;
}

Status view(const CommandLine& line) {
  CallbackTable callbacks{};
  callbacks.option_question = on_question;
  SetCallBacks(&callbacks);
  if (Initialize() != 1) return complain(L"the engine cannot be started");
  if (!list_file(line.file)) return complain(L"cannot find " + line.file);
  if (!set_pattern(line)) return complain(L"cannot search for " + line.text);
  FindBlock(1, 0, 0, nullptr, 1, 0);
  if (GetCount(ZENFO_LIST_ERROR, -1) != 0) {
    return complain(L"cannot read " + line.file);
  }
  if (status == kNothingFound) {
    return complain(line.text + L" is not in " + line.file, kNothingFound);
  }
  return status;
}

int run() {
  const auto line = read_command_line();
  if (!line) return complain(std::wstring(L"wrong arguments\n\n") + kUsage);
  wanted = &*line;
  const Status result = view(*line);
  Terminate();
  return result;
}

}  // namespace
}  // namespace zenfo::viewer

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  return zenfo::viewer::run();
}
