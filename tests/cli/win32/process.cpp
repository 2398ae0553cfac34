#include "cli/process.h"

#include <windows.h>

#include <stdexcept>

#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

std::wstring wide(const std::string& utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring text(utf8.size(), L'\0');
  text.resize(static_cast<size_t>(
      size == 0 ? 0
                : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size,
                                      text.data(), size)));
  return text;
}

// Quotes an argument so that the C start-up code restores it.
std::string quoted(const std::string& argument) {
  std::string text = "\"";
  size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, '\\') + '"';
}

HANDLE open_for_writing(const std::string& path) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(wide(path).c_str(), GENERIC_WRITE,
                     FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Sets the temporary folder of the processes started while it lives.
class TemporaryFolderVariable {
 public:
  explicit TemporaryFolderVariable(const std::string& folder) {
    if (folder.empty()) return;
    GetEnvironmentVariableW(kName, before_, MAX_PATH);
    SetEnvironmentVariableW(kName, wide(folder).c_str());
  }
  ~TemporaryFolderVariable() {
    if (before_[0] != 0) SetEnvironmentVariableW(kName, before_);
  }
  TemporaryFolderVariable(const TemporaryFolderVariable&) = delete;
  TemporaryFolderVariable& operator=(const TemporaryFolderVariable&) = delete;

 private:
  static constexpr const wchar_t* kName = L"TMP";
  wchar_t before_[MAX_PATH] = L"";
};

HANDLE open_for_reading(const std::string& path) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                     &inherited, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

HANDLE pipe_without_reader() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE reading = INVALID_HANDLE_VALUE;
  HANDLE writing = INVALID_HANDLE_VALUE;
  CreatePipe(&reading, &writing, &inherited, 0);
  CloseHandle(reading);
  return writing;
}

int run(const Start& start, HANDLE in, HANDLE out, HANDLE err) {
  std::string line = quoted(ZENFO_PROGRAM);
  for (const std::string& argument : start.arguments) {
    line += ' ' + quoted(argument);
  }
  std::wstring wide_line = wide(line);
  const std::wstring folder = wide(start.folder);
  const TemporaryFolderVariable temporary_folder(start.temporary_folder);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = in;
  startup.hStdOutput = out;
  startup.hStdError = err;
  PROCESS_INFORMATION process;
  if (!CreateProcessW(nullptr, wide_line.data(), nullptr, nullptr, TRUE, 0,
                      nullptr, folder.empty() ? nullptr : folder.c_str(),
                      &startup, &process)) {
    throw std::runtime_error("cannot run zenfo");
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

}  // namespace

Outcome run_zenfo(const Start& start) {
  const TempFolder folder;
  const std::string out_path = folder.path("out");
  const std::string err_path = folder.path("err");
  const HANDLE out =
      start.output_unread ? pipe_without_reader() : open_for_writing(out_path);
  const HANDLE err = open_for_writing(err_path);
  const bool own_input = !start.input_file.empty();
  const HANDLE in = own_input ? open_for_reading(start.input_file)
                              : GetStdHandle(STD_INPUT_HANDLE);
  Outcome outcome;
  outcome.status = run(start, in, out, err);
  if (own_input) CloseHandle(in);
  CloseHandle(out);
  CloseHandle(err);
  if (!start.output_unread) outcome.out = read_file(out_path);
  outcome.err = read_file(err_path);
  return outcome;
}

}  // namespace zenfo::test
