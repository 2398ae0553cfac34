#include "platform/threads.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#endif

#include <thread>

namespace zenfo::platform {
namespace {

TEST(Processors, AreAtLeastOne) {
  EXPECT_GE(processors(), 1u);
  EXPECT_LE(processors(), 4096u);
}

#ifndef _WIN32

bool blocked(int signal) {
  sigset_t now;
  pthread_sigmask(SIG_SETMASK, nullptr, &now);
  return sigismember(&now, signal) == 1;
}

TEST(SignalsKeptAway, AreBlockedInThreadsThatStartMeanwhile) {
  bool interrupt_blocked = false;
  bool fault_blocked = true;
  const bool before = blocked(SIGINT);
  std::thread thread;
  {
    const SignalsKeptAway signals;
    thread = std::thread([&] {
      interrupt_blocked = blocked(SIGINT) && blocked(SIGALRM);
      fault_blocked = blocked(SIGBUS) || blocked(SIGSEGV);
    });
  }
  thread.join();
  EXPECT_TRUE(interrupt_blocked);
  EXPECT_FALSE(fault_blocked);
  EXPECT_EQ(blocked(SIGINT), before);
}

#else

TEST(SignalsKeptAway, DoNothingWhereThereAreNone) {
  bool ran = false;
  const SignalsKeptAway signals;
  std::thread([&] { ran = true; }).join();
  EXPECT_TRUE(ran);
}

#endif

}  // namespace
}  // namespace zenfo::platform
