#include "tests/qt/QtUser.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTextBlock>
#include <QTimer>
#include <QTimerEvent>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

#include "common/forms/FormKeys.h"
#include "common/forms/PropertyPage.h"
#include "common/forms/PropertyRows.h"
#include "host/qt/QtText.h"

namespace kvo {
namespace {

[[noreturn]] void Cannot(const FormControl& control, std::string_view why) {
  throw CannotDo(std::string(control.Name()) + ": " + std::string(why));
}

Qt::Key QtKey(Key key) {
  switch (key) {
    case Key::tab:
      return Qt::Key_Tab;
    case Key::shiftTab:
      return Qt::Key_Backtab;
    case Key::enter:
      return Qt::Key_Return;
    case Key::escape:
      return Qt::Key_Escape;
    case Key::space:
      return Qt::Key_Space;
    case Key::backspace:
      return Qt::Key_Backspace;
    case Key::del:
      return Qt::Key_Delete;
    case Key::home:
      return Qt::Key_Home;
    case Key::end:
      return Qt::Key_End;
    case Key::left:
      return Qt::Key_Left;
    case Key::right:
      return Qt::Key_Right;
    case Key::up:
      return Qt::Key_Up;
    case Key::down:
      return Qt::Key_Down;
    case Key::selectAll:
      return Qt::Key_A;
  }
  return Qt::Key_unknown;
}

template <class Kind>
Kind& As(QWidget& widget) {
  auto* kind = dynamic_cast<Kind*>(&widget);
  if (kind == nullptr) throw CannotDo(FromQt(widget.objectName()) + ": has another kind of widget");
  return *kind;
}

}  // namespace

std::unique_ptr<DesktopUser> SitDown(HeadlessPlatform& platform, Form& form) {
  return std::make_unique<QtUser>(platform, form);
}

QtUser::QtUser(HeadlessPlatform& platform, Form& form) : platform_(platform) {
  if (dynamic_cast<PropertyPage*>(&form) != nullptr) {
    window_ = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(window_.get());
    strip_ = new QTabBar;
    strip_->addTab(ToQtCaption(form.Caption()));
    layout->addWidget(strip_);
    view_ = new FormView(form, window_.get());
    layout->addWidget(view_);
  } else {
    auto dialog = std::make_unique<FormDialog>(form, nullptr);
    view_ = &dialog->View();
    window_ = std::move(dialog);
  }
  view_->onFailure = [this](const std::exception&) { failure_ = std::current_exception(); };
  window_->show();
  Activate();
}

template <class Action>
void QtUser::Do(const Action& action) {
  Activate();
  failure_ = nullptr;
  action();
  QCoreApplication::processEvents();
  // Closes a list that was opened on the way, without a choice.
  if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void QtUser::Activate() {
  if (QApplication::activeWindow() == window_.get()) return;
  window_->activateWindow();
  QApplication::setActiveWindow(window_.get());
  QCoreApplication::processEvents();
}

QWidget& QtUser::Reach(const FormControl& control) {
  QWidget* widget = view_->WidgetOf(control);
  if (widget == nullptr || !widget->isVisible() || !widget->isEnabled())
    Cannot(control, "is disabled or hidden");
  return *widget;
}

QWidget& QtUser::FocusedWidget() {
  QWidget* focused = window_->focusWidget();
  if (focused == nullptr || !view_->isAncestorOf(focused))
    throw CannotDo("nothing has the keyboard focus");
  if (!focused->isVisible() || !focused->isEnabled())
    throw CannotDo("what had the keyboard focus is disabled or hidden");
  return *focused;
}

// --- focus and keyboard ---

void QtUser::FocusByKeyboard(FormControl& control) {
  Do([&] {
    QWidget& widget = Reach(control);
    if (widget.focusPolicy() == Qt::NoFocus && widget.focusProxy() == nullptr)
      Cannot(control, "cannot take the focus");
    // Leaves a list that already has the focus, in order to enter it again.
    if (dynamic_cast<ComboBox*>(&control) && widget.hasFocus())
      (strip_ ? strip_ : window_.get())->setFocus();
    widget.setFocus(Qt::TabFocusReason);
  });
}

void QtUser::ClickInto(EditBox& box, std::size_t caret) {
  Do([&] {
    QWidget& widget = Reach(box);
    const auto* text = dynamic_cast<TextBox*>(&box);
    const Lines lines = text != nullptr && text->MultiLine() ? Lines::many : Lines::one;
    const int units = ShownText(box.Text(), lines, kQtStyle).ToWidget(caret);
    if (auto* area = dynamic_cast<QPlainTextEdit*>(&widget)) {
      QTextCursor cursor(area->document());
      cursor.setPosition(units);
      const QTextLine line = cursor.block().layout()->lineForTextPosition(cursor.positionInBlock());
      area->verticalScrollBar()->setValue(cursor.block().firstLineNumber() + line.lineNumber());
      return ClickAt(*area->viewport(), area->cursorRect(cursor).center());
    }
    auto* combo = dynamic_cast<QComboBox*>(&widget);
    if (combo != nullptr && !combo->isEditable()) Cannot(box, "only its rows can be chosen");
    QLineEdit& line = combo ? *combo->lineEdit() : As<QLineEdit>(widget);
    const auto at = [&line](int x) { return line.cursorPositionAt({x, line.height() / 2}); };
    // Scrolls to the position if necessary. Lines scroll when they are painted.
    line.repaint();
    if (at(0) > units || at(line.width()) < units) line.setCursorPosition(units);
    line.repaint();
    int x = 0;
    while (x < line.width() && at(x) < units) ++x;
    ClickAt(line, {x, line.height() / 2});
  });
}

void QtUser::Type(std::string_view text) {
  for (const std::string_view stroke : SplitStrokes(text)) {
    if (stroke == kEnterStroke)
      Press(Key::enter);
    else
      TypeCharacter(stroke);
  }
}

void QtUser::TypeCharacter(std::string_view character) {
  Do([&] {
    QWidget& focused = FocusedWidget();
    const auto* combo = dynamic_cast<QComboBox*>(&focused);
    if (combo != nullptr && !combo->isEditable() && character != " ")
      throw CannotDo(FromQt(combo->objectName()) + ": only its rows can be chosen");
    const bool takesText = dynamic_cast<QLineEdit*>(&focused) ||
                           dynamic_cast<QPlainTextEdit*>(&focused) ||
                           dynamic_cast<QComboBox*>(&focused);
    if (!takesText && character != " ")
      throw CannotDo(FromQt(focused.objectName()) + ": cannot be typed into");
    const QString text = ToQt(character);
    const Qt::Key key = character == " " ? Qt::Key_Space : Qt::Key_unknown;
    QTest::sendKeyEvent(QTest::Click, &focused, key, text, Qt::NoModifier);
  });
}

void QtUser::Press(Key key) {
  Do([&] {
    QWidget* target = window_->focusWidget();
    const bool dialogKey = key == Key::enter || key == Key::escape;
    if (target == nullptr || (dialogKey && !view_->isAncestorOf(target))) target = view_;
    const bool tab = key == Key::tab || key == Key::shiftTab;
    if (!tab && !dialogKey) target = &FocusedWidget();
    // Sends a control character as text, as a keyboard does.
    if (key == Key::selectAll)
      return QTest::sendKeyEvent(QTest::Click, target, Qt::Key_A, QChar(1), Qt::ControlModifier);
    const bool ofAllLines =
        (key == Key::home || key == Key::end) && dynamic_cast<QPlainTextEdit*>(target);
    QTest::keyClick(target, QtKey(key),
                    ofAllLines             ? Qt::ControlModifier
                    : key == Key::shiftTab ? Qt::ShiftModifier
                                           : Qt::NoModifier);
    if (tab && strip_ != nullptr && window_->focusWidget() == strip_)
      QTest::keyClick(strip_, QtKey(key));
  });
}

void QtUser::PressChord(char letter) {
  Do([&] { QTest::keyClick(&FocusedWidget(), static_cast<Qt::Key>(letter), Qt::ControlModifier); });
}

void QtUser::Copy() { PressChord('C'); }
void QtUser::Cut() { PressChord('X'); }
void QtUser::Paste() { PressChord('V'); }
void QtUser::Undo() { PressChord('Z'); }

// --- mouse ---

void QtUser::ClickAt(QWidget& widget, const QPoint& position, Qt::KeyboardModifiers modifiers) {
  std::uint8_t& button = platform_.keys[1];
  button |= 0x80;
  QTest::mousePress(&widget, Qt::LeftButton, modifiers, position);
  button = static_cast<std::uint8_t>(button & 0x7F);
  QTest::mouseRelease(&widget, Qt::LeftButton, modifiers, position);
}

void QtUser::Click(FormControl& control) {
  if (auto* box = dynamic_cast<TextBox*>(&control))
    return ClickInto(*box, CharacterCount(box->Text()));
  Do([&] {
    QWidget* widget = &Reach(control);
    constexpr int kInBox = 6;  // position of the mark of a check box or an option
    if (dynamic_cast<EditBox*>(&control) == nullptr)
      return ClickAt(*widget, {kInBox, widget->height() / 2});
    if (auto* list = dynamic_cast<QComboBox*>(widget); list && list->isEditable())
      widget = list->lineEdit();
    ClickAt(*widget, widget->rect().bottomRight() - QPoint(2, widget->height() / 2));
  });
}

void QtUser::ClickRow(Grid& grid, std::size_t row, Qt::KeyboardModifiers modifiers) {
  auto& table = As<QTableView>(Reach(grid));
  const QModelIndex index = table.model()->index(static_cast<int>(row), 0);
  if (!index.isValid()) Cannot(grid, "has no row " + std::to_string(row));
  table.scrollTo(index);
  ClickAt(*table.viewport(), table.visualRect(index).center(), modifiers);
}

void QtUser::SelectRows(Grid& grid, std::vector<std::size_t> rows) {
  Do([&] {
    if (rows.empty()) {
      auto& table = As<QTableView>(Reach(grid));
      return ClickAt(*table.viewport(), table.viewport()->rect().bottomLeft() + QPoint(5, -2));
    }
    for (const std::size_t row : rows)
      if (row >= grid.RowCount()) Cannot(grid, "has no row " + std::to_string(row));
    Qt::KeyboardModifiers modifiers;
    for (const std::size_t row : rows) {
      ClickRow(grid, row, modifiers);
      modifiers = Qt::ControlModifier;
    }
  });
}

void QtUser::DoubleClick(Grid& grid, std::size_t row) {
  Do([&] {
    ClickRow(grid, row, {});
    auto& table = As<QTableView>(Reach(grid));
    const QModelIndex index = table.model()->index(static_cast<int>(row), 0);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(index).center());
  });
}

void QtUser::Choose(ComboBox& box, int row) {
  Do([&] { ChooseInPopup(As<QComboBox>(Reach(box)), row); });
}

void QtUser::ChooseInPopup(QComboBox& list, int row) {
  if (row < 0 || row >= list.count())
    throw CannotDo(FromQt(list.objectName()) + ": has no row " + std::to_string(row));
  ClickAt(list, {list.width() - 5, list.height() / 2});
  if (!list.view()->isVisible())
    throw CannotDo(FromQt(list.objectName()) + ": its list does not open");
  list.view()->setCurrentIndex(list.model()->index(row, 0));
  QTest::keyClick(list.view(), Qt::Key_Return);
}

void QtUser::SelectTab(TabControl& tabs, std::size_t tab) {
  Do([&] {
    QTabBar* bar = As<QTabWidget>(Reach(tabs)).tabBar();
    const auto index = static_cast<int>(tab);
    if (index >= bar->count() || !bar->isTabEnabled(index)) Cannot(tabs, "has no such tab");
    ClickAt(*bar, bar->tabRect(index).center());
  });
}

// --- property grids ---

void QtUser::ClickItem(const PropertyGridItem& item) {
  auto& tree = As<QTreeView>(Reach(item.Grid()));
  const QModelIndex index = tree.model()->index(RowOf(item.Grid(), &item), 0);
  tree.scrollTo(index);
  const QRect row = tree.visualRect(index);
  ClickAt(*tree.viewport(), {row.left() + 5, row.center().y()});
}

void QtUser::SelectItem(PropertyGridItem& item) {
  Do([&] { ClickItem(item); });
}

void QtUser::ClickButton(PropertyGridItem& item) {
  Do([&] {
    auto& tree = As<QTreeView>(Reach(item.Grid()));
    QAbstractButton* button = nullptr;
    if (item.Kind() == ItemKind::color) {
      ClickItem(item);
      button = tree.indexWidget(tree.model()->index(RowOf(item.Grid(), &item), 1))
                   ->findChild<QToolButton*>();
    } else {
      button = dynamic_cast<QPushButton*>(
          tree.indexWidget(tree.model()->index(RowOf(item.Grid(), &item), 0)));
    }
    if (button == nullptr || !button->isEnabled())
      Cannot(item.Grid(), "the row \"" + item.Caption() + "\" has no button to press");
    ClickAt(*button, button->rect().center());
  });
}

void QtUser::Choose(PropertyGridItem& item, std::string_view choice) {
  Do([&] {
    ClickItem(item);
    auto& tree = As<QTreeView>(Reach(item.Grid()));
    const QWidget* editor = tree.indexWidget(tree.model()->index(RowOf(item.Grid(), &item), 1));
    auto* list = editor ? editor->findChild<QComboBox*>() : nullptr;
    const int row =
        list ? list->findText(ToQt(choice), Qt::MatchExactly | Qt::MatchCaseSensitive) : -1;
    if (row < 0)
      Cannot(item.Grid(),
             "the row \"" + item.Caption() + "\" has no choice \"" + std::string(choice) + '"');
    ChooseInPopup(*list, row);
  });
}

// --- the rest ---

void QtUser::CloseWindow() {
  Do([&] { window_->close(); });
}

void QtUser::Tick(Timer& timer) {
  Do([&] {
    auto* clock = view_->findChild<QTimer*>(ToQt(timer.Name()));
    if (clock == nullptr || !clock->isActive()) Cannot(timer, "is not running");
    QTimerEvent passed(clock->timerId());
    QCoreApplication::sendEvent(clock, &passed);
  });
}

}  // namespace kvo
