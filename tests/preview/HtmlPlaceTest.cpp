// Where in a page a text is put, and that it stays a text there.
#include "document/preview/HtmlPlace.h"

#include <gtest/gtest.h>

#include "document/page/Page.h"

namespace kvo::preview {
namespace {

struct PlaceRow {
  std::string_view before;
  HtmlPlace place;
};
constexpr PlaceRow kPlaces[] = {
    {"", HtmlPlace::text},
    {"<p>a", HtmlPlace::text},
    {"a < b", HtmlPlace::text},
    {"a <", HtmlPlace::name},
    {"<p", HtmlPlace::name},
    {"<p ", HtmlPlace::tag},
    {"<p title", HtmlPlace::name},
    {"<p title ", HtmlPlace::tag},
    {"<p title=", HtmlPlace::bare},
    {"<p title=a", HtmlPlace::bare},
    {"<p title=a ", HtmlPlace::tag},
    {"<p title = \"a", HtmlPlace::value},
    {"<p title='a\"", HtmlPlace::value},
    {"<p title=\"a\"", HtmlPlace::tag},
    {"<p title=\"a>\">", HtmlPlace::text},
    {"<a HREF=\"", HtmlPlace::address},
    {"<a href=\" JavaScript:x('", HtmlPlace::code},
    {"<a href=\"https://a/javascript:", HtmlPlace::address},
    {"<img src='", HtmlPlace::source},
    {"<td background=\"", HtmlPlace::source},
    {"<p style=\"color:", HtmlPlace::code},
    {"<p onClick=\"", HtmlPlace::code},
    {"<p style=\"\" title=\"", HtmlPlace::value},
    {"<script>a<b", HtmlPlace::code},
    {"<SCRIPT src=x>a</scriptx>", HtmlPlace::code},
    {"<script>a</SCRIPT >", HtmlPlace::text},
    {"<style>p{}", HtmlPlace::code},
    {"<title>a<b>", HtmlPlace::text},
    {"<title>a</title><b ", HtmlPlace::tag},
    {"<!-- a > b", HtmlPlace::comment},
    {"<!-- a --> b", HtmlPlace::text},
    {"<!--> b", HtmlPlace::text},
    {"<!", HtmlPlace::name},
    {"<!-", HtmlPlace::name},
    {"<!doctype html", HtmlPlace::comment},
    {"<!doctype html>", HtmlPlace::text},
    {"<!-x> a", HtmlPlace::text},
    {"</p", HtmlPlace::name},
    {"</p>", HtmlPlace::text},
    {"</ p", HtmlPlace::comment},
    {"<?php a", HtmlPlace::comment},
    {"<1>", HtmlPlace::text},
};

TEST(HtmlPlaceTest, KnowsWhereATextIsPut) {
  for (const auto& [before, place] : kPlaces) {
    HtmlReader whole;
    whole.Read(before);
    EXPECT_EQ(whole.Place(), place) << before;
    HtmlReader pieces;
    for (std::size_t at = 0; at < before.size(); ++at) pieces.Read(before.substr(at, 1));
    EXPECT_EQ(pieces.Place(), place) << before;
  }
}

TEST(HtmlPlaceTest, TakesNoTagsWhereHtmlReadsNone) {
  HtmlReader reader;
  reader.Read("<title>");
  EXPECT_FALSE(reader.TakesTags());
  reader.Read("</title>");
  EXPECT_TRUE(reader.TakesTags());
}

TEST(HtmlPlaceTest, FindsTheBody) {
  HtmlReader reader;
  reader.Read("<html><!-- <body> --><script>'<body>'</script><bodyx>");
  EXPECT_EQ(reader.BodyAt(), 0U);
  const std::size_t before = reader.ReadSoFar();
  reader.Read("<BODY a='>'>x<body>");
  EXPECT_EQ(reader.BodyAt(), before + 12);
}

std::string Written(HtmlPlace place, std::string_view text, std::string_view charset = "utf-8") {
  const page::Page page("<meta charset=\"" + std::string(charset) + "\">");
  std::string written;
  return AppendTextAt(place, text, page.Encoding(), written) ? written : "(nothing)";
}

TEST(HtmlPlaceTest, EscapesWhatMeansSomething) {
  EXPECT_EQ(Written(HtmlPlace::text, "a<b>&\"'\r\n\tä€"), "a&lt;b&gt;&amp;&quot;&#39;\r\n\tä€");
  EXPECT_EQ(Written(HtmlPlace::text, std::string("\0\x1B\x7F", 3)),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Written(HtmlPlace::text,
                    "a\xFF"
                    "b\xC3"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(Written(HtmlPlace::text, "ä → €", "windows-1252"), "\xE4 &#8594; \x80");
  EXPECT_EQ(Written(HtmlPlace::text, "ä €", "iso-8859-1"), "\xE4 &#8364;");
}

TEST(HtmlPlaceTest, KeepsCommentsClosed) {
  EXPECT_EQ(Written(HtmlPlace::comment, "--><b>--"), "&#45;&#45;&gt;&lt;b&gt;&#45;&#45;");
}

TEST(HtmlPlaceTest, LetsOnlyHarmlessTextsThrough) {
  constexpr std::string_view kNothing = "(nothing)";
  EXPECT_EQ(Written(HtmlPlace::code, "Anna 17"), "Anna 17");
  EXPECT_EQ(Written(HtmlPlace::code, "#a1b2c3"), "#a1b2c3");
  for (const std::string_view text : {"a;b", "url(x)", "'", "a:b", "#a1b2c", "a\nb", "\\22", "ä"})
    EXPECT_EQ(Written(HtmlPlace::code, text), kNothing) << text;
  EXPECT_EQ(Written(HtmlPlace::bare, "17%"), "17%");
  EXPECT_EQ(Written(HtmlPlace::bare, "1 onload"), kNothing);
  EXPECT_EQ(Written(HtmlPlace::tag, "selected"), "selected");
  for (const std::string_view text : {"a=b", "onload", "Style", "a b", "src"})
    EXPECT_EQ(Written(HtmlPlace::tag, text), kNothing) << text;
  EXPECT_EQ(Written(HtmlPlace::name, "b"), kNothing);
  for (const std::string_view text : {"seite.html?a:b", "https://a.example/", "HTTP://a",
                                      "mailto:a@b", "//a.example", "#a:b", ""})
    EXPECT_EQ(Written(HtmlPlace::address, text), text) << text;
  for (const std::string_view text :
       {"javascript:x", " javascript:x", "java\tscript:x", ":x", "data:x"})
    EXPECT_EQ(Written(HtmlPlace::address, text), kNothing) << text;
  EXPECT_EQ(Written(HtmlPlace::source, "bilder/a.png"), "bilder/a.png");
  for (const std::string_view text : {"https://a.example/x.png", "//a/x.png", "a//b", "\\\\a\\b"})
    EXPECT_EQ(Written(HtmlPlace::source, text), kNothing) << text;
}

}  // namespace
}  // namespace kvo::preview
