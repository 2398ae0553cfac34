// Drives a running zenfo-gui from outside, as a person's tools would: texts and
// clicks as messages to its controls, keys, rows read across the border of the
// process. It waits for states, never for a time.
#pragma once

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "gui/win32/base/system.h"
#include "support/temp_folder.h"

namespace zenfo::test {

inline std::wstring widened(std::string_view text) {
  return native(text).wstring();
}
inline std::string narrowed(std::wstring_view text) {
  return utf8(std::filesystem::path(text));
}

// Memory of another process.
class ForeignMemory {
 public:
  ForeignMemory(HANDLE process, size_t size)
      : process_(process),
        at_(VirtualAllocEx(process, nullptr, size, MEM_COMMIT,
                           PAGE_READWRITE)) {
    if (at_ == nullptr) throw std::runtime_error("no foreign memory");
  }
  ~ForeignMemory() { VirtualFreeEx(process_, at_, 0, MEM_RELEASE); }
  ForeignMemory(const ForeignMemory&) = delete;
  ForeignMemory& operator=(const ForeignMemory&) = delete;

  char* at() const { return static_cast<char*>(at_); }
  template <class Type>
  void write(const Type& value) {
    WriteProcessMemory(process_, at_, &value, sizeof value, nullptr);
  }
  template <class Type>
  void read(Type* to, size_t bytes, size_t offset = 0) const {
    ReadProcessMemory(process_, at() + offset, to, bytes, nullptr);
  }

 private:
  HANDLE process_;
  void* at_;
};

class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    std::wstring line = L"\"" + widened(ZENFO_PROGRAM) + L"\"";
    for (const std::string& one : arguments)
      line += L" \"" + widened(one) + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0,
                        nullptr, nullptr, &start, &process_)) {
      throw std::runtime_error("cannot start the program");
    }
    CloseHandle(process_.hThread);
  }
  ~Program() {
    if (window_ != nullptr) PostMessageW(window_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_.hProcess, kPatience) != WAIT_OBJECT_0) {
      TerminateProcess(process_.hProcess, 1);
    }
    CloseHandle(process_.hProcess);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  HANDLE process() const { return process_.hProcess; }
  // The main window, once the program waits for its user.
  HWND window() {
    if (window_ == nullptr) {
      WaitForInputIdle(process_.hProcess, kPatience);
      EnumWindows(look_at, reinterpret_cast<LPARAM>(this));
    }
    if (window_ == nullptr) throw std::runtime_error("no window");
    return window_;
  }
  // Its exit status, when it has ended.
  DWORD end() {
    WaitForSingleObject(process_.hProcess, kPatience);
    DWORD status = STILL_ACTIVE;
    GetExitCodeProcess(process_.hProcess, &status);
    return status;
  }
  void close() {
    PostMessageW(window(), WM_CLOSE, 0, 0);
    end();
    window_ = nullptr;
  }

  static constexpr DWORD kPatience = 30'000;  // milliseconds, then it hangs

 private:
  static BOOL CALLBACK look_at(HWND window, LPARAM value) {
    auto* self = reinterpret_cast<Program*>(value);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[32] = L"";
    GetClassNameW(window, name, 32);
    if (process != self->process_.dwProcessId ||
        std::wstring_view(name) != L"zenfo-gui") {
      return TRUE;
    }
    self->window_ = window;
    return FALSE;
  }

  PROCESS_INFORMATION process_{};
  HWND window_ = nullptr;
};

// A window that receives the program's answers.
class Asker {
 public:
  Asker() {
    WNDCLASSW row{};
    row.lpfnWndProc = procedure;
    row.hInstance = GetModuleHandleW(nullptr);
    row.lpszClassName = L"zenfo-asker";
    RegisterClassW(&row);
    window_ = CreateWindowExW(0, row.lpszClassName, L"", 0, 0, 0, 0, 0,
                              HWND_MESSAGE, nullptr, row.hInstance, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~Asker() { DestroyWindow(window_); }
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;

  // The answer, which may come later.
  std::string ask(Program& program, std::string request) {
    reply_.clear();
    tell(program, std::move(request));
    while (reply_.empty()) {
      const HANDLE process = program.process();
      const DWORD woken = MsgWaitForMultipleObjects(
          1, &process, FALSE, Program::kPatience, QS_ALLINPUT);
      if (woken == WAIT_TIMEOUT) throw std::runtime_error("no answer");
      if (woken == WAIT_OBJECT_0) throw std::runtime_error("program ended");
      MSG message{};
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
      }
    }
    return reply_;
  }
  void tell(Program& program, std::string request) {
    COPYDATASTRUCT data{0x5A460002, static_cast<DWORD>(request.size()),
                        request.data()};
    if (SendMessageW(program.window(), WM_COPYDATA,
                     reinterpret_cast<WPARAM>(window_),
                     reinterpret_cast<LPARAM>(&data)) == 0) {
      throw std::runtime_error("refused: " + request);
    }
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word,
                                    LPARAM value) {
    if (message == WM_COPYDATA) {
      const auto& data = *reinterpret_cast<const COPYDATASTRUCT*>(value);
      auto* self =
          reinterpret_cast<Asker*>(GetWindowLongPtrW(window, GWLP_USERDATA));
      self->reply_.assign(static_cast<const char*>(data.lpData), data.cbData);
      return TRUE;
    }
    return DefWindowProcW(window, message, word, value);
  }

  HWND window_;
  std::string reply_;
};

inline std::wstring title_of(HWND control) {
  // GetWindowText() does not ask controls of other processes.
  std::wstring text(
      static_cast<size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0)) + 1,
      L'\0');
  text.resize(
      static_cast<size_t>(SendMessageW(control, WM_GETTEXT, text.size(),
                                       reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

// The visible descendants, in the order of the Tab key.
inline BOOL CALLBACK note_control(HWND child, LPARAM value) {
  if (IsWindowVisible(child)) {
    reinterpret_cast<std::vector<HWND>*>(value)->push_back(child);
  }
  return TRUE;
}

inline std::vector<HWND> controls_of(HWND window) {
  std::vector<HWND> found;
  EnumChildWindows(window, note_control, reinterpret_cast<LPARAM>(&found));
  return found;
}

// The control with a text, or for a label the control after it, as readers name
// fields.
inline HWND named(HWND window, std::wstring_view name) {
  HWND before = nullptr;
  for (const HWND control : controls_of(window)) {
    wchar_t kind[32] = L"";
    GetClassNameW(control, kind, 32);
    if (before != nullptr) return control;
    if (title_of(control) != name) continue;
    if (std::wstring_view(kind) != WC_STATICW) return control;
    before = control;
  }
  throw std::runtime_error("no control " + narrowed(name));
}

inline HWND of_class(HWND window, std::wstring_view name) {
  for (const HWND control : controls_of(window)) {
    wchar_t kind[32] = L"";
    GetClassNameW(control, kind, 32);
    if (std::wstring_view(kind) == name) return control;
  }
  throw std::runtime_error("no control of a class");
}

// Whether the user types or chooses its text.
inline bool is_field(HWND control) {
  wchar_t kind[32] = L"";
  GetClassNameW(control, kind, 32);
  return std::wstring_view(kind) == WC_EDITW ||
         std::wstring_view(kind) == WC_COMBOBOXW;
}

// Fields, buttons and labels.
inline std::vector<HWND> texts_of(HWND window) {
  std::vector<HWND> found;
  for (const HWND control : controls_of(window)) {
    wchar_t kind[32] = L"";
    GetClassNameW(control, kind, 32);
    const std::wstring_view name = kind;
    const bool part_of_field = is_field(GetParent(control));
    const bool shows = name == WC_BUTTONW || name == WC_STATICW;
    if (shows || (is_field(control) && !part_of_field)) {
      found.push_back(control);
    }
  }
  return found;
}

// The font of the system's messages at a resolution.
class MessageFont {
 public:
  explicit MessageFont(int dpi) : device_(CreateCompatibleDC(nullptr)) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    LOGFONTW& font = metrics.lfMessageFont;
    font.lfHeight =
        MulDiv(font.lfHeight, dpi, GetDeviceCaps(device_, LOGPIXELSY));
    font_ = CreateFontIndirectW(&font);
    old_ = SelectObject(device_, font_);
  }
  ~MessageFont() {
    SelectObject(device_, old_);
    DeleteObject(font_);
    DeleteDC(device_);
  }
  MessageFont(const MessageFont&) = delete;
  MessageFont& operator=(const MessageFont&) = delete;

  int width(const std::string& text) const { return size(text).cx; }
  int height() const { return size("Xg").cy; }

 private:
  SIZE size(std::string text) const {
    std::erase(text, '&');
    const std::wstring shown = widened(text);
    SIZE size{};
    GetTextExtentPoint32W(device_, shown.c_str(),
                          static_cast<int>(shown.size()), &size);
    return size;
  }

  HDC device_;
  HFONT font_ = nullptr;
  HGDIOBJ old_ = nullptr;
};

struct DialogSearch {
  DWORD process;
  HWND found;
};

inline BOOL CALLBACK note_dialog(HWND window, LPARAM value) {
  auto* wanted = reinterpret_cast<DialogSearch*>(value);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  wchar_t kind[32] = L"";
  GetClassNameW(window, kind, 32);
  const bool here = process == wanted->process && IsWindowVisible(window);
  const std::wstring_view name = kind;
  if (!here || (name != L"#32770" && name != L"zenfo-settings")) return TRUE;
  wanted->found = window;
  return FALSE;
}

// The dialog that the program shows, as soon as it does.
inline HWND dialog_of(Program& program) {
  DialogSearch wanted{GetProcessId(program.process()), nullptr};
  const ULONGLONG end = GetTickCount64() + Program::kPatience;
  while (wanted.found == nullptr) {
    if (GetTickCount64() > end) throw std::runtime_error("no dialog");
    // Comes back when the program has worked off its messages.
    SendMessageW(program.window(), WM_NULL, 0, 0);
    EnumWindows(note_dialog, reinterpret_cast<LPARAM>(&wanted));
  }
  return wanted.found;
}

// The rows of a list as texts, first column.
inline std::vector<std::string> rows_of(Program& program, int column = 0) {
  const HWND list = of_class(program.window(), WC_LISTVIEWW);
  constexpr size_t kText = 400;
  ForeignMemory memory(program.process(),
                       sizeof(LVITEMW) + kText * sizeof(wchar_t));
  std::vector<std::string> rows;
  const LRESULT count = SendMessageW(list, LVM_GETITEMCOUNT, 0, 0);
  for (LRESULT row = 0; row < count; ++row) {
    LVITEMW item{};
    item.iSubItem = column;
    item.cchTextMax = static_cast<int>(kText);
    item.pszText = reinterpret_cast<wchar_t*>(memory.at() + sizeof item);
    memory.write(item);
    const LRESULT length =
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                     reinterpret_cast<LPARAM>(memory.at()));
    std::wstring text(static_cast<size_t>(length), L'\0');
    memory.read(text.data(), text.size() * sizeof(wchar_t), sizeof item);
    rows.push_back(narrowed(text));
  }
  return rows;
}

}  // namespace zenfo::test
