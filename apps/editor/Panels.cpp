#include "apps/editor/Panels.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QStyle>
#include <QTextCursor>

#include "apps/editor/ProblemMarks.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "host/qt/QtText.h"
#include "host/registration/classes.h"

namespace kvo::editor {

// The rows of the latest analysis.
class PlaceList::Model : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;
  // Returns the previous number of rows.
  virtual int Show(std::shared_ptr<const Analysis> analysis) = 0;
  virtual int PositionOf(int row) const = 0;
};

PlaceList::PlaceList(Model* model, const QString& name, QWidget* parent)
    : QTreeView(parent), model_(model) {
  setModel(model);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAccessibleName(name);
  connect(this, &QTreeView::activated, this, [this](const QModelIndex& index) {
    if (onGoTo) onGoTo(model_->PositionOf(index.row()));
  });
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (onClicked) onClicked(model_->PositionOf(index.row()));
  });
}

void PlaceList::Show(std::shared_ptr<const Analysis> analysis) {
  // Resizes columns only the first time; later the user's own widths stay.
  if (model_->Show(std::move(analysis)) == 0)
    for (int column = 0; column + 1 < model()->columnCount(); ++column)
      resizeColumnToContents(column);
}

namespace {

// The title of a problem's fix.
constexpr int kFixRole = Qt::UserRole;

template <class Row>
class RowModel : public PlaceList::Model {
 public:
  using Rows = std::vector<Row> Analysis::*;
  RowModel(QObject* parent, Rows rows, std::vector<QString> heads)
      : Model(parent), rows_(rows), heads_(std::move(heads)) {}

  int Show(std::shared_ptr<const Analysis> analysis) override {
    const int before = rowCount({});
    const bool sameCount = analysis && static_cast<int>(((*analysis).*rows_).size()) == before;
    if (!sameCount) beginResetModel();
    analysis_ = std::move(analysis);
    if (!sameCount)
      endResetModel();
    else if (before > 0)
      Q_EMIT dataChanged(index(0, 0), index(before - 1, columnCount({}) - 1));
    return before;
  }
  int PositionOf(int row) const override { return At(row).position; }
  const Row& At(int row) const { return ((*analysis_).*rows_)[static_cast<std::size_t>(row)]; }

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() || !analysis_ ? 0 : static_cast<int>(((*analysis_).*rows_).size());
  }
  int columnCount(const QModelIndex&) const override { return static_cast<int>(heads_.size()); }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return heads_[static_cast<std::size_t>(section)];
  }

 private:
  std::shared_ptr<const Analysis> analysis_;
  Rows rows_;
  std::vector<QString> heads_;
};

class OutlineModel final : public RowModel<OutlineEntry> {
 public:
  explicit OutlineModel(QObject* parent)
      : RowModel(parent, &Analysis::outline,
                 {Text(words::kId), Text(words::kCaption), Text(words::kClass)}) {}
  QVariant data(const QModelIndex& index, int role) const override {
    const OutlineEntry& entry = At(index.row());
    if (role == Qt::DecorationRole && index.column() == 0) {
      const RegisteredControl* control = FindControlByName(FromQt(entry.className));
      return control == nullptr ? QVariant() : QVariant(IconOf(control->contract()));
    }
    if (role != Qt::DisplayRole) return {};
    return index.column() == 0 ? entry.id : index.column() == 1 ? entry.caption : entry.className;
  }
};

class ProblemsModel final : public RowModel<ProblemEntry> {
 public:
  explicit ProblemsModel(QObject* parent)
      : RowModel(parent, &Analysis::problems,
                 {Text(words::kPlace), Text(words::kProblemControl), Text(words::kMessage)}) {}
  QVariant data(const QModelIndex& index, int role) const override {
    const page::Problem& problem = At(index.row()).problem;
    const bool error = problem.severity == page::Severity::error;
    if (role == Qt::DecorationRole && index.column() == 0)
      return QApplication::style()->standardIcon(error ? QStyle::SP_MessageBoxCritical
                                                       : QStyle::SP_MessageBoxWarning);
    if (role == Qt::AccessibleDescriptionRole) return Text(error ? words::kError : words::kWarning);
    if (role == kFixRole)
      return problem.fix ? ToQt(problem.fix->title.In(UserLanguage())) : QString();
    if (role == Qt::ToolTipRole) return ToolTipOf(TipOf(problem));
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
      case 0:
        return QString("%1:%2").arg(problem.place.line).arg(problem.place.column);
      case 1:
        return ToQt(problem.id.empty() ? problem.control : problem.id);
      default:
        return MessageOf(problem);
    }
  }
};

}  // namespace

OutlinePanel::OutlinePanel(QWidget* parent)
    : PlaceList(new OutlineModel(parent), Text(words::kOutline), parent) {}

void OutlinePanel::Mark(int row) {
  if (row < 0 || row >= model()->rowCount())
    clearSelection();
  else if (currentIndex().row() != row || !selectionModel()->hasSelection())
    setCurrentIndex(model()->index(row, 0));
}

ProblemsPanel::ProblemsPanel(QWidget* parent)
    : PlaceList(new ProblemsModel(parent), Text(words::kProblems), parent) {}

int ProblemsPanel::ChosenRow() const {
  return selectionModel()->hasSelection() ? currentIndex().row() : -1;
}

void ProblemsPanel::Choose(int row) { setCurrentIndex(model()->index(row, 0)); }

void ProblemsPanel::contextMenuEvent(QContextMenuEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  const QString fix = index.data(kFixRole).toString();
  if (fix.isEmpty() || !onFix) return;
  QMenu menu;
  QAction* const mends = menu.addAction(QString(fix).replace('&', "&&"));
  connect(mends, &QAction::triggered, this, [this, row = index.row()] {
    Choose(row);
    setFocus();
    onFix();
  });
  menu.exec(event->globalPos());
}

TextPanel::TextPanel(const QString& name, QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setUndoRedoEnabled(false);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setAccessibleName(name);
}

void TextPanel::Show(const QString& text) {
  QString shown = text;
  shown.replace("\r\n", "\n");  // each is one character in a text widget
  const Splice change = Difference(shown_, shown);
  if (change.IsEmpty()) return;
  QTextCursor cursor(document());
  const bool same = document()->characterCount() - 1 == shown_.size();
  if (same) {
    cursor.setPosition(static_cast<int>(change.at));
    cursor.setPosition(static_cast<int>(change.at + change.removed), QTextCursor::KeepAnchor);
    cursor.insertText(change.added);
  } else {
    setPlainText(shown);
  }
  shown_ = shown;
}

}  // namespace kvo::editor
