#include "gui/win32/base/theme.h"

namespace zenfo::host::gui::win32 {
namespace {

bool system_is_dark() {
  constexpr wchar_t kKey[] =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
  DWORD light = 1;
  DWORD size = sizeof light;
  RegGetValueW(HKEY_CURRENT_USER, kKey, L"AppsUseLightTheme", RRF_RT_REG_DWORD,
               nullptr, &light, &size);
  return light == 0;
}

bool system_has_high_contrast() {
  HIGHCONTRASTW contrast{};
  contrast.cbSize = sizeof contrast;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast,
                               0) != 0 &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

Theme light_theme() {
  Theme theme;
  theme.panel = RGB(243, 243, 243);
  theme.panel_text = RGB(26, 26, 26);
  theme.dim_text = RGB(96, 96, 96);
  theme.border = RGB(196, 196, 196);
  theme.ground = RGB(255, 255, 255);
  theme.text = RGB(20, 20, 20);
  theme.selected_ground = RGB(204, 228, 247);
  theme.selected_text = RGB(0, 0, 0);
  theme.button = RGB(190, 218, 242);
  theme.button_hot = RGB(226, 238, 249);
  theme.mark_ground = RGB(255, 228, 130);
  theme.mark_text = RGB(0, 0, 0);
  theme.current_ground = RGB(255, 176, 71);
  theme.current_text = RGB(0, 0, 0);
  theme.current_frame = RGB(150, 80, 0);
  theme.gutter = RGB(246, 246, 246);
  theme.number = RGB(110, 110, 110);
  theme.area_text = RGB(130, 130, 130);
  theme.old_ground = RGB(255, 224, 222);
  theme.new_ground = RGB(218, 245, 218);
  theme.info_ground = RGB(255, 248, 214);
  theme.info_text = RGB(50, 40, 0);
  return theme;
}

Theme dark_theme() {
  Theme theme;
  theme.dark = true;
  theme.panel = RGB(32, 32, 32);
  theme.panel_text = RGB(235, 235, 235);
  theme.dim_text = RGB(165, 165, 165);
  theme.border = RGB(82, 82, 82);
  theme.ground = RGB(25, 25, 25);
  theme.text = RGB(230, 230, 230);
  theme.selected_ground = RGB(38, 79, 120);
  theme.selected_text = RGB(255, 255, 255);
  theme.button = RGB(38, 79, 120);
  theme.button_hot = RGB(62, 62, 62);
  theme.mark_ground = RGB(92, 78, 20);
  theme.mark_text = RGB(255, 255, 255);
  theme.current_ground = RGB(158, 96, 10);
  theme.current_text = RGB(255, 255, 255);
  theme.current_frame = RGB(255, 190, 90);
  theme.gutter = RGB(30, 30, 30);
  theme.number = RGB(140, 140, 140);
  theme.area_text = RGB(130, 130, 130);
  theme.old_ground = RGB(86, 35, 35);
  theme.new_ground = RGB(30, 72, 34);
  theme.info_ground = RGB(64, 56, 24);
  theme.info_text = RGB(250, 240, 210);
  return theme;
}

// Only pairs that the system promises to be readable.
Theme contrast_theme() {
  Theme theme;
  theme.high_contrast = true;
  const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
  const COLORREF ground = GetSysColor(COLOR_WINDOW);
  const COLORREF selected = GetSysColor(COLOR_HIGHLIGHT);
  const COLORREF selected_text = GetSysColor(COLOR_HIGHLIGHTTEXT);
  theme.panel = theme.ground = theme.gutter = theme.info_ground = ground;
  theme.old_ground = theme.new_ground = theme.button_hot = ground;
  theme.panel_text = theme.text = theme.number = theme.info_text = text;
  theme.dim_text = theme.border = theme.current_frame = text;
  theme.area_text = GetSysColor(COLOR_GRAYTEXT);
  theme.selected_ground = theme.button = selected;
  theme.mark_ground = theme.current_ground = selected;
  theme.selected_text = theme.mark_text = selected_text;
  theme.current_text = selected_text;
  return theme;
}

// Functions of libraries that not all systems have.
template <class Function>
Function find_function(const wchar_t* library, const char* name) {
  const HMODULE module = LoadLibraryW(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function>(
      reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

}  // namespace

Theme make_theme(gui::Theme wish) {
  if (system_has_high_contrast()) return contrast_theme();
  const bool dark = wish == gui::Theme::kSystem ? system_is_dark()
                                                : wish == gui::Theme::kDark;
  return dark ? dark_theme() : light_theme();
}

void apply_to_frame(HWND window, const Theme& theme) {
  using Set = HRESULT(WINAPI*)(HWND, DWORD, LPCVOID, DWORD);
  static const Set set =
      find_function<Set>(L"dwmapi.dll", "DwmSetWindowAttribute");
  constexpr DWORD kDarkFrame = 20;  // DWMWA_USE_IMMERSIVE_DARK_MODE
  const BOOL dark = theme.dark;
  if (set != nullptr) set(window, kDarkFrame, &dark, sizeof dark);
}

void apply_to_control(HWND control, const Theme& theme) {
  using Set = HRESULT(WINAPI*)(HWND, LPCWSTR, LPCWSTR);
  static const Set set = find_function<Set>(L"uxtheme.dll", "SetWindowTheme");
  const wchar_t* name = theme.dark ? L"DarkMode_Explorer" : L"Explorer";
  if (set != nullptr) set(control, name, nullptr);
}

}  // namespace zenfo::host::gui::win32
