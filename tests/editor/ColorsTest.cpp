// Both schemes are legible: at least 4.5 : 1 for text, 3 : 1 for the mark of the focus.
#include "apps/editor/Colors.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <algorithm>
#include <map>

#include "tests/editor/EditorTest.h"

namespace kvo::editor {
namespace {

constexpr double kText = 4.5;
constexpr double kMark = 3;

class ColorsTest : public testing::TestWithParam<Scheme> {
 protected:
  void Expect(const QColor& text, const QColor& ground, double least, const std::string& what) {
    EXPECT_GE(Contrast(text, ground), least)
        << what << ": " << text.name().toStdString() << " on " << ground.name().toStdString();
  }
  QPalette palette = Colors(GetParam());
};

TEST(ContrastTest, IsThatOfWcag) {
  EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(Contrast(Qt::white, Qt::white), 1, 0.001);
  EXPECT_NEAR(Contrast(QColor("#777777"), Qt::white), 4.48, 0.005);
  EXPECT_NEAR(Contrast(QColor("#0000ff"), Qt::white), 8.59, 0.005);
}

TEST_P(ColorsTest, TextIsLegible) {
  using P = QPalette;
  struct Pair {
    P::ColorRole text, ground;
  };
  const Pair pairs[] = {{P::WindowText, P::Window},
                        {P::Text, P::Base},
                        {P::Text, P::AlternateBase},
                        {P::ButtonText, P::Button},
                        {P::ButtonText, P::Window},
                        {P::ToolTipText, P::ToolTipBase},
                        {P::HighlightedText, P::Highlight},
                        {P::PlaceholderText, P::Base},
                        {P::PlaceholderText, P::Window},
                        {P::PlaceholderText, P::AlternateBase},
                        {P::BrightText, P::Window},
                        {P::Link, P::Window},
                        {P::Link, P::Base},
                        {P::LinkVisited, P::Window},
                        {P::LinkVisited, P::Base}};
  for (const auto group : {P::Active, P::Inactive, P::Disabled})
    for (const auto& [text, ground] : pairs)
      Expect(palette.color(group, text), palette.color(group, ground), kText,
             std::to_string(group) + ' ' + std::to_string(text));
}

TEST_P(ColorsTest, SourceIsLegible) {
  const SourceColors source = ColorsOfSource(GetParam());
  for (const auto& color :
       {source.tagName, source.attribute, source.value, source.quiet, source.reference, source.odd})
    for (const auto ground : {QPalette::Base, QPalette::AlternateBase})
      Expect(color, palette.color(ground), kText, "source");
}

// The text widget covers a selected box by half of the highlight.
TEST_P(ColorsTest, ASelectedBoxIsLegible) {
  const QPalette before = QApplication::palette();
  QApplication::setPalette(palette);
  Desk desk;
  {
    const auto window = desk.NewWindow();
    ASSERT_TRUE(window->Work().Open(desk.Put("seite.html", Print("a", "Wert"))));
    window->Source().SelectControl(0);
    QTextCursor start(window->Page().Document());
    const QRect line = window->Source().cursorRect(start);
    const QImage box = window->Source()
                           .viewport()
                           ->grab(QRect(line.left() + 6, line.center().y() - 7, 40, 14))
                           .toImage();
    // The ground is what most pixels are; the text's strokes cover some pixels wholly.
    std::map<QRgb, int> colors;
    for (int y = 0; y < box.height(); ++y)
      for (int x = 0; x < box.width(); ++x) ++colors[box.pixel(x, y)];
    const QColor ground =
        std::ranges::max_element(colors, {}, [](const auto& color) { return color.second; })->first;
    double best = 1;
    for (const auto& [color, count] : colors) best = std::max(best, Contrast(color, ground));
    EXPECT_NE(ground, palette.color(QPalette::Base)) << "nothing is selected";
    EXPECT_GE(best, kText) << ground.name().toStdString();
  }
  QApplication::setPalette(before);
}

TEST_P(ColorsTest, TheFocusIsSeen) {
  for (const auto ground : {QPalette::Window, QPalette::Base, QPalette::Button})
    Expect(palette.color(QPalette::Highlight), palette.color(ground), kMark, "focus");
}

TEST_P(ColorsTest, ASchemeIsRecognized) { EXPECT_EQ(SchemeOf(palette), GetParam()); }

INSTANTIATE_TEST_SUITE_P(Schemes, ColorsTest, testing::Values(Scheme::light, Scheme::dark));

}  // namespace
}  // namespace kvo::editor
