// Finding a page's encoding, and reading and writing in each encoding.
#include "PageTesting.h"
#include "document/page/CharacterReferences.h"

namespace kvo::page {
namespace {

struct EncodingCase {
  std::string page;
  std::string name;
};

TEST(PageEncodingOf, FollowsMarkThenMetaThenUtf8) {
  const EncodingCase cases[] = {
      {"", "utf-8"},
      {"<meta charset=windows-1252>", "windows-1252"},
      {"<META CHARSET = 'ISO-8859-1' >", "iso-8859-1"},
      {"<meta/charset=\" latin1 \">", "latin1"},
      {"\xEF\xBB\xBF<meta charset=windows-1252>", "utf-8"},
      {"\xFF\xFE<meta charset=windows-1252>", "utf-16le"},
      {"\xFE\xFF", "utf-16be"},
      {"<meta http-equiv=Content-Type content='text/html; charset=iso-8859-15'>", "iso-8859-15"},
      {"<meta content='text/html; charset = \"windows-1252\" ;x' http-equiv=content-type>",
       "windows-1252"},
      {"<meta content='text/html; charset=iso-8859-15'>", "utf-8"},
      {"<meta http-equiv=refresh content='text/html; charset=iso-8859-15'>", "utf-8"},
      {"<meta http-equiv=content-type content='charset charset=koi8-r'>", "koi8-r"},
      {"<meta http-equiv=content-type content='charset=\"koi8-r'>", "utf-8"},
      {"<meta http-equiv=content-type content='charset=latin1' charset=l9>", "l9"},
      {"<meta charset=latin1 charset=l9>", "latin1"},
      {"<!-- <meta charset=latin1> --><meta charset=l9>", "l9"},
      {"<!--><meta charset=l9>", "l9"},
      {"<p title='<meta charset=latin1>'><meta charset=l9>", "l9"},
      {"</p title='<meta charset=latin1>'><meta charset=l9>", "l9"},
      {"<metal charset=latin1>", "utf-8"},
      {"<meta name=charset content=latin1><meta charset=l9>", "l9"},
      {"<? <meta charset=latin1>", "utf-8"},
      {"<meta charset=utf-16>", "utf-8"},
      {"<meta charset=shift_jis>", "shift_jis"},
      {std::string(1024 - 21, ' ') + "<meta charset=latin1>", "latin1"},
      {std::string(1024 - 20, ' ') + "<meta charset=latin1>", "utf-8"},
      {"<p>\xFC", "windows-1252"},
      {std::string(5000, ' ') + "\xC3", "windows-1252"},
      {"\xC3\xBC", "utf-8"},
      {"<meta charset=utf-8>\xFC", "utf-8"},
      {"\xEF\xBB\xBF\xFC", "utf-8"},
      {std::string(1023, ' ') + "\xC3\xBC", "utf-8"},
      {"<meta charset='{{ page.charset }}'>", "utf-8"},
      {"<meta charset={{page.charset}}>\xFC", "windows-1252"},
      {"<meta charset='<?= $c ?>'><meta charset=l9>", "l9"},
      {"<meta charset='#shop.charset#'>", "utf-8"},
      {"<meta charset='<kv:config value=\"charset\"/>'>", "utf-8"},
      {"<meta http-equiv=content-type content='text/html; charset=${charset}'>", "utf-8"},
      {"<meta charset=\"latin1", "utf-8"},
  };
  for (const EncodingCase& c : cases) EXPECT_EQ(PageEncoding::Of(c.page).Name(), c.name) << c.page;
}

using Encodings = PageTest;

std::string With(std::string_view charset, std::string_view rest) {
  return "<meta charset=" + std::string(charset) + ">" + std::string(rest);
}

TEST_F(Encodings, ReadAndWriteValuesInThePagesEncoding) {
  struct Case {
    std::string_view charset;
    std::string_view bytes;
    std::string_view utf8;
  };
  for (const Case& c : {Case{"utf-8", "\xC3\xBC\xE2\x82\xAC\xF0\x9F\x92\x8C",
                             "\xC3\xBC\xE2\x82\xAC\xF0\x9F\x92\x8C"},
                        Case{"windows-1252", "\xFC\x80\x99", "\xC3\xBC\xE2\x82\xAC\xE2\x84\xA2"},
                        Case{"iso-8859-1", "\xFC\xA4\x80", "\xC3\xBC\xC2\xA4\xC2\x80"},
                        Case{"iso-8859-15", "\xFC\xA4", "\xC3\xBC\xE2\x82\xAC"}}) {
    const std::string page = With(c.charset, "\xFE" + PrintElement(c.bytes));
    const std::string saved = Saved(page);
    EXPECT_EQ(saved,
              With(c.charset, "\xFE" + Span(StoredPrint(c.bytes),
                                            "<kv:print value=\"" + std::string(c.bytes) + "\"/>")));
    EXPECT_EQ(Saved(saved), saved);
    EXPECT_EQ(ValuesIn(page), List{std::string(c.utf8)});
  }
}

TEST_F(Encodings, WriteMissingCharactersAsReferences) {
  const std::string page =
      With("iso-8859-1",
           Element(Param("display-value", "&euro;&#x1F48C;&#x2020;") + Param("value", "a")));
  const std::string saved = Saved(page);
  EXPECT_NE(saved.find("value=\"&#8364;&#128140;&#8224;\""), std::string::npos) << saved;
  EXPECT_EQ(Saved(saved), saved);
}

TEST_F(Encodings, RefuseRuntimeTextWithMissingCharacters) {
  EXPECT_EQ(Checked(With("iso-8859-1", "\n" + PrintElement("&euro;"))),
            List{"2:1 not-in-encoding"});
  EXPECT_NE(problems[0].message.german.find("U+20AC \"\xE2\x82\xAC\""), std::string::npos)
      << problems[0].message.german;
  EXPECT_EQ(Checked(With("us-ascii", PrintElement("&uuml;"))), List{"1:24 not-in-encoding"});
}

TEST_F(Encodings, RefuseValuesThatReferencesCannotExpress) {
  // In HTML, "&#128;" is the euro sign, so the character U+0080 cannot be written.
  const std::string page = With("windows-1252", PrintElement("x"));
  const Edit edit{0, [](Control& control) { control.Let("DisplayValue", "\xC2\x80"); }};
  EXPECT_EQ(Saved(page, {.edit = &edit}), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:28 not-in-encoding"});
}

TEST_F(Encodings, RefuseInvalidText) {
  const Edit edit{0, [](Control& control) { control.Let("DisplayValue", "\xFF"); }};
  EXPECT_EQ(Saved(PrintElement("x"), {.edit = &edit}), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:1 not-in-encoding"});
}

TEST_F(Encodings, FindUndefinedBytes) {
  EXPECT_EQ(Checked(With("windows-1252", "\n" + PrintElement("\xFC\x81"))),
            List{"2:81 invalid-bytes"});
  EXPECT_EQ(Checked(With("us-ascii", PrintElement("\xFC"))), List{"1:103 invalid-bytes"});
}

TEST_F(Encodings, UnsupportedAreAcceptedInAPageWithoutControls) {
  const std::string page = With("shift_jis", "\x83\x5C<b>");
  EXPECT_EQ(Saved(page), page);
}

TEST_F(Encodings, PushedOutOfRangeByAControlAreAnError) {
  const std::string page = PrintElement(std::string(400, 'v')) + With("windows-1252", "\xFC");
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:1 encoding-changes"});
  EXPECT_EQ(Published(page),
            "<kv:print value=\"" + std::string(400, 'v') + "\"/>" + With("windows-1252", "\xFC"));
}

TEST_F(Encodings, DeclaredByAControlsTextAreAnErrorUnlessThePageDeclaresTheSame) {
  const std::string script =
      Element(Param("html-content", "kv:@lt;meta charset=windows-1252kv:@gt;"), "DTCScript");
  EXPECT_EQ(Checked(script), List{"1:1 encoding-changes"});
  EXPECT_EQ(Checked(With("windows-1252", script)), List{});
  EXPECT_EQ(Checked(With("utf-8", script)), List{});
}

// Pages that do not declare their encoding.

TEST_F(Encodings, NotDeclaredAreWindows1252WhenThePageIsNotUtf8) {
  EXPECT_EQ(Saved("<p>\xFC " + PrintElement("&#9731;")), "(not saved)");
  EXPECT_EQ(Listed(problems), (List{"1:4 undeclared-encoding?", "1:6 not-in-encoding"}));
  EXPECT_NE(problems[1].message.english.find("does not exist in windows-1252"), std::string::npos);
}

TEST_F(Encodings, NotDeclaredAreWrittenAsRead) {
  const std::string page = "<p>\xFC " + PrintElement("\x80&euro;");
  const std::string saved = Saved(page);
  EXPECT_EQ(Listed(problems), List{"1:4 undeclared-encoding?"});
  EXPECT_NE(problems[0].message.english.find("reads it as windows-1252"), std::string::npos);
  EXPECT_EQ(saved, "<p>\xFC " + Span(StoredPrint("\x80\x80"), "<kv:print value=\"\x80\x80\"/>"));
  EXPECT_EQ(Saved(saved), saved);
  EXPECT_EQ(Published(saved), "<p>\xFC <kv:print value=\"\x80\x80\"/>");
  EXPECT_EQ(Listed(problems), List{"1:4 undeclared-encoding?"});
  EXPECT_EQ(ValuesIn(saved), List{"\xE2\x82\xAC\xE2\x82\xAC"});
}

// A control may contain the only bytes that are not UTF-8; then they must remain so.
TEST_F(Encodings, NotDeclaredMustReadTheSameWhenSaved) {
  const std::string copyright = "\xC3\xBC";  // two characters in windows-1252
  const std::string page = Span(StoredPrint(copyright), "\xFC");
  EXPECT_EQ(Saved(page), "(not saved)");
  EXPECT_EQ(Saved(page, {.force = true}), "(not saved)");
  EXPECT_EQ(Listed(problems), (List{"1:1 encoding-changes", "1:154 undeclared-encoding?"}));
  for (const std::string& other : List{"\xFC" + page, page + "\xFC", page + PrintElement("\xFC")})
    EXPECT_NE(Saved(other, {.force = true}), "(not saved)");
}

TEST_F(Encodings, DeclaredInVainAreReportedWithPlaceAndReason) {
  const std::string far = std::string(1024, ' ');
  EXPECT_EQ(Checked(far + "\n<meta charset=utf-8>"), List{"2:1 undeclared-encoding?"});
  EXPECT_NE(problems[0].message.english.find("first 1024 bytes; the page is read as utf-8"),
            std::string::npos);
  EXPECT_EQ(Checked(far + "\n<meta charset=latin1>\xFC"), List{"2:1 undeclared-encoding?"});
  EXPECT_NE(problems[0].message.english.find("\"latin1\" does not count"), std::string::npos);
  EXPECT_NE(problems[0].message.english.find("read as windows-1252"), std::string::npos);
  EXPECT_EQ(Checked("\n <meta charset='{{ c }}'>"), List{"2:2 undeclared-encoding?"});
  EXPECT_NE(problems[0].message.english.find("\"{{ c }}\" is no encoding but a placeholder"),
            std::string::npos);
  EXPECT_EQ(Checked(far + "<META http-equiv='Content-Type' content='text/html;charset=l9'>"),
            List{"1:1025 undeclared-encoding?"});
  for (const std::string& page :
       List{"<meta name=viewport content=x>", far + "<!-- <meta charset=latin1> -->",
            far + "<metal charset=latin1>", "<meta charset=utf-8>" + far + "<meta charset=latin1>",
            "<meta charset='{{ c }}'><meta charset=utf-8>",
            "\xEF\xBB\xBF" + far + "<meta charset=latin1>", far + "<meta charset=utf-8"})
    EXPECT_EQ(Checked(page), List{}) << page;
}

// Browsers read ISO-8859-1 as windows-1252.

TEST_F(Encodings, SuggestWindows1252InsteadOfIso88591) {
  const auto told = [&](std::string_view charset, std::string_view character) {
    Checked(With(charset, PrintElement(character)));
    return problems.empty() ? "" : problems[0].message.english;
  };
  for (const char* charset : {"iso-8859-1", "latin1", "us-ascii"}) {
    for (const char* character : {"&euro;", "&bdquo;", "&ldquo;", "&ndash;"})
      EXPECT_NE(told(charset, character).find("Write windows-1252 into the page's charset"),
                std::string::npos)
          << told(charset, character);
    EXPECT_EQ(told(charset, "&#9731;").find("Write windows-1252"), std::string::npos);
    EXPECT_EQ(Checked(With("windows-1252", PrintElement("&euro;&bdquo;&ldquo;&ndash;"))), List{});
  }
  EXPECT_EQ(told("iso-8859-15", "&bdquo;").find("windows-1252"), std::string::npos);
}

TEST_F(Encodings, SuggestAReferenceWhereItWorks) {
  struct Case {
    std::string_view className;
    std::string_view params;
    std::string_view key;
    std::string_view property;
  };
  const std::string named = Param("value", "div");
  const std::string link = Param("href", "https://shop.example/");
  const std::string test = Param("test", "t");
  for (const Case& c :
       {Case{"DTCElement", named, "html-content", "HTMLContent"},
        Case{"DTCClicktracker", link, "html-content", "HTMLContent"},
        Case{"DTCIf", test, "on-true", "OnTrue"}, Case{"DTCIf", test, "on-false", "OnFalse"}}) {
    const auto page = [&](std::string_view character) {
      return With("iso-8859-1",
                  Element(std::string(c.params) + Param(c.key, character), c.className));
    };
    EXPECT_EQ(Published(page("&bdquo;")), "(not published)");
    ASSERT_FALSE(problems.empty());
    EXPECT_TRUE(problems[0].message.english.ends_with("In " + std::string(c.property) +
                                                      " you can also write &#8222;."))
        << problems[0].message.english;
    // The suggestion works.
    EXPECT_NE(Published(page("&amp;#8222;")).find("&#8222;"), std::string::npos);
    EXPECT_EQ(problems.size(), 0U);
  }
  for (const std::string& control :
       List{PrintElement("&bdquo;"), Element(Param("html-content", "&bdquo;"), "DTCScript")}) {
    EXPECT_EQ(Published(With("iso-8859-1", control)), "(not published)");
    EXPECT_EQ(problems[0].message.english.find("&#8222;"), std::string::npos);
  }
}

TEST_F(Encodings, KeepButNeverCreateControlCharacters) {
  const std::string page = With("iso-8859-1", PrintElement("\x80"));
  EXPECT_EQ(Saved(page),
            With("iso-8859-1", Span(StoredPrint("\x80"), "<kv:print value=\"\x80\"/>")));
  for (const char* property : {"Value", "DisplayValue"}) {
    const Edit edit{0, [&](Control& control) { control.Let(property, "\xC2\x80"); }};
    EXPECT_EQ(Saved(With("iso-8859-1", PrintElement("x")), {.edit = &edit}), "(not saved)");
    EXPECT_EQ(Listed(problems), List{"1:26 not-in-encoding"});
    EXPECT_NE(Saved(page, {.edit = &edit}), "(not saved)") << "already in the page";
  }
}

// Character references.

std::string Resolved(std::string_view text) {
  std::string resolved;
  while (!text.empty()) {
    const std::size_t length = text[0] == '&' ? AppendCharacterReference(text, resolved) : 0;
    if (length == 0) resolved += text[0];
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return resolved;
}

TEST(CharacterReferences, AreResolvedAsInAttributesOfHtml) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"&amp;&lt;&gt;&quot;&apos;", "&<>\"'"},
      {"&AMP;&LT", "&<"},
      {"&amp", "&"},
      {"&amp &copy!", "& \xC2\xA9!"},
      {"&copy=1", "&copy=1"},
      {"&copyx &copy1", "&copyx &copy1"},
      {"&copy;x", "\xC2\xA9x"},
      {"&notit;", "&notit;"},
      {"&notin;", "\xE2\x88\x89"},
      {"&not;in",
       "\xC2\xAC"
       "in"},
      {"&hellip", "&hellip"},
      {"&nope; & && &;", "&nope; & && &;"},
      {"&amp;amp;", "&amp;"},
      {"&acE;", "\xE2\x88\xBE\xCC\xB3"},
      {"&CounterClockwiseContourIntegral;", "\xE2\x88\xB3"},
      {"&#65;&#x41;&#X41;&#65&#x41", "AAAAA"},
      {"&#65x", "Ax"},
      {"&#;&#x;&#xg;&#a;", "&#;&#x;&#xg;&#a;"},
      {"&#13;&#10;&#9;", "\r\n\t"},
      {"&#128;&#x9F;&#129;", "\xE2\x82\xAC\xC5\xB8\xC2\x81"},
      {"&#x1F48C;", "\xF0\x9F\x92\x8C"},
      {"&#0;&#xD800;&#x110000;&#99999999999999999999;",
       "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& [text, resolved] : cases) EXPECT_EQ(Resolved(text), resolved) << text;
}

}  // namespace
}  // namespace kvo::page
