// Places in the browser's tree and in the source.
#include "document/design/Rendering.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/design/Marked.h"

namespace kvo::design {
namespace {

const char* const kPages[] = {
    "",
    "nur Text",
    "<!DOCTYPE html>\n<html>\n<head><title>t &amp; "
    "u</title></head>\n<body>\n<h1>a</h1>#\n</body>\n</html>\n",
    "<P>eins<p>zwei <B>drei &auml;&#33;</B>\n\n<table><tr><td>a<td>b#</table>",
    "<ul>\n <li>1\n <li>2 #\n</ul><!--[if mso]><p>x</p><![endif]--><pre>\n a</pre>",
    "<b>1<p>2</b>3</p>",
    "<table>weg<tr><td>da</td></tr></table>",
    "a &amp b &lt;c> & d &unbekannt; &#0; \U0001F600#\U0001F600",
    "<td>x</td></p><br/></br><img src=a>y",
    "<svg><text>s</text></svg><select><option>o</select><textarea>#</textarea>",
    "<p>hinten</body></html>\n nach",
};

TEST(Rendering, FindsThePlacesThatItNames) {
  for (const char* text : kPages) {
    const std::u16string source = ReadMarked(text).source;
    const Rendering rendering = RenderingOf(source);
    std::size_t found = 0;
    for (std::size_t at = 0; at <= source.size(); ++at) {
      const auto place = rendering.PlaceOf(at);
      if (!place) continue;
      const auto point = rendering.Find(*place);
      if (!point) continue;
      ++found;
      const Node& node = rendering.At(point->node);
      // Inside a text a place is exact, but for the inside of references.
      if (node.IsText() && point->position != at) {
        EXPECT_NE(source.find_last_of(u'&', at), std::u16string::npos) << text << at;
      }
      if (place->kind == RenderedPlace::Kind::gap) continue;
      const auto again = rendering.PlaceOf(point->position);
      ASSERT_TRUE(again);
      EXPECT_EQ(again->offset, place->offset) << text << ' ' << at;
    }
    EXPECT_GT(found + source.empty(), 0U) << text;
  }
}

// Compares a page that followed edits with one that is parsed anew.
void ExpectAsParsed(const Rendering& rendering) {
  const std::u16string& source = rendering.Source();
  const Rendering fresh = RenderingOf(source);
  ASSERT_EQ(rendering.Boxes(), fresh.Boxes());
  ASSERT_EQ(rendering.Nodes().size(), fresh.Nodes().size()) << Narrow(source);
  for (NodeIndex index = 0; index < fresh.Nodes().size(); ++index) {
    const Node& a = rendering.At(index);
    const Node& b = fresh.At(index);
    ASSERT_EQ(a.name, b.name) << Narrow(source);
    if (b.locked) continue;
    ASSERT_EQ(a.begin, b.begin) << Narrow(source) << " node " << index << ' ' << b.name;
    ASSERT_EQ(a.end, b.end) << Narrow(source) << " node " << index << ' ' << b.name;
  }
}

// Whatever is typed into whatever text: only the edited range changes, the text reads as wanted,
// and the places are those of parsing anew.
TEST(Rendering, TypesAnythingIntoAnyText) {
  std::mt19937 random(17);
  const char16_t kTyped[] = u"&<>;#x1alt \u00A0\u00E4";
  int edits = 0;
  for (const char* text : kPages) {
    for (int round = 0; round < 60; ++round) {
      std::u16string source = ReadMarked(text).source;
      Rendering rendering = RenderingOf(source);
      for (int step = 0; step < 8; ++step) {
        const auto place = rendering.PlaceOf(random() % (source.size() + 1));
        if (!place) continue;
        const auto point = rendering.Find(*place);
        if (!point || !rendering.At(point->node).IsText()) continue;
        const Node& node = rendering.At(point->node);
        const auto read = ReadText(rendering.SourceOf(node), node.begin);
        ASSERT_TRUE(read);
        const std::size_t begin = std::min(place->offset, read->text.size());
        const std::size_t end =
            begin + random() % std::min<std::size_t>(4, read->text.size() - begin + 1);
        const std::u16string added(random() % 3, kTyped[random() % (std::size(kTyped) - 1)]);
        const auto edit = rendering.ReplaceText(*place, begin, end, added);
        if (!edit) continue;
        std::u16string wanted = read->text;
        wanted.replace(begin, end - begin, added);
        std::u16string part = source.substr(node.begin, node.end - node.begin);
        part.replace(edit->begin - node.begin, edit->end - edit->begin, edit->text);
        const auto now = ReadText(part, 0);
        ASSERT_TRUE(now);
        EXPECT_EQ(Narrow(now->text), Narrow(wanted));
        source.replace(edit->begin, edit->end - edit->begin, edit->text);
        rendering.Apply(*edit);
        ++edits;
        ASSERT_EQ(Narrow(rendering.Source()), Narrow(source));
        ExpectAsParsed(rendering);
      }
    }
  }
  EXPECT_GT(edits, 1000);
}

// Whatever happens to the source: a change that counts as one inside a text leaves the tree as it
// is, and says what the browser's text has become.
TEST(Rendering, FollowsTheSourceInsideTexts) {
  std::mt19937 random(18);
  constexpr std::u16string_view kTyped = u"&<>/!;b#x1alt \n\"-\u00A0\u00E4";
  int followed = 0;
  int parsed = 0;
  for (const char* text : kPages) {
    for (int round = 0; round < 300; ++round) {
      Rendering rendering = RenderingOf(ReadMarked(text).source);
      for (int step = 0; step < 6; ++step) {
        const std::u16string source = rendering.Source();
        Edit edit;
        edit.begin = random() % (source.size() + 1);
        edit.end = edit.begin + random() % std::min<std::size_t>(4, source.size() - edit.begin + 1);
        for (auto count = random() % 3; count > 0; --count)
          edit.text += kTyped[random() % kTyped.size()];
        const auto write = rendering.WriteInText(edit);
        std::u16string edited = source;
        edited.replace(edit.begin, edit.end - edit.begin, edit.text);
        if (!write) {
          ASSERT_EQ(rendering.Source(), source);
          rendering.Apply(edit);
          ++parsed;
        } else {
          ++followed;
          auto place = write->place;
          ASSERT_TRUE(RenderingOf(source).Find(place)) << Narrow(source);
          place.offset = 0;
          place.hash = Hash(write->text);
          ASSERT_TRUE(RenderingOf(edited).Find(place))
              << Narrow(source) << " -> " << Narrow(edited);
        }
        ASSERT_EQ(Narrow(rendering.Source()), Narrow(edited));
        ASSERT_NO_FATAL_FAILURE(ExpectAsParsed(rendering)) << Narrow(source);
      }
    }
  }
  EXPECT_GT(followed, 1000);
  EXPECT_GT(parsed, 1000);
}

TEST(Rendering, DoesNotFindAPlaceOfAnotherTree) {
  const std::u16string source = u"<p>a<b>b</b></p>";
  const Rendering rendering = RenderingOf(source);
  auto place = rendering.PlaceOf(3);
  ASSERT_TRUE(place && rendering.Find(*place));
  auto other = *place;
  other.hash = Hash(std::u16string_view(u"b"));
  EXPECT_FALSE(rendering.Find(other));
  other = *place;
  ++other.path.front().names;
  EXPECT_FALSE(rendering.Find(other));
  other = *place;
  other.path.back().child = 7;
  EXPECT_FALSE(rendering.Find(other));
  other.path.clear();
  EXPECT_FALSE(rendering.Find(other));
}

TEST(Rendering, IsEmptyForAPageThatNestsTooDeep) {
  std::u16string deep;
  for (int i = 0; i < 100000; ++i) deep += u"<div>";
  EXPECT_TRUE(RenderingOf(deep).Nodes().empty());
  EXPECT_FALSE(RenderingOf(deep).PlaceOf(3));
}

}  // namespace
}  // namespace kvo::design
