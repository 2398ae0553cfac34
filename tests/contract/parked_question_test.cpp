// The calling thread waits in a callback while another thread makes the calls
// that callbacks may make: so a host's window can show the current file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#endif

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/host_recorder.h"
#include "support/matchers.h"
#include "support/session.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

// A thread that lives longer than the questions it works in, like the thread of
// a window.
class OtherThread {
 public:
  OtherThread() : thread_([this] { work(); }) {}
  ~OtherThread() {
    do_and_wait(nullptr);
    thread_.join();
  }
  OtherThread(const OtherThread&) = delete;
  OtherThread& operator=(const OtherThread&) = delete;

  std::thread::id id() const { return thread_.get_id(); }

  // Lets it do something and waits for it; null ends the thread.
  void do_and_wait(std::function<void()> task) {
    std::unique_lock lock(mutex_);
    task_ = std::move(task);
    waits_ = true;
    changed_.notify_all();
    changed_.wait(lock, [&] { return !waits_; });
  }

 private:
  void work() {
    for (bool goes_on = true; goes_on;) {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [&] { return waits_; });
      goes_on = task_ != nullptr;
      if (goes_on) task_();
      waits_ = false;
      changed_.notify_all();
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::function<void()> task_;
  bool waits_ = false;
  std::thread thread_;  // the last: it uses the others
};

class ParkedQuestion : public testing::Test {
 protected:
  // A run over the files; the other thread looks while each question waits.
  void search(const std::vector<std::string>& contents,
              const std::function<void()>& look) {
    for (size_t i = 0; i < contents.size(); ++i) {
      session.folder.file("text" + std::to_string(i), contents[i]);
    }
    ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text*"),
              static_cast<int32_t>(contents.size()));
    SetState(ZENFO_LIST_RUN_FILES, -1, 1);
    ASSERT_EQ(SetPattern("", "cat", "", 0, 0, 0, 0, 0, 0), 1);
    size_t asked = 0;
    host.answer_option = [&](const HostRecorder::Question&) {
      ++asked;
      other.do_and_wait(look);
      return 1;
    };
    FindBlock(1, 0, 0, "", 1, 0);
    EXPECT_EQ(asked, contents.size());
    host.answer_option = [](const HostRecorder::Question&) { return 1; };
  }

  static std::string offsets() {
    std::string all;
    const int32_t count = GetCount(ZENFO_LIST_MATCHES, -1);
    for (int32_t i = 0; i < count; ++i) {
      const auto index = static_cast<uint32_t>(i);
      all += read_text(GetMatchOffset, ZENFO_LIST_MATCHES, index).text + ' ';
      char text[50] = "#";
      EXPECT_EQ(GetMatchText(ZENFO_LIST_MATCHES, index, text, 40), 1);
      EXPECT_STREQ(text, "cat");
    }
    return all;
  }

  Session session;
  HostRecorder host;
  OtherThread other;
};

TEST_F(ParkedQuestion, AnotherThreadReadsTheMatches) {
  std::vector<std::string> seen;
  search({"cat", "a cat, a cat", "\n\ncat"}, [&] {
    EXPECT_EQ(std::this_thread::get_id(), other.id());
    seen.push_back(offsets());
  });
  EXPECT_THAT(seen, UnorderedElementsAre("0 ", "2 9 ", "2 "));
  EXPECT_EQ(GetCount(ZENFO_LIST_RESULT, -1), 3);
  EXPECT_TRUE(session.take_log().empty());
}

// Files large enough to be mapped are read there too.
TEST_F(ParkedQuestion, AnotherThreadReadsALargeFile) {
  std::string large(3 << 20, '-');
  large.replace(2'000'000, 3, "cat");
  std::string seen;
  search({large}, [&] { seen = offsets(); });
  EXPECT_EQ(seen, "2000000 ");
}

TEST_F(ParkedQuestion, AnotherThreadLaysTheDisplayOut) {
  search({"a cat\nthe cat", "cat\nno\ncats"}, [&] {
    const int32_t lines = GetCount(ZENFO_LIST_MATCHES, -1) == 0 ? 0 : 2;
    SetBytesPerLine(0);
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    EXPECT_GE(GetDisplayLineCount(), lines);
    int32_t place[2] = {-7, -7};
    EXPECT_EQ(HighlightGroup(1, place), 1);
    EXPECT_GT(place[0], 0);
    EXPECT_EQ(ClearHighlight(), 1);
    SetBytesPerLine(4);
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    EXPECT_GE(GetDisplayLineCount(), 3);
    EXPECT_EQ(ResetDisplay(), 1);
    EXPECT_EQ(GetDisplayLineCount(), 0);
  });
  EXPECT_EQ(GetDisplayLineCount(), 0);
}

// The host's threads take turns: each sees what the other did.
TEST_F(ParkedQuestion, TheThreadsTakeTurnsInOneQuestion) {
  session.folder.file("text", "a cat\nthe cat");
  ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text"), 1);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  ASSERT_EQ(SetPattern("", "cat", "", 0, 0, 0, 0, 0, 0), 1);
  host.answer_option = [&](const HostRecorder::Question&) {
    for (int i = 0; i < 100; ++i) {
      EXPECT_EQ(PrepareDisplay("\n", 0), 1);
      other.do_and_wait([] {
        EXPECT_EQ(GetDisplayLineCount(), 2);
        EXPECT_EQ(PrepareDisplay("a", 0), 1);
      });
      EXPECT_EQ(GetDisplayLineCount(), 4);
    }
    return 1;
  };
  FindBlock(1, 0, 0, "", 1, 0);
  EXPECT_EQ(host.option_questions.size(), 1u);
}

TEST_F(ParkedQuestion, AnotherThreadDeselectsMatchesOfAReplace) {
  const std::string file = session.folder.file("text", "cat cat cat");
  ASSERT_EQ(session.find(ZENFO_LIST_RUN_FILES, "0~/text"), 1);
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  ASSERT_EQ(SetPattern("", "cat", "", 0, 0, 0, 0, 0, 0), 1);
  host.answer_option = [&](const HostRecorder::Question&) {
    other.do_and_wait([] {
      EXPECT_EQ(SetState(ZENFO_LIST_MATCHES, 1, 0), 1);
      EXPECT_EQ(GetState(ZENFO_LIST_MATCHES, 1), 0);
    });
    return 1;
  };
  ReplaceBlock("dog", 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0);
  EXPECT_EQ(read_file(file), "dog cat dog");
}

TEST_F(ParkedQuestion, AnotherThreadSavesTheOccurrences) {
  const std::string file = session.folder.path("saved");
  search({"a cat, a cat"},
         [&] { EXPECT_EQ(save_occurrences(file.c_str(), "|"), 2); });
  EXPECT_EQ(read_file(file), "cat|cat|");
}

// What callbacks may not call, the other thread may not either.
TEST_F(ParkedQuestion, AnotherThreadCannotChangeLists) {
  search({"cat"}, [&] {
    EXPECT_EQ(session.find(ZENFO_LIST_OTHER_FILES, "0~/text*"), -1);
    EXPECT_NE(SetPattern("", "dog", "", 0, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(Clear(ZENFO_LIST_RUN_FILES), 0);
    EXPECT_EQ(offsets(), "0 ");
  });
  EXPECT_EQ(GetCount(ZENFO_LIST_RESULT, -1), 1);
  EXPECT_EQ(GetCount(ZENFO_LIST_OTHER_FILES, -1), 0);
  EXPECT_TRUE(session.take_log().empty());
}

// Callbacks of a call come on the thread that makes it.
TEST_F(ParkedQuestion, CallbacksComeOnTheThreadThatCalls) {
  std::string text = "cat";
  for (int i = 0; i < 2000; ++i) text += "\ncat";
  std::vector<std::thread::id> threads;
  bool watched = false;
  host.interrupt = [&] {
    if (watched) threads.push_back(std::this_thread::get_id());
    return 0;
  };
  search({text}, [&] {
    watched = true;
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    watched = false;
  });
  EXPECT_THAT(threads, testing::Not(IsEmpty()));
  EXPECT_THAT(threads, Each(other.id()));
}

#ifdef _WIN32

// As a host with a window does: the window belongs to the other thread, which
// paints it while the search waits.
TEST_F(ParkedQuestion, AnotherThreadPaintsItsWindow) {
  HWND window = nullptr;
  other.do_and_wait([&] {
    window = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 10, 10,
                             400, 200, nullptr, nullptr, nullptr, nullptr);
  });
  ASSERT_NE(window, nullptr);
  int painted = 0;
  search({"a cat and a cat", "the cat\ncat"}, [&] {
    EXPECT_EQ(SetDisplayWindow(window), 1);
    EXPECT_EQ(PrepareDisplay("\n", 0), 1);
    InvalidateRect(window, nullptr, TRUE);
    EXPECT_NE(PaintDisplay(0, 0, 1, 1), -1);
    bool found = false;
    for (int x = 0; x < 400 && !found; ++x) found = HitTestDisplay(x, 5) == 0;
    EXPECT_TRUE(found);
    int32_t place[2];
    EXPECT_EQ(HighlightGroup(1, place), 1);
    InvalidateRect(window, nullptr, TRUE);
    EXPECT_EQ(RepaintDisplay(0, 1, 1), 1);
    EXPECT_EQ(SetDisplayWindow(nullptr), -1);
    ++painted;
  });
  EXPECT_EQ(painted, 2);
  other.do_and_wait([&] { EXPECT_NE(DestroyWindow(window), 0); });
}

#endif

}  // namespace
}  // namespace zenfo::test
