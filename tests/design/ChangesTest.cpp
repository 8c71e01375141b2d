// What authors do to a page, and what becomes of its source.
#include "document/design/Changes.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/design/Marked.h"

namespace kvo::design {
namespace {

using Act = std::function<std::optional<Change>(const Author&, const Selection&)>;

struct Row {
  const char* before;
  const char* after;  // "" when nothing happens
};

class Changes : public testing::Test {
 protected:
  static void Expect(const Act& act, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
      SCOPED_TRACE(row.before);
      MarkedPage page = ReadMarked(row.before);
      const Rendering rendering = RenderingOf(page.source);
      const auto selection = SelectionOf(rendering, page);
      if (!selection) {
        EXPECT_STREQ(row.after, "locked");
        continue;
      }
      const auto change = act(Author(rendering), *selection);
      if (!change) {
        EXPECT_STREQ(row.after, "");
        continue;
      }
      ApplyTo(page.source, change->edits);
      page.begin = change->begin;
      page.end = change->end;
      EXPECT_EQ(WriteMarked(page), row.after);
    }
  }
};

Act Typed(std::string_view text) {
  return [text](const Author& author, const Selection& selection) {
    return author.Type(selection, Wide(text));
  };
}

TEST_F(Changes, Type) {
  Expect(Typed("x"),
         {
             {"<p>a|b</p>", "<p>ax|b</p>"},
             {"<p>‹ab›</p>", "<p>x|</p>"},
             {"<table><tr><td>|</td></tr></table>", "<table><tr><td>x|</td></tr></table>"},
             {"<p>a#|#b</p>", "<p>a#x|#b</p>"},
             {"<p>a‹#›b</p>", "<p>ax|b</p>"},
             {"<P>a<B>b‹c</B>d›e", "<P>a<B>bx|</B>e"},
             {"<p>one ‹two</p>\n<p>three› four</p>", "<p>one x| four</p>"},
             {"<p><br>|</p>", "<p><br>x|</p>"},
             {"<p>|<br></p>", "<p>x|</p>"},
             {"<p>a<br>|<br></p>", "<p>a<br>x|</p>"},
             {"<p>a|<br>b</p>", "<p>ax|<br>b</p>"},
         });
  // White space after the end tags belongs to the last text.
  Expect(Typed("x"), {{"<body>|\n\n</body>\n</html>\n", "<body>x|\n\n</body>\n</html>\n"},
                      {"<body>ab|</body>\n</html>\n", "<body>abx|</body>\n</html>\n"}});
  Expect(Typed("<&\u00A0"), {{"<p>|</p>", "<p>&lt;&amp;&nbsp;|</p>"}});
  Expect(Typed("lt;"), {{"<p>a &|<b>b</b></p>", "<p>a &&#108;t;|<b>b</b></p>"}});
}

TEST_F(Changes, Delete) {
  Expect(Typed(""),
         {
             {"<p>‹ab›</p>", "<p>|</p>"},
             {"<p>a‹#›b</p>", "<p>a|b</p>"},
             {"<p>a‹<br>›b</p>", "<p>a|b</p>"},
             {"<p>a‹b<i>c</i>d›e</p>", "<p>a|e</p>"},
             {"<p>a‹b<i>c›d</i>e</p>", "<p>a|<i>d</i>e</p>"},
             {"<p>a‹</p>\n<p>›b</p>", "<p>a|b</p>"},
             {"<p>a‹<p>›b", "<p>a|b"},
             {"<h1>a‹</h1><p>›b</p>", "<h1>a|b</h1>"},
             {"<p>a‹</p><h2>›b</h2>", "<p>a|b</p>"},
             {"<ul><li>a‹<li>›b</ul>", "<ul><li>a|b</ul>"},
             {"<div>a‹</div><div>›b</div>", "<div>a|b</div>"},
             // Cells stay.
             {"<table><tr><td>a‹</td><td>›b</td></tr></table>", ""},
             {"<table><tr><td>a‹b</td><td>c›d</td></tr></table>",
              "<table><tr><td>a|</td><td>d</td></tr></table>"},
             {"<p>a‹b</p><table><tr><td>c</td></tr></table><p>d›e</p>", "<p>a|e</p>"},
             // What other mail programs show stays.
             {"<p>a‹b<!--[if mso]>x<![endif]-->c›d</p>", "<p>a|<!--[if mso]>x<![endif]-->d</p>"},
         });
}

TEST_F(Changes, Enter) {
  Expect([](const Author& author, const Selection& selection) { return author.Enter(selection); },
         {
             {"<p>a|b</p>", "<p>a</p><p>|b</p>"},
             {"<P style='x' ID=y>a|b</P>", "<P style='x' ID=y>a</P><P style='x'>|b</P>"},
             {"<p>a|b<p>c", "<p>a<p>|b<p>c"},
             {"<p>ab|</p>", "<p>ab</p><p>|<br></p>"},
             {"<p>|ab</p>", "<p><br></p><p>|ab</p>"},
             {"<h1>ab|</h1>", "<h1>ab</h1><p>|<br></p>"},
             {"<h1>a|b</h1>", "<h1>a</h1><h1>|b</h1>"},
             {"<p>x<b>a|c</b>y</p>", "<p>x<b>a</b></p><p><b>|c</b>y</p>"},
             {"<p>x<b>ac|</b>y</p>", "<p>x<b>ac</b></p><p>|y</p>"},
             {"<p><b>a|</b></p>", "<p><b>a</b></p><p>|<br></p>"},
             {"<p>a‹xyz›b</p>", "<p>a</p><p>|b</p>"},
             {"<ul><li>a|b</li></ul>", "<ul><li>a</li><li>|b</li></ul>"},
             {"<table><tr><td>a|b</td></tr></table>", "<table><tr><td>a<br>|b</td></tr></table>"},
             {"<table><tr><td>a|</td></tr></table>", "<table><tr><td>a<br>|<br></td></tr></table>"},
             {"a|b", "a<br>|b"},
         });
}

TEST_F(Changes, Format) {
  Expect([](const Author& author,
            const Selection& selection) { return author.Toggle(selection, formats::bold); },
         {
             {"<p>a ‹word› b</p>", "<p>a <b>‹word›</b> b</p>"},
             {"<p>a wo|rd b</p>", "<p>a <b>‹word›</b> b</p>"},
             {"<p>a |b</p>", ""},
             {"<p>‹a <i>b</i> c›</p>", "<p><b>‹a <i>b</i> c›</b></p>"},
             {"<p>a ‹b <i>c› d</i></p>", "<p>a <b>‹b </b><i><b>c›</b> d</i></p>"},
             {"<p>a‹b</p>\n<p>c›d</p>", "<p>a<b>‹b</b></p>\n<p><b>c›</b>d</p>"},
             {"<p>‹a <b>b</b> c›</p>", "<p><b>‹a b c›</b></p>"},
             {"<p>a‹#›b</p>", "<p>a<b>‹#›</b>b</p>"},
             // Away with it.
             {"<p>a <b>‹word›</b> b</p>", "<p>a ‹word› b</p>"},
             {"<p><STRONG class=x>a‹bc›d</STRONG></p>",
              "<p><STRONG class=x>a</STRONG>‹bc›<STRONG class=x>d</STRONG></p>"},
             {"<p><b>‹ab›c</b></p>", "<p>‹ab›<b>c</b></p>"},
             {"<p><b>a‹bc›</b></p>", "<p><b>a</b>‹bc›</p>"},
             {"<p><b>x<i>y‹z›</i></b></p>", "<p><b>x<i>y</i></b><i>‹z›</i></p>"},
         });
}

TEST_F(Changes, TypeInAnotherFormat) {
  const auto typed = [](std::vector<const Format*> formats) -> Act {
    return [formats](const Author& author, const Selection& selection) {
      return author.TypeToggled(selection, u"x<", formats);
    };
  };
  Expect(typed({&formats::bold}),
         {
             {"<p>a |b</p>", "<p>a <b>x&lt;|</b>b</p>"},
             {"<p>a|</p>", "<p>a<b>x&lt;|</b></p>"},
             {"<p>a<i>b|</i></p>", "<p>a<i>b<b>x&lt;|</b></i></p>"},
             {"<p>‹a›</p>", ""},
             // Out of it.
             {"<p><b>a|</b>b</p>", "<p><b>a</b>x&lt;|b</p>"},
             {"<p><B>|a</B>b</p>", "<p>x&lt;|<B>a</B>b</p>"},
             {"<p><b>a |b</b></p>", "<p><b>a </b>x&lt;|<b>b</b></p>"},
             {"<p><STRONG id=y>a<i>b|c</i></STRONG></p>",
              "<p><STRONG id=y>a<i>b</i></STRONG><i>x&lt;|</i><STRONG><i>c</i></STRONG></p>"},
             {"<p><b>a<i>b|</i></b></p>", "<p><b>a<i>b</i></b><i>x&lt;|</i></p>"},
             {"<p><span style=\"font-weight:bold\">a|</span></p>", ""},
         });
  Expect(typed({&formats::bold, &formats::italic}),
         {
             {"<p>a|</p>", "<p>a<b><i>x&lt;|</i></b></p>"},
             {"<p><b>a|</b></p>", "<p><b>a</b><i>x&lt;|</i></p>"},
             {"<p><b><i>a|</i></b></p>", "<p><b><i>a</i></b>x&lt;|</p>"},
         });
}

TEST_F(Changes, FormatsOfStyles) {
  const auto has = [](const char* text, const Format& format) {
    const MarkedPage page = ReadMarked(text);
    const Rendering rendering = RenderingOf(page.source);
    return Author(rendering).Has(*SelectionOf(rendering, page), format);
  };
  EXPECT_TRUE(has("<p><span style=\"color:red; FONT-WEIGHT : Bold\">a‹b›</span>", formats::bold));
  EXPECT_TRUE(has("<p><span style='font-weight:700!important'>a|b</span>", formats::bold));
  EXPECT_TRUE(has("<p><font style=font-style:oblique><i>a|b</i></font>", formats::italic));
  EXPECT_TRUE(has("<p><span style=\"font-style:italic\">a|b</span>", formats::italic));
  EXPECT_TRUE(has("<p><a style=\"text-decoration:none underline\">a|b</a>", formats::underline));
  EXPECT_TRUE(has("<p><b style=\"color:red\">a|b</b>", formats::bold));
  EXPECT_FALSE(has("<p><span style=\"font-weight:400\">a|b</span>", formats::bold));
  EXPECT_FALSE(has("<p><b><span style=\"font-weight:normal\">a|b</span></b>", formats::bold));
  EXPECT_FALSE(has("<p><span style=\"font-weight:bold\">a‹b</span>c›", formats::bold));
  EXPECT_FALSE(has("<p><span title=\"font-weight:bold\">a|b</span>", formats::bold));
  EXPECT_FALSE(has("<p><span style=\";:;font-weight\">a|b</span>", formats::bold));
  EXPECT_FALSE(has("<div style=\"font-weight:bold\"><p>a|b</div>", formats::bold));
}

TEST_F(Changes, Link) {
  const auto to = [](std::string_view address) -> Act {
    return [address](const Author& author, const Selection& selection) {
      return author.Link(selection, Wide(address));
    };
  };
  Expect(to("https://a.de/?x=1&y=\"2\""),
         {
             {"<p>‹da›</p>", "<p><a href=\"https://a.de/?x=1&amp;y=&quot;2&quot;\">‹da›</a></p>"},
             {"<p>x<a class=k href='alt'>d|a</a></p>",
              "<p>x<a class=k href=\"https://a.de/?x=1&amp;y=&quot;2&quot;\">d|a</a></p>"},
             {"<p>x<a>d|a</a></p>",
              "<p>x<a href=\"https://a.de/?x=1&amp;y=&quot;2&quot;\">d|a</a></p>"},
         });
  Expect(to("u"), {{"<p>x |</p>", "<p>x <a href=\"u\">u</a>|</p>"}});
  Expect(to(""), {{"<p>x<A HREF=y>d|a</A></p>", "<p>xd|a</p>"}, {"<p>x|y</p>", ""}});
}

TEST_F(Changes, Blocks) {
  const auto to = [](const char* name) -> Act {
    return [name](const Author& author, const Selection& selection) {
      return author.MakeBlocks(selection, name);
    };
  };
  Expect(to("h2"), {
                       {"<P class=x>a|b</P>", "<h2 class=x>a|b</h2>"},
                       {"<p>a|b<p>c", "<h2>a|b</h2><p>c"},
                       {"<p>‹a</p> <h1>b›</h1>", "<h2>‹a</h2> <h2>b›</h2>"},
                       {"<h2>a|b</h2>", ""},
                       {"<body>ab|\n</body></html>\n", "<body><h2>ab|</h2>\n</body></html>\n"},
                       {"<body>|ab</body>", "<body><h2>|ab</h2></body>"},
                       {"<table><tr><td> a|b <i>c</i> <p>d</p></td></tr></table>",
                        "<table><tr><td> <h2>a|b <i>c</i></h2> <p>d</p></td></tr></table>"},
                   });
  Expect(to("p"), {{"<h1>a|</h1>", "<p>a|</p>"}});
}

TEST_F(Changes, Lists) {
  Expect([](const Author& author,
            const Selection& selection) { return author.ToggleList(selection, "ul"); },
         {
             {"<p>‹a</p>\n<p>b›</p>", "<ul><li>‹a</li>\n<li>b›</li></ul>"},
             {"<ul><li>‹a</li>\n<li>b›</li></ul>", "<p>‹a</p>\n<p>b›</p>"},
             {"<ul><li>a</li><li>b|</li><li>c</li></ul>",
              "<ul><li>a</li></ul><p>b|</p><ul><li>c</li></ul>"},
             {"<ol><li>a|</ol>", "<ul><li>a|</ul>"},
             {"<table><tr><td>a|b</td></tr></table>",
              "<table><tr><td><ul><li>a|b</li></ul></td></tr></table>"},
         });
}

TEST_F(Changes, Color) {
  Expect([](const Author& author,
            const Selection& selection) { return author.Color(selection, u"#ff0000"); },
         {
             {"<p>a‹b›c</p>", "<p>a<span style=\"color:#ff0000\">‹b›</span>c</p>"},
             {"<p>a<span style=\"color:#00ff00\">‹b›</span>c</p>",
              "<p>a<span style=\"color:#ff0000\">‹b›</span>c</p>"},
         });
}

TEST_F(Changes, Lines) {
  Expect([](const Author& author,
            const Selection& selection) { return author.TypeLines(selection, u"1 < 2\r\nzwei\n"); },
         {{"<p>a|b</p>", "<p>a1 &lt; 2<br>zwei<br>|b</p>"}});
}

TEST_F(Changes, AreRefusedWhereTheParserMovesThings) {
  Expect(Typed("x"), {
                         {"<table>te|xt<tr><td>a</td></tr></table>", "locked"},
                         {"<p><b>a<p>b|c", "locked"},
                         {"<b>1<p>2</b>3|</p>", "locked"},
                     });
}

TEST_F(Changes, CopiesWithTheTagsThatCompleteIt) {
  const struct {
    const char* page;
    const char* copy;
  } rows[] = {
      {"<p>a‹bc›d</p>", "bc"},
      {"<p>a<b>b‹c</b>d›e</p>", "<b>c</b>d"},
      {"<p>a‹b</p>\n<p>c›d</p>", "<p>b</p>\n<p>c</p>"},
      {"<p>a‹#›b</p>", "#"},
      {"<p>a‹<i>x</i>›b</p>", "<i>x</i>"},
  };
  for (const auto& row : rows) {
    const MarkedPage page = ReadMarked(row.page);
    const Rendering rendering = RenderingOf(page.source);
    const auto selection = SelectionOf(rendering, page);
    ASSERT_TRUE(selection) << row.page;
    std::u16string copied;
    for (const Author::Piece& piece : Author(rendering).Copy(*selection))
      copied += page.source.substr(piece.begin, piece.end - piece.begin) + piece.added;
    EXPECT_EQ(WriteMarked({copied, copied.size(), copied.size()}), std::string(row.copy) + "|");
  }
}

}  // namespace
}  // namespace kvo::design
