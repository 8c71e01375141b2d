#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

// Reads the page from a pipe, so that the test decides when it arrives.
class PipedPage : public Program {
 protected:
  PipedPage() { EXPECT_EQ(mkfifo(PipeName().c_str(), 0600), 0); }

  std::string PipeName() const { return (Folder() / "work" / "pipe.html").string(); }
  // Returns once the program has opened the page.
  int OpenPipe() const { return open(PipeName().c_str(), O_WRONLY); }
};

TEST_F(PipedPage, InterruptionKeepsTheTarget) {
  Write("x.html", "old");
  const pid_t kvo = Start({"save", "pipe.html", "-o", "x.html"});
  const int pipe = OpenPipe();
  const std::string half = PrintElement("x").substr(0, 40);
  ASSERT_EQ(write(pipe, half.data(), half.size()), static_cast<ssize_t>(half.size()));
  kill(kvo, SIGINT);
  EXPECT_EQ(Finish(kvo).code, 128 + SIGINT);
  close(pipe);
  EXPECT_EQ(Read("x.html"), "old");
  EXPECT_EQ(Files(), (std::vector<std::string>{"pipe.html", "x.html"}));
}

// Interrupts commands that wait for their page, or for a reader of their output.
TEST_F(PipedPage, EveryCommandEndsAtOnce) {
  Write("x.html", PrintElement("x", "Preis"));
  const std::vector<std::string> before = Files();
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"save", "pipe.html"},
           {"save", "pipe.html", "-o", "y.html"},
           {"save", "x.html", "-o", "pipe.html"},
           {"publish", "pipe.html", "-o", "y.html"},
           {"publish", "x.html", "-o", "pipe.html"},
           {"inspect", "pipe.html"},
           {"check", "pipe.html"},
           {"set", "pipe.html", "Preis", "Value=y"},
           {"set", "x.html", "Preis", "Value=y", "-o", "pipe.html"},
           {"picture", "pipe.html", "-o", "pictures"},
           {"preview", "pipe.html", "-o", "y.html"},
           {"preview", "x.html", "-o", "pipe.html"},
           {"script", "x.html", "pipe.html"}})
    for (const int signal : {SIGINT, SIGTERM}) {
      SCOPED_TRACE(command[0] + ' ' + command[1] + ' ' + std::to_string(signal));
      const pid_t kvo = Start(command);
      const bool reads =
          command.back() != "pipe.html" || command.size() == 2 || command[0] == "script";
      int pipe = -1;
      if (reads)
        pipe = OpenPipe();
      else
        std::this_thread::sleep_for(std::chrono::milliseconds(50));  // until it waits as well
      kill(kvo, signal);
      EXPECT_EQ(Finish(kvo).code, 128 + signal);
      if (reads) close(pipe);
      EXPECT_EQ(Read("x.html"), PrintElement("x", "Preis"));
      EXPECT_EQ(Files(), before);
    }
}

TEST_F(PipedPage, LongRunReportsItsProgress) {
  Write("x.html", "<p>");
  const pid_t kvo = Start({"check", "pipe.html", "x.html"});
  const int pipe = OpenPipe();
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  close(pipe);
  const Result result = Finish(kvo);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "kvo: 1 of 2 pages, about 2 s left\n");
  EXPECT_EQ(result.out, "");
}

TEST_F(Program, QuickRunReportsNoProgress) {
  Write("x.html", "<p>");
  EXPECT_EQ(Kvo({"check", "x.html", "x.html"}).err, "");
}

}  // namespace
}  // namespace kvo::test
