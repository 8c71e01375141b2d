// Folders, patterns and many pages at once.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

class ManyPages : public Program {
 protected:
  void Make(const std::string& file, const std::string& bytes) const {
    fs::create_directories((Folder() / "work" / file).parent_path());
    Write(file, bytes);
  }
  // Pages of one warning each, so that `check` names them.
  void MakeFolder() const {
    for (const char* file : {"mails/b.html", "mails/a/x.HTM", "mails/a.html", "mails/c/d/e.htm",
                             "mails/.hidden/x.html", "mails/.x.html", "mails/notes.txt"})
      Make(file, kWarned);
    fs::create_directory_symlink("a", Folder() / "work/mails/link");
    fs::create_symlink("../b.html", Folder() / "work/mails/c/same.html");
  }
  // The pages that `check` works on, in the order in which it reports them.
  std::vector<std::string> Checked(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "check");
    arguments.emplace_back("--json");
    const Result result = Kvo(arguments);
    EXPECT_EQ(result.err, "");
    std::vector<std::string> files;
    const auto document = nlohmann::json::parse(result.out);
    for (const auto& problem : document["problems"]) files.push_back(problem["file"]);
    return files;
  }

  const std::string kWarned = PrintElement("a", "i") + PrintElement("a", "i");
};

using Names = std::vector<std::string>;

TEST_F(ManyPages, FoldersNameTheirPagesSortedByPath) {
  MakeFolder();
  EXPECT_EQ(Checked({"mails"}),
            (Names{"mails/a/x.HTM", "mails/a.html", "mails/b.html", "mails/c/d/e.htm"}));
  EXPECT_EQ(Checked({"mails/b.html", "mails/c/same.html", "mails/a/", "./mails//b.html", "mails"}),
            (Names{"mails/b.html", "mails/a/x.HTM", "mails/a.html", "mails/c/d/e.htm"}));
  EXPECT_EQ(Checked({"mails/.hidden"}), Names{"mails/.hidden/x.html"});
}

TEST_F(ManyPages, PatternsNameTheFilesThatMatch) {
  MakeFolder();
  EXPECT_EQ(Checked({"mails/*.html"}), (Names{"mails/a.html", "mails/b.html"}));
  EXPECT_EQ(Checked({"mails/?.htm?"}), (Names{"mails/a.html", "mails/b.html"}));
  EXPECT_EQ(Checked({"*/*/x.*"}), Names{"mails/a/x.HTM"});
  EXPECT_EQ(Checked({"mails/**/*.htm*"}),
            (Names{"mails/a.html", "mails/b.html", "mails/c/d/e.htm"}));
  EXPECT_EQ(Checked({"**/d/*"}), Names{"mails/c/d/e.htm"});
  EXPECT_EQ(Checked({"mails/.h*/*"}), Names{"mails/.hidden/x.html"});
  // A file of just that name is meant.
  Make("mails/*.html", kWarned);
  EXPECT_EQ(Checked({"mails/*.html"}), Names{"mails/*.html"});
}

TEST_F(ManyPages, NamingNothingIsAFailure) {
  fs::create_directories(Folder() / "work/empty/sub");
  for (const char* argument : {"empty", "empty/*.html", "gone/**"}) {
    const Result result = Kvo({"check", argument});
    EXPECT_EQ(result.code, 2) << argument;
    EXPECT_NE(result.err.find(argument), std::string::npos) << result.err;
  }
  EXPECT_NE(KvoGerman({"save", "empty"}).err.find("ist keine Seite"), std::string::npos);
  EXPECT_NE(KvoGerman({"save", "x*"}).err.find("passt keine Datei"), std::string::npos);
}

TEST_F(ManyPages, OutputKeepsThePathsBelowTheFolder) {
  MakeFolder();
  for (int run = 0; run < 2; ++run)  // the second must not take what the first wrote for pages
    ASSERT_EQ(Kvo({"publish", "mails", "-o", "mails/out"}).code, 0);
  const std::string published = "<kv:print value=\"a\"/><kv:print value=\"a\"/>";
  for (const char* file : {"a.html", "b.html", "a/x.HTM", "c/d/e.htm"})
    EXPECT_EQ(Read("mails/out/" + std::string(file)), published) << file;
  EXPECT_FALSE(Exists("mails/out/out"));
  EXPECT_EQ(Read("mails/b.html"), kWarned);
  ASSERT_EQ(Kvo({"publish", "mails/c/**/*.htm", "-o", "one"}).code, 0);
  EXPECT_EQ(Read("one/d/e.htm"), published);
  // Two pages with one target.
  const Result result =
      Kvo({"publish", "mails/a", "mails/a.html", "mails/c", "mails/d/../a.html", "-o", "two"});
  EXPECT_EQ(result.code, 0) << result.err;
  Make("other/a.html", kWarned);
  EXPECT_EQ(Kvo({"publish", "mails", "other", "-o", "three"}).code, 2);
  EXPECT_FALSE(Exists("three/a.html"));
}

TEST_F(ManyPages, ReportsComeInTheOrderOfThePages) {
  Names names;
  for (int i = 100; i < 200; ++i) {
    // Long ones between short ones, so that later pages are ready first.
    const std::string page = (i % 7 == 0 ? std::string(20'000, 'x') : "") + kWarned;
    names.push_back("p/" + std::to_string(i) + ".html");
    Make(names.back(), page);
  }
  EXPECT_EQ(Checked({"p"}), names);
  Names missing = names;
  missing.insert(missing.begin() + 50, "p/gone.html");
  missing.insert(missing.begin(), "check");
  const Result result = Kvo(missing);
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("\"p/gone.html\": There is no such file"), std::string::npos);
  ASSERT_EQ(Kvo({"save", "p"}).code, 0);
  const std::string saved = Read("p/101.html");
  EXPECT_NE(saved.find("<kv:print value=\"a\"/>"), std::string::npos);
  for (const std::string& name : names) EXPECT_TRUE(Read(name).ends_with(saved)) << name;
  EXPECT_EQ(std::distance(fs::directory_iterator(Folder() / "work/p"), fs::directory_iterator()),
            100);
}

TEST_F(ManyPages, OnePageWithErrorsDoesNotKeepTheOthersFromBeingWritten) {
  for (int i = 10; i < 40; ++i) Make("p/" + std::to_string(i) + ".html", kWarned);
  Make("p/25.html", ControlElement("DTCGone", {}));
  const Result result = Kvo({"publish", "p", "-o", "out"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("out/25.html was not written"), std::string::npos) << result.err;
  EXPECT_FALSE(Exists("out/25.html"));
  EXPECT_TRUE(Exists("out/24.html"));
  EXPECT_TRUE(Exists("out/26.html"));
  EXPECT_EQ(std::distance(fs::directory_iterator(Folder() / "work/out"), fs::directory_iterator()),
            29);
}

TEST_F(ManyPages, InspectAndPictureTakeFolders) {
  MakeFolder();
  const auto json = nlohmann::json::parse(Kvo({"inspect", "mails", "--json"}).out);
  ASSERT_EQ(json["pages"].size(), 4U);
  EXPECT_EQ(json["pages"][3]["file"], "mails/c/d/e.htm");
  EXPECT_EQ(json["pages"][3]["controls"].size(), 2U);
  const Result drawn = Kvo({"picture", "mails", "-o", "pictures"});
  EXPECT_EQ(drawn.code, 0) << drawn.err;
  EXPECT_TRUE(drawn.out.starts_with("pictures/a/x/1-i.svg\npictures/a/x/2-i.svg\n")) << drawn.out;
  EXPECT_TRUE(Exists("pictures/c/d/e/1-i.svg"));
}

// Waits for the first page to be read from a pipe; the other pages are finished by then.
TEST_F(ManyPages, InterruptionEndsBetweenPages) {
  ASSERT_EQ(mkfifo((Folder() / "work/pipe.html").c_str(), 0600), 0);
  Names command = {"check", "a.html", "pipe.html"};
  Write("a.html", kWarned);
  Write("z.html", kWarned);
  command.emplace_back("z.html");
  const pid_t kvo = Start(command);
  const int pipe = open((Folder() / "work/pipe.html").c_str(), O_WRONLY);
  kill(kvo, SIGINT);
  close(pipe);  // ends the page that is being read
  const Result result = Finish(kvo);
  EXPECT_EQ(result.code, 128 + SIGINT);
  EXPECT_NE(result.err.find("kvo: Interrupted after "), std::string::npos) << result.err;
  EXPECT_NE(result.err.find(" of 3 pages."), std::string::npos) << result.err;
  EXPECT_EQ(Files(), (std::vector<std::string>{"a.html", "pipe.html", "z.html"}));
}

}  // namespace
}  // namespace kvo::test
