#include "document/compare/Merge.h"

#include <algorithm>
#include <random>

#include "fuzz/CompareRules.h"
#include "fuzz/LineMerge.h"
#include "tests/compare/Controls.h"

namespace kvo::compare {
namespace {

using page::List;
using page::Param;
using page::Span;

class MergeTest : public page::PageTest {
 protected:
  // The merged page; lines of conflicts in `conflicts`.
  std::string Merged(const std::string& base, const std::string& ours, const std::string& theirs) {
    result = Merge(base, ours, theirs, MergeLines, 7);
    conflicts.clear();
    for (const Message& conflict : result.conflicts) conflicts.push_back(conflict.english);
    return result.bytes;
  }
  // Expects a merge without conflicts, whichever side is which.
  void ExpectMerged(const std::string& base, const std::string& ours, const std::string& theirs,
                    const std::string& merged) {
    EXPECT_EQ(Merged(base, ours, theirs), merged);
    EXPECT_TRUE(result.IsClean());
    EXPECT_EQ(conflicts, List());
    EXPECT_FALSE(result.asText);
    EXPECT_EQ(Merged(base, theirs, ours), merged);
    EXPECT_TRUE(result.IsClean());
  }

  compare::Merged result;
  List conflicts;
};

std::string Markers(const std::string& ours, const std::string& theirs) {
  return "<<<<<<< side\n" + ours + "======= side\n" + theirs + ">>>>>>> side\n";
}

TEST_F(MergeTest, PropertiesOfOneControlMerge) {
  ExpectMerged("<p>" + Print("A", "x", "0") + "</p>\n", "<p>" + Print("A", "y", "0") + "</p>\n",
               "<p>" + Print("A", "x", "1") + "</p>\n", "<p>" + Print("A", "y", "1") + "</p>\n");
}

TEST_F(MergeTest, ASavedControlGetsTheTextOfItsMergedProperties) {
  ExpectMerged(SavedPrint("A", "x", "0"), SavedPrint("A", "y", "0"), SavedPrint("A", "x", "1"),
               SavedPrint("A", "y", "1"));
}

TEST_F(MergeTest, SavingOnOneSideMergesWithAChangeOnTheOther) {
  ExpectMerged(Print("A", "x", "0"), SavedPrint("A", "x", "0"), Print("A", "x", "1"),
               SavedPrint("A", "x", "1"));
}

TEST_F(MergeTest, ControlsOfOneLineAndTextBesideThemMerge) {
  const std::string between = "</td><td>";
  const std::string base = "<tr>" + Print("A", "a") + between + Print("", "b") + "</tr>\n";
  ExpectMerged(base, "<tr>" + Print("A", "1") + between + Print("", "b") + "</tr>\n",
               "<tr>" + Print("A", "a") + between + Print("", "2") + "</tr>\n",
               "<tr>" + Print("A", "1") + between + Print("", "2") + "</tr>\n");
  ExpectMerged(base, "<tr class=x>" + Print("A", "a") + between + Print("", "b") + "</tr>\n",
               "<tr>" + Print("A", "a") + between + Print("", "2") + "</tr>\n",
               "<tr class=x>" + Print("A", "a") + between + Print("", "2") + "</tr>\n");
}

TEST_F(MergeTest, AMovedControlKeepsTheChangeOfTheOtherSide) {
  ExpectMerged("<p>" + Print("A", "a") + "</p>\n<b>1</b>\n<b>2</b>\n<b>3</b>\n",
               "<p></p>\n<b>1</b>\n<b>2</b>\n<b>3" + Print("A", "a") + "</b>\n",
               "<p>" + Print("A", "c") + "</p>\n<b>1</b>\n<b>2</b>\n<b>3</b>\n",
               "<p></p>\n<b>1</b>\n<b>2</b>\n<b>3" + Print("A", "c") + "</b>\n");
}

TEST_F(MergeTest, NewControlsAtTwoPlacesOfOneLineMerge) {
  const std::string a = Print("A", "a");
  const std::string b = Print("B", "b");
  ExpectMerged("<p>x</p>\n", "<p>" + a + "x</p>\n", "<p>x" + b + "</p>\n",
               "<p>" + a + "x" + b + "</p>\n");
  ExpectMerged("<p>" + a + "x</p>\n", "<p>x</p>\n", "<p>" + a + "x" + b + "</p>\n",
               "<p>x" + b + "</p>\n");
  // At one place, the order would be a guess.
  Merged("<p>x</p>\n", "<p>" + a + "x</p>\n", "<p>" + b + "x</p>\n");
  EXPECT_TRUE(result.textConflicts);
}

TEST_F(MergeTest, TwoValuesOfOnePropertyConflict) {
  EXPECT_EQ(Merged("1\n<p>" + Print("Preis", "x", "#,##0") + "</p>\n2\n",
                   "1\n<p>" + Print("Preis", "x", "#,##0.00") + "</p>\n2\n",
                   "1\n<p>" + Print("Preis", "x", "#,##0.0") + "</p>\n2\n"),
            "1\n" +
                Markers("<p>" + Print("Preis", "x", "#,##0.00") + "</p>\n",
                        "<p>" + Print("Preis", "x", "#,##0.0") + "</p>\n") +
                "2\n");
  EXPECT_EQ(conflicts, List{"Preis: Format: #,##0.00 | #,##0.0"});
}

TEST_F(MergeTest, WhatMergedBesideAConflictIsOnBothSides) {
  const std::string end = "</p>\n";
  EXPECT_EQ(Merged(Print("A", "a") + Print("B", "b", "0") + end,
                   Print("A", "1") + Print("B", "3", "0") + end,
                   Print("A", "2") + Print("B", "b", "4") + end),
            Markers(Print("A", "1") + Print("B", "3", "4") + end,
                    Print("A", "2") + Print("B", "3", "4") + end));
  EXPECT_EQ(conflicts, List{"A: Value: 1 | 2"});
}

TEST_F(MergeTest, ARemovedControlThatTheOtherSideChangedIsAConflict) {
  const std::string base = "1\n" + Print("A", "a") + "\n2\n";
  const std::string changed = "1\n" + Print("A", "b") + "\n2\n";
  EXPECT_EQ(Merged(base, "1\n2\n", changed), "1\n" + Markers("", Print("A", "b") + "\n") + "2\n");
  EXPECT_EQ(conflicts, List{"A: removed | changed"});
  Merged(base, changed, "1\n2\n");
  EXPECT_EQ(conflicts, List{"A: changed | removed"});
  // Saving is no change.
  ExpectMerged("1\n" + Print("A", "a", "0") + "\n2\n", "1\n" + SavedPrint("A", "a", "0") + "\n2\n",
               "1\n2\n", "1\n2\n");
}

TEST_F(MergeTest, WithoutIdsWhatIsAmbiguousIsAConflict) {
  // Ours drops one of two equal lines and changes the other: which one cannot be known.
  const std::string two = Print("", "a") + "\n" + Print("", "b") + "\n";
  Merged(two, Print("", "c") + "\n", Print("", "a", "0") + "\n" + Print("", "b") + "\n");
  EXPECT_FALSE(result.IsClean());
  // The text around them tells them apart.
  ExpectMerged("1" + Print("", "a") + "\n2" + Print("", "a") + "\n3\n4\n5\n",
               "2" + Print("", "a") + "\n3\n4\n5\n",
               "1" + Print("", "a") + "\n2" + Print("", "a") + "\n3\n4\n6\n",
               "2" + Print("", "a") + "\n3\n4\n6\n");
  Merged("1" + Print("", "a") + "\n2" + Print("", "a") + "\n3\n4\n5\n",
         "2" + Print("", "a") + "\n3\n4\n5\n",
         "1" + Print("", "z") + "\n2" + Print("", "a") + "\n3\n4\n5\n");
  EXPECT_FALSE(result.IsClean());
}

TEST_F(MergeTest, TextsEditedByHandAreNeverLost) {
  const std::string base = SavedPrint("A", "x", "0");
  const std::string byHand = Span(Print("A", "x", "0"), "mine");
  ExpectMerged(base + "\n1\n2\n", byHand + "\n1\n2\n", base + "\n1\n3\n", byHand + "\n1\n3\n");
  EXPECT_EQ(Merged(base + "\n", byHand + "\n", SavedPrint("A", "x", "1") + "\n"),
            Markers(byHand + "\n", SavedPrint("A", "x", "1") + "\n"));
  EXPECT_EQ(conflicts, List{"A: runtime text edited by hand, properties on the other side"});
}

TEST_F(MergeTest, AnEmptyBaseConflictsOnlyWhereTheSidesDiffer) {
  const std::string same = "<p>1</p>\n" + Print("A", "a") + "\n";
  EXPECT_EQ(Merged("", same, same), same);
  Merged("", same + Print("B", "1") + "\n", same + Print("B", "2") + "\n");
  EXPECT_EQ(conflicts, List{"B: Value: 1 | 2"});
  EXPECT_NE(result.bytes.find(Print("B", "1")), std::string::npos);
  EXPECT_NE(result.bytes.find(Print("B", "2")), std::string::npos);
}

TEST_F(MergeTest, OneIdForTwoNewControlsIsAConflict) {
  const std::string base = "1\n2\n3\n4\n";
  Merged(base, Print("A", "x") + "\n" + base,
         base + "<object classid=\"progid:KVOPDesignObjects.DTCScript\" id=\"A\"></object>\n");
  EXPECT_EQ(conflicts, List{"A: the id is there twice now"});
  EXPECT_FALSE(result.textConflicts);
}

TEST_F(MergeTest, MovingToTwoPlacesIsAConflict) {
  const std::string a = Print("A", "a") + "\n";
  Merged("1\n2\n3\n" + a + "4\n5\n6\n", a + "1\n2\n3\n4\n5\n6\n", "1\n2\n3\n4\n5\n6\n" + a);
  EXPECT_EQ(conflicts, List{"A: moved on both sides, is there twice now"});
  Merged("1\n2\n3\n" + a + "4\n5\n6\n", a + "1\n2\n3\n4\n5\n6\n", "1\n2\n3\n4\n5\n6\n");
  EXPECT_EQ(conflicts, List{"A: removed on one side, moved on the other"});
}

TEST_F(MergeTest, PagesThatCannotBeReadAreMergedAsText) {
  const std::string broken = "<object classid=\"progid:KVOPDesignObjects.DTCPrint\">\n";
  EXPECT_EQ(Merged("1\n2\n3\n" + broken, "0\n2\n3\n" + broken, "1\n2\n4\n" + broken),
            "0\n2\n4\n" + broken);
  EXPECT_TRUE(result.asText && result.IsClean());
  const std::string a = Print("A", "a") + "\n";
  const std::string conflict = "<<<<<<< x\n1\n=======\n2\n>>>>>>> y\n" + a;
  Merged("0\n" + a, conflict, "2\n" + a);
  EXPECT_TRUE(result.asText && result.textConflicts);
  const std::string latin = "<meta charset=iso-8859-1>\n";
  EXPECT_EQ(Merged(a + "1\n2\n", latin + a + "1\n2\n", a + "1\n3\n"), latin + a + "1\n3\n");
  EXPECT_TRUE(result.asText);
}

TEST_F(MergeTest, WhatIsNoTextKeepsOursAndIsAConflict) {
  result = Merge(
      "\xFF\xFE"
      "a",
      "\xFF\xFE"
      "b",
      "\xFF\xFE"
      "c",
      [](auto...) { return std::nullopt; }, 7);
  EXPECT_EQ(result.bytes,
            "\xFF\xFE"
            "b");
  EXPECT_TRUE(result.asText && result.textConflicts);
}

TEST_F(MergeTest, WhatReadsDifferentlyTogetherIsAConflict) {
  // Theirs lets a comment reach to where ours puts a control.
  const std::string a = Print("A", "a") + "\n";
  Merged("<!--\n0\n-->\n1\n2\n3\n4\n5\n6\n", "<!--\n0\n-->\n1\n2\n3\n" + a + "4\n5\n6\n",
         "<!--\n0\n1\n2\n3\n4\n5\n-->\n6\n");
  EXPECT_FALSE(result.textConflicts);
  EXPECT_EQ(conflicts.size(), 1U);
}

TEST_F(MergeTest, AnotherIdIsAnotherControl) {
  // Ours put another control in place of the one that theirs changed.
  Merged("<p>" + Print("A", "a") + "</p>\n", "<p>" + Print("B", "b") + "</p>\n",
         "<p>" + Print("A", "a", "1") + "</p>\n");
  EXPECT_EQ(conflicts, List{"A: removed | changed"});
}

TEST_F(MergeTest, ConflictMarkersHaveTheGivenSizeAndKeepLineEnds) {
  const std::string base = "a" + Print("A", "a") + "\r\n=======\r\n";
  result = Merge(base, "a" + Print("A", "b") + "\r\n=======\r\n",
                 "a" + Print("A", "c") + "\r\n=======\r\n", MergeLines, 9);
  EXPECT_TRUE(result.bytes.starts_with("<<<<<<<<< side\n")) << result.bytes;
  EXPECT_TRUE(result.bytes.ends_with("\r\n>>>>>>>>> side\n=======\r\n")) << result.bytes;
}

TEST_F(MergeTest, TextThatLooksLikeAPlaceholderStays) {
  const std::string words = "KVO1_0m KVO2_0o KVO KVO999999999999_\n";
  ExpectMerged(words + Print("A", "x", "0"), words + Print("A", "y", "0"),
               words + Print("A", "x", "1"), words + Print("A", "y", "1"));
}

// Random pages whose sides change different things.
struct Story {
  std::string base, ours, theirs, merged;

  void Add(const std::string& text) { Add(text, text, text, text); }
  void Add(const std::string& inBase, const std::string& inOurs, const std::string& inTheirs,
           const std::string& inMerged) {
    base += inBase;
    ours += inOurs;
    theirs += inTheirs;
    merged += inMerged;
  }
};
Story RandomStory(std::mt19937& random) {
  Story story;
  const auto oneOf = [&random](std::size_t count) { return random() % count == 0; };
  for (std::size_t i = 0, count = 1 + random() % 6; i < count; ++i) {
    const std::string number = std::to_string(i);
    const bool saved = oneOf(2);
    const auto make = [&, id = oneOf(2) ? "" : "C" + number](const std::string& value,
                                                             const std::string& format) {
      return saved ? SavedPrint(id, value, format) : Print(id, value, format);
    };
    const std::string value = "v" + number;
    const std::string changed = oneOf(2) ? "o" + number : value;
    const std::string format = oneOf(2) ? "t" + number : "0";
    story.Add(oneOf(2) ? "" : "\n<hr>\n");
    story.Add("<p>" + number + " ");
    if (oneOf(5)) {
      story.Add(make(value, "0"), "", make(value, "0"), "");  // ours removes it
    } else {
      story.Add(make(value, "0"), make(changed, "0"), make(value, format), make(changed, format));
    }
    story.Add("</p>\n=\n");
    // Text of one side needs unchanged lines around it, as in any merge of lines.
    if (oneOf(3)) story.Add("text\n", "our text\n", "text\n", "our text\n");
    story.Add("=\n" + number + "\n=\n");
    if (oneOf(3)) story.Add("", "", make("new", "0") + "\n", make("new", "0") + "\n");
    story.Add("=\n");
  }
  return story;
}

TEST_F(MergeTest, DisjointChangesOfRandomPagesMerge) {
  std::mt19937 random(3);
  for (int round = 0; round < 150; ++round) {
    const Story story = RandomStory(random);
    ASSERT_NO_FATAL_FAILURE(ExpectMerged(story.base, story.ours, story.theirs, story.merged));
    ASSERT_FALSE(HasFailure()) << story.base << "---\n" << story.ours << "---\n" << story.theirs;
    ASSERT_EQ(Published(result.bytes), Published(story.merged));
    ASSERT_EQ(Merged(story.base, story.ours, story.base), story.ours);
    ASSERT_EQ(Merged(story.base, story.base, story.ours), story.ours);
    ASSERT_EQ(Merged(story.base, story.ours, story.ours), story.ours);
  }
}

// Whatever two sides do to a page, no value of theirs is lost without a conflict.
TEST_F(MergeTest, RandomChangesKeepEveryRule) {
  std::mt19937 random(5);
  const auto part = [&random]() -> std::string {
    const std::string id = random() % 3 == 0 ? "" : std::string(1, "ABC"[random() % 3]);
    const std::string value(1, "xyz"[random() % 3]);
    switch (random() % 6) {
      case 0:
        return "<p>";
      case 1:
        return "</p>\n";
      case 2:
        return std::to_string(random() % 4) + "\n";
      case 3:
        return SavedPrint(id, value, std::to_string(random() % 3));
      case 4:
        return page::Span(Print(id, value, "0"), "by hand");
      default:
        return Print(id, value, std::to_string(random() % 3));
    }
  };
  for (int round = 0; round < 1500; ++round) {
    std::vector<std::string> base(random() % 7);
    std::ranges::generate(base, part);
    std::string input;
    for (int side = 0; side < 3; ++side) {
      std::vector<std::string> parts = base;
      for (std::size_t changes = side == 0 ? 0 : random() % 4; changes > 0; --changes) {
        const std::size_t at = random() % (parts.size() + 1);
        const auto place = parts.begin() + static_cast<std::ptrdiff_t>(at);
        const std::size_t change = random() % 3;
        if (change == 0 || place == parts.end())
          parts.insert(place, part());
        else if (change == 1)
          *place = part();
        else
          parts.erase(place);
      }
      if (side != 0) input += "%\n";
      for (const std::string& each : parts) input += each;
    }
    ASSERT_NO_THROW(CheckCompare(input)) << input;
  }
}

}  // namespace
}  // namespace kvo::compare
