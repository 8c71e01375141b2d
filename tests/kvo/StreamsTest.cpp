// Closed standard streams, and outputs that are not files.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

// Runs kvo through a shell, with redirections after the arguments.
class Streams : public Program {
 protected:
  Streams() { UseProgram("/bin/sh"); }

  Result Shell(const std::string& script, const std::string& input = "") const {
    return Kvo({"-c", script}, input, {{"kvo", KVO_PROGRAM}});
  }
};

using ClosedStreams = Streams;

// Saving this gives a warning: an empty border comes back as "0".
const std::string kWarnedPage =
    ControlElement("DTCProductList", {{"display-desc2", "yes"}, {"table-border", ""}}, "liste");

TEST_F(ClosedStreams, NeverGetIntoThePage) {
  Write("x.html", kWarnedPage);
  const Result saved = Shell("exec \"$kvo\" save x.html -o saved.html");
  ASSERT_EQ(saved.code, 0) << saved.err;
  ASSERT_NE(saved.err.find("[unstable-bag]"), std::string::npos) << saved.err;
  const Result published = Shell("exec \"$kvo\" publish x.html -o published.html");
  ASSERT_EQ(published.code, 0) << published.err;
  for (int closed = 0; closed < 8; ++closed) {
    std::string redirections;
    if ((closed & 1) != 0) redirections += " <&-";
    if ((closed & 2) != 0) redirections += " >&-";
    if ((closed & 4) != 0) redirections += " 2>&-";
    SCOPED_TRACE(redirections);
    Write("y.html", kWarnedPage);
    EXPECT_EQ(Shell("exec \"$kvo\" save y.html" + redirections).code, 0);
    EXPECT_EQ(Read("y.html"), Read("saved.html"));
    Write("y.html", kWarnedPage);
    EXPECT_EQ(Shell("exec \"$kvo\" publish y.html -o z.html" + redirections).code, 0);
    EXPECT_EQ(Read("z.html"), Read("published.html"));
    EXPECT_EQ(Shell("exec \"$kvo\" picture y.html -o pictures" + redirections).code,
              (closed & 2) != 0 ? 2 : 0);  // it prints the names of the pictures
    EXPECT_EQ(Read("pictures/1-liste.svg").find("pictures"), std::string::npos);
    fs::remove_all(Folder() / "work/pictures");
    fs::remove(Folder() / "work/z.html");
    EXPECT_EQ(Files(),
              (std::vector<std::string>{"published.html", "saved.html", "x.html", "y.html"}));
  }
}

TEST_F(ClosedStreams, AreNotAnEmptyPage) {
  Write("x.html", "old");
  const Result result = Shell("exec \"$kvo\" save - -o x.html <&-");
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err, "");
  EXPECT_EQ(Read("x.html"), "old");
}

TEST_F(ClosedStreams, CannotBeWrittenTo) {
  Write("x.html", PrintElement("x"));
  for (const char* command : {"save x.html -o -", "publish x.html -o -", "inspect x.html"})
    EXPECT_EQ(Shell(std::string("exec \"$kvo\" ") + command + " >&-").code, 2) << command;
  EXPECT_EQ(Read("x.html"), PrintElement("x"));
}

// Outputs that are written to directly.

TEST_F(Streams, AcceptThePageUnderEveryName) {
  Write("x.html", PrintElement("x"));
  const std::string page = Kvo({"-c", "\"$kvo\" save x.html -o -"}, "", {{"kvo", KVO_PROGRAM}}).out;
  ASSERT_NE(page, "");
  for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Shell("exec \"$kvo\" save x.html -o " + std::string(name)).out, page);
    EXPECT_EQ(Shell("\"$kvo\" save x.html -o " + std::string(name) + " | cat").out, page);
    EXPECT_EQ(Shell("echo before; exec \"$kvo\" save x.html -o " + std::string(name)).out,
              "before\n" + page);
    Write("log", "before\n");
    EXPECT_EQ(Shell("\"$kvo\" save x.html -o " + std::string(name) + " >> log").code, 0);
    EXPECT_EQ(Read("log"), "before\n" + page);
  }
  EXPECT_EQ(Shell("exec \"$kvo\" save x.html -o /dev/fd/3 3> y.html").code, 0);
  EXPECT_EQ(Read("y.html"), page);
  EXPECT_EQ(Shell("mkfifo pipe; \"$kvo\" save x.html -o pipe & cat pipe; wait").out, page);
  EXPECT_TRUE(fs::is_fifo(Folder() / "work/pipe"));
  EXPECT_EQ(Shell("\"$kvo\" set x.html Z Value=x -o /dev/fd/3 3> y.html").code, 2);
  EXPECT_EQ(Files(), (std::vector<std::string>{"log", "pipe", "x.html", "y.html"}));
}

TEST_F(Streams, ThatAreThePageItselfAreRefused) {
  const std::string page = PrintElement("x");
  for (const char* command :
       {"publish - < x.html 1<> x.html", "publish x.html -o - >> x.html", "save - <x.html >>x.html",
        "save x.html -o - 1<> x.html", "publish - -o x.html < x.html",
        "publish x.html -o /dev/stdout >> x.html", "set x.html x Value=y -o - >> x.html"}) {
    Write("x.html", page);
    const Result result = Shell("exec \"$kvo\" " + std::string(command));
    EXPECT_EQ(result.code, 2) << command;
    EXPECT_NE(result.err.find("would be lost"), std::string::npos) << result.err;
    EXPECT_EQ(Read("x.html"), page) << command;
  }
}

TEST_F(Streams, ThatReceivedPartOfThePageAreNotReportedUnchanged) {
  Write("x.html", PrintElement("x") + std::string(200'000, 'x'));
  const Result result = Shell("ulimit -f 100; exec \"$kvo\" save x.html -o - > part");
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("The output is incomplete."), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("Nothing was changed"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace kvo::test
