#include "apps/editor/RecordForm.h"

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/editor/Ask.h"
#include "apps/editor/FocusFrame.h"
#include "apps/editor/RecordFields.h"
#include "apps/editor/Words.h"
#include "common/values/RuntimeError.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr int kValueRole = Qt::UserRole;  // what a cell of the positions showed first

// A line of the form; empty means that the record does not have the value.
struct FormRow {
  RecordField field;
  QLineEdit* line = nullptr;
  QComboBox* flag = nullptr;  // instead of the line
  QVariant shown;
};

enum FlagItem { unknownFlag, yesFlag, noFlag };

class RecordForm final : public QDialog {
 public:
  RecordForm(RecordsToEdit edit, QWidget* parent);

  std::int64_t Current() const { return current_; }
  bool IsWritten() const { return written_; }

  void reject() override;
  void accept() override;

 protected:
  // Ignores Enter, which ends the input in a line and must not also close the form.
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
      QDialog::keyPressEvent(event);
  }

 private:
  void MakeRecordList(QSplitter& parts);
  void MakeFields(QSplitter& parts);
  QWidget* MakePositions();
  QPushButton* Button(const Localized& text, std::function<void()> run, const char* name);

  // The record in the form; nullptr if there is none.
  preview::Record* Shown();
  bool IsReadOnly() const { return current_ >= Count(); }
  std::int64_t Count() const { return static_cast<std::int64_t>(records_.size()); }
  void ShowList();
  void ShowRecord();
  void ShowFields(const preview::Record& record);
  void ShowPositions(const preview::Record& record);
  // Takes over what is typed.
  void Store();
  void StorePositions(preview::Record& record);
  void Go(std::int64_t record);
  void Add(preview::Record record);
  void Delete();
  void AddPosition();
  void DeletePosition();
  QString FreeName(const QString& wanted) const;

  RecordsToEdit edit_;
  std::vector<preview::Record> records_;
  std::vector<preview::Record> before_;       // as they were when the form opened
  std::optional<preview::Record> fromQuery_;  // shown after them
  std::int64_t current_ = 0;
  bool written_ = false;
  bool showing_ = false;

  QListWidget* list_;
  QLineEdit* name_;
  QLabel* note_;
  QScrollArea* scroll_;
  std::vector<FormRow> rows_;
  QTableWidget* positions_;
  std::vector<QPushButton*> changing_;  // useless while the record can only be read
};

RecordForm::RecordForm(RecordsToEdit edit, QWidget* parent)
    : QDialog(parent),
      edit_(std::move(edit)),
      records_(edit_.records.records),
      current_(edit_.current),
      list_(new QListWidget(this)),
      name_(new QLineEdit(this)),
      note_(new QLabel(this)),
      scroll_(new QScrollArea(this)),
      positions_(new QTableWidget(this)) {
  setWindowTitle(Text(words::kRecords));
  if (edit_.other && edit_.other->madeUp) {
    records_.push_back(*edit_.other);
    records_.back().madeUp = false;
    current_ = 0;
  } else if (edit_.other) {
    fromQuery_ = edit_.other;
    current_ = Count();
  } else if (current_ >= Count()) {
    current_ = 0;
  }
  before_ = records_;

  auto* parts = new QSplitter(this);
  parts->setChildrenCollapsible(false);
  MakeRecordList(*parts);
  MakeFields(*parts);
  parts->setStretchFactor(1, 1);
  parts->setSizes({200, 560});
  auto* buttons = new QDialogButtonBox(this);
  buttons->addButton(Text(words::kSave), QDialogButtonBox::AcceptRole);
  buttons->addButton(Text(words::kCancel), QDialogButtonBox::RejectRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &RecordForm::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &RecordForm::reject);
  for (const auto key : {Qt::Key_Return, Qt::Key_Enter})
    connect(new QShortcut(QKeySequence(Qt::CTRL | key), this), &QShortcut::activated, this,
            &RecordForm::accept);
  auto* column = new QVBoxLayout(this);
  column->addWidget(parts, 1);
  column->addWidget(buttons);
  resize(820, 620);
  ShowList();
  ShowRecord();
}

QPushButton* RecordForm::Button(const Localized& text, std::function<void()> run,
                                const char* name) {
  auto* button = new QPushButton(Text(text), this);
  button->setObjectName(name);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, std::move(run));
  return button;
}

void RecordForm::MakeRecordList(QSplitter& parts) {
  auto* side = new QWidget(&parts);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  list_->setAccessibleName(Text(words::kRecords));
  list_->setObjectName("records");
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!showing_ && row >= 0) Go(row);
  });
  column->addWidget(new FocusFrame(list_, side), 1);
  column->addWidget(Button(
      words::kNewRecord, [this] { Add({}); }, "newRecord"));
  column->addWidget(Button(
      words::kCopyRecord,
      [this] {
        Store();
        if (const preview::Record* shown = Shown()) Add(*shown);
      },
      "copyRecord"));
  changing_.push_back(Button(
      words::kDeleteRecord, [this] { Delete(); }, "deleteRecord"));
  column->addWidget(changing_.back());
  parts.addWidget(side);
}

void RecordForm::MakeFields(QSplitter& parts) {
  auto* side = new QWidget(&parts);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  note_->setTextFormat(Qt::PlainText);
  note_->setWordWrap(true);
  column->addWidget(note_);
  auto* name = new QFormLayout;
  name_->setObjectName("recordName");
  auto* caption = new QLabel(Text(words::kRecordName), side);
  caption->setBuddy(name_);
  name_->setAccessibleName(caption->text());
  name->addRow(caption, name_);
  column->addLayout(name);
  connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) {
    if (QListWidgetItem* item = list_->currentItem()) item->setText(text);
  });
  scroll_->setWidgetResizable(true);
  scroll_->setAccessibleName(Text(words::kValues));
  scroll_->setFocusPolicy(Qt::NoFocus);
  column->addWidget(scroll_, 3);
  column->addWidget(MakePositions(), 2);
  parts.addWidget(side);
}

QWidget* RecordForm::MakePositions() {
  auto* side = new QWidget(this);
  auto* column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  auto* caption = new QLabel(Text(words::kPositions), side);
  caption->setBuddy(positions_);
  column->addWidget(caption);
  positions_->setAccessibleName(caption->text());
  positions_->setObjectName("positions");
  positions_->setTabKeyNavigation(false);
  positions_->setSelectionBehavior(QAbstractItemView::SelectRows);
  positions_->verticalHeader()->hide();
  QStringList heads;
  for (const preview::PositionColumn& each : preview::kPositionColumns)
    heads += ToQt(UserLanguage() == Language::german ? each.caption : each.name);
  positions_->setColumnCount(static_cast<int>(heads.size()));
  positions_->setHorizontalHeaderLabels(heads);
  positions_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
  column->addWidget(new FocusFrame(positions_, side), 1);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button :
       {Button(
            words::kAddPosition, [this] { AddPosition(); }, "addPosition"),
        Button(
            words::kDeletePosition, [this] { DeletePosition(); }, "deletePosition")}) {
    buttons->addWidget(button);
    changing_.push_back(button);
  }
  buttons->addStretch();
  column->addLayout(buttons);
  return side;
}

// --- showing ---

preview::Record* RecordForm::Shown() {
  if (current_ < Count()) return &records_[static_cast<std::size_t>(current_)];
  return fromQuery_ ? &*fromQuery_ : nullptr;
}

void RecordForm::ShowList() {
  showing_ = true;
  list_->clear();
  for (const preview::Record& record : records_) list_->addItem(ToQt(record.name));
  if (fromQuery_) list_->addItem(Text(words::kQueryRecord, {ToQt(fromQuery_->name)}));
  list_->setCurrentRow(static_cast<int>(current_));
  showing_ = false;
}

void RecordForm::ShowRecord() {
  const preview::Record* record = Shown();
  static const preview::Record kNone;
  const bool changeable = record != nullptr && !IsReadOnly();
  note_->setText(Text(record == nullptr ? words::kNoRecordYet : words::kQueryRecordHelp));
  note_->setVisible(!changeable);
  name_->setText(record == nullptr ? QString() : ToQt(record->name));
  name_->setEnabled(record != nullptr);
  name_->setReadOnly(!changeable);
  for (QPushButton* button : changing_) button->setEnabled(changeable);
  ShowFields(record == nullptr ? kNone : *record);
  ShowPositions(record == nullptr ? kNone : *record);
}

void RecordForm::ShowFields(const preview::Record& record) {
  rows_.clear();
  auto* form = new QWidget(scroll_);
  auto* layout = new QFormLayout(form);
  if (Shown() == nullptr) return scroll_->setWidget(form);
  std::string group;
  for (RecordField& field : FieldsOf(record, edit_.office.get(), edit_.fields)) {
    if (std::exchange(group, field.group) != field.group) {
      auto* head = new QLabel("<b>" + GroupCaption(field.group).toHtmlEscaped() + "</b>", form);
      layout->addRow(head);
    }
    const Variant* value = record.Find(field.group, field.name);
    FormRow row;
    row.field = std::move(field);
    QWidget* editor = nullptr;
    if (row.field.isFlag) {
      editor = row.flag = new QComboBox(form);
      row.flag->addItems({Text(words::kFlagUnknown), Text(words::kYes), Text(words::kNo)});
      const bool* flag = value == nullptr ? nullptr : value->If<bool>();
      row.flag->setCurrentIndex(flag == nullptr ? unknownFlag : *flag ? yesFlag : noFlag);
      row.flag->setEnabled(!IsReadOnly());
      row.shown = row.flag->currentIndex();
    } else {
      editor = row.line = new QLineEdit(ShownValue(value), form);
      row.line->setReadOnly(IsReadOnly());
      row.line->setCursorPosition(0);
      row.shown = row.line->text();
    }
    editor->setObjectName(ToQt(row.field.group + '.' + row.field.name));
    editor->setToolTip(ToolTipOf('#' + editor->objectName() + '#'));
    auto* caption = new QLabel(row.field.caption, form);
    caption->setTextFormat(Qt::PlainText);
    caption->setBuddy(editor);
    editor->setAccessibleName(row.field.caption);
    layout->addRow(caption, editor);
    rows_.push_back(std::move(row));
  }
  scroll_->setWidget(form);
}

void RecordForm::ShowPositions(const preview::Record& record) {
  const std::size_t count = record.positions ? record.positions->size() : 0;
  positions_->setEnabled(Shown() != nullptr);
  positions_->setEditTriggers(IsReadOnly() ? QAbstractItemView::NoEditTriggers
                                           : QAbstractItemView::DoubleClicked |
                                                 QAbstractItemView::EditKeyPressed |
                                                 QAbstractItemView::AnyKeyPressed);
  positions_->setRowCount(static_cast<int>(count));
  for (std::size_t row = 0; row < count; ++row)
    for (int column = 0; column < positions_->columnCount(); ++column) {
      const QString text =
          ShownValue((*record.positions)[row].Find(preview::kPositionColumns[column].name));
      auto* item = new QTableWidgetItem(text);
      item->setData(kValueRole, text);
      positions_->setItem(static_cast<int>(row), column, item);
    }
}

// --- taking over ---

void RecordForm::Store() {
  // Ends the edit of a cell.
  if (positions_->isAncestorOf(focusWidget())) positions_->setFocus();
  preview::Record* record = Shown();
  if (record == nullptr || IsReadOnly()) return;
  record->name = FromQt(name_->text());
  for (const FormRow& row : rows_) {
    const Variant* before = record->Find(row.field.group, row.field.name);
    if (row.flag != nullptr) {
      const int item = row.flag->currentIndex();
      if (row.shown == item) continue;
      record->Group(row.field.group)
          .Set(row.field.name, item == unknownFlag ? Variant() : Variant(item == yesFlag));
    } else if (row.shown != row.line->text()) {
      record->Group(row.field.group)
          .Set(row.field.name, ValueOf(row.line->text(), before, row.field.isNumber));
    }
  }
  StorePositions(*record);
}

void RecordForm::StorePositions(preview::Record& record) {
  if (!record.positions) return;
  for (int row = 0; row < positions_->rowCount(); ++row)
    for (int column = 0; column < positions_->columnCount(); ++column) {
      const QTableWidgetItem* item = positions_->item(row, column);
      if (item == nullptr || item->text() == item->data(kValueRole).toString()) continue;
      preview::Values& values = (*record.positions)[static_cast<std::size_t>(row)];
      const std::string_view name = preview::kPositionColumns[column].name;
      const Variant* before = values.Find(name);
      const bool isNumber = name == "quantity" || name == "price" || name == "total";
      values.Set(name, ValueOf(item->text(), before, isNumber));
    }
}

void RecordForm::Go(std::int64_t record) {
  Store();
  current_ = record;
  ShowRecord();
}

void RecordForm::Add(preview::Record record) {
  Store();
  record.name =
      FromQt(FreeName(record.name.empty() ? Text(words::kNewRecordName) : ToQt(record.name)));
  records_.push_back(std::move(record));
  current_ = Count() - 1;
  ShowList();
  ShowRecord();
  name_->setFocus();
  name_->selectAll();
}

QString RecordForm::FreeName(const QString& wanted) const {
  QString name = wanted;
  const auto isTaken = [&] {
    return std::ranges::any_of(
        records_, [&name](const preview::Record& record) { return record.name == FromQt(name); });
  };
  for (int number = 2; isTaken(); ++number) name = wanted + ' ' + QString::number(number);
  return name;
}

void RecordForm::Delete() {
  if (IsReadOnly()) return;
  const QString name = list_->currentItem()->text();
  if (Ask(this, Confirmation(Text(words::kDeleteRecordAsk, {name}), words::kDelete, words::kCancel,
                             Default::no)) != 0)
    return;
  records_.erase(records_.begin() + current_);
  current_ = std::max<std::int64_t>(0, std::min(current_, Count() - 1));
  ShowList();
  ShowRecord();
}

void RecordForm::AddPosition() {
  Store();
  preview::Record* record = Shown();
  if (record == nullptr || IsReadOnly()) return;
  if (!record->positions) record->positions.emplace();
  record->positions->emplace_back();
  ShowPositions(*record);
  positions_->setCurrentCell(positions_->rowCount() - 1, 0);
  positions_->setFocus();
}

void RecordForm::DeletePosition() {
  Store();
  preview::Record* record = Shown();
  const int row = positions_->currentRow();
  if (record == nullptr || IsReadOnly() || row < 0) return;
  record->positions->erase(record->positions->begin() + row);
  ShowPositions(*record);
  positions_->setCurrentCell(std::min(row, positions_->rowCount() - 1), 0);
  positions_->setFocus();
}

// --- the end ---

void RecordForm::reject() {
  Store();
  if (records_ == before_) return QDialog::reject();
  enum { save, discard };
  switch (Ask(this, {Text(words::kUnsavedRecords),
                     {{Answer::Kind::agrees, words::kSave},
                      {Answer::Kind::destroys, words::kDiscard},
                      {Answer::Kind::refuses, words::kCancel}}})) {
    case save:
      return accept();
    case discard:
      return QDialog::reject();
    default:
      break;
  }
}

void RecordForm::accept() {
  Store();
  const QString file = edit_.file.Name();
  if (edit_.file.IsChangedOutside() &&
      Ask(this, Confirmation(Text(words::kOverwriteOutside, {file}), words::kOverwriteAnyway,
                             words::kCancel, Default::no)) != 0)
    return;
  try {
    edit_.records.records = records_;
    edit_.file.Write(file, preview::WriteRecords(edit_.records));
  } catch (const std::exception& failure) {
    return ShowMessageBox(this, ToQt(FailureText(failure)));
  }
  written_ = true;
  QDialog::accept();
}

}  // namespace

std::optional<std::int64_t> EditRecords(RecordsToEdit edit, QWidget* parent) {
  RecordForm form(std::move(edit), parent);
  form.exec();
  if (!form.IsWritten()) return std::nullopt;
  return form.Current();
}

}  // namespace kvo::editor
