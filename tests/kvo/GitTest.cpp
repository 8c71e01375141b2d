// kvo diff and kvo merge, by themselves and as the real git runs them.
#include <cstdlib>
#include <random>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

namespace fs = std::filesystem;

class CompareCommands : public Program {
 protected:
  static std::string Price(const std::string& value, const std::string& format,
                           const std::string& id = "Preis") {
    return ControlElement("DTCPrint", {{"value", value}, {"format", format}}, id);
  }
};

using DiffCommand = CompareCommands;
using MergeCommand = CompareCommands;

TEST_F(DiffCommand, TellsChangesByControlAndProperty) {
  Write("old.html", "<p>" + Price("x", "#,##0") + "</p>\n");
  Write("new.html", "<p>" + Price("x", "#,##0.00") + "</p>\n<p>2</p>\n");
  const Result result = Kvo({"diff", "old.html", "new.html"});
  EXPECT_EQ(result.out, "Preis: Format #,##0 -> #,##0.00\ntext: line 2 added\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(KvoGerman({"diff", "-", "new.html"}, Read("old.html")).out,
            "Preis: Format #,##0 -> #,##0.00\nText: Zeile 2 neu\n");
  const Result same = Kvo({"diff", "old.html", "old.html"});
  EXPECT_EQ(same.out, "");
  EXPECT_EQ(same.code, 0);
}

TEST_F(DiffCommand, JsonHasKindsPlacesAndWholeValues) {
  Write("old.html", Price("x", "0") + Price("y", "0", "B") + "\n1\n");
  Write("new.html", Price(std::string(99, 'z'), "0") + "\n2\n");
  EXPECT_EQ(Kvo({"diff", "old.html", "new.html", "--json"}).out,
            R"({
  "differences": [
    {
      "kind": "removed",
      "id": "B",
      "class": "DTCPrint",
      "old": {
        "line": 1,
        "column": 134
      },
      "new": null
    },
    {
      "kind": "changed",
      "id": "Preis",
      "class": "DTCPrint",
      "old": {
        "line": 1,
        "column": 1
      },
      "new": {
        "line": 1,
        "column": 1
      },
      "properties": [
        {
          "name": "Value",
          "old": "x",
          "new": ")" +
                std::string(99, 'z') +
                R"("
        }
      ]
    },
    {
      "kind": "text",
      "oldLines": {
        "first": 2,
        "count": 1
      },
      "newLines": {
        "first": 2,
        "count": 1
      }
    }
  ]
}
)");
}

TEST_F(DiffCommand, TellsWhenControlsCannotBeRead) {
  Write("old.html", "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">");
  const Result result = Kvo({"diff", "old.html", "-"}, Price("x", "0"));
  EXPECT_EQ(result.out, "text: line 1 removed\nPreis: added, DTCPrint in line 1\n");
  EXPECT_EQ(result.err,
            "old.html: what cannot be read as a control is compared as text; \"kvo check\" says "
            "what is wrong with it.\n");
}

TEST_F(DiffCommand, WrongUseIsAFailure) {
  Write("x.html", "");
  EXPECT_EQ(Kvo({"diff", "x.html"}).code, 2);
  EXPECT_EQ(Kvo({"diff", "x.html", "no.html"}).code, 2);
  EXPECT_EQ(Kvo({"diff", "x.html", "--textconv", "x.html"}).code, 2);
}

TEST_F(MergeCommand, WritesOverOursOrElsewhere) {
  Write("base.html", Price("x", "0"));
  Write("ours.html", Price("y", "0"));
  Write("theirs.html", Price("x", "1"));
  const std::vector<std::string> merge = {"merge", "base.html", "ours.html", "theirs.html"};
  std::vector<std::string> elsewhere = merge;
  elsewhere.insert(elsewhere.end(), {"-o", "-"});
  const Result printed = Kvo(elsewhere);
  EXPECT_EQ(printed.out, Price("y", "1"));
  EXPECT_EQ(printed.code, 0);
  EXPECT_EQ(Read("ours.html"), Price("y", "0"));
  const Result result = Kvo(merge);
  EXPECT_EQ(result.err + result.out, "");
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(Read("ours.html"), Price("y", "1"));
}

TEST_F(MergeCommand, NamesConflictsAndTheVersionsInTheMarkers) {
  Write("base.html", Price("x", "0") + "\n");
  Write("ours.html", Price("x", "#,##0.00") + "\n");
  Write("theirs.html", Price("x", "#,##0.0") + "\n");
  const Result result = Kvo({"merge", "base.html", "ours.html", "theirs.html", "--marker-size", "9",
                             "--path", "mail.html", "--ours-name", "HEAD", "--theirs-name", "%Y"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "mail.html: conflict: Preis: Format: #,##0.00 | #,##0.0\n");
  EXPECT_EQ(Read("ours.html"), "<<<<<<<<< HEAD\n" + Price("x", "#,##0.00") + "\n=========\n" +
                                   Price("x", "#,##0.0") + "\n>>>>>>>>> theirs\n");
}

TEST_F(MergeCommand, AFailureLeavesOursAndIsNoConflictToGit) {
  Write("base.html", "1\n");
  Write("ours.html", "2\n");
  Write("theirs.html", "3\n");
  const Result noGit =
      Kvo({"merge", "base.html", "ours.html", "theirs.html"}, "", {{"PATH", "/nonexistent"}});
  EXPECT_EQ(noGit.code, 129);
  EXPECT_NE(noGit.err.find("\"git\" was not found"), std::string::npos) << noGit.err;
  EXPECT_EQ(Kvo({"merge", "base.html", "ours.html", "no.html"}).code, 129);
  EXPECT_EQ(Kvo({"merge", "base.html", "ours.html"}).code, 129);
  EXPECT_EQ(Kvo({"merge", "base.html", "ours.html", "theirs.html", "--marker-size", "x"}).code,
            129);
  EXPECT_EQ(Read("ours.html"), "2\n");
}

TEST_F(MergeCommand, PagesInUtf16KeepOurs) {
  const std::string mark = "\xFF\xFE";
  Write("base.html", mark + std::string("a\0", 2));
  Write("ours.html", mark + std::string("b\0", 2));
  Write("theirs.html", mark + std::string("c\0", 2));
  const Result result = Kvo({"merge", "base.html", "ours.html", "theirs.html"});
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find("ours.html: conflict in the text\n"), std::string::npos) << result.err;
  EXPECT_EQ(Read("ours.html"), mark + std::string("b\0", 2));
}

// Runs shell commands in a repository, apart from the user's settings of git.
class GitTest : public CompareCommands {
 protected:
  GitTest() {
    UseProgram("/bin/sh");
    Write(".gitattributes", "*.html diff=kvo merge=kvo\n");
    Write("x.html", Page("x", "0"));
    Run("git init -q -b main\n"
        "git config diff.kvo.textconv 'kvo diff --textconv'\n"
        "git config merge.kvo.driver 'kvo merge %O %A %B --marker-size %L --path %P'\n"
        "git add . && git commit -q -m base && git branch side");
    EXPECT_EQ(shown_, "");
  }

  static std::string Page(const std::string& value, const std::string& format,
                          const std::string& text = "Text") {
    return "<h1>" + text + "</h1>\n<p>" + Price(value, format) + "</p>\n";
  }

  // Stops at the first command that fails. Its exit code is returned, the output is in shown_.
  int Run(const std::string& commands) {
    const std::string path =
        fs::path(KVO_PROGRAM).parent_path().string() + ":" + std::getenv("PATH");
    const Result result = Kvo({"-e", "-c", commands}, "",
                              {{"PATH", path},
                               {"HOME", Folder().string()},
                               {"GIT_CONFIG_NOSYSTEM", "1"},
                               {"GIT_CONFIG_GLOBAL", "/dev/null"},
                               {"GIT_EDITOR", "true"},
                               {"GIT_AUTHOR_NAME", "Anna"},
                               {"GIT_AUTHOR_EMAIL", "anna@example.com"},
                               {"GIT_COMMITTER_NAME", "Anna"},
                               {"GIT_COMMITTER_EMAIL", "anna@example.com"}});
    shown_ = result.out + result.err;
    return result.code;
  }
  // Commits the page on both branches and ends on the first.
  void CommitBoth(const std::string& main, const std::string& side) {
    Write("main.txt", main);
    Write("side.txt", side);
    EXPECT_EQ(Run("git switch -q side && cp side.txt x.html && git add x.html\n"
                  "git commit -q -m 'their change'\n"
                  "git switch -q main && cp main.txt x.html && git add x.html\n"
                  "git commit -q -m 'our change'"),
              0)
        << shown_;
  }

  std::string shown_;
};

TEST_F(GitTest, DiffShowsPropertiesByLine) {
  Write("x.html", Page("x", "#,##0.00"));
  EXPECT_EQ(Run("git diff -U1 | sed 1,4d"), 0);
  EXPECT_EQ(shown_,
            "@@ -3,2 +3,2 @@\n"
            "     Preis: Value = x\n"
            "-    Preis: Format = 0\n"
            "+    Preis: Format = #,##0.00\n");
}

TEST_F(GitTest, MergesDifferentPropertiesOfOneControl) {
  CommitBoth(Page("y", "0"), Page("x", "1", "Neu"));
  EXPECT_EQ(Run("git merge -q -m merged side"), 0) << shown_;
  EXPECT_EQ(Read("x.html"), Page("y", "1", "Neu"));
  EXPECT_EQ(Run("git status --porcelain --untracked-files=no"), 0);
  EXPECT_EQ(shown_, "");
  // The same by rebasing and by picking.
  EXPECT_EQ(Run("git reset -q --hard HEAD^ && git rebase -q side"), 0) << shown_;
  EXPECT_EQ(Read("x.html"), Page("y", "1", "Neu"));
  EXPECT_EQ(Run("git reset -q --hard side && git cherry-pick ORIG_HEAD"), 0) << shown_;
  EXPECT_EQ(Read("x.html"), Page("y", "1", "Neu"));
}

TEST_F(GitTest, AConflictNamesThePropertyAndCanBeAborted) {
  CommitBoth(Page("x", "#,##0.00"), Page("x", "#,##0.0"));
  EXPECT_EQ(Run("git merge side"), 1);
  EXPECT_NE(shown_.find("x.html: conflict: Preis: Format: #,##0.00 | #,##0.0\n"), std::string::npos)
      << shown_;
  EXPECT_NE(shown_.find("CONFLICT"), std::string::npos) << shown_;
  EXPECT_EQ(Read("x.html"), "<h1>Text</h1>\n<<<<<<< ours\n<p>" + Price("x", "#,##0.00") +
                                "</p>\n=======\n<p>" + Price("x", "#,##0.0") +
                                "</p>\n>>>>>>> theirs\n");
  EXPECT_EQ(Run("git status --porcelain --untracked-files=no && git merge --abort"), 0);
  EXPECT_EQ(shown_, "UU x.html\n");
  EXPECT_EQ(Read("x.html"), Page("x", "#,##0.00"));
  // In a rebase, the sides have changed places.
  EXPECT_NE(Run("git rebase -q side"), 0);
  EXPECT_NE(shown_.find("Preis: Format: #,##0.0 | #,##0.00\n"), std::string::npos) << shown_;
  Write("x.html", Page("x", "#,##0.00"));
  EXPECT_EQ(Run("git add x.html && git rebase --continue && git log --format=%s"), 0) << shown_;
  EXPECT_NE(shown_.find("our change\ntheir change\nbase\n"), std::string::npos) << shown_;
}

TEST_F(GitTest, FollowsTheConflictStyleOfTheRepository) {
  CommitBoth(Page("y", "0"), Page("z", "0"));
  EXPECT_EQ(Run("git config merge.conflictStyle diff3; git merge -q side"), 1);
  EXPECT_EQ(Read("x.html"), "<h1>Text</h1>\n<<<<<<< ours\n<p>" + Price("y", "0") +
                                "</p>\n||||||| base\n<p>" + Price("x", "0") + "</p>\n=======\n<p>" +
                                Price("z", "0") + "</p>\n>>>>>>> theirs\n");
}

TEST_F(GitTest, PagesAddedOnBothSidesConflictOnlyWhereTheyDiffer) {
  Write("a.txt", Page("y", "0"));
  Write("b.txt", Page("y", "1"));
  EXPECT_EQ(Run("git switch -q side && cp a.txt new.html && git add new.html\n"
                "git commit -q -m side && git switch -q main && cp b.txt new.html\n"
                "git add new.html && git commit -q -m main"),
            0);
  EXPECT_EQ(Run("git merge -q side"), 1);
  EXPECT_NE(shown_.find("new.html: conflict: Preis: Format: 1 | 0\n"), std::string::npos) << shown_;
  EXPECT_EQ(Read("new.html"), "<h1>Text</h1>\n<<<<<<< ours\n<p>" + Price("y", "1") +
                                  "</p>\n=======\n<p>" + Price("y", "0") +
                                  "</p>\n>>>>>>> theirs\n");
}

TEST_F(GitTest, ADriverThatCrashesLosesNothing) {
  CommitBoth(Page("y", "0"), Page("x", "1"));
  for (const char* driver : {"kvo merge %O %A", "kvo merge %O %A %B --no-such", "kill -9 $$"}) {
    EXPECT_NE(Run("git config merge.kvo.driver '" + std::string(driver) + "'; git merge -q side"),
              0);
    EXPECT_EQ(Read("x.html"), Page("y", "0")) << driver;
    Run("git merge --abort || git reset -q --hard");
    EXPECT_EQ(Read("x.html"), Page("y", "0")) << driver;
  }
}

// Pages without controls come out as git's own merge writes them, byte for byte.
TEST_F(GitTest, TextMergesAsGitDoesIt) {
  std::mt19937 random(4);
  std::string script;
  constexpr int kTriples = 12;
  for (int triple = 0; triple < kTriples; ++triple) {
    const std::string lineEnd = triple % 3 == 0 ? "\r\n" : "\n";
    std::vector<std::string> base;
    for (std::size_t count = random() % 12; count > 0; --count)
      base.push_back(random() % 4 == 0 ? "" : "<p>" + std::to_string(random() % 6) + "</p>");
    for (const char* side : {"o", "a", "b"}) {
      std::string text;
      for (const std::string& line : base) {
        const auto chance = *side == 'o' ? 9 : random() % 10;
        if (chance != 0) text += (chance == 1 ? "=======" : line) + lineEnd;
        if (chance == 2) text += *side + lineEnd;
      }
      if (triple % 4 == 1) text += *side;  // without a line end
      Write(side + std::to_string(triple), text);
    }
  }
  const std::string size = "--marker-size=9";
  for (const char* style : {"merge", "diff3", "zdiff3"})
    script += "git config merge.conflictStyle " + std::string(style) + "\nfor i in $(seq 0 " +
              std::to_string(kTriples - 1) +
              "); do\n"
              "  git merge-file -p " +
              size +
              " -L ours -L base -L theirs a$i o$i b$i >git || true\n"
              "  kvo merge o$i a$i b$i " +
              size +
              " -o kvo 2>/dev/null || true\n"
              "  cmp git kvo || { echo " +
              style +
              " $i; exit 1; }\n"
              "done\n";
  EXPECT_EQ(Run(script + "echo equal"), 0);
  EXPECT_EQ(shown_, "equal\n");
}

}  // namespace
}  // namespace kvo::test
