// The main window with a result of 100,000 files and 1,000,000 matches, made by
// a job without a search. What each message took of the processor is printed,
// not judged: other programs on the machine would decide then.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "gui/engine/job.h"
#include "gui/engine/search_job.h"
#include "gui/win32/base/command_ids.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "shared/frame/failure.h"
#include "shared/system/stop.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr uint32_t kLoadFiles = 100'000;
constexpr uint32_t kLoadMatches = 10;  // of each file
constexpr uint32_t kLoadOthers = 30'000;

class MadeJob : public Job {
 public:
  explicit MadeJob(std::atomic<uint32_t>* told) : told_(told) {}

  void run(Session&, Outbox& outbox) override {
    outbox.set_files(kLoadFiles + kLoadOthers);
    outbox.set_phase(JobPhase::kSearching);
    for (uint32_t i = 0; i < kLoadFiles; ++i) {
      if (system::stop_status() != 0) throw Stopped{};
      outbox.add(found(i));
      ++*told_;
    }
    outbox.set_phase(JobPhase::kCollecting);
    for (uint32_t i = 0; i < kLoadOthers; ++i) {
      outbox.add(OtherFile{"C:\\none\\other_" + std::to_string(i),
                           ResultState::kNoMatch, ""});
    }
  }

 private:
  static FoundFile found(uint32_t number) {
    FoundFile file;
    file.path = "C:\\harbour\\Source\\part_" + std::to_string(number % 300) +
                "\\File_" + std::to_string(kLoadFiles - number) + ".cpp";
    file.size = number;
    file.count = kLoadMatches;
    for (uint32_t i = 0; i < kLoadMatches; ++i) {
      file.matches.push_back({i * 10, 4});
    }
    return file;
  }

  std::atomic<uint32_t>* told_;
};

class WindowLoad : public testing::Test {
 protected:
  WindowLoad() {
    Startup startup;
    startup.automation = true;
    startup.width = 1000;
    startup.height = 700;
    startup.options.has_query = true;
    startup.options.query.text = "tide";
    startup.options.query.folders = {"C:\\harbour"};
    main_ = std::make_unique<MainWindow>(startup, [this](const Query&) {
      return std::make_unique<MadeJob>(&told_);
    });
    main_->open(SW_SHOWNA);
    settle();
  }

  HWND list() const { return find(WC_LISTVIEWW); }
  HWND find(const wchar_t* kind) const {
    return FindWindowExW(main_->window(), nullptr, kind, nullptr);
  }
  int64_t rows() const { return SendMessageW(list(), LVM_GETITEMCOUNT, 0, 0); }

  static uint64_t processor_time() {
    FILETIME made{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &made, &ended, &kernel, &user);
    const auto units = [](const FILETIME& time) {
      return uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    };
    return (units(kernel) + units(user)) / 10'000;  // milliseconds
  }

  // Handles messages until the window is idle; keeps the longest one.
  void settle() {
    while (!main_->is_idle() || waiting()) {
      MSG message{};
      GetMessageW(&message, nullptr, 0, 0);
      const uint64_t start = processor_time();
      TranslateMessage(&message);
      DispatchMessageW(&message);
      note(processor_time() - start);
      ++messages_;
    }
  }
  static bool waiting() {
    MSG message{};
    return PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE) != 0;
  }
  void note(uint64_t time) { longest_ = std::max(longest_, time); }

  // What a command takes, and then the rest.
  void command(CommandId id) {
    const uint64_t start = processor_time();
    SendMessageW(main_->window(), WM_COMMAND,
                 static_cast<WPARAM>(number_of(id)), 0);
    note(processor_time() - start);
    settle();
    tell(gui::command(id).name);
  }
  void tell(std::string_view what) {
    std::printf("%-18.*s longest message %3u ms, %u messages\n",
                static_cast<int>(what.size()), what.data(),
                static_cast<unsigned>(std::exchange(longest_, 0)),
                static_cast<unsigned>(std::exchange(messages_, 0)));
  }
  static int64_t lines_on_clipboard() {
    if (OpenClipboard(nullptr) == 0) return -1;
    int64_t lines = -1;
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    if (data != nullptr) {
      const std::wstring_view text = static_cast<wchar_t*>(GlobalLock(data));
      lines = 1 + std::count(text.begin(), text.end(), L'\n');
      GlobalUnlock(data);
    }
    CloseClipboard();
    return lines;
  }
  std::wstring info() const {
    const HWND bar =
        FindWindowExW(main_->window(), nullptr, L"zenfo-info", nullptr);
    wchar_t text[200] = L"";
    GetWindowTextW(FindWindowExW(bar, nullptr, WC_STATICW, nullptr), text, 200);
    return text;
  }
  std::string row_name(int row) const {
    wchar_t text[100] = L"";
    LVITEMW item{};
    item.pszText = text;
    item.cchTextMax = 100;
    SendMessageW(list(), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
    return narrow(text);
  }
  void press(WPARAM key) {
    const uint64_t start = processor_time();
    SendMessageW(list(), WM_KEYDOWN, key, 0);
    note(processor_time() - start);
    settle();
  }
  void click_column(int column) {
    NMLISTVIEW click{};
    click.hdr = {list(), 301, static_cast<UINT>(LVN_COLUMNCLICK)};
    click.iSubItem = column;
    SendMessageW(main_->window(), WM_NOTIFY, 301,
                 reinterpret_cast<LPARAM>(&click));
    settle();
  }
  void filter(const wchar_t* text) {
    const HWND bar =
        FindWindowExW(main_->window(), nullptr, L"zenfo-view-bar", nullptr);
    SetWindowTextW(FindWindowExW(bar, nullptr, WC_EDITW, nullptr), text);
    settle();
  }

  std::atomic<uint32_t> told_ = 0;
  uint64_t longest_ = 0;
  uint32_t messages_ = 0;
  std::unique_ptr<MainWindow> main_;
};

TEST_F(WindowLoad, AMillionMatchesAreTakenInPartsAndStayAtHand) {
  constexpr int64_t kAll = int64_t{kLoadFiles} * (1 + kLoadMatches);
  command(CommandId::kSearch);
  EXPECT_EQ(rows(), kAll);
  EXPECT_EQ(row_name(0), "File_100000.cpp");

  click_column(0);
  tell("sort by name");
  EXPECT_EQ(row_name(0), "File_1.cpp");
  filter(L"PART_299\\");
  tell("filter");
  EXPECT_EQ(rows(), kLoadFiles / 300 * (1 + kLoadMatches));
  filter(L"");
  tell("no filter");
  EXPECT_EQ(rows(), kAll);

  command(CommandId::kSelectAll);
  command(CommandId::kToggleChosen);
  EXPECT_EQ(
      SendMessageW(list(), LVM_GETITEMSTATE, 1, LVIS_STATEIMAGEMASK) >> 12, 1);
  command(CommandId::kInvertChoice);
  EXPECT_EQ(
      SendMessageW(list(), LVM_GETITEMSTATE, 1, LVIS_STATEIMAGEMASK) >> 12, 2);
  command(CommandId::kCloseAllFiles);
  EXPECT_EQ(rows(), int64_t{kLoadFiles});
  command(CommandId::kOpenAllFiles);
  command(CommandId::kNextMatch);
  command(CommandId::kRemoveFromResults);
  EXPECT_EQ(rows(), kAll - 1 - kLoadMatches);
  press(VK_END);
  tell("key End");
  press(VK_UP);
  tell("key Up");
  press(VK_HOME);
  tell("key Home");
  press(VK_DOWN);
  tell("key Down");
  EXPECT_EQ(ListView_GetNextItem(list(), -1, LVNI_FOCUSED), 1);
  command(CommandId::kSelectAll);
  command(CommandId::kCopyPaths);
  EXPECT_EQ(lines_on_clipboard(), kLoadFiles - 1);
  command(CommandId::kRemoveFromResults);
  EXPECT_EQ(rows(), 0);
}

TEST_F(WindowLoad, AllFilesAreSearchedAgain) {
  command(CommandId::kSearch);
  command(CommandId::kSearchInFiles);
  EXPECT_EQ(rows(), int64_t{kLoadFiles} * (1 + kLoadMatches));
  wchar_t title[400] = L"";
  EXPECT_LT(GetWindowTextW(main_->window(), title, 400), 399);
}

TEST_F(WindowLoad, ACopyEndsWhenItIsCancelledOrTooLong) {
  command(CommandId::kSearch);
  command(CommandId::kCopyPaths);  // of one row
  command(CommandId::kSelectAll);
  const auto number = static_cast<WPARAM>(number_of(CommandId::kCopyRows));
  SendMessageW(main_->window(), WM_COMMAND, number, 0);
  command(CommandId::kStop);
  EXPECT_EQ(info(), L"");
  EXPECT_EQ(lines_on_clipboard(), 1);
  command(CommandId::kCopyRows);
  EXPECT_EQ(info(), wide(Text::kCopyTooLong));
  EXPECT_EQ(lines_on_clipboard(), 1);
}

TEST_F(WindowLoad, AStopIsSeenAtTheNextFile) {
  SendMessageW(main_->window(), WM_COMMAND,
               static_cast<WPARAM>(number_of(CommandId::kSearch)), 0);
  while (told_ == 0) SwitchToThread();
  command(CommandId::kStop);
  EXPECT_EQ(rows(), int64_t{told_} * (1 + kLoadMatches));
}

}  // namespace
}  // namespace zenfo::host::gui::win32
