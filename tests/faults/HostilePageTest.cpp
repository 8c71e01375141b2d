// A page that tries to reach the machine, read by every command. None may open a connection, start
// another program, or read or write a file that the user did not name.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/faults/Faults.h"
#include "tests/faults/Traced.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

// Everything that a reader of HTML or XML, a template engine or a shell might follow.
constexpr const char* kHostilePage = R"(<?xml version="1.0"?>
<!DOCTYPE html [<!ENTITY passwords SYSTEM "file:///etc/passwd">
<!ENTITY % more SYSTEM "http://127.0.0.1:9/more.dtd">%more;
<!ENTITY a "&a;&a;&a;&a;">]>
<html><head><meta charset="utf-8"><base href="http://127.0.0.1:9/">
<meta http-equiv="refresh" content="0;url=http://127.0.0.1:9/">
<link rel="stylesheet" href="../outside.css"><link rel="preload" href="//127.0.0.1:9/x">
<style>@import url(file:///etc/passwd); body { background: url(http://127.0.0.1:9/b.png) }</style>
<script src="http://127.0.0.1:9/a.js"></script>
<script>fetch("secret.txt"); new ActiveXObject("WScript.Shell").Run("touch pwned")</script>
<!--#include file="secret.txt"--><!--#exec cmd="touch pwned"--><?php system("touch pwned"); ?>
<xi:include href="secret.txt" parse="text"/></head>
<body background="\\127.0.0.1\share\x.png" onload="location='http://127.0.0.1:9/'">
<img src="http://127.0.0.1:9/a.png"><img src="file:///etc/passwd"><img src="../outside.css">
<iframe src="secret.txt"></iframe><embed src="http://127.0.0.1:9/x.swf">
<object data="http://127.0.0.1:9/x.swf"></object><object data="file:///etc/passwd"></object>
<object classid="clsid:00000000-0000-0000-0000-000000000001" codebase="http://127.0.0.1:9/x.cab">
</object>
&passwords; %more; &a; $(touch pwned) `touch pwned` ${jndi:ldap://127.0.0.1:9/x}
<object classid="progid:KVOPDesignObjects.DTCPrint" id="../../pwned"><param name="value"
value="&passwords;$(touch pwned)`touch pwned`|touch pwned;../secret.txt"></object>
<object classid="progid:KVOPDesignObjects.DTCPrint" id="/etc/pwned"><param name="value"
value="file:///etc/passwd"></object>
<object classid="progid:KVOPDesignObjects.DTCScript" id="script"><param name="html-content"
value="<script src='http://127.0.0.1:9/a.js'></script><?php system('touch pwned'); ?>"></object>
<object classid="progid:KVOPDesignObjects.DTCProductList" id="liste"><param
name="selected-products" value="../secret.txt"><param name="shop-http-url"
value="http://127.0.0.1:9/"><param name="images-http-url" value="file:///etc/"></object>
<object classid="progid:KVOPDesignObjects.DTCClicktracker" id="link"><param name="html-content"
value="<img src=http://127.0.0.1:9/a.png>"><param name="href"
value="file:///etc/passwd"><param name="click-id" value="x"></object>
</body></html>
)";

// The same, with controls that themselves point to other files. It need not be savable.
const std::string kPointingControls =
    "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" data=\"http://127.0.0.1:9/x\" "
    "codebase=\"file:///etc/passwd\" archive=\"secret.txt\"><param name=\"value\" "
    "value=\"x\" valuetype=\"ref\" src=\"secret.txt\"></object>";

// Returns why programs cannot be traced here; empty if they can.
std::string WhyNotTraced() {
  if (std::system("command -v strace >/dev/null") != 0) return "strace is not installed";
  if (std::system("strace -o /dev/null true 2>/dev/null") != 0) return "tracing is forbidden here";
  return {};
}

class HostilePage : public Faults {
 protected:
  void SetUp() override {
    const std::string reason = WhyNotTraced();
    ASSERT_NE(reason, "strace is not installed");
    if (!reason.empty()) GTEST_SKIP() << reason;
    UseProgram("/usr/bin/strace");
    Write("x.html", kHostilePage);
    Write("y.html", kHostilePage + kPointingControls);
    Write("office.json", R"({"contactFields": [], "shopDatabase": "sqlite3://shop.db"})");
    Write("preview.json", R"({"records": [{"name": "../../pwned", "customer": {"Name":
          "<script src='http://127.0.0.1:9/a.js'></script>"}, "order": {"positions": []}}],
          "query": "SELECT * FROM Customers"})");
    Write("talk.txt", "open liste\n");
    Write("secret.txt", "secret");
    std::ofstream(Folder() / "outside.css") << "secret";
    fs::create_directory(Folder() / "work/out");
  }

  // Returns the system calls of the command that violate `bounds`.
  std::vector<std::string> Traced(const std::vector<std::string>& command, const Bounds& bounds) {
    const std::string trace = (Folder() / "trace").string();
    std::vector<std::string> words = {"-f", "-qq",        "-s", "4096",
                                      "-o", trace,        "-e", "trace=%file,%network,%process",
                                      "-e", "signal=none"};
    words.insert(words.end(), command.begin(), command.end());
    // The leak detector does not work under strace.
    result_ = Kvo(words, "", {{"ASAN_OPTIONS", "detect_leaks=0"}});
    std::ostringstream text;
    text << std::ifstream(trace).rdbuf();
    EXPECT_NE(text.str().find("execve("), std::string::npos) << "nothing was traced";
    return Oversteps(text.str(), bounds);
  }

  Bounds BoundsOf(std::set<fs::path> reads, std::set<fs::path> writes) const {
    const fs::path work = Folder() / "work";
    Bounds bounds{work, {}, {}, {KVO_PROGRAM}};
    for (const fs::path& file : reads) bounds.reads.insert(work / file);
    for (const fs::path& folder : writes)
      bounds.writes.insert(folder == "." ? work : work / folder);
    return bounds;
  }

  // Runs kvo and expects it to stay within bounds.
  void ExpectInBounds(std::vector<std::string> arguments, const Bounds& bounds, int code) {
    std::string line;
    for (const std::string& word : arguments) line += word + ' ';
    SCOPED_TRACE(line);
    arguments.insert(arguments.begin(), KVO_PROGRAM);
    EXPECT_EQ(Traced(arguments, bounds), std::vector<std::string>());
    EXPECT_EQ(result_.code, code) << result_.err;
    EXPECT_FALSE(Exists("pwned"));
  }

  Result result_;
};

TEST_F(HostilePage, ReadingItReachesNothing) {
  const Bounds reading = BoundsOf({"x.html", "y.html", "office.json"}, {});
  ExpectInBounds({"inspect", "x.html"}, reading, 0);
  ExpectInBounds({"inspect", "x.html", "--json"}, reading, 0);
  for (const auto& [page, code] : {std::pair{"x.html", 0}, std::pair{"y.html", 1}}) {
    ExpectInBounds({"check", page}, reading, code);
  }
  ExpectInBounds({"save", "x.html", "-o", "-"}, reading, 0);
  ExpectInBounds({"diff", "x.html", "y.html"}, reading, 1);
  ExpectInBounds({"diff", "--textconv", "x.html"}, reading, 0);
  // Only one side changed, which needs no git.
  ExpectInBounds({"merge", "x.html", "x.html", "y.html", "-o", "-"}, reading, 0);
}

TEST_F(HostilePage, WritesOnlyWhereTheUserAllowed) {
  const Bounds out = BoundsOf({"x.html", "y.html"}, {"out"});
  ExpectInBounds({"publish", "x.html", "-o", "out/p.html"}, out, 0);
  ExpectInBounds({"save", "x.html", "-o", "out/s.html"}, out, 0);
  ExpectInBounds({"picture", "x.html", "-o", "out"}, out, 0);
  // The database is left alone, though an office beside the page names one.
  const Bounds previews = BoundsOf({"x.html", "y.html", "office.json", "preview.json"}, {"out"});
  ExpectInBounds({"preview", "x.html", "-o", "out/v.html"}, previews, 0);
  ExpectInBounds({"preview", "x.html", "-o", "out"}, previews, 2);  // without the query's rows
  ExpectInBounds({"preview", "y.html", "--all-branches", "--width", "360", "-o", "out"}, previews,
                 1);
  // Saving in place writes the page and its replacement, both in the page's folder.
  ExpectInBounds({"save", "x.html"}, BoundsOf({"x.html"}, {"."}), 0);
  ExpectInBounds({"set", "x.html", "script", "DisplayValue=../../x"}, BoundsOf({"x.html"}, {"."}),
                 0);
  EXPECT_EQ(Files(), (std::vector<std::string>{"office.json", "out", "preview.json", "secret.txt",
                                               "talk.txt", "x.html", "y.html"}));
  EXPECT_EQ(Read("secret.txt"), "secret");
  EXPECT_EQ(Read("out/p.html").find("root:"), std::string::npos);
  // Names of controls cannot lead out of the folder.
  for (const auto& entry : fs::directory_iterator(Folder() / "work/out"))
    EXPECT_TRUE(entry.is_regular_file()) << entry.path();
}

TEST_F(HostilePage, AnOfficeReachesOnlyItsShopAndStartsNoProgram) {
  const Bounds without = BoundsOf({"x.html", "talk.txt"}, {"out"});
  ExpectInBounds({"pages", "DTCProductList", "-o", "out"}, without, 0);
  ExpectInBounds({"script", "x.html", "talk.txt"}, without, 0);
  const Bounds with = BoundsOf({"x.html", "office.json", "talk.txt", "shop.db"}, {"out"});
  ExpectInBounds({"pages", "DTCProductList", "--office", "office.json", "-o", "out"}, with, 0);
  ExpectInBounds({"script", "x.html", "talk.txt", "--office", "office.json"}, with, 0);
  ExpectInBounds({"check", "x.html", "--office", "office.json", "--json"}, with, 0);
}

// Not even when the system's driver cannot be loaded.
TEST_F(Faults, ALibraryNextToThePageIsNotLoadedAsADriver) {
  constexpr const char* kDriver = "libsoci_sqlite3.so.4.0";
  Write("office.json", R"({"shopDatabase": "sqlite3://shop.db"})");
  Write("x.html", ControlElement("DTCProductList", {{"selected-products", "P-1"}}));
  fs::copy_file(KVO_FAILING_CALLS, Folder() / "work" / kDriver);
  fs::create_directory(Folder() / "drivers");
  std::ofstream(Folder() / "drivers" / kDriver);  // not a library, and found before the system's
  const Result result = Kvo({"check", "x.html", "--office", "office.json"}, "",
                            {{"LD_LIBRARY_PATH", (Folder() / "drivers").string()}});
  EXPECT_NE(result.out.find("[products-not-checked]"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("Failed to resolve"), std::string::npos) << result.out;
}

// Runs on a terminal, which `script` provides.
TEST_F(Faults, APageCannotControlTheTerminal) {
  const std::string clear = "\x1B[2J\x1B]0;title\x07\x7F\b\r";
  Write("x.html", PrintElement("a" + clear +
                                   "\xC2\x9B"
                                   "b",
                               "id" + clear) +
                      "<object classid=\"progid:KVOPDesignObjects.DTC" + clear + "\"></object>");
  const std::string inFile = Kvo({"inspect", "x.html"}).out;
  EXPECT_NE(inFile.find('\x1B'), std::string::npos) << "the page must contain escapes";
  UseProgram("/usr/bin/script");
  for (const char* command : {"inspect", "check", "save"}) {
    const Result result =
        Kvo({"-qec", std::string(KVO_PROGRAM " ") + command + " x.html", "/dev/null"}, "",
            {{"NO_COLOR", "1"}, {"TERM", "xterm"}});
    EXPECT_NE(result.out.find("[unknown-class]"), std::string::npos) << result.out << result.err;
    for (const char c : {'\x1B', '\x07', '\x7F', '\b'})
      EXPECT_EQ(result.out.find(c), std::string::npos) << command << int{c};
    EXPECT_EQ(result.out.find("\xC2\x9B"), std::string::npos) << command;
    EXPECT_NE(result.out.find("\xEF\xBF\xBD"), std::string::npos) << command;
  }
}

// Tests the judge with programs that do what kvo must not.
TEST_F(HostilePage, ViolationsAreDetected) {
  Bounds bounds = BoundsOf({"x.html"}, {"out"});
  bounds.starts = {"/bin/bash"};
  const auto seen = [&](const std::string& script) {
    return Traced({"/bin/bash", "-c", script}, bounds);
  };
  const auto names = [&](const std::string& script, const std::string& part) {
    const std::vector<std::string> oversteps = seen(script);
    return std::ranges::any_of(
        oversteps, [&](const std::string& line) { return line.find(part) != std::string::npos; });
  };
  EXPECT_TRUE(names("exec 3<>/dev/tcp/127.0.0.1/9", "connect("));
  EXPECT_TRUE(names("exec 3</etc/passwd", "/etc/passwd"));
  EXPECT_TRUE(names("exec 3<secret.txt", "secret.txt"));
  EXPECT_TRUE(names("exec 3<out/../../outside.css", "outside.css"));
  EXPECT_TRUE(names("exec 3>../outside", "outside"));
  EXPECT_TRUE(names("exec 3>out/../z", "out/../z"));
  EXPECT_TRUE(names("(exec 3>out/z); :", "clone"));
  EXPECT_TRUE(names("exec /bin/true", "/bin/true"));
  EXPECT_TRUE(names("exec /bin/ln -s x.html out/z", "symlink"));
  EXPECT_TRUE(names("exec /bin/mv x.html z", "rename"));
  EXPECT_FALSE(names("exec 3<x.html 4>out/z", "x.html"));
  EXPECT_FALSE(names("exec 3<x.html 4>out/z", "out/z"));
}

}  // namespace
}  // namespace kvo::test
