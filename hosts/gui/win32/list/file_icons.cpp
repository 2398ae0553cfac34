#include "gui/win32/list/file_icons.h"

#include <memory>
#include <utility>

#include "gui/results/result_order.h"
#include "gui/win32/base/wide.h"

// After windows.h.
#include <objbase.h>
#include <shellapi.h>

namespace zenfo::host::gui::win32 {
namespace {

// The large one: it is drawn smaller where need be. The file need not exist.
HICON icon_of(const std::string& extension) {
  SHFILEINFOW facts{};
  const std::wstring name = wide("x." + extension);
  SHGetFileInfoW(name.c_str(), FILE_ATTRIBUTE_NORMAL, &facts, sizeof facts,
                 SHGFI_ICON | SHGFI_LARGEICON | SHGFI_USEFILEATTRIBUTES);
  return facts.hIcon;
}

}  // namespace

FileIcons::~FileIcons() {
  for (const auto& [extension, icon] : icons_) {
    if (icon != nullptr) DestroyIcon(icon);
  }
}

HICON FileIcons::find(std::string_view extension) {
  const std::string key = folded(extension);
  const auto found = icons_.find(key);
  if (found != icons_.end()) return found->second;
  if (icons_.size() == kMost) return nullptr;
  icons_[key] = nullptr;
  wanted_.push_back(key);
  fetch();
  return nullptr;
}

void FileIcons::fetch() {
  if (thread_.busy() || wanted_.empty()) return;
  const auto icons = std::make_shared<Icons>();
  thread_.start(
      [icons, wanted = std::exchange(wanted_, {})](SideThread::Control&) {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        for (const std::string& one : wanted) (*icons)[one] = icon_of(one);
        CoUninitialize();
      },
      [this, icons] {
        for (const auto& [extension, icon] : *icons) icons_[extension] = icon;
        fetch();
        if (on_new) on_new();
      });
}

}  // namespace zenfo::host::gui::win32
