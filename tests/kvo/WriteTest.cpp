#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using SaveCommand = Program;
using PublishCommand = Program;
using BadPage = Program;
namespace fs = std::filesystem;

std::string RandomBytes(std::size_t size) {
  std::mt19937 random(20040423);
  std::string bytes;
  while (bytes.size() < size) bytes += static_cast<char>(random());
  return bytes;
}

// Pages with a control that cannot be loaded.
const std::string kUnknownClass = "<object classid=\"progid:KVOPDesignObjects.DTCPrnt\"></object>";
const std::string kUnknownKey =
    "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"><param name=\"vlaue\" "
    "value=\"x\"></object>";

TEST_F(SaveCommand, WritesSpansInPlaceAndKeepsEveryOtherByte) {
  Write("x.html", "<td>\r\n  " + PrintElement("a&amp;b") + "\n<p>\xE4 broken <");
  const Result result = Kvo({"save", "x.html"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(Read("x.html"),
            "<td>\r\n  <!--KVO CONTROL STARTSPAN 1 <object "
            "classid=\"progid:KVOPDesignObjects.DTCPrint\"><param name=\"value\" "
            "value=\"a&amp;b\"><param name=\"format\" value=\"\"></object>-->"
            "<kv:print value=\"a&amp;b\"/><!--KVO CONTROL ENDSPAN 1-->\n<p>\xE4 broken <");
  EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
}

TEST_F(SaveCommand, SavingTwiceGivesTheSameBytes) {
  Write("x.html", PrintElement("a") + Kvo({"new", "DTCProductList", "CacheObject=true"}).out +
                      Kvo({"new", "DTCScript", "HTMLContent=-->"}).out);
  ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
  const std::string once = Read("x.html");
  ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
  EXPECT_EQ(Read("x.html"), once);
}

TEST_F(SaveCommand, RandomBytesWithoutControlsAreUnchanged) {
  const std::string bytes = RandomBytes(100'000);
  Write("x.html", bytes);
  EXPECT_EQ(Kvo({"save", "x.html"}).code, 0);
  EXPECT_EQ(Read("x.html"), bytes);
  EXPECT_EQ(Kvo({"publish", "x.html", "-o", "y.html"}).code, 0);
  EXPECT_EQ(Read("y.html"), bytes);
}

TEST_F(SaveCommand, ReadsStandardInputAndWritesStandardOutput) {
  const std::string page = PrintElement("x");
  const Result piped = Kvo({"save", "-"}, page);
  EXPECT_EQ(piped.code, 0) << piped.err;
  Write("x.html", page);
  ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
  EXPECT_EQ(piped.out, Read("x.html"));
}

TEST_F(SaveCommand, OutputToTheInputIsSafe) {
  Write("x.html", PrintElement("x"));
  EXPECT_EQ(Kvo({"save", "x.html", "-o", "x.html"}).code, 0);
  const std::string saved = Read("x.html");
  EXPECT_NE(saved.find("<kv:print value=\"x\"/>"), std::string::npos);
  for (const char* output : {"./x.html", ".", "../work/"}) {
    Write("x.html", PrintElement("x"));
    EXPECT_EQ(Kvo({"save", "x.html", "-o", output}).code, 0) << output;
    EXPECT_EQ(Read("x.html"), saved) << output;
  }
}

TEST_F(SaveCommand, NeverOverwritesAnotherPageOfTheCommand) {
  for (const char* folder : {"in", "in/sub"}) fs::create_directory(Folder() / "work" / folder);
  Write("in/sub/x.html", PrintElement("sub"));
  Write("in/x.html", PrintElement("in"));
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"save", "in/sub/x.html", "in/x.html", "-o", "in"},
           {"save", "in/x.html", "in/sub/x.html", "-o", "in/"},
           {"publish", "in/sub/x.html", "in/x.html", "-o", "in/sub/.."}}) {
    EXPECT_EQ(Kvo(command).code, 2);
    EXPECT_EQ(Read("in/sub/x.html"), PrintElement("sub"));
    EXPECT_EQ(Read("in/x.html"), PrintElement("in"));
  }
}

TEST_F(SaveCommand, PagesLinkedToTheSameFileDoNotOverwriteEachOther) {
  fs::create_directory(Folder() / "work/out");
  Write("a.html", PrintElement("a"));
  Write("b.html", PrintElement("b"));
  fs::create_symlink("a.html", Folder() / "work/out/b.html");
  const Result result = Kvo({"publish", "a.html", "b.html", "-o", "out"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("\"out/b.html\" was not written"), std::string::npos) << result.err;
  EXPECT_EQ(Read("out/a.html"), "<kv:print value=\"a\"/>");
  // Saving in place loses nothing.
  fs::create_symlink("a.html", Folder() / "work/c.html");
  EXPECT_EQ(Kvo({"save", "a.html", "./a.html", "c.html"}).code, 0);
  EXPECT_TRUE(fs::is_symlink(Folder() / "work/c.html"));
}

TEST_F(PublishCommand, NeverOverwritesAPageThatItReads) {
  fs::create_directory(Folder() / "work/out");
  const std::string page = PrintElement("x");
  Write("x.html", page);
  Write("y.html", PrintElement("y"));
  fs::create_symlink("x.html", Folder() / "work/link.html");
  fs::create_symlink("link.html", Folder() / "work/link2.html");
  fs::create_symlink("../x.html", Folder() / "work/out/x.html");
  fs::create_hard_link(Folder() / "work/x.html", Folder() / "work/hard.html");
  fs::create_symlink(".", Folder() / "work/here");
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"x.html", "-o", "."},
                                             {"x.html", "-o", "./"},
                                             {"x.html", "-o", "x.html"},
                                             {"x.html", "-o", "./x.html"},
                                             {"./x.html", "-o", "out/../x.html"},
                                             {"x.html", "-o", (Folder() / "work/x.html").string()},
                                             {"x.html", "-o", "link.html"},
                                             {"x.html", "-o", "link2.html"},
                                             {"link2.html", "-o", "x.html"},
                                             {"x.html", "-o", "hard.html"},
                                             {"hard.html", "-o", "x.html"},
                                             {"x.html", "-o", "here"},
                                             {"here/x.html", "-o", "."},
                                             {"x.html", "-o", "out"},
                                             {"y.html", "x.html", "-o", "out"},
                                             {"y.html", "x.html", "-o", "here"},
                                             {"-", "x.html", "-o", "out"},
                                             {"y.html", "-o", "y.html"}}) {
    std::vector<std::string> command{"publish"};
    command.insert(command.end(), words.begin(), words.end());
    SCOPED_TRACE(words[0] + ' ' + words[2]);
    const Result result = Kvo(command, page);
    EXPECT_EQ(result.code, 2);
    EXPECT_NE(result.err.find("-o"), std::string::npos) << result.err;
    EXPECT_EQ(Read("x.html"), page);
    EXPECT_EQ(Read("y.html"), PrintElement("y"));
  }
  EXPECT_NE(KvoGerman({"publish", "x.html", "-o", "."}).err.find("ginge verloren"),
            std::string::npos);
  EXPECT_EQ(Files(), (std::vector<std::string>{"hard.html", "here", "link.html", "link2.html",
                                               "out", "x.html", "y.html"}));
  EXPECT_FALSE(Exists("out/y.html")) << "nothing is started";
}

TEST_F(SaveCommand, HandEditedRuntimeTextIsRefusedUnlessForced) {
  Write("x.html", PrintElement("x"));
  ASSERT_EQ(Kvo({"save", "x.html"}).code, 0);
  std::string edited = Read("x.html");
  edited.replace(edited.find("<kv:print value=\"x\""), 19, "<kv:print value=\"y\"");
  Write("x.html", edited);
  const Result refused = Kvo({"save", "x.html"});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.err.find("[edited-by-hand]"), std::string::npos) << refused.err;
  EXPECT_EQ(Read("x.html"), edited);
  EXPECT_EQ(Kvo({"check", "x.html"}).code, 1);
  EXPECT_EQ(Kvo({"save", "--force", "x.html"}).code, 0);
  EXPECT_NE(Read("x.html").find("<kv:print value=\"x\"/>"), std::string::npos);
}

TEST_F(SaveCommand, SeveralPagesAreWrittenToAFolder) {
  Write("a.html", PrintElement("a"));
  Write("b.html", PrintElement("b"));
  fs::create_directory(Folder() / "work" / "out");
  EXPECT_EQ(Kvo({"save", "a.html", "b.html", "-o", "out"}).code, 0);
  EXPECT_NE(Read("out/a.html").find("<kv:print value=\"a\"/>"), std::string::npos);
  EXPECT_NE(Read("out/b.html").find("<kv:print value=\"b\"/>"), std::string::npos);
  EXPECT_EQ(Read("a.html"), PrintElement("a"));
}

TEST_F(SaveCommand, SeveralPagesCannotBeWrittenToOneFile) {
  Write("a.html", PrintElement("a"));
  Write("b.html", PrintElement("b"));
  const Result result = Kvo({"save", "a.html", "b.html", "-o", "c.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_FALSE(Exists("c.html"));
  EXPECT_EQ(Kvo({"save", "a.html", "b.html", "-o", "-"}).code, 2);
}

TEST_F(SaveCommand, PagesWithTheSameNameDoNotOverwriteEachOther) {
  for (const char* folder : {"1", "2", "out"}) fs::create_directory(Folder() / "work" / folder);
  Write("1/a.html", PrintElement("a"));
  Write("2/a.html", PrintElement("b"));
  const Result result = Kvo({"save", "1/a.html", "2/a.html", "-o", "out"});
  EXPECT_EQ(result.code, 2);
  EXPECT_FALSE(Exists("out/a.html"));
}

TEST_F(PublishCommand, WritesOnlyRuntimeText) {
  Write("x.html", "<b>" + PrintElement("x") + "</b>");
  EXPECT_EQ(Kvo({"publish", "x.html", "-o", "y.html"}).code, 0);
  EXPECT_EQ(Read("y.html"), "<b><kv:print value=\"x\"/></b>");
  EXPECT_EQ(Read("x.html"), "<b>" + PrintElement("x") + "</b>");
}

// Documented in docs/recipes.md.
TEST_F(PublishCommand, PrintsTheTagOfANewControl) {
  EXPECT_EQ(Kvo({"publish", "-"}, Kvo({"new", "DTCOrder", "Field=OrderID"}).out).out,
            "<kv:order field=\"OrderID\"/>\n");
}

TEST_F(PublishCommand, RequiresATargetRatherThanOverwritingThePage) {
  Write("x.html", PrintElement("x"));
  const Result result = Kvo({"publish", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("-o FILE"), std::string::npos) << result.err;
  EXPECT_EQ(Read("x.html"), PrintElement("x"));
}

TEST_F(BadPage, AllBrokenControlsAreReportedAtOnceAndThePageStays) {
  const std::string page =
      "<p>" + kUnknownClass + "</p>\n" + PrintElement("fine") + "\n  " + kUnknownKey;
  Write("x.html", page);
  for (const char* command : {"save", "check"}) {
    SCOPED_TRACE(command);
    const Result result = Kvo({command, "x.html"});
    EXPECT_EQ(result.code, 1);
    const std::string said = result.out + result.err;
    EXPECT_NE(said.find("x.html:1:4: error: DTCPrnt"), std::string::npos) << said;
    EXPECT_NE(said.find("[unknown-class]"), std::string::npos) << said;
    EXPECT_NE(said.find("x.html:3:"), std::string::npos) << said;
    EXPECT_NE(said.find("vlaue"), std::string::npos) << said;
    EXPECT_NE(said.find("[unknown-key]"), std::string::npos) << said;
  }
  EXPECT_EQ(Read("x.html"), page);
  EXPECT_EQ(Files(), std::vector<std::string>{"x.html"});
  EXPECT_EQ(Kvo({"publish", "x.html", "-o", "y.html"}).code, 1);
  EXPECT_FALSE(Exists("y.html"));
}

TEST_F(BadPage, ControlWhereHtmlHasNoElementsIsRefusedByEveryCommand) {
  const std::string page =
      "<html>\n<!--[if mso]>\n" + PrintElement("x", "Preis") + "\n<![endif]-->";
  Write("x.html", page);
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"check", "x.html"},
                                             {"save", "x.html"},
                                             {"save", "--force", "x.html"},
                                             {"publish", "x.html", "-o", "y.html"}}) {
    const Result result = Kvo(arguments);
    EXPECT_EQ(result.code, 1);
    EXPECT_NE((result.out + result.err)
                  .find("x.html:3:1: error: DTCPrint \"Preis\": A control cannot stand inside a "
                        "conditional comment that begins in line 2: it would reach the recipient "
                        "raw. Write this instead: <kv:print value=\"x\"/> [misplaced-control]"),
              std::string::npos)
        << result.out << result.err;
  }
  EXPECT_NE(KvoGerman({"check", "x.html"}).out.find("der in Zeile 2 beginnt, stehen: "),
            std::string::npos);
  EXPECT_EQ(Read("x.html"), page);
  EXPECT_FALSE(Exists("y.html"));
}

TEST_F(BadPage, ProblemsAreReportedInGerman) {
  Write("x.html", kUnknownClass);
  const Result result = KvoGerman({"check", "x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.out.find("x.html:1:1: Fehler: "), std::string::npos) << result.out;
}

TEST_F(BadPage, OneBrokenPageDoesNotHideTheOthers) {
  Write("a.html", kUnknownClass);
  Write("b.html", PrintElement("b"));
  Write("c.html", kUnknownKey);
  const Result result = Kvo({"save", "a.html", "missing.html", "b.html", "c.html"});
  EXPECT_EQ(result.code, 2);
  for (const char* file : {"a.html:1:1", "missing.html", "c.html:1:"})
    EXPECT_NE(result.err.find(file), std::string::npos) << result.err;
  EXPECT_NE(Read("b.html").find("<kv:print value=\"b\"/>"), std::string::npos);
}

TEST_F(BadPage, MissingFilesAndFoldersAreFailuresWithTheirName) {
  fs::create_directory(Folder() / "work" / "folder");
  Write("x.html", PrintElement("x"));
  for (const auto& arguments :
       std::vector<std::vector<std::string>>{{"save", "missing.html"},
                                             {"save", "folder"},
                                             {"inspect", "folder"},
                                             {"check", "missing.html"},
                                             {"save", "x.html", "-o", "gone/x.html"},
                                             {"set", "missing.html", "A", "Value=x"},
                                             {"picture", "missing.html", "-o", "pictures"}}) {
    const Result result = Kvo(arguments);
    EXPECT_EQ(result.code, 2) << arguments[1];
    const std::string& name =
        arguments.size() == 4 && arguments[2] == "-o" && arguments[0] == "save" ? arguments[3]
                                                                                : arguments[1];
    EXPECT_NE(result.err.find(name), std::string::npos) << result.err;
  }
  EXPECT_EQ(Read("x.html"), PrintElement("x"));
}

TEST_F(BadPage, ReadOnlyFileIsAFailureAndStays) {
  Write("x.html", PrintElement("x"));
  fs::permissions(Folder() / "work" / "x.html", fs::perms::owner_read);
  const Result result = Kvo({"save", "x.html"});
  EXPECT_EQ(Read("x.html"), PrintElement("x"));
  EXPECT_EQ(result.code, 2) << result.err;
  EXPECT_NE(result.err.find("x.html"), std::string::npos) << result.err;
}

TEST_F(BadPage, Utf16IsRefusedWithAHint) {
  const std::string page("\xFF\xFE<\0p\0>\0", 8);
  Write("x.html", page);
  const Result result = Kvo({"save", "x.html"});
  EXPECT_NE(result.code, 0);
  EXPECT_NE(result.err.find("UTF-8"), std::string::npos) << result.err;
  EXPECT_EQ(Read("x.html"), page);
}

TEST_F(BadPage, OneByteEncodingsAreKept) {
  const std::string head = "<meta charset=\"windows-1252\"><p>\x80 \xFC</p>";
  Write("x.html", head + PrintElement("\x80 \xFC"));
  EXPECT_EQ(Kvo({"publish", "x.html", "-o", "y.html"}).code, 0);
  EXPECT_EQ(Read("y.html"), head + "<kv:print value=\"\x80 \xFC\"/>");
}

TEST_F(BadPage, UnencodableRuntimeTextIsReportedWithItsPlace) {
  const std::string page = "<meta charset=\"iso-8859-1\">\n" + PrintElement("&#x20AC;", "Preis");
  Write("x.html", page);
  const Result result = Kvo({"save", "x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("x.html:2:1: error: DTCPrint \"Preis\""), std::string::npos)
      << result.err;
  EXPECT_EQ(Read("x.html"), page);
}

TEST_F(BadPage, FailingControlIsReportedWithItsPlace) {
  const std::string page =
      "\n <object classid=\"progid:KVOPDesignObjects.DTCElement\" id=\"Zelle\"><param "
      "name=\"value\" value=\"td\"><param name=\"attributes\" value=\"align\"></object>";
  Write("x.html", page);
  const Result result = Kvo({"save", "x.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("x.html:2:2: error: DTCElement \"Zelle\""), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("[control-fails]"), std::string::npos) << result.err;
  EXPECT_EQ(Read("x.html"), page);
}

}  // namespace
}  // namespace kvo::test
