// Which encoding a page is in, and what is read and written in each.
#include "PageTesting.h"
#include "host/page/CharacterReferences.h"

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
      {"<meta charset=\"latin1", "utf-8"},
  };
  for (const EncodingCase& c : cases) EXPECT_EQ(PageEncoding::Of(c.page).Name(), c.name) << c.page;
}

using Encodings = PageTest;

std::string With(std::string_view charset, std::string_view rest) {
  return "<meta charset=" + std::string(charset) + ">" + std::string(rest);
}

TEST_F(Encodings, ReadAndWriteValuesInThePagesOwn) {
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

TEST_F(Encodings, PutWhatTheyDoNotHoldIntoReferences) {
  const std::string page =
      With("iso-8859-1",
           Element(Param("display-value", "&euro;&#x1F48C;&#x2020;") + Param("value", "a")));
  const std::string saved = Saved(page);
  EXPECT_NE(saved.find("value=\"&#8364;&#128140;&#8224;\""), std::string::npos) << saved;
  EXPECT_EQ(Saved(saved), saved);
}

TEST_F(Encodings, RefuseRuntimeTextThatTheyDoNotHold) {
  EXPECT_EQ(Checked(With("iso-8859-1", "\n" + PrintElement("&euro;"))),
            List{"2:1 not-in-encoding"});
  EXPECT_NE(problems[0].message.german.find("U+20AC \"\xE2\x82\xAC\""), std::string::npos)
      << problems[0].message.german;
  EXPECT_EQ(Checked(With("us-ascii", PrintElement("&uuml;"))), List{"1:24 not-in-encoding"});
}

TEST_F(Encodings, RefuseValuesThatNotEvenReferencesHold) {
  // "&#128;" is the euro sign in HTML, so the character U+0080 cannot be written.
  const std::string page = With("windows-1252", PrintElement("x"));
  const Edit edit{0, [](Control& control) { control.Let("DisplayValue", "\xC2\x80"); }};
  EXPECT_EQ(Saved(page, {.edit = &edit}), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:28 not-in-encoding"});
}

TEST_F(Encodings, RefuseValuesThatAreNoText) {
  const Edit edit{0, [](Control& control) { control.Let("DisplayValue", "\xFF"); }};
  EXPECT_EQ(Saved(PrintElement("x"), {.edit = &edit}), "(not saved)");
  EXPECT_EQ(Listed(problems), List{"1:1 not-in-encoding"});
}

TEST_F(Encodings, FindBytesThatStandForNothing) {
  EXPECT_EQ(Checked(With("windows-1252", "\n" + PrintElement("\xFC\x81"))),
            List{"2:81 invalid-bytes"});
  EXPECT_EQ(Checked(With("us-ascii", PrintElement("\xFC"))), List{"1:103 invalid-bytes"});
}

TEST_F(Encodings, NotServedPassWhenThePageHasNoControls) {
  const std::string page = With("shift_jis", "\x83\x5C<b>");
  EXPECT_EQ(Saved(page), page);
}

TEST_F(Encodings, PushedOutOfReachByAControlAreAnError) {
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
