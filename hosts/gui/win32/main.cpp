// zenfo-gui: searches many files, in a window.
//
// Exit status: 0, or 2 after an error.
#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "gui/win32/system/instance.h"
#include "gui/win32/system/startup.h"
#include "shared/frame/failure.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr int kError = 2;

int complain(const std::string& text) {
  MessageBoxW(nullptr, wide(text).c_str(), L"Zenfo", MB_ICONWARNING);
  return kError;
}

int run_window(Startup startup, int show) {
  MainWindow main(std::move(startup));
  main.open(show);
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (main.take_key(message)) continue;
    if (IsDialogMessageW(main.window(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}

int run(int show) {
  Startup startup = read_startup();
  if (!startup.fault.empty()) return complain(startup.fault);
  if (startup.options.help) {
    MessageBoxW(nullptr, wide(program_help()).c_str(), L"Zenfo", MB_OK);
    return 0;
  }
  if (startup.options.version) {
    MessageBoxW(nullptr, L"zenfo-gui " ZENFO_VERSION_TEXT, L"Zenfo", MB_OK);
    return 0;
  }
  const bool own = startup.options.new_window || startup.apart();
  if (!own && hand_over(kMainClass, whole_arguments(startup))) return 0;
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const INITCOMMONCONTROLSEX controls{
      sizeof controls, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                           ICC_TAB_CLASSES | ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&controls);
  const int status = run_window(std::move(startup), show);
  CoUninitialize();
  return status;
}

}  // namespace
}  // namespace zenfo::host::gui::win32

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  using namespace zenfo::host;
  try {
    return gui::win32::run(show);
  } catch (const Failure& failure) {
    return gui::win32::complain(failure.subject + ": " + failure.reason);
  } catch (const std::exception& error) {
    return gui::win32::complain(error.what());
  }
}
