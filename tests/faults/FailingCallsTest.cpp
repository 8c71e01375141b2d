// Makes every system call of a save fail, one at a time and in every way it can. Afterwards either
// the old page is untouched or the new one is completely in its place, the message and exit code
// agree with that, and no other file is left.
#include <signal.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>

#include "tests/faults/Faults.h"

namespace kvo::test {
namespace {

constexpr int kMostCalls = 100'000;

// What a call is for: its failure ends the save with a message about reading or about writing, or
// has no effect on the page.
enum class For { reading, writing, nothing };

struct CallRow {
  const char* name;
  std::vector<For> calls;  // in order; the last one applies to all further calls
  std::vector<int> errors;
  bool interruptible = false;
};

const std::vector<CallRow> kCalls = {
    // the page; the new file; their folder, once the new page is in place
    {"open", {For::reading, For::writing, For::nothing}, {EIO, EMFILE, EACCES}, true},
    {"read", {For::reading}, {EIO, EISDIR}, true},
    // the page's size, beforehand; the new file's owner
    {"fstat", {For::nothing, For::writing}, {EIO}},
    // what was named and where it is, before it is read; what is replaced
    {"lstat", {For::nothing, For::writing}, {EIO, EACCES}},
    {"stat", {For::nothing, For::nothing, For::writing}, {EIO, EACCES}},
    {"access", {For::writing}, {EIO, EACCES, EROFS}},
    {"getentropy", {For::writing}, {EIO, ENOSYS}},
    {"fchown", {For::writing}, {EPERM, EIO}, true},
    {"getxattr", {For::writing}, {EIO}},
    {"getxattr", {For::nothing}, {ENODATA, ENOTSUP, ENOSYS}},
    {"fremovexattr", {For::writing}, {EIO, EPERM}},
    {"fremovexattr", {For::nothing}, {ENODATA, ENOTSUP, ENOSYS}},
    {"fchmod", {For::writing}, {EPERM, EIO, EROFS}, true},
    {"write", {For::writing}, {ENOSPC, EDQUOT, EIO, EFBIG}, true},
    {"fsync", {For::writing, For::nothing}, {EIO, ENOSPC, EDQUOT}, true},
    {"close", {For::nothing, For::writing, For::nothing}, {EIO, ENOSPC, EDQUOT}, true},
    {"rename", {For::writing}, {EIO, ENOSPC, EDQUOT, EACCES, EBUSY}},
};

// Never called. If that changes, add them to the table.
constexpr const char* kOtherCalls[] = {"openat",    "fdatasync", "renameat", "mkostemp",
                                       "fsetxattr", "readlink",  "unlink",   "mmap"};

std::string MessageOf(int error, For what) {
  const bool reading = what == For::reading;
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return "The disk is full. Make room and try again.";
    case EACCES:
    case EPERM:
      return reading ? "The file may not be read." : "The file or its folder is read-only.";
    case EROFS:
      return "The drive is read-only.";
    case EFBIG:
      return "The file would become larger than allowed here.";
    case EISDIR:
      return "This is a folder.";
    default:
      return (reading ? "The file cannot be read (" : "The file cannot be written (") +
             std::string(strerror(error)) + ")";
  }
}

// The shipped program, and the one built here, whose sanitizers (if enabled) detect memory leaked
// on failure paths.
struct Build {
  const char* name;
  const char* program;
  const char* runtime;
};
void PrintTo(const Build& build, std::ostream* out) { *out << build.name; }

class FailingCalls : public Faults, public ::testing::WithParamInterface<Build> {
 protected:
  FailingCalls() {
    UseProgram(GetParam().program);
    fresh_ = Saved(old_);
    Restore();
  }

  void Restore() const {
    Write("x.html", old_);
    // Gives the page an owner that saving must keep, if the test has the right to.
    if (geteuid() == 0 && chown((Folder() / "work/x.html").c_str(), 12345, 23456) != 0)
      ADD_FAILURE() << "cannot change the page's owner";
  }

  // Saves the page with a fault; returns false if the program never reached it.
  bool SaveWith(const std::string& call, int number, const std::string& what) {
    const std::string mark = (Folder() / "mark").string();
    std::filesystem::remove(mark);
    const std::string runtime = GetParam().runtime;
    result_ = Kvo({"save", "x.html"}, "",
                  {{"LD_PRELOAD", (runtime.empty() ? "" : runtime + ':') + KVO_FAILING_CALLS},
                   {"KVO_FAIL", call + ' ' + std::to_string(number) + ' ' + what},
                   {"KVO_FAIL_MARK", mark}});
    ++runs_;
    return std::filesystem::exists(mark);
  }

  // Only a page of another user needs its owner set again.
  static bool IsNotMade(const CallRow& row) {
    return geteuid() != 0 && std::string(row.name) == "fchown";
  }

  void ExpectOldPage(const std::string& message) const {
    EXPECT_EQ(result_.code, 2);
    EXPECT_EQ(result_.err.find("kvo: error: "), 0U) << result_.err;
    EXPECT_NE(result_.err.find(message), std::string::npos) << result_.err;
    EXPECT_TRUE(Read("x.html") == old_);
    EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
  }
  void ExpectNewPage() const {
    EXPECT_EQ(result_.code, 0);
    EXPECT_EQ(result_.err, "");
    EXPECT_TRUE(Read("x.html") == fresh_);
    EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
  }

  const std::string old_ = LargePage(200);
  std::string fresh_;
  Result result_;
  int runs_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Kvo, FailingCalls,
                         ::testing::Values(Build{"AsShipped", KVO_PLAIN_PROGRAM, ""},
                                           Build{"AsBuilt", KVO_PROGRAM, KVO_SANITIZER_RUNTIME}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(FailingCalls, EveryErrorIsReportedOrHarmless) {
  for (const CallRow& row : kCalls) {
    for (const int error : row.errors) {
      std::size_t number = 1;
      for (;; ++number) {
        SCOPED_TRACE(row.name + (' ' + std::to_string(number)) + ": " + strerror(error));
        if (!SaveWith(row.name, static_cast<int>(number), std::to_string(error))) break;
        const For what = row.calls[std::min(number, row.calls.size()) - 1];
        if (what == For::nothing) {
          ExpectNewPage();
          Restore();
        } else {
          ExpectOldPage("\"x.html\": " + MessageOf(error, what));
          EXPECT_EQ(result_.err.find(" Nothing was changed.") != std::string::npos,
                    what == For::writing)
              << result_.err;
        }
        if (HasFailure()) return;
      }
      ExpectNewPage();  // nothing failed
      Restore();
      EXPECT_GE(number - 1, IsNotMade(row) ? 0 : row.calls.size()) << row.name;
      if (HasFailure()) return;
    }
  }
  std::cout << runs_ << " runs\n";
}

TEST_P(FailingCalls, RetriesInterruptedCalls) {
  for (const CallRow& row : kCalls) {
    if (!row.interruptible) continue;
    for (int number = 1;; ++number) {
      SCOPED_TRACE(row.name + (' ' + std::to_string(number)));
      const bool met = SaveWith(row.name, number, std::to_string(EINTR));
      ExpectNewPage();
      if (HasFailure()) return;
      Restore();
      if (met) continue;
      EXPECT_TRUE(number > 1 || IsNotMade(row)) << row.name;
      break;
    }
  }
}

TEST_P(FailingCalls, ReadsAndWritesAFewBytesAtATime) {
  for (const char* call : {"read", "write"}) {
    SCOPED_TRACE(call);
    ASSERT_TRUE(SaveWith(call, 1, "short"));
    ExpectNewPage();
    Restore();
  }
}

TEST_P(FailingCalls, AFileThatAcceptsNoBytesIsAnError) {
  ASSERT_TRUE(SaveWith("write", 2, "zero"));
  ExpectOldPage("\"x.html\": " + MessageOf(EIO, For::writing));
}

TEST_P(FailingCalls, MakesNoOtherCall) {
  for (const char* call : kOtherCalls) {
    EXPECT_FALSE(SaveWith(call, 1, std::to_string(EIO))) << call;
    Restore();
  }
}

// Simulates a crash immediately before and after each call.
TEST_P(FailingCalls, DeathAtAnyCallLeavesTheOldPageOrTheNewOne) {
  int old = 0;
  int fresh = 0;
  for (const CallRow& row : kCalls) {
    for (const char* death : {"dies-before", "dies-after"}) {
      for (int number = 1;; ++number) {
        SCOPED_TRACE(row.name + (' ' + std::to_string(number)) + ' ' + death);
        if (!SaveWith(row.name, number, death)) break;
        ASSERT_EQ(result_.code, 128 + SIGKILL);
        const bool isOld = Read("x.html") == old_;
        ASSERT_TRUE(isOld || Read("x.html") == fresh_);
        ++(isOld ? old : fresh);
        const std::vector<std::string> left = LeftBeside("x.html");
        ASSERT_LE(left.size(), isOld ? 1U : 0U);
        Remove(left);
        Restore();
      }
      ExpectNewPage();
      if (HasFailure()) return;
      Restore();
    }
  }
  EXPECT_GT(old, 20);
  EXPECT_GE(fresh, 5) << "after the rename, and at the four calls for the folder";
  std::cout << "died with the old page in place: " << old << ", with the new one: " << fresh
            << '\n';
}

// Ctrl-C and a shutdown end the program the same way. No other file is left, wherever it happens.
TEST_P(FailingCalls, TerminationAtAnyCallLeavesNoOtherFile) {
  int old = 0;
  int fresh = 0;
  for (const CallRow& row : kCalls) {
    for (const char* end : {"ended-before", "ended-after"}) {
      for (int number = 1;; ++number) {
        SCOPED_TRACE(row.name + (' ' + std::to_string(number)) + ' ' + end);
        if (!SaveWith(row.name, number, end)) break;
        ASSERT_EQ(result_.code, 128 + SIGTERM);
        const bool isOld = Read("x.html") == old_;
        ASSERT_TRUE(isOld || Read("x.html") == fresh_);
        ++(isOld ? old : fresh);
        ASSERT_EQ(Files(), std::vector<std::string>{"x.html"});
        Restore();
      }
      ExpectNewPage();
      if (HasFailure()) return;
      Restore();
    }
  }
  EXPECT_GT(old, 20);
  EXPECT_GE(fresh, 5);
}

// An access list belongs to the page just as its mode does.
TEST_P(FailingCalls, AnAccessListIsKeptOrThePageIsNotWritten) {
  // The owner may write, another user read, everybody else nothing.
  const std::string list(
      "\2\0\0\0\1\0\6\0\xFF\xFF\xFF\xFF\2\0\4\0\x31\xD4\0\0\4\0\0\0\xFF\xFF\xFF\xFF"
      "\x10\0\4\0\xFF\xFF\xFF\xFF\x20\0\0\0\xFF\xFF\xFF\xFF",
      44);
  const std::string page = (Folder() / "work/x.html").string();
  const auto grant = [&] {
    return setxattr(page.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) == 0;
  };
  if (!grant()) GTEST_SKIP() << "the file system of the temporary folder has no access lists";
  for (const int error : {EPERM, ENOTSUP, EIO, ENOSPC}) {
    ASSERT_TRUE(SaveWith("fsetxattr", 1, std::to_string(error)));
    EXPECT_EQ(result_.code, 2);
    EXPECT_NE(result_.err.find(" Nothing was changed."), std::string::npos) << result_.err;
    EXPECT_TRUE(Read("x.html") == old_);
    EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
  }
  EXPECT_FALSE(SaveWith("fsetxattr", 2, std::to_string(EIO)));
  ExpectNewPage();
  std::string kept(list.size() + 1, '\0');
  kept.resize(static_cast<std::size_t>(std::max<ssize_t>(
      0, getxattr(page.c_str(), "system.posix_acl_access", kept.data(), kept.size()))));
  EXPECT_EQ(kept, list);
}

class NoMemory : public Faults {
 protected:
  NoMemory() { UseProgram(KVO_PLAIN_PROGRAM); }
};

// Uses a page with one control, and fails every allocation from program start to exit.
TEST_F(NoMemory, LeavesTheOldPageWheneverItRunsOut) {
  const std::string old = PrintElement("a") + std::string(100'000, 'x');
  const std::string fresh = Saved(old);
  const std::string mark = (Folder() / "mark").string();
  // Fails one allocation, or that one and all after it.
  for (const std::string& what : {std::to_string(ENOMEM), std::string("without")}) {
    int told = 0;
    int untold = 0;  // before main(), where nothing can report it yet
    int lastUntold = 0;
    int firstTold = 0;
    int number = 1;
    for (; number < kMostCalls; ++number) {
      SCOPED_TRACE(what + ' ' + std::to_string(number));
      Write("x.html", old);
      std::filesystem::remove(mark);
      const Result result = Kvo({"save", "x.html"}, "",
                                {{"LD_PRELOAD", KVO_FAILING_CALLS},
                                 {"KVO_FAIL", "malloc " + std::to_string(number) + ' ' + what},
                                 {"KVO_FAIL_MARK", mark}});
      ASSERT_EQ(Files(), std::vector<std::string>{"x.html"});
      if (result.code == 0) {
        ASSERT_TRUE(Read("x.html") == fresh);
      } else if (result.code == 128 + SIGABRT) {
        ASSERT_TRUE(Read("x.html") == old);
        ++untold;
        lastUntold = number;
      } else {
        ASSERT_TRUE(Read("x.html") == old);
        ASSERT_EQ(result.code, 2) << result.err;
        ASSERT_EQ(result.err, "kvo: error: There is not enough memory.\n");
        if (told++ == 0) firstTold = number;
      }
      if (!std::filesystem::exists(mark)) break;
    }
    EXPECT_LT(number, kMostCalls);
    EXPECT_GT(told, 20);
    EXPECT_LT(lastUntold, firstTold);
    EXPECT_LE(untold, 15);
    std::cout << number - 1 << " allocations, " << told << " of them reported, " << untold
              << " before main()\n";
  }
}

}  // namespace
}  // namespace kvo::test
