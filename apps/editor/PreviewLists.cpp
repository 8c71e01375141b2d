#include "apps/editor/PreviewLists.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QPalette>
#include <QResizeEvent>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTimer>
#include <span>

#include "apps/editor/EmptyHint.h"
#include "apps/editor/Words.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

struct ChoiceName {
  preview::Choice choice;
  Localized condition;
  Localized list;
};
constexpr ChoiceName kChoiceNames[] = {
    {preview::Choice::asRecord, words::kAsInRecord, words::kAsInRecord},
    {preview::Choice::holds, words::kHolds, words::kFilled},
    {preview::Choice::fails, words::kFails, words::kEmptyList},
};

QString NameOf(preview::Choice choice, preview::Switch::Kind kind) {
  const auto* name = std::ranges::find(kChoiceNames, choice, &ChoiceName::choice);
  return Text(kind == preview::Switch::Kind::condition ? name->condition : name->list);
}

QString NameOfSwitch(const preview::Switch& which) {
  switch (which.kind) {
    case preview::Switch::Kind::products:
      return Text(words::kProductList);
    case preview::Switch::Kind::positions:
      return Text(words::kPositionList);
    case preview::Switch::Kind::condition:
      break;
  }
  return ToQt(which.name);
}

QString NameOfControl(const std::string& control, const std::string& id) {
  if (control.empty()) return Text(words::kByHand);
  return ToQt(id.empty() ? control : id);
}

// The rows of one part of a preview; `Row` is read through At.
template <class Row>
class PreviewModel : public QAbstractTableModel {
 public:
  using Rows = std::vector<Row> PreviewResult::*;
  PreviewModel(QObject* parent, Rows rows, std::vector<QString> heads)
      : QAbstractTableModel(parent), rows_(rows), heads_(std::move(heads)) {}

  void Show(const std::shared_ptr<const PreviewResult>& result) {
    const std::size_t count = result == nullptr ? 0 : ((*result).*rows_).size();
    const bool sameCount = count == static_cast<std::size_t>(rowCount({}));
    if (!sameCount) beginResetModel();
    result_ = result;
    if (!sameCount)
      endResetModel();
    else if (count > 0)
      Q_EMIT dataChanged(index(0, 0), index(static_cast<int>(count) - 1, columnCount({}) - 1));
  }
  const Row& At(const QModelIndex& index) const {
    return ((*result_).*rows_)[static_cast<std::size_t>(index.row())];
  }

  int rowCount(const QModelIndex& parent) const override {
    return parent.isValid() || !result_ ? 0 : static_cast<int>(((*result_).*rows_).size());
  }
  int columnCount(const QModelIndex&) const override { return static_cast<int>(heads_.size()); }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return heads_[static_cast<std::size_t>(section)];
  }

 private:
  std::shared_ptr<const PreviewResult> result_;
  Rows rows_;
  std::vector<QString> heads_;
};

}  // namespace

PreviewList::PreviewList(const Localized& name, QWidget* parent) : QTreeView(parent) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setAccessibleName(Text(name));
  setMinimumHeight(60);
}

void PreviewList::resizeEvent(QResizeEvent* event) {
  constexpr int kControlColumn = 1;
  constexpr int kEnoughForAll = 380;
  setColumnHidden(kControlColumn, event->size().width() < kEnoughForAll);
  QTreeView::resizeEvent(event);
}

void PreviewList::Lead(std::size_t control, int position, bool goes) {
  if (!onPlace) return;
  std::optional<int> number;
  if (control != preview::Switch::kNoControl) number = static_cast<int>(control);
  onPlace(number, position, goes);
}

// --- switches ---

class SwitchList::Model final : public PreviewModel<SwitchEntry> {
 public:
  enum Column { name, control, shown };

  explicit Model(QObject* parent)
      : PreviewModel(parent, &PreviewResult::switches,
                     {Text(words::kSwitch), Text(words::kProblemControl), Text(words::kShows)}) {}

  QVariant data(const QModelIndex& index, int role) const override {
    const SwitchEntry& entry = At(index);
    const bool forced = entry.choice != preview::Choice::asRecord;
    if (role == Qt::FontRole && forced) {
      QFont font = QApplication::font();
      font.setBold(true);
      return font;
    }
    if (role == Qt::ForegroundRole) {
      if (forced) return QApplication::palette().link();
      if (!entry.reached) return QApplication::palette().placeholderText();
    }
    if (role == Qt::ToolTipRole)
      return ToolTipOf(index.column() == name ? NameOfSwitch(entry.which) : ShownText(entry));
    if (role == Qt::SizeHintRole) return QSize(0, QFontMetrics(QApplication::font()).height() + 6);
    if (role == Qt::EditRole) return static_cast<int>(entry.choice);
    if (role == Qt::AccessibleDescriptionRole) return forced ? Text(words::kForced) : QString();
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
      case name:
        return QString(2 * entry.depth, QChar::Nbsp) + NameOfSwitch(entry.which).simplified();
      case control:
        return NameOfControl(entry.which.control, entry.which.id);
      default:
        return ShownText(entry);
    }
  }
  Qt::ItemFlags flags(const QModelIndex& index) const override {
    const Qt::ItemFlags flags = PreviewModel::flags(index);
    return index.column() == shown ? flags | Qt::ItemIsEditable : flags;
  }

 private:
  static QString ShownText(const SwitchEntry& entry) {
    if (!entry.reached) return Text(words::kNotReached, {NameOf(entry.choice, entry.which.kind)});
    if (entry.choice != preview::Choice::asRecord) return NameOf(entry.choice, entry.which.kind);
    const preview::Choice form = entry.held ? preview::Choice::holds : preview::Choice::fails;
    return Text(words::kAsInRecordNow, {NameOf(form, entry.which.kind)});
  }
};

class SwitchList::ChoiceDelegate final : public QStyledItemDelegate {
 public:
  explicit ChoiceDelegate(SwitchList& list) : QStyledItemDelegate(&list), list_(list) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                        const QModelIndex& index) const override {
    auto* box = new QComboBox(parent);
    box->setAccessibleName(Text(words::kShows));
    for (const ChoiceName& each : kChoiceNames)
      box->addItem(NameOf(each.choice, list_.model_->At(index).which.kind),
                   static_cast<int>(each.choice));
    connect(box, &QComboBox::activated, this, [this, box] {
      auto* delegate = const_cast<ChoiceDelegate*>(this);
      Q_EMIT delegate->commitData(box);
      Q_EMIT delegate->closeEditor(box);
    });
    QTimer::singleShot(0, box, [box] { box->showPopup(); });
    return box;
  }
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    auto* box = static_cast<QComboBox*>(editor);
    box->setCurrentIndex(box->findData(index.data(Qt::EditRole)));
  }
  void setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const override {
    const auto* box = static_cast<QComboBox*>(editor);
    const auto choice = static_cast<preview::Choice>(box->currentData().toInt());
    const SwitchEntry& entry = list_.model_->At(index);
    if (choice != entry.choice && list_.onChosen) list_.onChosen(entry.key, choice);
  }

 private:
  SwitchList& list_;
};

SwitchList::SwitchList(QWidget* parent)
    : PreviewList(words::kSwitches, parent), model_(new Model(this)) {
  setModel(model_);
  setItemDelegateForColumn(Model::shown, new ChoiceDelegate(*this));
  setEditTriggers(EditKeyPressed);
  header()->setMinimumSectionSize(60);
  header()->setSectionResizeMode(Model::name, QHeaderView::Stretch);
  header()->setStretchLastSection(false);
  header()->resizeSection(Model::control, 90);
  header()->resizeSection(Model::shown, 165);
  new EmptyHint(*this, words::kNoSwitches);
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (index.column() == Model::shown) return edit(index);
    const SwitchEntry& entry = model_->At(index);
    Lead(entry.which.index, entry.position, false);
  });
  connect(this, &QTreeView::activated, this,
          [this](const QModelIndex& index) { edit(index.siblingAtColumn(Model::shown)); });
}

SwitchList::~SwitchList() = default;

void SwitchList::Show(const std::shared_ptr<const PreviewResult>& result) { model_->Show(result); }

// --- what is missing ---

class FindingList::Model final : public PreviewModel<FindingEntry> {
 public:
  explicit Model(QObject* parent)
      : PreviewModel(parent, &PreviewResult::findings,
                     {Text(words::kPlace), Text(words::kProblemControl), Text(words::kMessage)}) {}

  QVariant data(const QModelIndex& index, int role) const override {
    const preview::Finding& finding = At(index).finding;
    const bool missing = finding.kind == preview::Finding::Kind::missing;
    const auto message = [&finding] { return ToQt(finding.message.In(UserLanguage())); };
    if (role == Qt::DecorationRole && index.column() == 0)
      return QApplication::style()->standardIcon(missing ? QStyle::SP_MessageBoxWarning
                                                         : QStyle::SP_MessageBoxInformation);
    if (role == Qt::AccessibleDescriptionRole)
      return Text(missing ? words::kMissing : words::kOutside);
    if (role == Qt::ToolTipRole)
      return ToolTipOf(index.column() == 0 ? Text(missing ? words::kMissing : words::kOutside)
                                           : message());
    if (role != Qt::DisplayRole) return {};
    switch (index.column()) {
      case 0:
        return QString("%1:%2").arg(finding.place.line).arg(finding.place.column);
      case 1:
        return NameOfControl(finding.control, finding.id);
      default:
        return message();
    }
  }
};

FindingList::FindingList(QWidget* parent)
    : PreviewList(words::kFindings, parent), model_(new Model(this)) {
  setModel(model_);
  header()->resizeSection(0, 70);
  header()->resizeSection(1, 90);
  new EmptyHint(*this, words::kNoFindings);
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    const FindingEntry& entry = model_->At(index);
    Lead(entry.finding.index, entry.position, false);
  });
  connect(this, &QTreeView::activated, this, [this](const QModelIndex& index) {
    const FindingEntry& entry = model_->At(index);
    Lead(entry.finding.index, entry.position, true);
  });
}

void FindingList::Show(const std::shared_ptr<const PreviewResult>& result) { model_->Show(result); }

}  // namespace kvo::editor
