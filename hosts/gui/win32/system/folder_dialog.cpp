#include "gui/win32/system/folder_dialog.h"

#include "gui/win32/base/wide.h"

// After windows.h.
#include <commdlg.h>
#include <shobjidl.h>

namespace zenfo::host::gui::win32 {
namespace {

template <class Interface>
class Held {
 public:
  ~Held() {
    if (held_ != nullptr) held_->Release();
  }
  Interface** place() { return &held_; }
  Interface* operator->() const { return held_; }
  Interface* get() const { return held_; }

 private:
  Interface* held_ = nullptr;
};

}  // namespace

std::optional<std::string> ask_for_folder(HWND owner) {
  Held<IFileOpenDialog> dialog;
  if (FAILED(CoCreateInstance(CLSID_FileOpenDialog, nullptr,
                              CLSCTX_INPROC_SERVER, IID_IFileOpenDialog,
                              reinterpret_cast<void**>(dialog.place())))) {
    return std::nullopt;
  }
  dialog->SetOptions(FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST);
  Held<IShellItem> item;
  wchar_t* path = nullptr;
  if (FAILED(dialog->Show(owner)) || FAILED(dialog->GetResult(item.place())) ||
      FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path))) {
    return std::nullopt;
  }
  std::string folder = narrow(path);
  CoTaskMemFree(path);
  return folder;
}

std::optional<FileWish> ask_where_to_save(HWND owner, const wchar_t* kinds,
                                          const wchar_t* name) {
  std::wstring path(name);
  path.resize(32768);
  OPENFILENAMEW wish{};
  wish.lStructSize = sizeof wish;
  wish.hwndOwner = owner;
  wish.lpstrFilter = kinds;
  wish.nFilterIndex = 1;
  wish.lpstrFile = path.data();
  wish.nMaxFile = static_cast<DWORD>(path.size());
  wish.lpstrDefExt = L"csv";
  wish.Flags =
      OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
  if (!GetSaveFileNameW(&wish)) return std::nullopt;
  return FileWish{narrow(path.c_str()), wish.nFilterIndex - 1};
}

}  // namespace zenfo::host::gui::win32
