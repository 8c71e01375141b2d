// Reads what Qt's widgets show.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <algorithm>

#include "host/qt/QtText.h"
#include "tests/qt/QtUser.h"

namespace kvo {

// --- the desktop ---

void QtUser::Settle() { QCoreApplication::processEvents(); }

bool QtUser::WaitUntil(const std::function<bool()>& so, int milliseconds) {
  return QTest::qWaitFor(so, milliseconds);
}

void QtUser::LookElsewhere() {
  QApplication::setActiveWindow(nullptr);
  Settle();
}

void QtUser::PutOnClipboard(std::string_view text) {
  QApplication::clipboard()->setText(ToQt(text));
}

std::string QtUser::OnClipboard() { return FromQt(QApplication::clipboard()->text()); }

void QtUser::Paint(const Grid& grid, std::size_t row) {
  auto& table = Shown<QTableView>(grid);
  table.scrollTo(table.model()->index(static_cast<int>(row), 0));
  (void)table.grab();
}

void QtUser::OnFailure(std::function<void(const std::exception&)> report) {
  view_->onFailure = std::move(report);
}

// --- widgets ---

std::u16string QtUser::AsShown(std::string_view text) { return ToQt(text).toStdU16String(); }

bool QtUser::ShowsEnabled(const FormControl& control) {
  const QWidget& widget = *view_->WidgetOf(control);
  return widget.isEnabledTo(widget.parentWidget());
}

bool QtUser::ShowsVisible(const FormControl& control) {
  return !view_->WidgetOf(control)->isHidden();
}

bool QtUser::ShowsMark(const FormControl& control) {
  return Shown<QAbstractButton>(control).isChecked();
}

bool QtUser::ShowsRunning(const Timer& timer) {
  const auto* clock = view_->findChild<QTimer*>(ToQt(timer.Name()));
  return clock != nullptr && clock->isActive();
}

std::u16string QtUser::ShownTextOf(const FormControl& control) {
  QWidget* widget = view_->WidgetOf(control);
  if (const auto* label = dynamic_cast<QLabel*>(widget)) return label->text().toStdU16String();
  if (const auto* list = dynamic_cast<QComboBox*>(widget))
    return list->currentText().toStdU16String();
  if (const auto* line = dynamic_cast<QLineEdit*>(widget)) return line->text().toStdU16String();
  QString text = Shown<QPlainTextEdit>(control).document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, QLatin1Char('\n')).toStdU16String();
}

UnitRange QtUser::ShownSelection(const EditBox& box) {
  QWidget* widget = view_->WidgetOf(box);
  if (const auto* area = dynamic_cast<QPlainTextEdit*>(widget)) {
    const QTextCursor cursor = area->textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
  }
  const auto* list = dynamic_cast<QComboBox*>(widget);
  const QLineEdit& line = list != nullptr ? *list->lineEdit() : Shown<QLineEdit>(box);
  return {line.hasSelectedText() ? line.selectionStart() : line.cursorPosition(),
          line.selectionLength()};
}

std::vector<std::u16string> QtUser::ShownRows(const ComboBox& box) {
  const auto& list = Shown<QComboBox>(box);
  std::vector<std::u16string> rows;
  for (int row = 0; row < list.count(); ++row) rows.push_back(list.itemText(row).toStdU16String());
  return rows;
}

int QtUser::ShownChoice(const ComboBox& box) { return Shown<QComboBox>(box).currentIndex(); }

std::size_t QtUser::ShownTab(const TabControl& tabs) {
  return static_cast<std::size_t>(Shown<QTabWidget>(tabs).currentIndex());
}

std::optional<std::vector<DesktopUser::CaptionAndValue>> QtUser::ShownItems(
    const PropertyGrid& grid) {
  const QAbstractItemModel& model = *Shown<QTreeView>(grid).model();
  std::vector<CaptionAndValue> items;
  for (int row = 0; row < model.rowCount(); ++row)
    items.push_back({model.index(row, 0).data().toString().toStdU16String(),
                     model.index(row, 1).data().toString().toStdU16String()});
  return items;
}

std::optional<int> QtUser::ShownItem(const PropertyGrid& grid) {
  return Shown<QTreeView>(grid).currentIndex().row();
}

std::optional<std::u16string> QtUser::ShownValue(const PropertyGrid& grid) {
  const auto& tree = Shown<QTreeView>(grid);
  const QWidget* editor = tree.indexWidget(tree.currentIndex().siblingAtColumn(1));
  if (editor == nullptr) return std::nullopt;
  if (const auto* line = editor->findChild<QLineEdit*>()) return line->text().toStdU16String();
  const auto* list = editor->findChild<QComboBox*>();
  if (list == nullptr) return std::nullopt;
  const QString shown = list->currentIndex() < 0 ? list->placeholderText() : list->currentText();
  return shown.toStdU16String();
}

std::size_t QtUser::ShownColumns(const Grid& grid) {
  return static_cast<std::size_t>(Shown<QTableView>(grid).model()->columnCount());
}

std::size_t QtUser::ShownRecords(const Grid& grid) {
  return static_cast<std::size_t>(Shown<QTableView>(grid).model()->rowCount());
}

std::u16string QtUser::ShownCell(const Grid& grid, std::size_t row, std::size_t column) {
  const QAbstractItemModel& model = *Shown<QTableView>(grid).model();
  return model.index(static_cast<int>(row), static_cast<int>(column))
      .data()
      .toString()
      .toStdU16String();
}

std::vector<std::size_t> QtUser::ShownSelection(const Grid& grid) {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : Shown<QTableView>(grid).selectionModel()->selectedRows())
    rows.push_back(static_cast<std::size_t>(index.row()));
  std::ranges::sort(rows);
  return rows;
}

}  // namespace kvo
