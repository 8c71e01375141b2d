// Forms on widgets: what shows, in what order, how large, and what user actions do.
#include "host/qt/FormView.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "common/values/RuntimeError.h"
#include "host/qt/AccessibleName.h"
#include "host/qt/QtText.h"
#include "host/qt/TahomaFont.h"
#include "host/qt/Twips.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/qt/AllForms.h"
#include "tests/qt/QtUser.h"

namespace kvo {
namespace {

using namespace Qt::StringLiterals;

class Sample final : public Form {
 public:
  Sample() : Form("Muster & Co", {6000, 4500}) {}
  KVO_CONTROL(Label, lblName, .caption = "R&D && <b>x</b>", .at = {0, 0, 1500, 240});
  KVO_CONTROL(
      TextBox, txtName, .at = {1600, 0, 1500, 300},
      .onGotFocus = [this](TextBox&) { log.emplace_back("focus"); });
  KVO_CONTROL(
      CheckBox, chkA, .caption = "A & B", .at = {0, 400, 1500, 240},
      .onClick = [this](CheckBox&) { log.emplace_back("check"); });
  KVO_CONTROL(
      OptionButton, optA, .caption = "eins & zwei", .at = {0, 700, 1500, 240},
      .onClick = [this](OptionButton&) { ++optionClicks; });
  KVO_CONTROL(OptionButton, optB, .caption = "drei", .at = {0, 1000, 1500, 240});
  KVO_CONTROL(
      CommandButton, cmdFail, .caption = "Los & weg", .at = {0, 1300, 1500, 360},
      .onClick = [](CommandButton&) { throw RuntimeError(ErrorNumber::typeMismatch); });
  KVO_CONTROL(Frame, fraBox, .caption = "Rahmen & mehr", .at = {0, 1700, 3000, 600});
  KVO_CONTROL(TabControl, tabs, .at = {0, 2400, 3000, 1000});
  KVO_CONTROL_IN(tabs, TabPanel, panA, .caption = "T & U");
  KVO_CONTROL_IN(panA, TextBox, txtInner, .at = {0, 0, 900, 300});
  KVO_CONTROL_IN(tabs, TabPanel, panB, .caption = "zwei");
  KVO_CONTROL_IN(panB, CheckBox, chkInner, .caption = "c", .at = {0, 0, 900, 300});
  KVO_CONTROL(
      ComboBox, cboRows, .at = {3200, 0, 1500, 300}, .onClick = [this](ComboBox&) { ++rowClicks; });
  KVO_CONTROL(
      PropertyGrid, suiRows, .at = {3200, 400, 1500, 1500},
      .onButtonClick = [this](PropertyGridItem&) { onButton(); },
      .onDeleteKey = [this](PropertyGrid&) { log.emplace_back("delete"); });
  KVO_CONTROL(
      Timer, tmr, .onTick = [this](Timer&) { log.emplace_back("tick"); });
  std::vector<std::string> log;
  int optionClicks = 0;
  int rowClicks = 0;
  std::function<void()> onButton;
};

class Forms : public testing::Test {
 protected:
  template <class Widget>
  Widget& Shown(const FormControl& control) {
    return dynamic_cast<Widget&>(*user.View().WidgetOf(control));
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  Sample form;
  QtUser user{platform, form};
};

TEST_F(Forms, AmpersandsAreCharactersInEveryCaption) {
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

TEST_F(Forms, AClickOnWhatIsChosenIsAClick) {
  user.Click(form.optA);
  user.Click(form.optA);
  user.Press(Key::space);
  EXPECT_EQ(form.optionClicks, 3);
  EXPECT_TRUE(Shown<QRadioButton>(form.optA).isChecked());
  form.cboRows.AddItem("eins");
  form.cboRows.AddItem("zwei");
  form.cboRows.ListIndex(1);
  EXPECT_EQ(form.rowClicks, 0);
  user.Choose(form.cboRows, 1);
  user.Choose(form.cboRows, 1);
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::down);  // there is no row below it
  EXPECT_EQ(form.rowClicks, 2);
  user.Press(Key::up);
  EXPECT_EQ(form.cboRows.ListIndex(), 0);
  EXPECT_EQ(form.rowClicks, 3);
}

TEST_F(Forms, ASelectionStaysWhenItsBoxIsLeft) {
  form.txtName.Text("abc");
  auto& line = Shown<QLineEdit>(form.txtName);
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::selectAll);
  user.Press(Key::tab);
  EXPECT_FALSE(line.hasFocus());
  EXPECT_EQ(form.txtName.SelLength(), 3U);
  EXPECT_EQ(line.selectedText(), u"abc"_s);
  // The window comes to the front: the box that has not the focus keeps its selection.
  QEvent activated(QEvent::WindowActivate);
  QCoreApplication::sendEvent(&line, &activated);
  QCoreApplication::processEvents();
  EXPECT_EQ(form.txtName.SelLength(), 3U);
  EXPECT_EQ(line.selectedText(), u"abc"_s);
}

TEST_F(Forms, ArrowKeysGoToTheEndsOfASelection) {
  form.txtName.Text("abc");
  user.FocusByKeyboard(form.txtName);
  user.Press(Key::selectAll);
  user.Press(Key::left);
  EXPECT_EQ(form.txtName.SelStart(), 0U);
  user.Press(Key::selectAll);
  user.Press(Key::right);
  EXPECT_EQ(form.txtName.SelStart(), 3U);
}

TEST_F(Forms, ArrowKeysDoNotLeaveButtons) {
  for (FormControl* control : std::initializer_list<FormControl*>{&form.cmdFail, &form.chkA}) {
    user.FocusByKeyboard(*control);
    for (const Key key : {Key::left, Key::right, Key::up, Key::down}) user.Press(key);
    EXPECT_EQ(form.Focused(), control) << control->Name();
  }
}

TEST_F(Forms, AGridWithoutASelectedRowIsEnteredAtItsEnds) {
  auto& first = form.suiRows.Add({.kind = ItemKind::entry, .caption = "eins", .key = "1"});
  form.suiRows.Add({.kind = ItemKind::entry, .caption = "zwei", .key = "2"});
  auto& last = form.suiRows.Add({.kind = ItemKind::entry, .caption = "drei", .key = "3"});
  user.FocusByKeyboard(form.suiRows);
  user.Press(Key::left);
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  user.Press(Key::up);
  EXPECT_EQ(form.suiRows.SelectedItem(), &last);
  user.Press(Key::home);
  EXPECT_EQ(form.suiRows.SelectedItem(), &first);
}

TEST_F(Forms, AChosenValueMayBeTypedOver) {
  auto& list = form.suiRows.Add({.kind = ItemKind::list, .caption = "Liste", .key = "l"});
  list.AddChoice("eins", 1);
  user.Choose(list, "eins");
  user.Type("x");
  EXPECT_EQ(ToText(list.Value()), "x");
  auto& color = form.suiRows.Add({.kind = ItemKind::color, .caption = "Farbe", .key = "c"});
  form.onButton = [&] { color.Value("#FF0000"); };
  user.ClickButton(color);
  user.Type("y");
  EXPECT_EQ(ToText(color.Value()), "y");
  user.Press(Key::tab);
  user.Press(Key::enter);
  EXPECT_EQ(ToText(color.Value()), "#FF0000");
}

TEST_F(Forms, WidgetsAreNamedAsTheirControls) {
  EXPECT_EQ(Shown<QLineEdit>(form.txtName).objectName(), u"txtName"_s);
  EXPECT_EQ(Shown<QLineEdit>(form.txtName).accessibleName(), u"R&D && <b>x</b>"_s);
  EXPECT_EQ(user.View().WidgetOf(form.tmr), nullptr);
  EXPECT_EQ(user.View().WidgetOf(form.panB), Shown<QTabWidget>(form.tabs).widget(1));
}

TEST_F(Forms, ProgrammaticChangesShowAndRaiseNoUserActions) {
  form.log.clear();
  form.chkA.Value(true);
  EXPECT_TRUE(Shown<QCheckBox>(form.chkA).isChecked());
  EXPECT_EQ(form.log, std::vector<std::string>{"check"});  // by code, once
  form.optB.Value(true);
  EXPECT_TRUE(Shown<QRadioButton>(form.optB).isChecked());
  EXPECT_FALSE(Shown<QRadioButton>(form.optA).isChecked());
  form.tabs.SelectedTab(1);
  EXPECT_EQ(Shown<QTabWidget>(form.tabs).currentIndex(), 1);
  form.cboRows.AddItem("eins");
  EXPECT_EQ(Shown<QComboBox>(form.cboRows).currentIndex(), -1);
  EXPECT_EQ(form.cboRows.ListIndex(), -1);
  form.cboRows.ListIndex(0);
  EXPECT_EQ(Shown<QComboBox>(form.cboRows).currentText(), u"eins"_s);
  form.cboRows.Clear();
  EXPECT_EQ(Shown<QComboBox>(form.cboRows).count(), 0);
  form.txtName.Enabled(false);
  EXPECT_FALSE(Shown<QLineEdit>(form.txtName).isEnabled());
  form.lblName.Visible(false);
  EXPECT_FALSE(Shown<QLabel>(form.lblName).isVisible());
  form.txtName.BackColor(SystemColor::buttonFace);
  EXPECT_EQ(Shown<QLineEdit>(form.txtName).palette().color(QPalette::Base),
            QApplication::palette().color(QPalette::Button));
}

TEST_F(Forms, OptionsAreSteppedThroughWithTheArrowKeys) {
  user.FocusByKeyboard(form.optA);
  user.Press(Key::down);
  EXPECT_TRUE(form.optB.Value());
  EXPECT_EQ(form.Focused(), &form.optB);
  user.Press(Key::down);
  EXPECT_TRUE(form.optA.Value());
  EXPECT_FALSE(Shown<QRadioButton>(form.optB).focusPolicy() & Qt::TabFocus);
  user.Click(form.optA);  // once chosen, a click leaves it so
  EXPECT_TRUE(form.optA.Value());
  EXPECT_TRUE(Shown<QRadioButton>(form.optA).isChecked());
}

TEST_F(Forms, WhatAPageThrowsIsReported) {
  EXPECT_THROW(user.Click(form.cmdFail), RuntimeError);
  user.FocusByKeyboard(form.cmdFail);
  EXPECT_THROW(user.Press(Key::enter), RuntimeError);
  EXPECT_THROW(user.Press(Key::space), RuntimeError);
  EXPECT_FALSE(user.View().IsBusy());
}

TEST_F(Forms, AFocusThatStaysInItsBoxRaisesItsEventOnce) {
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.log, std::vector<std::string>{"focus"});
  QApplication::setActiveWindow(nullptr);
  user.Type("a");
  EXPECT_EQ(form.log.size(), 1U);
  user.FocusByKeyboard(form.chkA);
  user.FocusByKeyboard(form.txtName);
  EXPECT_EQ(form.log.size(), 2U);
}

TEST_F(Forms, ADisabledBoxHandsItsFocusOn) {
  user.FocusByKeyboard(form.txtName);
  form.txtName.Enabled(false);
  QCoreApplication::processEvents();
  EXPECT_NE(form.Focused(), &form.txtName);
}

TEST_F(Forms, TimersTickInRealTime) {
  user.FocusByKeyboard(form.chkA);
  form.log.clear();
  form.tmr.Start(10);
  EXPECT_TRUE(QTest::qWaitFor([&] { return form.log.size() >= 2; }, 2000));
  EXPECT_EQ(form.log[0], "tick");
  form.tmr.Stop();
  EXPECT_FALSE(user.View().findChild<QTimer*>(u"tmr"_s)->isActive());
}

TEST_F(Forms, TheDeleteKeyReachesThePropertyGrid) {
  auto& row = form.suiRows.Add({.kind = ItemKind::entry, .caption = "eins", .key = "1"});
  form.suiRows.Add({.kind = ItemKind::entry, .caption = "zwei", .key = "2"});
  user.SelectItem(row);
  EXPECT_EQ(form.suiRows.SelectedItem(), &row);
  form.log.clear();
  user.Press(Key::del);
  EXPECT_EQ(form.log, std::vector<std::string>{"delete"});
  form.suiRows.Remove(row);
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
  QCoreApplication::processEvents();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
}

TEST_F(Forms, ArrowKeysGoThroughTheRowsOfAPropertyGrid) {
  auto& first = form.suiRows.Add({.caption = "eins", .key = "1", .value = "a"});
  auto& second = form.suiRows.Add({.caption = "zwei", .key = "2", .value = "b"});
  user.SelectItem(first);
  user.Type("x");
  EXPECT_EQ(ToText(first.Value()), "x");
  user.Press(Key::down);
  EXPECT_EQ(form.suiRows.SelectedItem(), &second);
  user.Type("yz");
  EXPECT_EQ(ToText(second.Value()), "yz");
  user.Press(Key::enter);
  user.Type("w");
  EXPECT_EQ(ToText(second.Value()), "w");
  form.suiRows.Clear();
  QCoreApplication::processEvents();
  EXPECT_EQ(form.suiRows.SelectedItem(), nullptr);
}

TEST_F(Forms, AButtonInARowIsAsWideAsTheGrid) {
  int clicks = 0;
  auto& row = form.suiRows.Add({.kind = ItemKind::button, .caption = "Los & weg", .key = "b"});
  form.suiRows.Add({.caption = "Text", .key = "t"});
  QCoreApplication::processEvents();
  auto& tree = Shown<QTreeView>(form.suiRows);
  const auto* button = dynamic_cast<QPushButton*>(tree.indexWidget(tree.model()->index(0, 0)));
  ASSERT_NE(button, nullptr);
  EXPECT_EQ(button->text(), u"Los && weg"_s);
  EXPECT_EQ(button->width(), tree.viewport()->width());  // though columns begin wider
  form.onButton = [&] { ++clicks; };
  user.ClickButton(row);
  EXPECT_EQ(clicks, 1);
  user.Press(Key::space);
  EXPECT_EQ(clicks, 2);
  row.Enabled(false);
  EXPECT_FALSE(button->isEnabled());
  user.Press(Key::space);
  EXPECT_EQ(clicks, 2);
}

TEST_F(Forms, AnEditableListOfARowTakesTextAndChoices) {
  auto& row = form.suiRows.Add({.kind = ItemKind::list, .caption = "Liste", .value = "frei"});
  row.AddChoice("eins", 1);
  row.AddChoice("zwei", 2);
  user.SelectItem(row);
  user.Type("einzs");
  EXPECT_EQ(ToText(row.Value()), "einzs");
  user.Choose(row, "zwei");
  EXPECT_EQ(ToText(row.Value()), "zwei");
  user.Press(Key::home);
  user.Type("x");
  user.Type("y");
  EXPECT_EQ(ToText(row.Value()), "xyzwei");
}

// --- the data grid ---

class Records final : public Form {
 public:
  Records() : Form("Sätze", {6000, 3000}) {}
  KVO_CONTROL(Grid, grid, .at = {0, 0, 6000, 3000});
};

TEST(DataGrids, FetchOnlyWhatShowsOfAMillionRows) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  FakeTable table;
  const std::map<std::string, Variant> record = {{"no", "1"}};
  table.rows.assign(1'000'000, record);
  platform.recordsets = [&] { return std::make_shared<FakeRecordset>(table); };
  Records form;
  form.grid.AddColumn({.caption = "Nr & mehr", .field = "no", .size = 100});
  QtUser user(platform, form);
  form.grid.Rebind();
  auto& view = dynamic_cast<QTableView&>(*user.View().WidgetOf(form.grid));
  EXPECT_EQ(view.model()->rowCount(), 1'000'000);
  (void)view.grab();
  EXPECT_GT(table.fetched, 0U);
  view.scrollToBottom();
  (void)view.grab();
  EXPECT_LT(table.fetched, 2000U);
  user.SelectRows(form.grid, {999'999, 500'000});
  EXPECT_EQ(form.grid.SelectedRows(), (std::vector<std::size_t>{500'000, 999'999}));
  EXPECT_LT(table.fetched, 3000U);
}

TEST(DataGrids, ADatabaseThatGoesIsReportedOnce) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  FakeTable table;
  const std::map<std::string, Variant> record = {{"no", "1"}};
  table.rows.assign(1000, record);
  platform.recordsets = [&] { return std::make_shared<FakeRecordset>(table); };
  Records form;
  form.grid.AddColumn({.caption = "Nr", .field = "no", .size = 100});
  QtUser user(platform, form);
  int failures = 0;
  user.View().onFailure = [&](const std::exception&) { ++failures; };
  form.grid.Rebind();
  auto& view = dynamic_cast<QTableView&>(*user.View().WidgetOf(form.grid));
  (void)view.grab();
  table.gone = true;
  view.scrollToBottom();
  (void)view.grab();
  EXPECT_EQ(failures, 0);  // not while it paints
  QCoreApplication::processEvents();
  EXPECT_EQ(failures, 1);
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

TEST(Pages, AnInputIsCalledAsTheLabelBesideItOrOverIt) {
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

TEST(Pages, TheTabKeyGoesInTheOrderOfDeclaration) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  for (const NamedForm& named : AllForms()) {
    SCOPED_TRACE(named.name);
    QtUser user(platform, *named.form);
    std::vector<const FormControl*> expected;
    bool option = false;  // of a group, only the first is a stop
    for (const FormControl* control : named.form->AllControls()) {
      const bool isOption = dynamic_cast<const OptionButton*>(control) != nullptr;
      if (control->TakesFocus() && control->IsReachable() && !(isOption && option))
        expected.push_back(control);
      option = option || isOption;
    }
    ASSERT_FALSE(expected.empty());
    user.FocusByKeyboard(const_cast<FormControl&>(*expected.front()));
    std::vector<const FormControl*> found = {named.form->Focused()};
    while (found.size() < expected.size()) {
      user.Press(Key::tab);
      found.push_back(named.form->Focused());
    }
    for (std::size_t at = 0; at < expected.size(); ++at) {
      ASSERT_NE(found[at], nullptr);
      EXPECT_EQ(found[at]->Name(), expected[at]->Name());
    }
  }
}

// The room that a caption takes in its widget.
QSize RoomOf(QWidget& widget) {
  if (auto* label = dynamic_cast<QLabel*>(&widget); label && label->wordWrap())
    return {label->width(), label->heightForWidth(label->width())};
  if (auto* button = dynamic_cast<QPushButton*>(&widget)) {
    const QSize text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
    return text + QSize(4, 4);
  }
  // A style's own idea of a box with a caption has some air around it.
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

// Run at 96 dots to the inch and, once more, at 192.
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

TEST(Fonts, AreEightAndAQuarterPointAndNineForMarkup) {
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
  device.setDotsPerMeterX(3780);  // 96 to the inch
  EXPECT_EQ(ToPixels(1500, device), 100);
  device.setDotsPerMeterX(7560);
  EXPECT_EQ(ToPixels(1500, device), 200);
  EXPECT_EQ(ToPixels(-1500, device), -200);
}

}  // namespace
}  // namespace kvo
