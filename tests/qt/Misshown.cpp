#include "tests/qt/Misshown.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableView>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <vector>

#include "host/qt/QtText.h"
#include "host/qt/ShownText.h"

namespace kvo {
namespace {

std::string InWords(const QString& text) { return '"' + FromQt(text) + '"'; }
QString UnitsOf(const ShownText& shown) { return QString::fromStdU16String(shown.Units()); }
std::string InWords(int number) { return std::to_string(number); }

class Looker final : public FormVisitor {
 public:
  explicit Looker(FormView& view) : view_(view) {}
  std::string found;

  void LookAt(FormControl& control) {
    control_ = &control;
    widget_ = view_.WidgetOf(control);
    control.Accept(*this);
    if (widget_ == nullptr || dynamic_cast<TabPanel*>(&control) != nullptr) return;
    Demand("enabled", control.Enabled(), widget_->isEnabledTo(widget_->parentWidget()));
    Demand("visible", control.Visible(), !widget_->isHidden());
  }

  void Visit(Label& label) override {
    Demand("caption", ToQt(label.Caption()), As<QLabel>().text());
  }
  void Visit(TextBox& box) override {
    if (!box.MultiLine()) return LookAtLine(box, As<QLineEdit>());
    const ShownText shown(box.Text(), Lines::many, kQtStyle);
    auto& area = As<QPlainTextEdit>();
    Demand("text", UnitsOf(shown),
           area.document()->toRawText().replace(QChar::ParagraphSeparator, QLatin1Char('\n')));
    const QTextCursor cursor = area.textCursor();
    LookAtSelection(box, shown, cursor.selectionStart(), cursor.selectionEnd());
  }
  void Visit(ComboBox& box) override {
    auto& list = As<QComboBox>();
    Demand("choice", box.ListIndex(), list.currentIndex());
    Demand("rows", static_cast<int>(box.Rows().size()), list.count());
    for (int row = 0; row < list.count(); ++row)
      Demand("row", ToQt(box.Rows()[static_cast<std::size_t>(row)].text), list.itemText(row));
    if (box.Editable())
      LookAtLine(box, *list.lineEdit());
    else
      Demand("text", ToQt(box.Text()), list.currentText());
  }
  void Visit(CheckBox& box) override { Demand("mark", box.Value(), As<QCheckBox>().isChecked()); }
  void Visit(OptionButton& button) override {
    Demand("mark", button.Value(), As<QRadioButton>().isChecked());
  }
  void Visit(CommandButton&) override {}
  void Visit(Frame&) override {}
  void Visit(PictureBox&) override {}
  void Visit(TabControl& tabs) override {
    Demand("open tab", static_cast<int>(tabs.SelectedTab()), As<QTabWidget>().currentIndex());
  }
  void Visit(TabPanel&) override {}
  void Visit(PropertyGrid& grid) override {
    const auto& tree = As<QTreeView>();
    const QAbstractItemModel& model = *tree.model();
    const auto& items = grid.Items();
    Demand("rows", static_cast<int>(items.size()), model.rowCount());
    if (static_cast<int>(items.size()) != model.rowCount()) return;
    int selected = -1;
    for (int row = 0; row < model.rowCount(); ++row) {
      const PropertyGridItem& item = *items[static_cast<std::size_t>(row)];
      if (grid.SelectedItem() == &item) selected = row;
      Demand("row", ToQt(item.Caption()), model.index(row, 0).data().toString());
      Demand("value", ToQt(ToText(item.Value())), model.index(row, 1).data().toString());
      LookAtEditor(item, tree.indexWidget(model.index(row, 1)));
    }
    Demand("selected row", selected, tree.currentIndex().row());
  }
  void Visit(Grid& grid) override {
    const auto& table = As<QTableView>();
    const QAbstractItemModel& model = *table.model();
    Demand("rows", static_cast<int>(grid.RowCount()), model.rowCount());
    Demand("columns", static_cast<int>(grid.Columns().size()), model.columnCount());
    for (int row = 0; row < model.rowCount(); ++row)
      for (int column = 0; column < model.columnCount(); ++column)
        Demand("cell",
               ToQt(grid.Cell(static_cast<std::size_t>(row), static_cast<std::size_t>(column))),
               model.index(row, column).data().toString());
    std::vector<std::size_t> selected;
    for (const QModelIndex& index : table.selectionModel()->selectedRows())
      selected.push_back(static_cast<std::size_t>(index.row()));
    std::ranges::sort(selected);
    if (selected != grid.SelectedRows()) Tell("other rows are selected");
  }
  void Visit(Timer& timer) override {
    const auto* clock = view_.findChild<QTimer*>(ToQt(timer.Name()));
    Demand("clock", timer.IsRunning() && timer.Enabled(), clock != nullptr && clock->isActive());
  }

 private:
  template <class Widget>
  Widget& As() {
    return dynamic_cast<Widget&>(*widget_);
  }

  void LookAtLine(const EditBox& box, const QLineEdit& line) {
    const ShownText shown(box.Text(), Lines::one, kQtStyle);
    Demand("text", UnitsOf(shown), line.text());
    const int start = line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
    LookAtSelection(box, shown, start, start + line.selectionLength());
  }
  void LookAtSelection(const EditBox& box, const ShownText& shown, int start, int end) {
    Demand("selection's begin", shown.ToWidget(box.SelStart()), start);
    Demand("selection's end", shown.ToWidget(box.SelStart() + box.SelLength()), end);
  }
  // The box in a row, where there is one.
  void LookAtEditor(const PropertyGridItem& item, const QWidget* editor) {
    if (editor == nullptr) return;
    const QString value = UnitsOf(ShownText(ToText(item.Value()), Lines::one, kQtStyle));
    if (const auto* line = editor->findChild<QLineEdit*>())
      Demand("edited value", value, line->text());
    else if (const auto* list = editor->findChild<QComboBox*>(); list && list->currentIndex() >= 0)
      Demand("chosen value", value, list->currentText());
  }

  void Tell(const std::string& what) {
    found += "  misshown: " + std::string(control_->Name()) + ": " + what + '\n';
  }
  template <class Value>
  void Demand(const char* what, const Value& held, const Value& shown) {
    if (held != shown)
      Tell(std::string(what) + ": held " + InWords(held) + ", shown " + InWords(shown));
  }

  FormView& view_;
  FormControl* control_ = nullptr;
  QWidget* widget_ = nullptr;
};

}  // namespace

std::string Misshown(FormView& view, const Form& form) {
  Looker looker(view);
  for (FormControl* control : form.AllControls()) looker.LookAt(*control);
  return looker.found;
}

}  // namespace kvo
