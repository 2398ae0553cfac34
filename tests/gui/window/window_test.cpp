// The window of zenfo-gui, driven from outside on a copy of the examples.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "gui/window/driver.h"
#include "gui/window/shot.h"
#include "gui/words/json_value.h"

namespace zenfo::test {
namespace {

using host::gui::JsonValue;
using testing::ElementsAre;
using testing::HasSubstr;

class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    std::filesystem::copy(native(ZENFO_SOURCE_FOLDER "/examples/harbour"),
                          native(folder_.path("harbour")),
                          std::filesystem::copy_options::recursive);
  }

  // Starts the program with the folder in its fields.
  void start(std::vector<std::string> options = {}) {
    options.insert(options.begin(), "--automation");
    options.push_back(folder_.path("harbour"));
    program_ = std::make_unique<Program>(options);
    wait();
  }
  HWND window() { return program_->window(); }
  HWND list() { return of_class(window(), WC_LISTVIEWW); }
  // Until nothing is left to do.
  void wait() { asker_.ask(*program_, R"({"get": "idle"})"); }
  void command(const std::string& name) {
    asker_.tell(*program_, R"({"command": ")" + name + "\"}");
    wait();
  }
  std::string status(const char* member) {
    std::string reason;
    const auto reply = host::gui::parse_json(
        asker_.ask(*program_, R"({"get": "status"})"), &reason);
    const JsonValue* value = reply->find(member);
    return value->text() != nullptr ? *value->text()
                                    : std::to_string(*value->integer());
  }

  void type(const wchar_t* field, const wchar_t* text) {
    SendMessageW(named(window(), field), WM_SETTEXT, 0,
                 reinterpret_cast<LPARAM>(text));
  }
  void click(const wchar_t* button) {
    SendMessageW(named(window(), button), BM_CLICK, 0, 0);
  }
  void click_header(int x) {
    const HWND header =
        reinterpret_cast<HWND>(SendMessageW(list(), LVM_GETHEADER, 0, 0));
    PostMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 5));
    PostMessageW(header, WM_LBUTTONUP, 0, MAKELPARAM(x, 5));
    wait();
  }
  void press(HWND control, WPARAM key) {
    PostMessageW(control, WM_KEYDOWN, key, 0);
  }
  void search(const wchar_t* text) {
    type(L"Fi&nd:", text);
    click(L"Search");
    wait();
  }
  // Millions of matches, so that a search of it takes a while.
  void make_long_file() {
    folder_.file("harbour/long.txt", std::string(size_t{16} << 20, 'a'));
  }
  static std::string clipboard() {
    if (!OpenClipboard(nullptr)) return "(closed)";
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    std::string text = "(none)";
    if (data != nullptr) {
      text = narrowed(static_cast<wchar_t*>(GlobalLock(data)));
      GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
  }
  // What the window shows now. A copy goes to the folder that ZENFO_PICTURES
  // names, to be looked at.
  Shot picture(const std::string& name) {
    const std::string path = folder_.path(name + ".png");
    JsonValue request;
    request["picture"] = path;
    asker_.tell(*program_,
                host::gui::format_json(request, host::gui::JsonForm::kOneLine));
    if (const char* folder = std::getenv("ZENFO_PICTURES")) {
      std::filesystem::copy_file(
          native(path), native(std::string(folder) + "/" + name + ".png"),
          std::filesystem::copy_options::overwrite_existing);
    }
    return Shot(GetLastActivePopup(window()), path);
  }
  HWND focus() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(window(), nullptr), &info);
    return info.hwndFocus;
  }
  int row_in_focus() {
    return static_cast<int>(SendMessageW(
        list(), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
  }
  std::vector<std::string> rows(int column = 0) {
    return rows_of(*program_, column);
  }

  TempFolder folder_;
  Asker asker_;
  std::unique_ptr<Program> program_;
};

TEST_F(WindowTest, EnterInAFieldSearchesAndRowsShowFilesAndLines) {
  start();
  type(L"Fi&nd:", L"ferry");
  HWND edit = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  press(edit, VK_RETURN);
  wait();
  EXPECT_THAT(rows(), testing::Contains("timetable.py"));
  EXPECT_THAT(rows(), testing::Contains(HasSubstr("ferry")));
  EXPECT_THAT(status("status"), HasSubstr("chosen"));
  EXPECT_THAT(narrowed(title_of(window())), HasSubstr("\"ferry\" in "));
}

// As Alt with the letter that is underlined in the label.
TEST_F(WindowTest, TheAccessKeyOfALabelLeadsToItsField) {
  start();
  const HWND find = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  for (const auto& [letter, label] :
       {std::pair{L'l', L"Fi&les:"}, {L't', L"No&t:"}, {L'i', L"&In:"}}) {
    PostMessageW(find, WM_SYSCHAR, letter, 1 << 29);
    wait();
    EXPECT_EQ(focus(), GetWindow(named(window(), label), GW_CHILD))
        << narrowed(label);
  }
}

TEST_F(WindowTest, TheCaretOfAFieldStaysWhenASearchBegins) {
  start();
  type(L"Fi&nd:", L"ferry");
  const HWND edit = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  SendMessageW(edit, EM_SETSEL, 2, 4);
  press(edit, VK_RETURN);
  wait();
  EXPECT_EQ(SendMessageW(edit, EM_GETSEL, 0, 0), MAKELPARAM(2, 4));
}

TEST_F(WindowTest, WhatIsTypedAfterTheStartReplacesTheText) {
  start({"--find", "ferry"});
  const HWND edit = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  EXPECT_EQ(SendMessageW(edit, EM_GETSEL, 0, 0), MAKELPARAM(0, 5));
}

TEST_F(WindowTest, F6LeavesASingleTabOut) {
  start();
  search(L"ferry");
  command("go.find");
  command("pane.next");
  EXPECT_EQ(focus(), named(window(), L"Filter:"));
  command("pane.next");
  EXPECT_EQ(focus(), list());
  command("tab.new");
  command("go.find");
  command("pane.next");
  EXPECT_EQ(focus(), of_class(window(), WC_TABCONTROLW));
}

BOOL CALLBACK add_tips(HWND window, LPARAM total) {
  wchar_t kind[32] = L"";
  GetClassNameW(window, kind, 32);
  if (std::wstring_view(kind) == TOOLTIPS_CLASSW) {
    *reinterpret_cast<LRESULT*>(total) +=
        SendMessageW(window, TTM_GETTOOLCOUNT, 0, 0);
  }
  return TRUE;
}

TEST_F(WindowTest, ButtonsWithSignsHaveTips) {
  start();
  LRESULT tips = 0;
  EnumThreadWindows(GetWindowThreadProcessId(window(), nullptr), add_tips,
                    reinterpret_cast<LPARAM>(&tips));
  EXPECT_GE(tips, 5);
}

// Only the number has room, not how many are listed.
TEST_F(WindowTest, MillionsOfMatchesOfAFileAreShownAsAWholeNumber) {
  make_long_file();
  start({"--run", "--find", "a", "--include", "long.txt"});
  command("file.close_all");
  ASSERT_THAT(rows(1).front(), HasSubstr("16,777,216, first"));
  const Shot shot = picture("many");
  const RECT area = shot.part(list());
  const RECT header = shot.part(of_class(window(), WC_HEADERW));
  const auto width = [&](WPARAM column) {
    return static_cast<int>(
        SendMessageW(list(), LVM_GETCOLUMNWIDTH, column, 0));
  };
  const int start = static_cast<int>(area.left) + width(0);
  const int y = static_cast<int>(header.bottom) + 2;
  const COLORREF ground = shot.at(start + 2, y);
  int first = start + width(1);
  int last = 0;
  for (int x = start + 2; x < start + width(1) - 2; ++x) {
    if (shot.count(ground, {x, y, x + 1, y + 15}) == 15) continue;
    first = std::min(first, x);
    last = x;
  }
  EXPECT_NEAR(last - first, MessageFont(96).width("16,777,216"), 4);
}

TEST_F(WindowTest, CaseCountsWhenItsButtonIsPressed) {
  start();
  search(L"HARBOUR");
  const size_t without_case = rows().size();
  click(L"Match case");
  search(L"HARBOUR");
  EXPECT_GT(without_case, 0u);
  EXPECT_TRUE(rows().empty());
  EXPECT_THAT(status("status"), HasSubstr("Nothing found"));
}

TEST_F(WindowTest, OnlyFilesWithCertainNamesAreSearched) {
  start();
  type(L"Fi&les:", L"*.csv");
  search(L"harbour");
  EXPECT_THAT(rows(), ElementsAre("boats.csv",
                                  "6: 12,Marigold II,harbour office,31.0,red",
                                  "7: 14,Marigold,harbour office,33.5,red"));
  EXPECT_THAT(rows(1), ElementsAre("2", "", ""));
}

TEST_F(WindowTest, TheFilterHidesOtherPaths) {
  start();
  search(L"harbour");
  command("file.close_all");
  ASSERT_EQ(rows().size(), 6u);
  type(L"Filter:", L"LETTERS");
  wait();
  EXPECT_THAT(rows(), ElementsAre("1_to_the_master.txt", "2_answer.txt",
                                  "3_reminder.txt"));
}

TEST_F(WindowTest, AColumnSortsByItsHeader) {
  start();
  search(L"harbour");
  command("file.close_all");
  click_header(20);
  EXPECT_THAT(rows(), ElementsAre("1_to_the_master.txt", "2_answer.txt",
                                  "3_reminder.txt", "about.txt", "boats.csv",
                                  "tide.c"));
  click_header(20);
  EXPECT_EQ(rows().front(), "tide.c");
}

TEST_F(WindowTest, F3GoesFromMatchToMatchAndFromTheLastToTheFirst) {
  start();
  type(L"Fi&les:", L"about.txt");
  search(L"harbour");
  ASSERT_EQ(rows().size(), 3u);
  EXPECT_EQ(row_in_focus(), 0);
  for (const int expected : {1, 2, 1}) {
    press(list(), VK_F3);
    wait();
    EXPECT_EQ(row_in_focus(), expected);
  }
}

// The colours are those of the light theme.
TEST_F(WindowTest, WhatASearchLeavesOutIsGreyInTheText) {
  folder_.file("harbour/x.c", "tide /* a tide, and more tide, is here */ tide");
  constexpr COLORREF kGrey = RGB(130, 130, 130);
  const auto grey_pixels = [&](std::vector<std::string> areas) {
    const std::vector<std::string> search = {
        "--run", "--theme", "light", "--find", "tide", "--include", "x.c"};
    areas.insert(areas.end(), search.begin(), search.end());
    program_.reset();
    start(areas);
    const Shot shot = picture("areas");
    return shot.count(kGrey, shot.part(of_class(window(), L"ZenfoText")));
  };
  EXPECT_EQ(grey_pixels({}), 0);
  EXPECT_GT(grey_pixels({"--outside-kind", "code_comments"}), 50);
  EXPECT_GT(grey_pixels({"--inside", "tide,!'e'[1-]"}), 50);
}

TEST_F(WindowTest, LongLinesAreWrappedAndSpacesShownByCommands) {
  folder_.file("harbour/x.txt", "tide " + std::string(300, '-') + " ebb");
  start({"--run", "--theme", "light", "--find", "tide", "--include", "x.txt"});
  const HWND page = of_class(window(), L"ZenfoText");
  const auto pixels = [&](const char* name) {
    const Shot shot = picture(name);
    return shot.cut(shot.part(page));
  };
  const auto dark = [](const std::vector<COLORREF>& all) {
    return std::count(all.begin(), all.end(), RGB(20, 20, 20));
  };
  const auto one_line = pixels("unwrapped");
  command("view.wrap");
  const auto wrapped = pixels("wrapped");
  EXPECT_GT(dark(wrapped), 3 * dark(one_line));
  command("view.white_space");
  EXPECT_NE(pixels("white_space"), wrapped);
  command("view.white_space");
  EXPECT_EQ(pixels("wrapped"), wrapped);
}

// A picture shows what is there when nothing is left to do.
TEST_F(WindowTest, LineNumbersOfALargeFileAreWaitedFor) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "a line of the long text\n";
  folder_.file("harbour/long.txt", text + "tide");
  start({"--run", "--find", "tide", "--include", "long.txt"});
  EXPECT_EQ(title_of(of_class(window(), L"ZenfoText")),
            L"Text, match 1 of 1, line 100001: tide");
}

// Marked as the library does it: the current match in red.
TEST_F(WindowTest, TheBytesOfTheFileAreShownWithItsMatches) {
  folder_.file("harbour/two.txt", "a gate, and another gate");
  start();
  type(L"Fi&les:", L"two.txt");
  search(L"gate");
  click(L"Bytes");
  wait();
  const HWND page = of_class(window(), L"zenfo-bytes");
  EXPECT_EQ(title_of(page), L"Bytes, match at offset 2");
  const Shot first = picture("bytes");
  const RECT area = first.part(page);
  EXPECT_GT(first.count(RGB(255, 0, 0), area), 300);
  EXPECT_GT(first.count(GetSysColor(COLOR_GRAYTEXT), area), 300);

  press(list(), VK_F3);
  press(list(), VK_F3);
  wait();
  EXPECT_EQ(title_of(page), L"Bytes, match at offset 20");
  EXPECT_NE(first.cut(area), picture("bytes_next").cut(area));

  click(L"Text");
  wait();
  EXPECT_THAT(narrowed(title_of(of_class(window(), L"ZenfoText"))),
              HasSubstr("match 2 of 2"));
}

TEST_F(WindowTest, TheBytesPageScrollsByKeysWheelAndBar) {
  folder_.file("harbour/long.txt", "gate" + std::string(100000, '.'));
  start();
  type(L"Fi&les:", L"long.txt");
  search(L"gate");
  command("view.bytes");
  const HWND page = of_class(window(), L"zenfo-bytes");
  const auto top = [&] { return std::stoi(status("top")); };
  EXPECT_EQ(top(), 0);
  SendMessageW(page, WM_KEYDOWN, VK_DOWN, 0);
  EXPECT_EQ(top(), 1);
  SendMessageW(page, WM_KEYDOWN, VK_NEXT, 0);
  const int page_down = top();
  EXPECT_GT(page_down, 10);
  SendMessageW(page, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  EXPECT_EQ(top(), page_down - 3);
  SendMessageW(page, WM_VSCROLL, SB_LINEUP, 0);
  EXPECT_EQ(top(), page_down - 4);
  SendMessageW(page, WM_KEYDOWN, VK_END, 0);
  EXPECT_GT(top(), 3000);
  SendMessageW(page, WM_KEYDOWN, VK_HOME, 0);
  EXPECT_EQ(top(), 0);
}

// As one sees it, from the top left of the page.
TEST_F(WindowTest, AClickOnAMatchOfTheBytesGoesToItsRow) {
  folder_.file("harbour/two.txt", "gatexxxxgate");
  start();
  type(L"Fi&les:", L"two.txt");
  search(L"gate");
  command("view.bytes");
  const HWND page = of_class(window(), L"zenfo-bytes");
  const Shot shown = picture("bytes_click");
  const RECT area = shown.part(page);
  // The second match ends where the last grey ground of the line does, which is
  // wider than a rule.
  int last = 0;
  for (int x = area.left; x < area.right; ++x) {
    const COLORREF grey = GetSysColor(COLOR_GRAYTEXT);
    const int y = area.top + 1;
    if (shown.at(x, y) == grey && shown.at(x - 1, y) == grey) last = x;
  }
  SendMessageW(page, WM_LBUTTONDOWN, MK_LBUTTON,
               MAKELPARAM(last - area.left, 1));
  wait();
  EXPECT_EQ(title_of(page), L"Bytes, match at offset 8");
  EXPECT_EQ(row_in_focus(), 2);
}

TEST_F(WindowTest, BytesOfAFileThatIsNotShownAreTold) {
  folder_.file("harbour/empty.txt", "");
  start();
  type(L"Fi&les:", L"empty.txt");
  search(L"gate");
  command("view.bytes");
  click(L"No match 1");
  press(list(), VK_DOWN);
  wait();
  EXPECT_EQ(title_of(of_class(window(), L"zenfo-bytes")),
            L"Bytes: The file is empty");
}

// The library has the file in memory, not open.
TEST_F(WindowTest, AFileWhoseBytesAreShownCanBeChanged) {
  const std::string path = folder_.file("harbour/x.txt", "a gate");
  start({"--run", "--find", "gate", "--include", "x.txt", "--page", "bytes"});
  const HWND page = of_class(window(), L"zenfo-bytes");
  EXPECT_EQ(title_of(page), L"Bytes, match at offset 2");
  folder_.file("harbour/x.txt", "another gate");
  EXPECT_EQ(read_file(path), "another gate");
  EXPECT_TRUE(std::filesystem::remove(native(path)));
  search(L"gate");
  EXPECT_EQ(title_of(page), L"Bytes");
}

TEST_F(WindowTest, AKeyOfAPageShowsItWhereNoneIsShown) {
  start({"--run", "--find", "harbour"});
  command("preview");
  EXPECT_ANY_THROW(of_class(window(), L"ZenfoText"));
  command("view.bytes");
  EXPECT_EQ(title_of(of_class(window(), L"zenfo-bytes")),
            L"Bytes, match at offset 4");
  command("preview");
  EXPECT_ANY_THROW(of_class(window(), L"zenfo-bytes"));
  command("view.text");
  EXPECT_THAT(narrowed(title_of(of_class(window(), L"ZenfoText"))),
              HasSubstr("match 1 of 2"));
}

TEST_F(WindowTest, ASearchGoesOnWhileBytesAreShown) {
  start();
  command("view.bytes");
  search(L"harbour");
  search(L"ferry");
  EXPECT_THAT(rows(), testing::Contains("timetable.py"));
  EXPECT_THAT(narrowed(title_of(of_class(window(), L"zenfo-bytes"))),
              HasSubstr("match at offset"));
}

TEST_F(WindowTest, EscCancelsASearchAtOnce) {
  make_long_file();
  start();
  type(L"Fi&les:", L"long.txt");
  type(L"Fi&nd:", L"a");
  press(list(), VK_F5);
  press(list(), VK_ESCAPE);
  wait();
  EXPECT_THAT(status("status"), HasSubstr("stopped"));
  EXPECT_NE(named(window(), L"Search"), nullptr);
}

TEST_F(WindowTest, TheButtonCancelsWhileASearchRuns) {
  make_long_file();
  start();
  type(L"Fi&les:", L"long.txt");
  type(L"Fi&nd:", L"a");
  click(L"Search");
  click(L"Cancel");
  wait();
  EXPECT_THAT(status("status"), HasSubstr("stopped"));
}

TEST_F(WindowTest, PathsOfAllRowsAreCopied) {
  start();
  type(L"Fi&les:", L"*.txt");
  type(L"No&t:", L"letters");
  search(L"harbour");
  command("select.all");
  SetFocus(list());
  command("copy.paths");
  const std::string text = clipboard();
  EXPECT_EQ(text, folder_.path("harbour/about.txt"));
}

TEST_F(WindowTest, RowsAreCopiedWithTheirLines) {
  start();
  type(L"Fi&les:", L"boats.csv");
  search(L"harbour");
  command("select.all");
  command("copy.rows");
  const std::string text = clipboard();
  EXPECT_THAT(text, testing::StartsWith("boats.csv\t2\t"));
  EXPECT_THAT(text,
              testing::EndsWith("\r\n6: 12,Marigold II,harbour office,31.0,red"
                                "\r\n7: 14,Marigold,harbour office,33.5,red"));
}

// As the file has them, each once.
TEST_F(WindowTest, LinesOfMatchesAreCopied) {
  folder_.file("harbour/x.txt", "  tide, tide\r\nebb\r\n\ttide\r\n");
  start();
  type(L"Fi&les:", L"x.txt");
  search(L"tide");
  command("copy.lines");
  EXPECT_EQ(clipboard(), "  tide, tide\r\n\ttide");
  press(list(), VK_END);
  wait();
  command("copy.lines");
  EXPECT_EQ(clipboard(), "\ttide");
}

TEST_F(WindowTest, TheTextPageHasCommandsOfItsOwn) {
  const std::string path =
      folder_.file("harbour/x.txt", "ebb\r\nthe tide (at noon)");
  start();
  type(L"Fi&les:", L"x.txt");
  search(L"tide");
  command("text.copy_place");
  EXPECT_EQ(clipboard(), path + ":2");
  EXPECT_ANY_THROW(command("text.copy"));  // nothing is selected
  const HWND page = of_class(window(), L"ZenfoText");
  SendMessageW(page, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(200, 2));
  command("text.copy_place");
  EXPECT_EQ(clipboard(), path + ":1");
  command("text.select_all");
  command("text.copy");
  EXPECT_EQ(clipboard(), "ebb\r\nthe tide (at noon)");
  click(L"Pattern language");
  command("text.find");
  EXPECT_EQ(title_of(named(window(), L"Fi&nd:")),
            L"ebb\u21B5the tide (at noon)");
  click(L"Search");
  wait();
  EXPECT_EQ(rows().size(), 2u);
}

TEST_F(WindowTest, TheMenuOfTheTextIsUsedByKeys) {
  const std::string path = folder_.file("harbour/x.txt", "ebb\r\ntide");
  start();
  type(L"Fi&les:", L"x.txt");
  search(L"tide");
  const HWND page = of_class(window(), L"ZenfoText");
  PostMessageW(page, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(page), -1);
  PostMessageW(window(), WM_CHAR, 'p', 0);  // "Copy path and line"
  wait();
  wait();  // The menu posts its command.
  EXPECT_EQ(clipboard(), path + ":2");
}

TEST_F(WindowTest, LinesThatArePastedIntoFindKeepTheirBreaks) {
  folder_.file("harbour/x.txt", "ebb\r\ntide\r\n");
  start();
  type(L"Fi&les:", L"x.txt");
  search(L"ebb");
  command("text.select_all");
  command("text.copy");
  const HWND edit = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  SendMessageW(edit, EM_SETSEL, 0, -1);
  SendMessageW(edit, WM_PASTE, 0, 0);
  EXPECT_EQ(title_of(edit), L"ebb\u21B5tide");
  press(edit, VK_RETURN);
  wait();
  EXPECT_EQ(rows().size(), 2u);
}

TEST_F(WindowTest, ALineBreakIsTypedByACommand) {
  folder_.file("harbour/dos.txt", "ebb\r\ntide");
  folder_.file("harbour/unix.txt", "ebb\ntide");
  start();
  type(L"Fi&nd:", L"ebb");
  const HWND edit = GetWindow(named(window(), L"Fi&nd:"), GW_CHILD);
  SendMessageW(edit, EM_SETSEL, 3, 3);
  command("line_break");
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"tide"));
  EXPECT_EQ(title_of(edit), L"ebb\u21B5tide");
  press(edit, VK_RETURN);
  wait();
  EXPECT_THAT(rows(), testing::IsSupersetOf({"dos.txt", "unix.txt"}));
  EXPECT_THAT(narrowed(title_of(window())), HasSubstr("ebb\u21B5tide"));
}

TEST_F(WindowTest, ResultsAreExportedWhereTheDialogSays) {
  start();
  type(L"Fi&les:", L"about.txt");
  search(L"harbour");
  asker_.tell(*program_, R"({"command": "results.export"})");
  const HWND dialog = dialog_of(*program_);
  const std::string path = folder_.path("out.csv");
  SendMessageW(of_class(dialog, WC_EDITW), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(widened(path).c_str()));
  PostMessageW(GetDlgItem(dialog, IDOK), BM_CLICK, 0, 0);
  wait();
  const std::string csv = read_file(path);
  EXPECT_THAT(csv, HasSubstr(folder_.path("harbour/about.txt")));
  EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 3);  // with its header
  EXPECT_THAT(status("info"), HasSubstr("exported to " + path));
}

TEST_F(WindowTest, AnUncheckedFileIsNotCounted) {
  start();
  type(L"Fi&les:", L"about.txt;boats.csv");
  search(L"harbour");
  press(list(), VK_SPACE);
  wait();
  EXPECT_THAT(status("status"), HasSubstr("2 of 4 matches in 1 of 2 files"));
  const auto state = [&](int row) {
    return SendMessageW(list(), LVM_GETITEMSTATE, static_cast<WPARAM>(row),
                        LVIS_STATEIMAGEMASK) >>
           12;
  };
  EXPECT_EQ(state(0), 1);
  EXPECT_EQ(state(1), 1);
  EXPECT_EQ(state(3), 2);
}

TEST_F(WindowTest, TabsKeepTheirResults) {
  start();
  search(L"harbour");
  const auto first = rows();
  command("tab.new");
  EXPECT_TRUE(rows().empty());
  search(L"ferry");
  EXPECT_NE(rows(), first);
  command("tab.next");
  EXPECT_EQ(rows(), first);
  EXPECT_EQ(title_of(named(window(), L"Fi&nd:")), L"harbour");
}

TEST_F(WindowTest, AFaultIsToldInTheBarAndNothingIsSearched) {
  start();
  search(L"");
  EXPECT_EQ(status("info"), "Type what to look for");
  EXPECT_EQ(status("rows"), "0");
}

TEST_F(WindowTest, ASecondStartHandsItsSearchToTheWindow) {
  start();
  Program second({"--run", "--find", "Marigold", folder_.path("harbour/data")});
  EXPECT_EQ(second.end(), 0u);
  wait();
  EXPECT_THAT(rows(), testing::Contains("boats.csv"));
  const HWND tabs = of_class(window(), WC_TABCONTROLW);
  EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 2);
}

TEST_F(WindowTest, TheFieldsAreKeptForTheNextStart) {
  const std::string settings = folder_.path("gui.json");
  start({"--settings", settings});
  type(L"Fi&les:", L"*.log");
  search(L"gate");
  program_->close();
  program_ = std::make_unique<Program>(
      std::vector<std::string>{"--automation", "--settings", settings});
  wait();
  EXPECT_EQ(title_of(named(window(), L"Fi&nd:")), L"gate");
  EXPECT_EQ(title_of(named(window(), L"Fi&les:")), L"*.log");
}

TEST_F(WindowTest, ColumnsAndTheirSortAreKeptForTheNextStart) {
  const std::string settings = folder_.path("gui.json");
  start({"--settings", settings});
  search(L"harbour");
  command("file.close_all");
  SendMessageW(list(), LVM_SETCOLUMNWIDTH, 1, 90);
  {
    const int order[] = {0, 3, 1, 2, 4, 5};
    ForeignMemory memory(program_->process(), sizeof order);
    memory.write(order);
    SendMessageW(list(), LVM_SETCOLUMNORDERARRAY, std::size(order),
                 reinterpret_cast<LPARAM>(memory.at()));
  }
  click_header(20);
  click_header(20);
  command("preview.below");
  program_->close();
  program_ = std::make_unique<Program>(
      std::vector<std::string>{"--automation", "--settings", settings});
  wait();
  click(L"Search");
  wait();
  command("file.close_all");
  EXPECT_EQ(rows().front(), "tide.c");
  EXPECT_EQ(SendMessageW(list(), LVM_GETCOLUMNWIDTH, 1, 0), 90);
  {
    int order[6] = {};
    ForeignMemory memory(program_->process(), sizeof order);
    SendMessageW(list(), LVM_GETCOLUMNORDERARRAY, std::size(order),
                 reinterpret_cast<LPARAM>(memory.at()));
    memory.read(order, sizeof order);
    EXPECT_THAT(order, ElementsAre(0, 3, 1, 2, 4, 5));
  }
  RECT place{};
  RECT page{};
  GetWindowRect(list(), &place);
  GetWindowRect(of_class(window(), L"ZenfoText"), &page);
  EXPECT_GE(page.top, place.bottom);
}

struct SceneRow {
  const char* theme;
  COLORREF ground, mark, current, panel, other_ground;
};

// In the list and on the page, and nothing of the other theme. Scroll bars are
// the system's.
TEST_F(WindowTest, ScenesHaveTheColoursOfTheirTheme) {
  constexpr COLORREF kWhite = RGB(255, 255, 255);
  constexpr COLORREF kBlack = RGB(25, 25, 25);
  const SceneRow rows[] = {{"light", kWhite, RGB(255, 228, 130),
                            RGB(255, 176, 71), RGB(243, 243, 243), kBlack},
                           {"dark", kBlack, RGB(92, 78, 20), RGB(158, 96, 10),
                            RGB(32, 32, 32), kWhite}};
  for (const SceneRow& row : rows) {
    SCOPED_TRACE(row.theme);
    program_.reset();
    start({"--run", "--theme", row.theme, "--find", "er"});
    const Shot shot = picture(std::string("scene_") + row.theme);
    const RECT page = shot.part(of_class(window(), L"ZenfoText"));
    const RECT all = shot.part(list());
    const RECT fields = {0, 0, shot.width(), all.top};
    EXPECT_GT(shot.count(row.ground, page), shot.area(page) * 7 / 10);
    EXPECT_GT(shot.count(row.ground, all), shot.area(all) * 5 / 10);
    EXPECT_GT(shot.count(row.panel, fields), shot.area(fields) * 4 / 10);
    EXPECT_GT(shot.count(row.mark, all), 1000);
    EXPECT_GT(shot.count(row.mark, page), 100);
    EXPECT_GT(shot.count(row.current, page), 100);
    // The text of marks has it.
    EXPECT_LT(shot.count(row.other_ground, page), shot.area(page) / 100);
    EXPECT_LT(shot.count(row.other_ground, all), shot.area(all) / 100);
  }
}

// A sign stands on the button in place of its name.
bool shows_sign(const std::string& name) {
  constexpr std::string_view kNames[] = {
      "Match case", "Whole words", "Pattern language",
      "Control characters (^M)", "Choose a folder..."};
  return std::find(std::begin(kNames), std::end(kNames), name) !=
         std::end(kNames);
}

// At the least size, at the first one, and with a higher resolution.
TEST_F(WindowTest, NoTextIsCutAndNoControlCovered) {
  struct Row {
    const char *dpi, *width, *height;
  };
  const Row rows[] = {{"96", "640", "400"},
                      {"96", "1000", "680"},
                      {"144", "1200", "800"},
                      {"192", "1280", "900"}};
  for (const auto& [dpi, width, height] : rows) {
    SCOPED_TRACE(std::string(dpi) + " dpi, " + width + " wide");
    program_.reset();
    start({"--run", "--dpi", dpi, "--width", width, "--height", height,
           "--find", "tide", "--outside-kind", "code_comments"});
    const MessageFont font(std::stoi(dpi));
    picture(std::string("size_") + dpi + "_" + width);
    std::vector<std::pair<std::string, RECT>> placed;
    for (const HWND control : texts_of(window())) {
      const std::string name = narrowed(title_of(control));
      RECT area{};
      GetWindowRect(control, &area);
      if (!shows_sign(name) && !is_field(control)) {
        EXPECT_GE(area.right - area.left, font.width(name)) << name;
      }
      EXPECT_GE(area.bottom - area.top, font.height()) << name;
      for (const auto& [other, there] : placed) {
        RECT both{};
        EXPECT_FALSE(IntersectRect(&both, &area, &there) != 0 &&
                     both.right - both.left > 1)  // tabs share a line
            << name << " covers " << other;
      }
      placed.emplace_back(name, area);
    }
    EXPECT_GT(placed.size(), 20u);
  }
}

TEST_F(WindowTest, TheFilesOfTheListAreSearchedAgain) {
  start();
  type(L"Fi&les:", L"*.txt;*.csv");
  search(L"harbour");
  command("file.close_all");
  const auto before = rows();
  ASSERT_EQ(before.size(), 5u);
  type(L"Fi&les:", L"");
  type(L"Fi&nd:", L"e");
  command("search.in_files");
  EXPECT_EQ(rows(), before);
  EXPECT_THAT(narrowed(title_of(window())), HasSubstr("; ..."));
}

TEST_F(WindowTest, TabsThatDoNotFitHaveArrowsInTheirColours) {
  start({"--theme", "dark", "--width", "700", "--height", "450"});
  for (int i = 0; i < 7; ++i) {
    search(L"harbour is a long text to find");
    command("tab.new");
  }
  const Shot shot = picture("tabs");
  const HWND arrows = of_class(window(), UPDOWN_CLASSW);
  EXPECT_GT(shot.count(RGB(32, 32, 32), shot.part(arrows)),
            Shot::area(shot.part(arrows)) / 2);
  EXPECT_EQ(shot.count(RGB(255, 255, 255), shot.part(arrows)), 0);
}

TEST_F(WindowTest, TheMiddleButtonClosesATab) {
  start();
  search(L"harbour");
  const auto first = rows();
  command("tab.new");
  search(L"ferry");
  command("tab.new");
  search(L"gate");
  const auto third = rows();
  const HWND tabs = of_class(window(), WC_TABCONTROLW);
  const auto close = [&](int x) {
    PostMessageW(tabs, WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(x, 8));
    PostMessageW(tabs, WM_MBUTTONUP, 0, MAKELPARAM(x, 8));
    wait();
  };
  command("tab.previous");
  close(10);  // not the one in view
  EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 2);
  EXPECT_EQ(title_of(named(window(), L"Fi&nd:")), L"ferry");
  EXPECT_NE(rows(), first);
  close(10);
  EXPECT_EQ(title_of(named(window(), L"Fi&nd:")), L"gate");
  EXPECT_EQ(rows(), third);
  close(10);  // The last one stays.
  EXPECT_EQ(SendMessageW(tabs, TCM_GETITEMCOUNT, 0, 0), 1);
}

TEST_F(WindowTest, EntriesOfTheHistoryAreDeletedAndCleared) {
  start();
  for (const wchar_t* text : {L"ferry", L"gate", L"harbour"}) search(text);
  const HWND field = named(window(), L"Fi&nd:");
  const HWND edit = GetWindow(field, GW_CHILD);
  command("go.find");
  SendMessageW(field, CB_SHOWDROPDOWN, TRUE, 0);
  SendMessageW(field, CB_SETCURSEL, 1, 0);
  press(edit, VK_DELETE);
  wait();
  EXPECT_EQ(SendMessageW(field, CB_GETCOUNT, 0, 0), 2);
  EXPECT_EQ(title_of(field), L"ferry");
  SendMessageW(field, CB_SHOWDROPDOWN, FALSE, 0);
  search(L"harbour");  // fills the list again
  EXPECT_EQ(SendMessageW(field, CB_GETCOUNT, 0, 0), 2);
  command("history.clear");
  EXPECT_EQ(SendMessageW(field, CB_GETCOUNT, 0, 0), 0);
  EXPECT_EQ(title_of(field), L"harbour");
}

// Of the grounds; no text and no frame is as wide.
TEST_F(WindowTest, TheSettingsAreDarkInTheDark) {
  start({"--theme", "dark"});
  asker_.tell(*program_, R"({"command": "settings"})");
  const HWND dialog = dialog_of(*program_);
  const Shot shot = picture("settings_dark");
  const int all = Shot::area(shot.whole());
  EXPECT_GT(shot.count(RGB(32, 32, 32), shot.whole()), all / 2);
  EXPECT_GT(shot.count(RGB(25, 25, 25), shot.part(named(dialog, L"&Editor:"))),
            Shot::area(shot.part(named(dialog, L"&Editor:"))) * 8 / 10);
  EXPECT_LT(shot.count(RGB(255, 255, 255), shot.whole()), all / 100);
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  wait();
}

// As if the program had been started so.
TEST_F(WindowTest, AThemeThatIsChosenIsSeenAtOnce) {
  const std::vector<std::string> search = {"--run", "--find", "tide"};
  start(search);
  asker_.tell(*program_, R"({"command": "settings"})");
  const HWND dialog = dialog_of(*program_);
  SendMessageW(named(dialog, L"&Colours:"), CB_SETCURSEL, 2, 0);
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  wait();
  const Shot changed = picture("theme_changed");
  program_.reset();
  start({"--theme", "dark", search[0], search[1], search[2]});
  const Shot dark = picture("theme_dark");
  ASSERT_EQ(changed.width(), dark.width());
  int others = 0;
  for (int y = 0; y < dark.height(); ++y) {
    for (int x = 0; x < dark.width(); ++x) {
      others += changed.at(x, y) != dark.at(x, y);
    }
  }
  // The focus, the caret and the time that the search took.
  EXPECT_LT(others, 2000);
}

TEST_F(WindowTest, SettingsAreChosenInADialogAndKept) {
  const std::string settings = folder_.path("gui.json");
  start({"--settings", settings});
  const auto open = [&] {
    asker_.tell(*program_, R"({"command": "settings"})");
    return dialog_of(*program_);
  };
  HWND dialog = open();
  SendMessageW(named(dialog, L"&Colours:"), CB_SETCURSEL, 2, 0);
  PostMessageW(named(dialog, L"Cancel"), BM_CLICK, 0, 0);
  wait();
  dialog = open();
  EXPECT_EQ(SendMessageW(named(dialog, L"&Colours:"), CB_GETCURSEL, 0, 0), 0);
  SendMessageW(named(dialog, L"&Colours:"), CB_SETCURSEL, 2, 0);
  SendMessageW(named(dialog, L"&Text size of the file page:"), CB_SETCURSEL, 4,
               0);
  SendMessageW(named(dialog, L"&Editor:"), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(L"ed {file}:{line}"));
  SendMessageW(named(dialog, L"&Remember what was typed into the fields"),
               BM_CLICK, 0, 0);
  PostMessageW(named(dialog, L"OK"), BM_CLICK, 0, 0);
  wait();
  program_->close();
  const std::string json = read_file(settings);
  EXPECT_THAT(json, HasSubstr("\"theme\": \"dark\""));
  EXPECT_THAT(json, HasSubstr("\"font_size\": 12"));
  EXPECT_THAT(json, HasSubstr("\"editor\": \"ed {file}:{line}\""));
  EXPECT_THAT(json, HasSubstr("\"remember\": false"));
}

// Where fields are higher than their text.
TEST_F(WindowTest, TextsStandInTheMiddleOfTheirFields) {
  start({"--theme", "light", "--dpi", "192", "--width", "1200", "--height",
         "600"});
  const HWND fields[] = {named(window(), L"Fi&nd:"),
                         named(window(), L"Filter:")};
  for (const HWND field : fields) {
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"  Hg"));
  }
  wait();
  const Shot shot = picture("fields");
  for (const HWND field : fields) {
    RECT area{};
    GetWindowRect(field, &area);
    MapWindowPoints(nullptr, window(), reinterpret_cast<POINT*>(&area), 2);
    // The letters, beside caret and arrow.
    const RECT letters = {area.left + 20, area.top + 3, area.left + 70,
                          area.bottom - 3};
    int first = 0;
    int last = 0;
    for (int y = letters.top; y < letters.bottom; ++y) {
      const RECT row = {letters.left, y, letters.right, y + 1};
      if (shot.count(RGB(20, 20, 20), row) == 0) continue;
      if (first == 0) first = y;
      last = y;
    }
    EXPECT_NEAR((first + last) / 2, (area.top + area.bottom) / 2, 2);
  }
}

// From top to bottom, and in a row from left to right.
TEST_F(WindowTest, TheTabKeyGoesFromTopToBottom) {
  start();
  RECT last{};
  const HWND first = GetNextDlgTabItem(window(), nullptr, FALSE);
  int count = 0;
  for (HWND at = first; count == 0 || at != first; ++count) {
    ASSERT_LT(count, 40);
    RECT area{};
    GetWindowRect(at, &area);
    const bool below = area.top >= last.bottom;
    const bool right = area.left >= last.right && area.top >= last.top - 5;
    EXPECT_TRUE(below || right) << narrowed(title_of(at));
    last = area;
    at = GetNextDlgTabItem(window(), at, FALSE);
  }
  EXPECT_GT(count, 12);
}

}  // namespace
}  // namespace zenfo::test
