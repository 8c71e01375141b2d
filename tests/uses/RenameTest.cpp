#include "document/uses/Rename.h"

#include <gtest/gtest.h>

#include <random>

#include "document/page/Page.h"
#include "host/headless/HeadlessPlatform.h"
#include "tests/uses/Elements.h"

namespace kvo::uses {
namespace {

class RenameTest : public testing::Test {
 protected:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

std::string Saved(const std::string& text) {
  page::StringSink sink;
  EXPECT_FALSE(page::HasErrors(page::Save(page::Page(text), sink)));
  return sink.Take();
}

// The page after a renaming, in which nothing keeps its name.
std::string RenamedPage(const std::string& text, std::string_view from, std::string_view to) {
  const page::Page page(text);
  const Renamed renamed = Rename(page, RenamingOf(from, to));
  for (const KeptUse& kept : renamed.kept) ADD_FAILURE() << text << '\n' << kept.why.english;
  return page::Applied(text, renamed.edits);
}

std::string KeptWhy(const std::string& text, std::string_view from, std::string_view to) {
  const Renamed renamed = Rename(page::Page(text), RenamingOf(from, to));
  EXPECT_TRUE(renamed.edits.empty());
  EXPECT_TRUE(renamed.uses.empty());
  if (renamed.kept.empty()) return {};
  EXPECT_NE(renamed.kept[0].why.german, renamed.kept[0].why.english);
  return renamed.kept[0].why.english;
}

std::string Refused(std::string_view from, std::string_view to) {
  try {
    RenamingOf(from, to);
  } catch (const RenameError& error) {
    return error.Text(Language::english);
  }
  return {};
}

bool Holds(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

TEST_F(RenameTest, RenamesInScripts) {
  const std::string script = Control(
      "DTCScript", Param("html-content", "set(kv:@quot;akv:@quot;, customer.Age kv:@gt; 1);"));
  for (const std::string& page : {script, Saved(script),
                                  std::string("<kv:script>x = customer.Age;"
                                              "</kv:script>")}) {
    const std::string renamed = RenamedPage(page, "customer.Age", "customer.Years");
    EXPECT_FALSE(Holds(renamed, "customer.Age")) << renamed;
    EXPECT_EQ(RenamedPage(renamed, "customer.Years", "customer.Age"), page);
    EXPECT_TRUE(page::Check(page::Page(renamed)).empty()) << renamed;
    EXPECT_TRUE(Holds(KeptWhy(page, "customer.Age", "customer.In Years"), "In a script"));
  }
}

TEST_F(RenameTest, RefusesWhatCannotBeRenamed) {
  EXPECT_EQ(Refused("customer.City", "customer.Town"), "");
  EXPECT_EQ(Refused("customer.City", "customer.Home Town"), "");
  EXPECT_EQ(Refused("Preis", "Summe"), "");
  EXPECT_TRUE(Holds(Refused("DTCPrint", "DTCIf"), "classes cannot be renamed"));
  EXPECT_TRUE(Holds(Refused("customer.City", "order.City"), "\"customer.Name\""));
  EXPECT_TRUE(Holds(Refused("order.City", "City"), "\"order.Name\""));
  EXPECT_TRUE(Holds(Refused("customer.City", "customer."), "\"customer.Name\""));
  EXPECT_TRUE(Holds(Refused("customer.City", "customer.a#b"), "\"a#b\" cannot be the name"));
  EXPECT_TRUE(Holds(Refused("customer.City", "customer. b"), "cannot be the name"));
  EXPECT_TRUE(Holds(Refused("customer.City", "customer.City"), "is the old one"));
  EXPECT_TRUE(Holds(Refused("order.orderID", "order.Number"), "order number"));
  EXPECT_TRUE(Holds(Refused("order.Number", "order.orderid"), "order number"));
  EXPECT_TRUE(Holds(Refused("Preis", ""), "id is empty"));
}

TEST_F(RenameTest, ChangesNothingButTheName) {
  const std::string text =
      "\r\n<P >#customer.City# #order.City#<kv:contact  field='City'>\t" +
      Control("DTCContact", "\n" + Param("field", "City") + Param("display-value", "City")) +
      Control("DTCOrder", Param("field", "City"));
  EXPECT_EQ(
      RenamedPage(text, "customer.City", "customer.Town"),
      "\r\n<P >#customer.Town# #order.City#<kv:contact  field='Town'>\t" +
          Control("DTCContact", "\n" + Param("field", "Town") + Param("display-value", "City")) +
          Control("DTCOrder", Param("field", "City")));
  EXPECT_EQ(RenamedPage(text, "customer.Nothing", "customer.Town"), text);
}

TEST_F(RenameTest, RenamesIdsInElementsAlone) {
  const std::string text =
      Saved(Control("DTCPrint", Param("value", "Eins"))) + Control("DTCViewtracker", "", "Zwei");
  std::string expected = text;
  expected.replace(expected.find("id=\"Eins"), 8, "id=\"A&amp;B");
  EXPECT_EQ(RenamedPage(text, "Eins", "A&B"), expected);
  EXPECT_TRUE(Holds(KeptWhy(text, "Eins", "Zwei"), "id \"Zwei\" already"));
}

TEST_F(RenameTest, SaysWhereTheNewNameIsInUse) {
  const Renamed renamed = Rename(page::Page("#customer.City#\n#customer.Town# #order.Town#"),
                                 RenamingOf("customer.City", "customer.Town"));
  EXPECT_EQ(renamed.edits.size(), 1U);
  ASSERT_EQ(renamed.merged.size(), 1U);
  EXPECT_EQ(renamed.merged[0].place, (page::Place{2, 11}));
}

TEST_F(RenameTest, KeepsWhatItCannotRename) {
  EXPECT_TRUE(Holds(KeptWhy(Control("DTCIf", Param("test", "#customer.A#") + Param("x", "")),
                            "customer.A", "customer.B"),
                    "has errors"));
  std::string edited = Saved(Control("DTCPrint", Param("value", "#customer.A#")));
  edited.insert(edited.find("<kv:print") + 9, " ");
  EXPECT_TRUE(Holds(KeptWhy(edited, "customer.A", "customer.B"), "edited by hand"));
  EXPECT_TRUE(Holds(KeptWhy("<meta charset=iso-8859-1>#customer.A#", "customer.A", "customer.Łódź"),
                    "cannot hold the new name"));
  EXPECT_TRUE(Holds(KeptWhy("<meta charset=shift_jis>#customer.A#", "customer.A", "customer.B"),
                    "not supported"));
  EXPECT_TRUE(Holds(KeptWhy("<kv:contact field=A>", "customer.A", "customer.Home Town"),
                    "quotation marks"));
  EXPECT_TRUE(Holds(KeptWhy("<object classid=progid:KVOPDesignObjects.DTCContact><param name=field "
                            "value=A></object>",
                            "customer.A", "customer.Home Town"),
                    "quotation marks"));
  EXPECT_EQ(RenamedPage("<kv:contact field=A>", "customer.A", "customer.B_1"),
            "<kv:contact field=B_1>");
  // The longer name would push the declaration out of reach.
  EXPECT_TRUE(Holds(
      KeptWhy("#customer.A#" + std::string(1024 - 12 - 26, ' ') + "<meta charset=iso-8859-15>\xE4",
              "customer.A", "customer." + std::string(40, 'b')),
      "would be read as"));
}

TEST_F(RenameTest, RenamesOneUseWhereAnotherIsKept) {
  const std::string broken = Control("DTCIf", Param("test", "#customer.A#") + Param("x", ""));
  const Renamed renamed =
      Rename(page::Page("#customer.A#" + broken), RenamingOf("customer.A", "customer.B"));
  EXPECT_EQ(renamed.edits, (page::TextEdits{{10, 11, "B"}}));
  EXPECT_EQ(renamed.uses.size(), 1U);
  ASSERT_EQ(renamed.kept.size(), 1U);
  EXPECT_EQ(renamed.kept[0].use.property, "Test");
}

// A saved control whose text holds an identifier made anew keeps it.
TEST_F(RenameTest, KeepsIdentifiers) {
  const std::string text =
      Saved(Control("DTCViewtracker", Param("display-basename", "#customer.A#")));
  std::string expected = text;
  expected.replace(expected.find("#customer.A#"), 12, "#customer.B#");
  EXPECT_EQ(RenamedPage(text, "customer.A", "customer.B"), expected);
}

// A comment around a saved control must not end inside the name.
TEST_F(RenameTest, WritesHyphensAsInAnyValue) {
  const auto page = [](std::string_view name) {
    return Saved(Control("DTCPrint", Param("value", "#customer." + std::string(name) + '#')));
  };
  EXPECT_EQ(RenamedPage(page("a"), "customer.a", "customer.a--b-"), page("a--b-"));
  EXPECT_EQ(RenamedPage(page("a--b-"), "customer.a--b-", "customer.a"), page("a"));
}

// Where the text of a tag with a name of its own holds the field, no reference shows it.
TEST_F(RenameTest, FollowsTheRuntimeTextOfAnyTag) {
  const auto page = [](std::string_view name) {
    return Saved(Control(
        "DTCContact", Param("namespace", "my") + Param("basename", "out") + Param("field", name)));
  };
  EXPECT_EQ(RenamedPage(page("City"), "customer.City", "customer.Town"), page("Town"));
}

// Makes the same random page around any name of a field.
class RandomPage {
 public:
  explicit RandomPage(unsigned seed) : seed_(seed) {}

  std::string With(std::string_view name) {
    random_.seed(seed_);
    name_ = name;
    std::string text = Pick({"<meta charset=\"utf-8\">", "<!DOCTYPE html>\r\n<html>", ""});
    const auto parts = random_() % 8;
    for (unsigned i = 0; i <= parts; ++i) text += random_() % 2 == 0 ? OwnText() : AControl();
    // The page may not be saveable in this form of spans.
    return random_() % 2 == 0 ? Saved(text) : text;
  }

 private:
  std::string Pick(std::initializer_list<std::string_view> texts) {
    return std::string(*(texts.begin() + random_() % texts.size()));
  }
  std::string Path() { return "#customer." + name_ + '#'; }
  std::string Name() { return random_() % 3 == 0 ? "Other" : name_; }
  std::string Text() {
    switch (random_() % 6) {
      case 0:
        return Path();
      case 1:
        return "#order." + Pick({"City", "Town"}) + '#';  // other fields
      case 2:
        return Path() + Path();
      case 3:
        return "%" + Path() + "&gt;=2%";
      case 4:
        return "#x" + Path() + "--##" + Path().substr(1);
      default:
        return Pick({"ä ö", "#system.date#", "#fff", "a | b", ""});
    }
  }
  std::string Tag(std::string_view less, std::string_view quote, std::string_view greater) {
    return std::string(less) + "kv:contact a=" + std::string(quote) + "City" + std::string(quote) +
           " field=" + std::string(quote) + Name() + std::string(quote) + std::string(greater);
  }
  std::string OwnText() {
    switch (random_() % 6) {
      case 0:
        return "<p>" + Text() + "</p>\r\n";
      case 1:
        return Tag("<", "\"", "/>") + Tag("<", "'", " >");
      case 2:
        return "<!-- " + Text() + " -->\n";
      case 3:
        return "<script>x='" + Text() + "';</script>";
      case 4:
        return "<a href=\"http://x/?a=" + Text() + "\">" + Text() + "</a>";
      default:
        return "<br  >\t< unclosed #customer. #";
    }
  }
  std::string Content() {
    std::string content;
    for (auto count = random_() % 3; count > 0; --count)
      content += random_() % 2 == 0 ? Tag("kv:@lt;", "kv:@quot;", "/kv:@gt;")
                                    : "kv:@lt;bkv:@gt;" + Text() + "kv:@br;kv:@amp;";
    return content;
  }
  std::string AControl() {
    switch (random_() % 8) {
      case 0:
        return Control("DTCContact", Param("field", Name()) + Param("format", ""));
      case 1:
        return Control("DTCOrder", Param("field", "Total"));
      case 2:
        return Control("DTCPrint", "\r\n  " + Param("value", Text()));
      case 3:
        return Control("DTCIf", Param("test", Text() + "x") + Param("on-true", Content()) +
                                    Param("on-false", Content()));
      case 4:
        return Control("DTCElement",
                       Param("value", "td") + Param("attributes", "a|1||b|x" + Path()));
      case 5:
        return Control("DTCScript", Param("html-content", Content()));
      case 6:
        return Control("DTCProductList",
                       Param("selected-products", "1") + Param("header-caption", Text()));
      default:
        return Control("DTCClicktracker",
                       Param("html-content", Content()) + Param("href", "http://" + Text()));
    }
  }

  unsigned seed_;
  std::mt19937 random_;
  std::string name_;
};

TEST_F(RenameTest, MakesThePageThatHadTheNewNameFromTheStart) {
  const std::pair<std::string_view, std::string_view> names[] = {
      {"City", "Town"}, {"City", "Home Town"}, {"Größe", "G"}, {"a", "a-b-"}};
  std::size_t renamed = 0;
  for (unsigned seed = 0; seed < 400; ++seed) {
    RandomPage page(seed);
    const auto& [from, to] = names[seed % std::size(names)];
    const std::string before = page.With(from);
    const std::string after = page.With(to);
    const std::string there = "customer." + std::string(to);
    const std::string here = "customer." + std::string(from);
    ASSERT_EQ(RenamedPage(before, here, there), after) << seed;
    ASSERT_EQ(RenamedPage(after, there, here), before) << seed;
    EXPECT_TRUE(UsesOf(NamesMeant(here).front(), FindUses(page::Page(after)).uses).empty());
    if (before != after) ++renamed;
  }
  EXPECT_GT(renamed, 300U);
}

TEST_F(RenameTest, WritesTheNameInThePagesEncoding) {
  const std::string declared = "<meta charset=\"iso-8859-1\">";
  const std::string text =
      declared + Saved("<meta charset=\"iso-8859-1\">" +
                       Control("DTCPrint", Param("value", "\xE4#customer.A#")));
  const std::string renamed = RenamedPage(text, "customer.A", "customer.Größe");
  EXPECT_TRUE(Holds(renamed,
                    "value=\"\xE4#customer.Gr\xF6\xDF"
                    "e#\"><param"));
  EXPECT_TRUE(Holds(renamed,
                    "<kv:print value=\"\xE4#customer.Gr\xF6\xDF"
                    "e#\""));
  EXPECT_EQ(RenamedPage(renamed, "customer.Größe", "customer.A"), text);
}

}  // namespace
}  // namespace kvo::uses
