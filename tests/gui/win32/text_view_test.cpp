#include "gui/win32/page/text_view.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gui/win32/base/wide.h"
#include "gui/win32/picture.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui::win32 {
namespace {

using test::Picture;

// A key that is held for this thread.
class Held {
 public:
  explicit Held(int key) : key_(key) { set(0x80); }
  ~Held() { set(0); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

 private:
  void set(BYTE state) const {
    BYTE keys[256] = {};
    GetKeyboardState(keys);
    keys[key_] = state;
    SetKeyboardState(keys);
  }
  int key_;
};

class TextPage : public testing::Test {
 protected:
  TextPage()
      : parent_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0,
                                640, 300, nullptr, nullptr, nullptr, nullptr)),
        theme_(make_theme(gui::Theme::kLight)),
        view_(parent_, theme_) {
    view_.scale(96);
    size(600, 240);
  }
  ~TextPage() override { DestroyWindow(parent_); }

  void size(int width, int height) {
    SetWindowPos(view_.window(), nullptr, 0, 0, width, height, SWP_NOZORDER);
  }
  void show(const std::string& text, std::vector<Match> matches = {},
            size_t current = 0) {
    view_.show(test::native(folder_.file("harbour.txt", text)), matches,
               current);
  }
  Picture picture(const std::string& name) {
    Picture taken(view_.window());
    taken.keep(name);
    return taken;
  }
  LRESULT send(UINT message, WPARAM word = 0, LPARAM value = 0) {
    return SendMessageW(view_.window(), message, word, value);
  }
  std::string name() const {
    wchar_t text[500] = L"";
    GetWindowTextW(view_.window(), text, 500);
    return narrow(text);
  }
  std::string clipboard() {
    std::string text;
    if (!OpenClipboard(parent_)) return "not opened";
    if (const HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
      text = narrow(static_cast<const wchar_t*>(GlobalLock(memory)));
      GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
  }

  const test::TempFolder folder_;
  HWND parent_;
  Theme theme_;
  TextView view_;
};

const char kText[] =
    "The harbour\n"
    "the colour of the tide is\n"
    "\tno other colours were seen // by day\n"
    "grey in the morning\x01\n";
const std::vector<Match> kMatches = {{16, 6}, {48, 6}};

int pixels_of(const RECT& box) {
  return static_cast<int>((box.right - box.left) * (box.bottom - box.top));
}

TEST_F(TextPage, TheCurrentMatchIsStrongerAndFramed) {
  show(kText, kMatches, 0);
  const Picture page = picture("light");
  const std::optional<RECT> box = view_.current_box();
  ASSERT_TRUE(box);
  EXPECT_GT(page.count(theme_.current_ground, *box), pixels_of(*box) / 3);
  EXPECT_EQ(page.count(theme_.current_ground),
            page.count(theme_.current_ground, *box));
  EXPECT_EQ(page.at(box->left, box->top), theme_.current_frame);
  EXPECT_EQ(page.at(box->right - 1, box->bottom - 1), theme_.current_frame);
  // The other match is marked too, in its own colour, below.
  EXPECT_GT(page.count(theme_.mark_ground), pixels_of(*box) / 3);
  EXPECT_EQ(page.count(theme_.mark_ground, {0, 0, page.width(), box->bottom}),
            0);
}

TEST_F(TextPage, HasTheColoursOfTheDarkTheme) {
  show(kText, kMatches, 1);
  const int light_ground = picture("light-second").count(theme_.ground);
  theme_ = make_theme(gui::Theme::kDark);
  view_.theme_changed();
  const Picture page = picture("dark");
  EXPECT_GT(page.count(theme_.ground), page.width() * page.height() / 2);
  EXPECT_EQ(page.count(RGB(255, 255, 255)) > light_ground / 2, false);
  const std::optional<RECT> box = view_.current_box();
  ASSERT_TRUE(box);
  EXPECT_GT(page.count(theme_.current_ground, *box), pixels_of(*box) / 3);
  EXPECT_EQ(page.at(2, page.height() / 2), theme_.gutter);
}

TEST_F(TextPage, GrowsWithTheResolutionAndTheZoom) {
  show(kText, kMatches);
  const RECT small = view_.current_box().value();
  view_.scale(192);
  const RECT large = view_.current_box().value();
  picture("192-dpi");
  const double taller =
      double(large.bottom - large.top) / double(small.bottom - small.top);
  EXPECT_NEAR(taller, 2, 0.25);
  view_.scale(96);
  view_.set_zoom(200);
  const RECT zoomed = view_.current_box().value();
  EXPECT_EQ(zoomed.bottom - zoomed.top, large.bottom - large.top - 1);
  view_.set_zoom(1);
  EXPECT_EQ(view_.zoom(), 40);
}

TEST_F(TextPage, ShowsAreasInGreyAndWhiteSpace) {
  show(kText, kMatches);
  const Picture before = picture("plain");
  view_.show_areas({{64, 9}});
  view_.set_white_space(true);
  const Picture after = picture("areas");
  EXPECT_FALSE(before == after);
  EXPECT_EQ(before.count(theme_.area_text), 0);
  EXPECT_GT(after.count(theme_.area_text), 0);
}

// The same letters in both character sets look the same.
TEST_F(TextPage, ShowsUtf8AndAnsiText) {
  show(
      "Gr\xC3\xB6\xC3\x9F"
      "e");
  const Picture utf8 = picture("utf-8");
  show(
      "Gr\xF6\xDF"
      "e");
  EXPECT_TRUE(utf8 == picture("ansi"));
  show("Groe");
  EXPECT_FALSE(utf8 == picture("other"));
}

TEST_F(TextPage, SaysTheMatchToReaders) {
  EXPECT_EQ(name(), "Text");
  show(kText, kMatches, 1);
  EXPECT_EQ(name(),
            "Text, match 2 of 2, line 3: \tno other colours were seen // by "
            "day");
  view_.go_to(0);
  EXPECT_EQ(name(), "Text, match 1 of 2, line 2: the colour of the tide is");
  view_.clear();
  EXPECT_EQ(name(), "Text");
}

TEST_F(TextPage, SaysWhyAFileCannotBeShown) {
  view_.show(test::native(folder_.path("none.txt")), {}, 0);
  EXPECT_EQ(name().substr(0, 10), "none.txt: ");
  EXPECT_GT(picture("unread").count(theme_.dim_text), 0);
  show(kText);
  EXPECT_EQ(name(), "Text");
}

TEST_F(TextPage, KeysGoFromMatchToMatch) {
  show(kText, kMatches);
  send(WM_KEYDOWN, VK_F3);
  EXPECT_EQ(name().substr(0, 12), "Text, match ");
  EXPECT_NE(name().find("match 2 of 2"), std::string::npos);
  send(WM_KEYDOWN, VK_F3);
  EXPECT_NE(name().find("match 1 of 2"), std::string::npos);
  std::vector<int> steps;
  view_.on_step = [&](int step) { steps.push_back(step); };
  send(WM_KEYDOWN, VK_F3);
  {
    const Held shift(VK_SHIFT);
    send(WM_KEYDOWN, VK_F3);
  }
  EXPECT_EQ(steps, std::vector<int>({1, -1}));
}

TEST_F(TextPage, KeysAndTheWheelZoom) {
  show(kText);
  std::vector<int> zooms;
  view_.on_zoom = [&](int percent) { zooms.push_back(percent); };
  const Held control(VK_CONTROL);
  send(WM_KEYDOWN, VK_OEM_PLUS);
  send(WM_KEYDOWN, VK_OEM_MINUS);
  send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120));
  send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 60));
  send(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 60));
  send(WM_KEYDOWN, '0');
  EXPECT_EQ(zooms, std::vector<int>({110, 100, 110, 120, 100}));
}

TEST_F(TextPage, KeysAndBarsScroll) {
  std::string text;
  for (int i = 1; i <= 500; ++i) text += "line " + std::to_string(i) + "\n";
  show(text, {{0, 4}});
  const Picture top = picture("top");
  const auto position = [&] { return GetScrollPos(view_.window(), SB_VERT); };
  EXPECT_EQ(position(), 0);
  send(WM_KEYDOWN, VK_DOWN);
  EXPECT_EQ(position(), 7);
  send(WM_KEYDOWN, VK_UP);
  EXPECT_EQ(position(), 0);
  send(WM_KEYDOWN, VK_NEXT);
  EXPECT_GT(position(), 7 * 5);
  EXPECT_FALSE(top == picture("page-down"));
  send(WM_KEYDOWN, VK_PRIOR);
  EXPECT_TRUE(top == picture("page-up"));
  send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-120)));
  EXPECT_GT(position(), 0);
  send(WM_VSCROLL, SB_BOTTOM);
  int least = 0;
  int most = 0;
  GetScrollRange(view_.window(), SB_VERT, &least, &most);
  EXPECT_GT(position(), most * 9 / 10);
  send(WM_VSCROLL, SB_TOP);
  EXPECT_TRUE(top == picture("top-again"));
}

TEST_F(TextPage, TheMouseSelectsAndTheTextIsCopied) {
  show(kText, kMatches);
  const RECT box = view_.current_box().value();
  const int y = (box.top + box.bottom) / 2;
  send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(box.left + 1, y));
  send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(box.right - 1, y));
  send(WM_LBUTTONUP, 0, MAKELPARAM(box.right - 1, y));
  const Picture page = picture("selected");
  EXPECT_GT(page.count(theme_.selected_ground, box), pixels_of(box) / 3);
  EXPECT_TRUE(view_.copy());
  EXPECT_EQ(clipboard(), "colour");
  send(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(box.left - 15, y));
  send(WM_COPY);
  EXPECT_EQ(clipboard(), "the");
  const Held control(VK_CONTROL);
  send(WM_KEYDOWN, 'A');
  send(WM_KEYDOWN, 'C');
  EXPECT_EQ(clipboard().substr(0, 18), "The harbour\r\nthe c");
}

TEST_F(TextPage, NothingSelectedIsNotCopied) {
  show(kText, kMatches);
  EXPECT_FALSE(view_.copy());
}

TEST_F(TextPage, WrapsAndShowsLongLines) {
  std::string text(300'000, 'x');
  for (size_t i = 60; i < text.size(); i += 61) text[i] = ' ';
  text.replace(200'000, 6, "colour");
  show("one\n" + text + "\nlast\n", {{200'004, 6}});
  const std::optional<RECT> cut = view_.current_box();
  ASSERT_TRUE(cut);
  EXPECT_GE(cut->left, 0);
  EXPECT_LE(cut->right, 600);
  picture("long");
  view_.set_wrap(true);
  view_.go_to(0);
  ASSERT_TRUE(view_.current_box());
  EXPECT_GT(picture("wrapped").count(theme_.current_ground), 0);
}

// They come with messages that the window sends itself.
TEST_F(TextPage, CountsTheLinesOfALargeFileLater) {
  std::string text;
  for (int i = 0; i < 500'000; ++i) text += "line\n";
  show(text, {{2'000'000, 4}});
  EXPECT_EQ(name(), "Text, match 1 of 1: line");
  const Picture before = picture("uncounted");
  MSG message;
  while (name() == "Text, match 1 of 1: line" &&
         GetMessageW(&message, nullptr, 0, 0) > 0) {
    DispatchMessageW(&message);
  }
  EXPECT_EQ(name(), "Text, match 1 of 1, line 400001: line");
  EXPECT_GT(picture("counted").count(theme_.number), 0);
  EXPECT_EQ(before.count(theme_.number), 0);
}

TEST_F(TextPage, LivesInAWindowWithoutSpace) {
  show(kText, kMatches);
  size(0, 0);
  size(30, 3);
  picture("tiny");
  size(600, 240);
  EXPECT_GT(picture("normal").count(theme_.current_ground), 0);
}

}  // namespace
}  // namespace zenfo::host::gui::win32
