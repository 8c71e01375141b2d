// Unrealistically large pages: a small stack is enough for them, and ten times the size takes about
// ten times the work, which is counted rather than timed.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

#include "tests/faults/Faults.h"

namespace kvo::test {
namespace {

std::string Times(int count, const std::string& part) {
  std::string text;
  text.reserve(part.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) text += part;
  return text;
}

std::string Numbered(int count, const std::string& before, const std::string& behind) {
  std::string text;
  for (int i = 0; i < count; ++i) text += before + std::to_string(i) + behind;
  return text;
}

struct Shape {
  const char* name;
  std::string (*of)(int count);
  int most;          // the largest count
  bool good = true;  // whether it can be saved
};
void PrintTo(const Shape& shape, std::ostream* out) { *out << shape.name; }

const Shape kShapes[] = {
    // ten bytes each
    {"OneLargeProperty", [](int n) { return PrintElement(Times(n, "a--b&amp;c")); }, 10'000'000},
    {"ManyControls",
     [](int n) { return Numbered(n, "<p>", "</p>\n" + PrintElement("#order.total#")); }, 100'000},
    {"ManyControlsWithIds",
     [](int n) {
       std::string page;
       for (int i = 0; i < n; ++i) page += PrintElement("x", "Preis" + std::to_string(i));
       return page;
     },
     100'000},
    {"ManyAttributes",
     [](int n) {
       return "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"" +
              Numbered(n, " data-a", "=\"x\"") + "><param name=\"value\" value=\"x\"></object>";
     },
     10'000},
    {"ManyAttributesOfAnElement",
     [](int n) {
       return ControlElement(
           "DTCElement",
           {{"value", "td"}, {"attributes", Numbered(n, "||data-a", "|x").substr(2)}});
     },
     10'000},
    {"LineBreaksInFrontOfAContent",
     [](int n) {
       return ControlElement("DTCElement",
                             {{"value", "td"}, {"html-content", Times(n, "\r\n") + "x"}});
     },
     1'000'000},
    {"LineBreaksOfAScript",
     [](int n) {
       return ControlElement("DTCScript", {{"html-content", Times(n, "\r\n") + "x"}});
     },
     1'000'000},
    {"NothingButAngles", [](int n) { return std::string(static_cast<std::size_t>(n), '<'); },
     10'000'000},
    {"NothingButOpenTags", [](int n) { return Times(n, "<div>"); }, 1'000'000},
    {"ManyBrokenControls", [](int n) { return Times(n, ControlElement("DTCPrnt", {}) + '\n'); },
     50'000, false},
    {"LongIdOfManyProblems",
     [](int n) {
       return "<object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"" +
              Times(n, "0123456789") + "\">" + Times(n, "<param a>") + "</object>";
     },
     10'000, false},
    {"LongClassNameOfManyProblems",
     [](int n) {
       return "<object classid=\"progid:KVOPDesignObjects." + Times(n, "0123456789") + "\">" +
              Times(n, "<param a>") + "</object>";
     },
     10'000, false},
    {"BrokenSpansBeforeOneEnd",
     [](int n) {
       return Times(n,
                    "<!--KVO CONTROL STARTSPAN 1 <object "
                    "classid=\"progid:KVOPDesignObjects.DTCPrint\">x</object>-->\n") +
              "<!--KVO CONTROL ENDSPAN 1-->";
     },
     10'000, false},
};

using Command = std::vector<std::string>;

struct Work {
  double blocks = 0;
  double bytes = 0;
};

// The limit is above ten because growing strings are copied once more or less, and sorting adds its
// logarithm. Quadratic work would give a hundred.
constexpr double kMost = 15;

class Counted : public Faults {
 protected:
  // Runs a program with a stack of `kilobytes`.
  Result WithStack(int kilobytes, const std::string& program,
                   const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& environment = {}) {
    UseProgram("/bin/sh");
    std::vector<std::string> words = {
        "-c", "ulimit -s " + std::to_string(kilobytes) + " && exec \"$0\" \"$@\"", program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return Kvo(words, "", environment);
  }

  // Returns the work of a command on the current page; its exit code must be one of `codes`.
  Work WorkOf(const std::vector<std::string>& arguments, const std::vector<int>& codes) {
    const std::string file = (Folder() / "count").string();
    const Result result = WithStack(256, KVO_PLAIN_PROGRAM, arguments, {{"KVO_WORK_FILE", file}});
    EXPECT_EQ(std::ranges::count(codes, result.code), 1)
        << result.code << ": " << result.err.substr(0, 1000);
    Work work;
    std::ifstream(file) >> work.blocks >> work.bytes;
    EXPECT_GT(work.blocks, 10'000);
    return work;
  }

  static void ExpectAtMostTenTimes(const Work& less, const Work& more) {
    std::cout << more.blocks / less.blocks << " times the code, " << more.bytes / less.bytes
              << " times the bytes\n";
    EXPECT_LT(more.blocks / less.blocks, kMost);
    EXPECT_LT(more.bytes / less.bytes, kMost);
  }
};

class Size : public Counted, public ::testing::WithParamInterface<Shape> {};

INSTANTIATE_TEST_SUITE_P(Page, Size, ::testing::ValuesIn(kShapes),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(Size, WorkGrowsLinearly) {
  const Shape& shape = GetParam();
  const int count = std::min(shape.most / 10, 100'000);
  const std::string tenth = shape.of(count / 10);
  const std::string whole = shape.of(count);
  for (const Command& command : std::vector<Command>{{"save", "x.html", "-o", "y.html"},
                                                     {"publish", "x.html", "-o", "z.html"},
                                                     {"preview", "x.html", "-o", "p.html"},
                                                     {"check", "x.html"},
                                                     {"inspect", "x.html"}}) {
    SCOPED_TRACE(command[0]);
    std::vector<int> codes = {shape.good ? 0 : 1};
    if (command[0] == "check" && shape.good) codes.push_back(1);  // it may warn about such a page
    Write("x.html", tenth);
    const Work less = WorkOf(command, codes);
    Write("x.html", whole);
    std::cout << command[0] << ": ";
    ExpectAtMostTenTimes(less, WorkOf(command, codes));
  }
  if (!shape.good) return;
  // Checks the results: saving the saved page again changes nothing, and publishing it again gives
  // the same text.
  ASSERT_EQ(WithStack(256, KVO_PLAIN_PROGRAM, {"save", "y.html", "-o", "again.html"}).code, 0);
  EXPECT_TRUE(Read("again.html") == Read("y.html"));
  ASSERT_EQ(WithStack(256, KVO_PLAIN_PROGRAM, {"publish", "y.html", "-o", "again.html"}).code, 0);
  EXPECT_TRUE(Read("again.html") == Read("z.html"));
}

TEST_P(Size, SavingTheLargestTakesLinearWork) {
  const Shape& shape = GetParam();
  const std::vector<int> codes = {shape.good ? 0 : 1};
  Write("x.html", shape.of(shape.most / 10));
  const Work less = WorkOf({"save", "x.html"}, codes);
  Write("x.html", shape.of(shape.most));
  ExpectAtMostTenTimes(less, WorkOf({"save", "x.html"}, codes));
}

// An office file may come from outside together with the page.
TEST_F(Counted, WorkGrowsLinearlyWithTheKeysOfAnOfficeFile) {
  Write("x.html", "");
  const auto workOf = [this](int count) {
    Write("office.json", '{' + Numbered(count, "\"key", "\": 1,") + "\"last\": 1}");
    return WorkOf({"check", "x.html"}, {2});
  };
  const Work less = workOf(2'000);
  ExpectAtMostTenTimes(less, workOf(20'000));
}

TEST_F(Counted, UnknownFieldsAreNotComparedWithAllKnownOnes) {
  const auto workOf = [this](int count) {
    Write("x.html", Numbered(count,
                             "<object classid=\"progid:KVOPDesignObjects.DTCContact\">"
                             "<param name=\"field\" value=\"SomeFieldOfNumber",
                             "\"></object>"));
    Write("office.json",
          "{\"contactFields\": [" +
              Numbered(count, "{\"displayName\": \"x\", \"dataType\": 0, \"sqlName\": \"AnyField",
                       "OfNumber\"},") +
              "{\"sqlName\": \"Email\", \"displayName\": \"x\", \"dataType\": 0}]}");
    return WorkOf({"check", "x.html"}, {1});
  };
  const Work less = workOf(400);
  ExpectAtMostTenTimes(less, workOf(4'000));
}

TEST_F(Counted, WorkGrowsLinearlyWithTextsThatLookLikeFieldsAndConditions) {
  Write("office.json",
        R"({"contactFields": [{"sqlName": "Email", "displayName": "x", "dataType": 0}]})");
  const auto inTest = [](const std::string& text) {
    return ControlElement("DTCIf", {{"test", text}, {"on-true", text}});
  };
  for (const std::string part : {"#customer.", "#customer.a", "<kv:contact ", "<kv:contact field=",
                                 "<kv:contact field='", "#customer.Nix#", "'(a==1)", "#a#==1 "}) {
    SCOPED_TRACE(part);
    const std::string escaped =
        part.front() == '<' ? "kv:@lt;" + part.substr(1) : part;  // controls cannot be nested
    for (const bool control : {false, true}) {
      const auto workOf = [&](int count) {
        Write("x.html", control ? inTest(Times(count, escaped)) : Times(count, part));
        return WorkOf({"check", "x.html"}, {0, 1});
      };
      const Work less = workOf(4'000);
      ExpectAtMostTenTimes(less, workOf(40'000));
    }
  }
}

TEST_F(Counted, PreviewsTakeLinearWorkWhateverLooksLikeATag) {
  const auto workOf = [&](const std::string& page) {
    Write("x.html", page);
    return WorkOf({"preview", "x.html", "-o", "p.html"}, {0, 1});
  };
  for (const std::string part :
       {"<kv:", "<kv:print ", "<kv:print value='", "<kv:if test='1==1'>",
        "<kv:if test='#a.b#'><kv:else>", "</kv:if>", "<kv:if test='1'></kv:if>",
        "<kv:element name='p'>", "<!--KVO BLOCKLEVEL ELEMENT STARTSPAN",
        "</kv:x>KVO BLOCKLEVEL ELEMENT ENDSPAN-->", "<kv:click href='#customer.",
        "<a title='<kv:print value=\"1\"/>"}) {
    SCOPED_TRACE(part);
    const Work less = workOf(Times(3'000, part));
    ExpectAtMostTenTimes(less, workOf(Times(30'000, part)));
  }
  for (const std::string part :
       {"(", "!", "-", "1+", "1==1||", "1?", "'a'", "#customer.a#", "#a.", "&amp;"}) {
    SCOPED_TRACE(part);
    const auto inTest = [&](int count) {
      return ControlElement("DTCIf", {{"test", Times(count, part)}, {"on-true", "x"}});
    };
    const Work less = workOf(inTest(3'000));
    ExpectAtMostTenTimes(less, workOf(inTest(30'000)));
  }
  const auto namespaces = [](int count) {
    return Numbered(count,
                    "<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=\"field\" "
                    "value=\"a\"><param name=\"namespace\" value=\"n",
                    "\"></object><x:y>");
  };
  const Work less = workOf(namespaces(1'000));
  ExpectAtMostTenTimes(less, workOf(namespaces(10'000)));
}

// Runs the program built here, with sanitizers if enabled.
TEST_P(Size, ASmallStackIsEnoughWithSanitizers) {
  const Shape& shape = GetParam();
  Write("x.html", shape.of(shape.most / 100));
  for (const Command& command :
       std::vector<Command>{{"save", "x.html", "-o", "y.html"}, {"inspect", "x.html"}})
    EXPECT_EQ(WithStack(256, KVO_PROGRAM, command).code, shape.good ? 0 : 1) << command[0];
}

}  // namespace
}  // namespace kvo::test
