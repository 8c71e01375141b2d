#include "apps/editor/TakeOver.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "apps/editor/Highlighter.h"
#include "apps/editor/PageFile.h"
#include "apps/editor/Words.h"
#include "document/page/File.h"
#include "document/page/Page.h"

namespace kvo::editor {
namespace {

enum Column { place, text, target, columnCount };

QString TargetOf(const adopt::Find& find) {
  if (find.edits.empty()) return ToQt(find.reason.In(UserLanguage()));
  QString target = ToQt(find.contract->title.In(UserLanguage()));
  if (find.result == adopt::Find::Result::tag) target = Text(words::kTakeOverAsTag, {target});
  QStringList properties;
  for (const auto& [name, value] : find.properties)
    properties.push_back(ToQt(name) + " = " + ToQt(value).simplified());
  return properties.isEmpty() ? target : target + ": " + properties.join(", ");
}

}  // namespace

TakeOverDialog::TakeOverDialog(const PageText& page, ObjectRef office, QString folder,
                               QWidget* parent)
    : QDialog(parent),
      page_(page),
      bytes_(page_.Bytes(places_)),
      office_(std::move(office)),
      folder_(std::move(folder)),
      table_(new QTreeWidget(this)),
      source_(new QPlainTextEdit(this)),
      mappingName_(new QLabel(Text(words::kNoMapping), this)),
      note_(new QLabel(this)) {
  setWindowTitle(Text(words::kTakeOver));
  table_->setColumnCount(columnCount);
  table_->setHeaderLabels(
      {Text(words::kPlace), Text(words::kTakeOverFound), Text(words::kTakeOverTarget)});
  table_->setRootIsDecorated(false);
  table_->setUniformRowHeights(true);
  table_->setAllColumnsShowFocus(true);
  table_->setAccessibleName(Text(words::kTakeOverFinds));
  table_->header()->resizeSection(place, 90);
  table_->header()->resizeSection(text, 250);

  source_->setReadOnly(true);
  source_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  source_->setAccessibleName(Text(words::kTakeOverPage));
  source_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  new Highlighter(source_->document(), source_->palette());
  // One character for each control, as in the source view.
  source_->setPlainText(QString(page_.Text()).replace(kEmbeddedCharacter, QChar(0x25A3)));

  auto* choose = new QPushButton(Text(words::kChooseMapping), this);
  connect(choose, &QPushButton::clicked, this, [this] {
    const QString file =
        QFileDialog::getOpenFileName(this, Text(words::kMappingTitle), folder_, "JSON (*.json)");
    if (!file.isEmpty()) UseMapping(file);
  });
  note_->setWordWrap(true);
  note_->setTextFormat(Qt::PlainText);
  mappingName_->setTextFormat(Qt::PlainText);
  auto* buttons = new QDialogButtonBox(this);
  ok_ = buttons->addButton(Text(words::kTakeOverDo), QDialogButtonBox::AcceptRole);
  buttons->addButton(Text(words::kCancel), QDialogButtonBox::RejectRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* mapping = new QHBoxLayout;
  mapping->addWidget(mappingName_, 1);
  mapping->addWidget(choose);
  auto* parts = new QSplitter(this);
  parts->addWidget(table_);
  parts->addWidget(source_);
  parts->setChildrenCollapsible(false);
  parts->setSizes({620, 440});
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(mapping);
  layout->addWidget(parts, 1);
  layout->addWidget(note_);
  layout->addWidget(buttons);
  resize(1100, 620);

  connect(table_, &QTreeWidget::currentItemChanged, this, [this] { ShowPlace(); });
  connect(table_, &QTreeWidget::itemChanged, this, [this] { Count(); });
  FindAgain();
  table_->setFocus();
}

void TakeOverDialog::UseMapping(const QString& file) {
  try {
    mapping_ = adopt::LoadMapping(FileName(file));
  } catch (const LocalizedError& error) {
    note_->setText(ToQt(error.Text(UserLanguage())));
    return;
  }
  mappingName_->setText(Text(words::kMappingIs, {QFileInfo(file).fileName()}));
  FindAgain();
}

void TakeOverDialog::FindAgain() {
  const page::Page page(bytes_);
  adopt::Finds all = adopt::FindAll(page, mapping_, office_);
  // Proves all of them at once, so that the table shows only what can be done.
  finds_ = adopt::Adopt(page, std::move(all.finds)).finds;
  const QSignalBlocker quiet(table_);
  table_->clear();
  for (const adopt::Find& find : finds_) AddRow(find);
  if (page::HasErrors(all.problems))
    note_->setText(Text(words::kTakeOverErrors,
                        {ToQt(page::Describe(all.problems.front(), "", UserLanguage()))}));
  else
    Count();
  table_->setCurrentItem(table_->topLevelItem(0));
  ShowPlace();
}

void TakeOverDialog::AddRow(const adopt::Find& find) {
  auto* row = new QTreeWidgetItem(table_);
  // Counted as in the source view, where a control is one character.
  const page::Place at = places_.PlaceOf(places_.PositionOf(find.begin));
  row->setText(place, QString("%1:%2").arg(at.line).arg(at.column));
  row->setText(text, ContextOf(find));
  row->setToolTip(text, ToQt(find.text));
  row->setText(target, TargetOf(find));
  row->setToolTip(target, TargetOf(find));
  if (find.edits.empty()) {
    for (int column = 0; column < columnCount; ++column)
      row->setForeground(column, palette().placeholderText());
    row->setFlags(row->flags() & ~Qt::ItemIsUserCheckable);
  } else {
    row->setCheckState(place, Qt::Checked);
  }
}

// The find, with a few words around it in its line.
QString TakeOverDialog::ContextOf(const adopt::Find& find) const {
  constexpr int kAround = 20;
  const int begin = places_.PositionOf(find.begin);
  const QString& all = page_.Text();
  const QString before = all.left(begin).section(kLineBreakCharacter, -1);
  const QString after = all.mid(places_.PositionOf(find.end)).section(kLineBreakCharacter, 0, 0);
  return ((before.size() > kAround ? "…" : "") + before.right(kAround) + ToQt(find.text) +
          after.left(kAround))
      .simplified();
}

void TakeOverDialog::ShowPlace() {
  const int row = table_->indexOfTopLevelItem(table_->currentItem());
  if (row < 0) return;
  const adopt::Find& find = finds_[static_cast<std::size_t>(row)];
  QTextCursor cursor = source_->textCursor();
  cursor.setPosition(places_.PositionOf(find.begin));
  cursor.setPosition(places_.PositionOf(find.end), QTextCursor::KeepAnchor);
  source_->setTextCursor(cursor);
  source_->centerCursor();
}

void TakeOverDialog::Count() {
  int checked = 0;
  for (int row = 0; row < table_->topLevelItemCount(); ++row) {
    adopt::Find& find = finds_[static_cast<std::size_t>(row)];
    find.chosen = table_->topLevelItem(row)->checkState(place) == Qt::Checked;
    if (find.chosen && !find.edits.empty()) ++checked;
  }
  note_->setText(finds_.empty() ? Text(words::kNothingToTakeOver)
                                : Text(words::kTakeOverCount,
                                       {QString::number(checked), QString::number(finds_.size())}));
  ok_->setEnabled(checked > 0);
}

std::optional<PageText> TakeOverDialog::Result() {
  const adopt::Adopted adopted = adopt::Adopt(page::Page(bytes_), finds_);
  if (adopted.edits.empty()) return std::nullopt;
  return PageText(adopted.bytes, page_.LineBreak());
}

}  // namespace kvo::editor
