// Kills the program while it saves. Whenever that happens, the page is either the old or the new
// one.
#include <signal.h>
#include <time.h>

#include <chrono>
#include <iostream>
#include <random>

#include "tests/faults/Faults.h"

namespace kvo::test {
namespace {

using Nanoseconds = std::chrono::nanoseconds;
using Clock = std::chrono::steady_clock;

void Sleep(Nanoseconds time) {
  const timespec wait{time.count() / 1'000'000'000, time.count() % 1'000'000'000};
  nanosleep(&wait, nullptr);
}

class SuddenEnd : public Faults {
 protected:
  SuddenEnd() { UseProgram(KVO_PLAIN_PROGRAM); }
};

TEST_F(SuddenEnd, LeavesTheOldOrTheNewPage) {
  constexpr int kKills = 500;
  constexpr int kMostRounds = 5000;
  constexpr int kFewest = 10;  // kills required at each stage
  const std::string old = LargePage(2000);
  const std::string fresh = Saved(old);
  Write("x.html", old);
  const Clock::time_point start = Clock::now();
  ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
  // The latest moment for a kill. Adapts to the machine so that about one run in three gets as far
  // as the new page.
  double span = static_cast<double>(Nanoseconds(Clock::now() - start).count());

  std::mt19937_64 random(20040423);
  int before = 0;  // killed before the new file existed
  int during = 0;  // killed while it was being written
  int after = 0;   // killed after it replaced the page
  int ended = 0;   // finished before the kill
  std::size_t left = 0;
  bool isOld = false;
  for (int round = 0; before + during + after < kKills && round < kMostRounds; ++round) {
    if (!isOld) Write("x.html", old);
    const pid_t kvo = Start({"save", "x.html"});
    Sleep(Nanoseconds(static_cast<long>(std::uniform_real_distribution<>(0, span)(random))));
    kill(kvo, SIGKILL);
    const int code = Finish(kvo).code;
    const std::string page = Read("x.html");
    isOld = page == old;
    ASSERT_TRUE(isOld || page == fresh) << "neither the old nor the new page after round " << round;
    const std::vector<std::string> leftovers = LeftBeside("x.html");
    const bool wasWriting = leftovers.size() > left;
    left = leftovers.size();
    if (code == 0) {
      ASSERT_FALSE(isOld);
      ASSERT_FALSE(wasWriting);
      ++ended;
    } else {
      ASSERT_EQ(code, 128 + SIGKILL);
      ASSERT_FALSE(!isOld && wasWriting);
      ++(isOld ? wasWriting ? during : before : after);
    }
    span *= isOld ? 1.01 : 0.98;
    if (left == 20) {  // they take space, and later saves ignore them
      Write("x.html", old);
      ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
      ASSERT_TRUE(Read("x.html") == fresh);
      ASSERT_EQ(LeftBeside("x.html"), leftovers);
      Remove(leftovers);
      left = 0;
      isOld = false;
    }
  }
  std::cout << "killed before the new file existed: " << before
            << ", while it was being written: " << during
            << ", after it replaced the page: " << after << "; already finished: " << ended << '\n';
  EXPECT_EQ(before + during + after, kKills);
  EXPECT_GE(before, kFewest);
  EXPECT_GE(during, kFewest);
  EXPECT_GE(after + ended, kFewest);
}

// Two concurrent runs for one page each replace it completely.
class AtOnce : public Faults {
 protected:
  AtOnce() { UseProgram(KVO_PLAIN_PROGRAM); }
  static constexpr int kRounds = 100;

  void BothEndWell(const std::vector<std::string>& first, const std::vector<std::string>& second) {
    const pid_t one = Start(first);
    const pid_t other = Start(second);
    const Result a = Finish(one);
    const Result b = Finish(other);
    ASSERT_EQ(a.code, 0) << a.err;
    ASSERT_EQ(b.code, 0) << b.err;
  }
};

TEST_F(AtOnce, TwoSavesOfOnePageGiveTheSavedPage) {
  const std::string old = LargePage(300);
  const std::string fresh = Saved(old);
  for (int round = 0; round < kRounds; ++round) {
    Write("x.html", old);
    BothEndWell({"save", "x.html"}, {"save", "x.html"});
    ASSERT_TRUE(Read("x.html") == fresh) << round;
    ASSERT_EQ(Files(), std::vector<std::string>{"x.html"}) << round;
  }
}

TEST_F(AtOnce, TwoPagesSavedToOneFileGiveOneOfThem) {
  Write("a.html", LargePage(300, "a"));
  Write("b.html", LargePage(290, "b"));
  const std::string a = Saved(Read("a.html"));
  const std::string b = Saved(Read("b.html"));
  int wins = 0;
  for (int round = 0; round < kRounds; ++round) {
    const bool swapped = round % 2 != 0;  // alternates which starts first
    BothEndWell({"save", swapped ? "b.html" : "a.html", "-o", "x.html"},
                {"save", swapped ? "a.html" : "b.html", "-o", "x.html"});
    const std::string result = Read("x.html");
    wins += result == a;
    ASSERT_TRUE(result == a || result == b) << round;
    ASSERT_EQ(Files(), (std::vector<std::string>{"a.html", "b.html", "x.html"})) << round;
  }
  EXPECT_GT(wins, 0);
  EXPECT_LT(wins, kRounds);
}

}  // namespace
}  // namespace kvo::test
