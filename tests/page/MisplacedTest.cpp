// Controls where HTML has no elements: found wherever they are hidden, with their surroundings.
#include <random>

#include "PageTesting.h"
#include "common/values/Ascii.h"
#include "document/page/ProblemList.h"
#include "document/page/Surroundings.h"
#include "host/registration/classes.h"

namespace kvo::page {
namespace {

// A place that cannot contain a control, and its description in messages.
struct HiddenPlace {
  const char* name;
  std::string_view before;
  std::string_view after;
  std::string told;
};

const HiddenPlace kPlaces[] = {
    {"Comment", "<!-- ", " -->", "inside a comment that begins in line 3"},
    {"CommentThatNeverEnds", "<!-- ", "", "inside a comment that begins in line 3"},
    {"ConditionalComment", "<!--[if mso]>\n", "<![endif]-->",
     "inside a conditional comment that begins in line 3"},
    {"SpacedConditionalComment", "<!-- [IF gte mso 9]>", "<![endif]-->",
     "inside a conditional comment that begins in line 3"},
    {"Title", "<title>", "</title>", "inside the text of an element \"title\" that"},
    {"TitleInCapitals", "<TITLE lang=de>\r\n", "</Title >",
     "element \"TITLE\" that begins in line 3"},
    {"Style", "<style type='text/css'>", "</style>", "\"style\" that begins in line 3"},
    {"Script", "<script>", "</script>", "\"script\" that begins in line 3"},
    {"ScriptInComment", "<script><!-- <script>", "</script>--></script>",
     "\"script\" that begins in line 3"},
    {"Textarea", "<textarea name=a>", "</textarea>", "\"textarea\" that begins in line 3"},
    {"NoFrames", "<noframes>", "</noframes>", "\"noframes\" that begins in line 3"},
    {"NoEmbed", "<noembed>", "</noembed>", "\"noembed\" that begins in line 3"},
    {"IFrame", "<iframe src=x>", "</iframe>", "\"iframe\" that begins in line 3"},
    {"Xmp", "<xmp>", "</xmp>", "\"xmp\" that begins in line 3"},
    {"PlainText", "<plaintext>", "</plaintext>", "\"plaintext\" that begins in line 3"},
    {"CData", "<svg><![CDATA[ a> ", " ]]></svg>", "inside a CDATA section that begins in line 3"},
    {"CDataInMath", "<math>\n<![CDATA[", "]]></math>", "a CDATA section that begins in line 4"},
    {"CDataThatNeverEnds", "<svg><g/><![CDATA[ a>", "", "a CDATA section that begins in line 3"},
    {"QuotedValue", "<a href=\"", "\">",
     "the value of an attribute \"href\" that begins in line 3"},
    {"SingleQuotedValue", "<a b=c\nhref='x", "'>", "attribute \"href\" that begins in line 4"},
    {"ValueThatNeverEnds", "<a href=\"x", "", "attribute \"href\" that begins in line 3"},
    {"UnquotedValue", "<a href=x", ">", "attribute \"href\" that begins in line 3"},
    {"StartTag", "<td ", ">", "inside a tag \"td\" that begins in line 3"},
    {"BehindAValue", "<td a='b' ", ">", "inside a tag \"td\" that begins in line 3"},
    {"EndTag", "</td ", ">", "inside a tag \"td\" that begins in line 3"},
    {"ForeignObject", "<object data=\"", "\">", "attribute \"data\" that begins in line 3"},
    {"ForeignObjectTag", "<object classid=x ", " data=x>",
     "inside a tag \"object\" that begins in line 3"},
    {"DocumentType", "<!DOCTYPE html ", ">", "inside a declaration that begins in line 3"},
    {"ProcessingInstruction", "<?xml ", "?>", "inside a declaration that begins in line 3"},
    {"BogusEndTag", "</ ", ">", "inside a declaration that begins in line 3"},
    {"CDataInHtml", "<![CDATA[ ", "]]>", "inside a declaration that begins in line 3"},
};

void PrintTo(const HiddenPlace& place, std::ostream* out) { *out << place.name; }

class Misplaced : public PageTest, public ::testing::WithParamInterface<HiddenPlace> {
 protected:
  std::string In(const HiddenPlace& place, const std::string& control) {
    return "<p>\n\n" + std::string(place.before) + control + std::string(place.after);
  }
  std::size_t Count() const {
    return static_cast<std::size_t>(
        std::count_if(problems.begin(), problems.end(),
                      [](const Problem& each) { return each.rule == rule::misplacedControl; }));
  }
};

TEST_P(Misplaced, IsAnErrorOfCheckSaveAndPublishWithItsPlace) {
  const std::string page = In(GetParam(), PrintElement("x"));
  Checked(page);
  ASSERT_EQ(Count(), 1U) << page;
  const Problem problem = problems[0];
  EXPECT_EQ(problem.rule, rule::misplacedControl);
  EXPECT_EQ(problem.severity, Severity::error);
  EXPECT_EQ(problem.offset, page.find("<object classid=\"progid"));
  EXPECT_EQ(problem.control, "DTCPrint");
  EXPECT_NE(problem.message.english.find(GetParam().told), std::string::npos)
      << problem.message.english;
  EXPECT_NE(problem.message.german, problem.message.english);
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(Saved(page, {.force = true}), "(not saved)");
  EXPECT_EQ(Published(page), "(not published)");
  EXPECT_TRUE(HasErrors(Inspect(Page(page)).problems));
}

TEST_P(Misplaced, IsAlsoFoundAsASavedControl) {
  const std::string page = In(GetParam(), Span(StoredPrint("x"), "<kv:print value=\"x\"/>"));
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(Count(), 1U) << page;
  EXPECT_EQ(Published(page), "(not published)");
  EXPECT_EQ(Count(), 1U) << page;
}

TEST_P(Misplaced, HidesNothingAfterIt) {
  // What follows is content again, or is hidden as well; it is never lost.
  const std::string page = In(GetParam(), PrintElement("x")) + "\n" + PrintElement("y");
  Checked(page);
  const std::size_t seen = Inspect(Page(page)).controls.size();
  EXPECT_EQ(Count() + seen, 2U) << page;
}

INSTANTIATE_TEST_SUITE_P(Page, Misplaced, ::testing::ValuesIn(kPlaces),
                         [](const auto& test) { return std::string(test.param.name); });

// Makes every class in every place, with random surroundings and odd spellings.
class OddSpellings {
 public:
  explicit OddSpellings(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t bound) { return random_() % bound; }
  std::string_view OneOf(std::span<const std::string_view> texts) {
    return texts[Below(texts.size())];
  }

  std::string AnyCase(std::string_view text) {
    std::string other;
    for (const char c : text)
      other += IsLetter(c) && Below(2) == 0 ? static_cast<char>(c ^ 0x20) : c;
    return other;
  }
  std::string WithReferences(std::string_view text) {
    std::string other;
    for (const char c : text) {
      switch (Below(8)) {
        case 0:
          other += "&#" + std::to_string(static_cast<int>(c)) + ";";
          break;
        case 1:
          other += c == ':' ? "&colon;" : c == '.' ? "&period;" : std::string(1, c);
          break;
        default:
          other += c;
      }
    }
    return other;
  }

  std::string Element(const RegisteredControl& control, char quote) {
    const std::string name(control.contract().name);
    const std::string_view guid = control.classId;
    std::string id;
    switch (Below(3)) {
      case 0:
        id = AnyCase("progid:KVOPDesignObjects." + name);
        break;
      case 1:
        id = AnyCase("clsid:" + std::string(guid));
        break;
      default:
        id = AnyCase("clsid:" + std::string(guid.substr(1, guid.size() - 2)));
    }
    if (Below(2) == 0) id = WithReferences(id);
    static constexpr std::string_view kSpaces[] = {" ", "\n", "\t", " \r\n ", "/", "\f"};
    static constexpr std::string_view kOthers[] = {"id=a",        "width='1'", "declare",
                                                   "x-classid=b", "style=a:b", "classidx=c"};
    static constexpr std::string_view kEquals[] = {"=", " =", "= ", "\n=\n"};
    std::string tag = AnyCase("<object");
    for (std::size_t left = Below(3); left-- > 0;)
      tag += std::string(OneOf(kSpaces)) + std::string(OneOf(kOthers));
    tag += std::string(OneOf(kSpaces)) + AnyCase("classid") + std::string(OneOf(kEquals));
    tag += quote == '\0' ? id : quote + id + quote;
    for (std::size_t left = Below(3); left-- > 0;) tag += " " + std::string(OneOf(kOthers));
    return tag + (quote == '\0' ? " >" : ">") + "</object>";
  }

  std::string Content() {
    static constexpr std::string_view kParts[] = {
        "<p>",
        "</p>",
        "\r\n",
        "<td width='1>2'>",
        "<!-- c -->",
        "<br/>",
        "a < b",
        "&nbsp;",
        "<svg><path d='M0'/></svg>",
        "<title>t</title>",
        "<![if mso]>",
        "<![endif]>",
        "<object data=x></object>",
        "\xC3\xA4",
        "<?x?>",
        "<style>a>b{}</style>",
        "<!--KVO CONTROL STARTSPAN 1 <object classid=\"progid:KVOPDesignObjects.DTCPrint\"><param "
        "name=\"value\" value=\"x\"><param name=\"format\" value=\"\"></object>--><kv:print "
        "value=\"x\"/><!--KVO CONTROL ENDSPAN 1-->"};
    std::string content;
    for (std::size_t left = Below(6); left-- > 0;) content += OneOf(kParts);
    return content;
  }

 private:
  std::mt19937 random_;
};

TEST_F(Misplaced, IsNeverOverlooked) {
  OddSpellings random(5);
  constexpr char kQuotes[] = {'"', '\'', '\0'};
  int trials = 0;
  for (int round = 0; round < 6; ++round) {
    for (const HiddenPlace& place : kPlaces) {
      for (const RegisteredControl& control : RegisteredControls()) {
        std::string element = random.Element(control, kQuotes[random.Below(3)]);
        if (random.Below(2) == 0)
          element = Span(element, "text", static_cast<int>(random.Below(12)) + 1);
        const std::string page = random.Content() + std::string(place.before) + element +
                                 std::string(place.after) + random.Content();
        EXPECT_EQ(Saved(page), "(not saved)") << page;
        EXPECT_GE(Count(), 1U) << page;
        EXPECT_EQ(Published(page), "(not published)") << page;
        EXPECT_GE(Count(), 1U) << page;
        ++trials;
      }
    }
  }
  EXPECT_GE(trials, 2000);
}

TEST_F(Misplaced, IsAlsoFoundForAnUnknownClassOfThisLibrary) {
  EXPECT_EQ(Checked("<!--" + Element("", "DTCPrnt") + "-->"), List{"1:5 misplaced-control"});
}

TEST_F(Misplaced, IsFoundAfterAnotherElementInTheSamePlace) {
  EXPECT_EQ(Checked("<!-- <object title='" + PrintElement("x") + "'> " + PrintElement("y") + "-->"),
            (List{"1:21 misplaced-control", "1:115 misplaced-control"}));
}

TEST_F(Misplaced, IgnoresLookAlikes) {
  for (const std::string& page : List{
           "<!-- <object data=x classid='clsid:D27CDB6E-AE6D-11CF-96B8-444553540000'></object> -->",
           "<!-- classid=\"progid:KVOPDesignObjects.DTCPrint\" -->",
           "<!-- <objects classid=\"progid:KVOPDesignObjects.DTCPrint\"> -->",
           "<!-- <object data-classid=\"progid:KVOPDesignObjects.DTCPrint\"> -->",
           "<title>&lt;object classid=\"progid:KVOPDesignObjects.DTCPrint\"&gt;</title>",
           "<p>progid:KVOPDesignObjects.DTCPrint &lt;object",
           "<!-- <object classid> progid:KVOPDesignObjects.DTCPrint -->",
           "<!-- <object classid= -->",
           "<script>'<object classid=\"progid:KVOPDesignObjectsExtra.DTCPrint\">'</script>"}) {
    EXPECT_EQ(Checked(page), List{}) << page;
    EXPECT_EQ(Published(page), page);
  }
}

TEST_F(Misplaced, IgnoresElementsInTheDataOfAControl) {
  const std::string inner = "&lt;object classid='progid:KVOPDesignObjects.DTCPrint'&gt;";
  const std::string raw = "<object classid='progid:KVOPDesignObjects.DTCPrint'>";
  EXPECT_EQ(Checked(PrintElement(inner)), List{});
  EXPECT_EQ(Checked(PrintElement(raw)), List{});
  const std::string script =
      Element(Param("html-content",
                    "kv:@lt;object classid='progid:KVOPDesignObjects.DTCPrint'"
                    "kv:@gt;kv:@lt;/objectkv:@gt;"),
              "DTCScript");
  const std::string saved = Saved(script);
  EXPECT_NE(saved.find("<kv:script><object classid="), std::string::npos) << saved;
  EXPECT_EQ(Saved(saved), saved);
  EXPECT_EQ(Listed(problems), List{});
  EXPECT_NE(Published(saved), "(not published)");
}

TEST_F(Misplaced, SuggestsTheRuntimeTextThatCanBePastedThere) {
  const auto offered = [&](const std::string& page) {
    Checked(page);
    return problems.empty() ? "" : problems[0].message.english;
  };
  const std::string tag = "<kv:print value=\"x\"/>";
  const std::string print = PrintElement("x");
  const std::string plain =
      "<object classid=progid:KVOPDesignObjects.DTCPrint>"
      "<param name=value value=x></object>";
  for (const std::string& page :
       List{"<!--[if mso]>" + print + "<![endif]-->", "<title>" + print + "</title>",
            "<td " + print + ">", "<svg><![CDATA[" + print + "]]></svg>"})
    EXPECT_TRUE(offered(page).ends_with("Write this instead: " + tag)) << offered(page);
  EXPECT_TRUE(offered("<a href='" + print + "'>").ends_with("Write this instead: " + tag));
  for (const std::string& page : List{"<a href=\"" + plain + "\">", "<a href=" + plain + ">"})
    EXPECT_TRUE(
        offered(page).ends_with("Put the value in single quotes and write this instead: " + tag))
        << offered(page);

  // Suggests nothing that would end the place, and no more than one tag.
  for (const std::string& page :
       List{"<!--" + PrintElement("--&gt;") + "-->",
            "<title>" + PrintElement("&lt;/title") + "</title>",
            "<title>" + PrintElement("a&#10;b") + "</title>", "<?" + print + "?>",
            "<title>" + PrintElement("") + "</title>",
            "<title>" + Element(Param("html-content", "x"), "DTCScript") + "</title>",
            "<title>" + Element(Param("unknown", "x")) + "</title>",
            "<title>" + Element(Param("attributes", "x") + Param("value", "td"), "DTCElement") +
                "</title>",
            "<title><object classid=progid:KVOPDesignObjects.DTCPrint></title>"})
    EXPECT_TRUE(offered(page).ends_with("Put it where HTML has text or elements."))
        << offered(page);
  EXPECT_TRUE(offered("<a href='" + PrintElement("it's") + "'>").ends_with("write the whole tag."));
}

TEST_F(Misplaced, TheSuggestionIsAcceptedThere) {
  const std::string tag = "<kv:print value=\"x\"/>";
  for (const std::string& page :
       List{"<!--[if mso]>" + tag + "<![endif]-->", "<title>" + tag + "</title>",
            "<td " + tag + ">", "<a href='" + tag + "'>", "<svg><![CDATA[" + tag + "]]></svg>"}) {
    EXPECT_EQ(Checked(page), List{});
    EXPECT_EQ(Published(page), page);
  }
}

// A saved control inside an outer comment: the control's start comment ends the outer one.

TEST_F(Misplaced, TheEndOfASpanReportsTheOuterComment) {
  const std::string span = Span(StoredPrint("x"), "<kv:print value=\"x\"/>", 3);
  const std::string page = "\n<!-- old:\n" + span + "\n-->" + span;
  EXPECT_EQ(Checked(page), (List{"3:29 misplaced-control", "3:174 stray-end"}));
  EXPECT_NE(problems[1].message.english.find("inside a comment that begins in line 2"),
            std::string::npos)
      << problems[1].message.english;
  EXPECT_EQ(Saved(page, {.force = true}), "(not saved)");
  EXPECT_EQ(Published(page), "(not published)");
}

TEST_F(Misplaced, NoAdviceSaysToDeleteAnEndComment) {
  const std::string end = "<!--KVO CONTROL ENDSPAN 1-->";
  for (const std::string& page : List{end, "<!-- " + Span(StoredPrint("x"), "") + " -->"}) {
    Checked(page);
    for (const Problem& problem : problems) {
      EXPECT_EQ(problem.message.english.find("elete"), std::string::npos);
      EXPECT_EQ(problem.message.german.find("sch"), problem.message.german.find("schl"));
    }
  }
}

// Positions.

using SurroundingsOf = PageTest;

std::string Told(const std::string& page, std::size_t position) {
  const Page whole(page);
  const Surroundings place = SurroundingsAt(whole, position);
  if (place.CanHoldControl()) return "";
  const std::size_t line = PlaceFinder(page, whole.Encoding()).At(place.begin).line;
  const std::string message = CannotHoldControl(place, line, "").english;
  const std::size_t begin = message.find("inside");
  return message.substr(begin, message.find(':', begin) - begin);
}

TEST_F(SurroundingsOf, EveryPositionOfAPage) {
  // "|" marks positions in content, "^" other positions; both are removed.
  const std::pair<std::string, std::string> kCases[] = {
      {"|a|<!--^ b ^-->|c|", "inside a comment that begins in line 1"},
      {"|<^p^ ^a^=^ ^>|x|<^/p^>|", "inside a tag \"p\" that begins in line 1"},
      {"\n|<title>^x^</title>|", "inside the text of an element \"title\" that begins in line 2"},
      {"<title>^</title>|", "inside the text of an element \"title\" that begins in line 1"},
      {"|<a\nb=\"^c^\"", "inside the value of an attribute \"b\" that begins in line 2"},
      {"|<a b=\"^c^", "inside the value of an attribute \"b\" that begins in line 1"},
      {"|<a b=^c^>|", "inside the value of an attribute \"b\" that begins in line 1"},
      {"|<!--^a^", "inside a comment that begins in line 1"},
      {"|<plaintext>^a</plaintext>^",
       "inside the text of an element \"plaintext\" that begins in "
       "line 1"},
      {"|<^!DOCTYPE html^>|", "inside a declaration that begins in line 1"},
      {"|a < b|", ""},
      {"|<svg>|<^![CDATA[^ > ^]]>|</svg>|<i>|", "inside a CDATA section that begins in line 1"},
      {"|<^![CDATA[^>|]]>|", "inside a declaration that begins in line 1"},
      {"\n|" + Element("^<param name=value^ value=x>^") + "|",
       "inside a control that begins in line 2"},
      {"|" + Span(Element("^"), "te^xt") + "|" + Span(Element("^"), "^") + "|",
       "inside a control that begins in line 1"},
      {"|<object data=x>|<param name=a value=b>|</object>|", ""},
  };
  for (const auto& [marked, told] : kCases) {
    std::string page;
    std::vector<std::pair<std::size_t, bool>> positions;
    for (const char c : marked) {
      if (c == '|' || c == '^')
        positions.emplace_back(page.size(), c == '|');
      else
        page += c;
    }
    for (const auto& [position, isContent] : positions)
      EXPECT_EQ(Told(page, position), isContent ? "" : told) << marked << " at " << position;
  }
}

// A control inserted where one is allowed is found, and a control inserted elsewhere is not.
TEST_F(SurroundingsOf, AgreesWithFindingAnInsertedControl) {
  OddSpellings random(7);
  int inContent = 0;
  int elsewhere = 0;
  for (int round = 0; round < 2000; ++round) {
    const HiddenPlace& place = kPlaces[random.Below(std::size(kPlaces))];
    std::string page = random.Content() + std::string(place.before) + "x" +
                       std::string(place.after) + random.Content();
    const std::size_t position = random.Below(page.size() + 1);
    // After "<", an insertion turns a tag into text.
    if (position > 0 && page[position - 1] == '<') continue;
    const bool can = SurroundingsAt(Page(page), position).CanHoldControl();
    const Inspection before = Inspect(Page(page));
    page.insert(position, PrintElement("inserted"));
    std::size_t found = 0;
    const Inspection after = Inspect(Page(page));
    for (const FoundControl& control : after.controls) found += control.begin == position;
    EXPECT_EQ(found == 1 && after.controls.size() == before.controls.size() + 1, can)
        << position << ": " << page;
    ++(can ? inContent : elsewhere);
  }
  EXPECT_GT(inContent, 100);
  EXPECT_GT(elsewhere, 100);
}

TEST_F(SurroundingsOf, IsContentInAnUnreadablePage) {
  EXPECT_TRUE(SurroundingsAt(Page(std::string("\xFF\xFE<\0", 4)), 3).CanHoldControl());
}

}  // namespace
}  // namespace kvo::page
