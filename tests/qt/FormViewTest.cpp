// Forms in Qt widgets: names, captions, sizes and fonts. tests/desktop covers user actions.
#include "host/qt/FormView.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTabWidget>
#include <QTreeView>

#include "host/qt/AccessibleName.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/qt/Twips.h"
#include "tests/desktop/AllForms.h"
#include "tests/desktop/SampleForm.h"
#include "tests/qt/QtUser.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

class Forms : public testing::Test {
 protected:
  template <class Widget>
  Widget& Shown(const FormControl& control) {
    return dynamic_cast<Widget&>(*user.View().WidgetOf(control));
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  SampleForm form;
  QtUser user{platform, form};
};

TEST_F(Forms, AmpersandsAreLiteralInEveryCaption) {
  EXPECT_EQ(Shown<QLabel>(form.lblName).text(), u"R&D && <b>x</b>"_s);
  EXPECT_EQ(Shown<QLabel>(form.lblName).textFormat(), Qt::PlainText);
  EXPECT_EQ(Shown<QLabel>(form.lblName).buddy(), nullptr);
  EXPECT_EQ(Shown<QCheckBox>(form.chkA).text(), u"A && B"_s);
  EXPECT_EQ(Shown<QRadioButton>(form.optA).text(), u"eins && zwei"_s);
  EXPECT_EQ(Shown<QPushButton>(form.cmdFail).text(), u"Los && weg"_s);
  EXPECT_EQ(Shown<QGroupBox>(form.fraBox).title(), u"Rahmen && mehr"_s);
  EXPECT_EQ(Shown<QTabWidget>(form.tabs).tabText(0), u"T && U"_s);
  EXPECT_TRUE(Shown<QPushButton>(form.cmdFail).shortcut().isEmpty() ||
              Shown<QPushButton>(form.cmdFail).shortcut().toString().isEmpty());
}

TEST_F(Forms, WidgetsAreNamedAsTheirControls) {
  EXPECT_EQ(Shown<QLineEdit>(form.txtName).objectName(), u"txtName"_s);
  EXPECT_EQ(Shown<QLineEdit>(form.txtName).accessibleName(), u"R&D && <b>x</b>"_s);
  EXPECT_EQ(user.View().WidgetOf(form.tmr), nullptr);
  EXPECT_EQ(user.View().WidgetOf(form.panB), Shown<QTabWidget>(form.tabs).widget(1));
}

TEST_F(Forms, AButtonInARowIsAsWideAsTheGrid) {
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Los & weg", .key = "b"});
  form.suiRows.Add({.caption = "Text", .key = "t"});
  QCoreApplication::processEvents();
  auto& tree = Shown<QTreeView>(form.suiRows);
  const auto* button = dynamic_cast<QPushButton*>(tree.indexWidget(tree.model()->index(0, 0)));
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->text(), u"Los && weg"_s);
  EXPECT_EQ(button->width(), tree.viewport()->width());  // although columns start wider
  row.Enabled(false);
  EXPECT_FALSE(button->isEnabled());
}

TEST_F(Forms, TheTabKeyStopsAtTheChosenOption) {
  form.optA.Value(true);
  EXPECT_TRUE(Shown<QRadioButton>(form.optA).focusPolicy() & Qt::TabFocus);
  EXPECT_FALSE(Shown<QRadioButton>(form.optB).focusPolicy() & Qt::TabFocus);
}

// --- every page ---

bool IsInput(const FormControl& control) { return control.TakesFocus(); }

TEST(Pages, EveryInputHasAnAccessibleName) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    const FormView view(*named.form, nullptr);
    for (FormControl* control : named.form->AllControls()) {
      if (!IsInput(*control)) continue;
      SCOPED_TRACE(named.name + "." + std::string(control->Name()));
      EXPECT_FALSE(view.WidgetOf(*control)->accessibleName().isEmpty());
    }
  }
}

TEST(Pages, AnInputIsNamedByTheLabelNextToOrAboveIt) {
  frmExpressionBuilder dialog;
  EXPECT_EQ(AccessibleName(dialog.cboFields), "Datenfeld:");
  EXPECT_EQ(AccessibleName(dialog.cboOperator), "Operator:");
  EXPECT_EQ(AccessibleName(dialog.txtArgument), "Wert:");
  EXPECT_EQ(AccessibleName(dialog.txtIfExpression), "txtIfExpression");
  const auto page = CreatePage("propClickGeneral");
  EXPECT_EQ(AccessibleName(*page->Find("txtHref")), "Internet Adresse (URL)");
  const auto format = CreatePage("propGeneralFormat");
  EXPECT_EQ(AccessibleName(*format->Find("cboFormat")), "Anzeigeformat:");
}

// Returns the space that a caption needs in its widget.
QSize RoomOf(QWidget& widget) {
  if (auto* label = dynamic_cast<QLabel*>(&widget); label && label->wordWrap())
    return {label->width(), label->heightForWidth(label->width())};
  if (auto* button = dynamic_cast<QPushButton*>(&widget)) {
    const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    return text + QSize(4, 4);
  }
  // Styles add a margin to the size hint of a box with a caption.
  if (dynamic_cast<QAbstractButton*>(&widget) != nullptr) {
    const int mark = widget.style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &widget);
    return {widget.sizeHint().width(), std::max(mark, widget.fontMetrics().height())};
  }
  return widget.sizeHint();
}

TEST(Captions, AreNotCutOff) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    const FormView view(*named.form, nullptr);
    for (const FormControl* control : named.form->AllControls()) {
      QWidget* widget = view.WidgetOf(*control);
      const bool captioned =
          dynamic_cast<QLabel*>(widget) || dynamic_cast<QAbstractButton*>(widget);
      if (!captioned) continue;
      SCOPED_TRACE(named.name + "." + std::string(control->Name()));
      const QSize room = RoomOf(*widget);
      EXPECT_LE(room.width(), widget->width());
      EXPECT_LE(room.height(), widget->height());
    }
  }
}

// Runs at 96 dpi and again at 192.
TEST(Scaling, FollowsTheScreensLogicalResolution) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    const FormView view(*named.form, nullptr);
    const double pixels = view.logicalDpiX() / 1440.0;
    EXPECT_NEAR(view.width(), named.form->FormSize().width * pixels, 0.51) << named.name;
    for (const FormControl* control : named.form->AllControls()) {
      const QWidget* widget = view.WidgetOf(*control);
      if (widget == nullptr || dynamic_cast<const TabPanel*>(control)) continue;
      SCOPED_TRACE(named.name + "." + std::string(control->Name()));
      EXPECT_NEAR(widget->x(), control->At().left * pixels, 0.51);
      EXPECT_NEAR(widget->y(), control->At().top * pixels, 0.51);
      EXPECT_NEAR(widget->width(), control->At().width * pixels, 1.01);
      EXPECT_NEAR(widget->height(), control->At().height * pixels, 1.01);
      EXPECT_NEAR(QFontInfo(widget->font()).pixelSize(),
                  control->TextFont().points * view.logicalDpiY() / 72, 0.51);
    }
  }
}

TEST(Fonts, Are8Point25And9PointForMarkup) {
  EXPECT_EQ(QtFont({}).pointSizeF(), 8.25);
  EXPECT_EQ(QtFont({}).families().constFirst(), u"Tahoma"_s);
  EXPECT_FALSE(QtFont({}).bold());
  EXPECT_EQ(QtFont(kBoldFont).pointSizeF(), 8.25);
  EXPECT_TRUE(QtFont(kBoldFont).bold());
  EXPECT_EQ(QtFont(kMarkupFont).pointSizeF(), 9);
  EXPECT_EQ(QtFont(kMarkupFont).families().constFirst(), u"Courier New"_s);
}

TEST(Scaling, TwipsAreMeasuredByTheDevice) {
  QImage device(1, 1, QImage::Format_ARGB32);
  device.setDotsPerMeterX(3780);  // 96 dpi
  EXPECT_EQ(ToPixels(1500, device), 100);
  device.setDotsPerMeterX(7560);
  EXPECT_EQ(ToPixels(1500, device), 200);
  EXPECT_EQ(ToPixels(-1500, device), -200);
}

}  // namespace
}  // namespace kvo
