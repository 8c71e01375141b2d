#include "apps/editor/FindBar.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <algorithm>

#include "apps/editor/SourceEdit.h"
#include "apps/editor/Words.h"

namespace kvo::editor {

FindBar::FindBar(SourceEdit& source, QWidget* parent)
    : QWidget(parent),
      source_(source),
      find_(new QLineEdit(this)),
      replace_(new QLineEdit(this)),
      matchCase_(new QCheckBox(Text(words::kMatchCase), this)),
      expression_(new QCheckBox(Text(words::kExpression), this)),
      message_(new QLabel(this)),
      replaceRow_(new QWidget(this)) {
  find_->setObjectName("find");
  replace_->setObjectName("replace");
  find_->setPlaceholderText(Text(words::kFind));
  find_->setAccessibleName(Text(words::kFind));
  replace_->setPlaceholderText(Text(words::kReplaceWith));
  replace_->setAccessibleName(Text(words::kReplaceWith));
  message_->setTextFormat(Qt::PlainText);
  const auto button = [this](const Localized& caption, auto action) {
    auto* made = new QPushButton(Text(caption), this);
    connect(made, &QPushButton::clicked, this, action);
    return made;
  };
  auto* findRow = new QHBoxLayout;
  findRow->addWidget(find_, 1);
  findRow->addWidget(button(words::kNext, [this] { Step(false); }));
  findRow->addWidget(button(words::kPrevious, [this] { Step(true); }));
  auto* replaceRow = new QHBoxLayout(replaceRow_);
  replaceRow->addWidget(replace_, 1);
  replaceRow->addWidget(button(words::kReplaceOne, [this] { ReplaceOne(); }));
  replaceRow->addWidget(button(words::kReplaceAll, [this] { ReplaceAll(); }));
  auto* optionRow = new QHBoxLayout;
  optionRow->addWidget(matchCase_);
  optionRow->addWidget(expression_);
  optionRow->addStretch();
  optionRow->addWidget(message_);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  for (QLayout* row : std::initializer_list<QLayout*>{findRow, replaceRow, optionRow})
    row->setContentsMargins(4, 2, 4, 2);
  rows->addLayout(findRow);
  rows->addWidget(replaceRow_);
  rows->addLayout(optionRow);
  connect(find_, &QLineEdit::textChanged, message_, &QLabel::clear);
  hide();
}

void FindBar::Open(bool withReplace) {
  const QString selected = source_.textCursor().selectedText();
  if (!selected.isEmpty() && !selected.contains(kLineBreakCharacter) &&
      !selected.contains(kEmbeddedCharacter))
    find_->setText(selected);
  replaceRow_->setVisible(withReplace);
  show();
  find_->setFocus();
  find_->selectAll();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    hide();
    source_.setFocus();
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (replace_->hasFocus())
      ReplaceOne();
    else
      Step(event->modifiers().testFlag(Qt::ShiftModifier));
  } else {
    QWidget::keyPressEvent(event);
  }
}

std::optional<std::vector<FindBar::Match>> FindBar::Matches() {
  std::vector<Match> matches;
  const QString wanted = find_->text();
  if (wanted.isEmpty()) return matches;
  QRegularExpression pattern(expression_->isChecked() ? wanted : QRegularExpression::escape(wanted),
                             QRegularExpression::MultilineOption);
  if (!matchCase_->isChecked())
    pattern.setPatternOptions(pattern.patternOptions() | QRegularExpression::CaseInsensitiveOption);
  if (!pattern.isValid()) {
    message_->setText(
        Text(words::kWrongExpression,
             {QString::number(pattern.patternErrorOffset() + 1), pattern.errorString()}));
    return std::nullopt;
  }
  QString text = source_.Page().Content().Text();
  text.replace(kLineBreakCharacter, u'\n');
  for (auto found = pattern.globalMatch(text); found.hasNext();) {
    const QRegularExpressionMatch match = found.next();
    if (match.capturedLength() == 0) continue;
    matches.push_back({static_cast<int>(match.capturedStart()),
                       static_cast<int>(match.capturedLength()), ReplacementOf(match)});
  }
  return matches;
}

PageText FindBar::ReplacementOf(const QRegularExpressionMatch& match) const {
  PageText replacement;
  const auto append = [&](QStringView text, std::vector<Embedded> parts = {}) {
    replacement.Replace(static_cast<int>(replacement.Text().size()), 0, text, std::move(parts));
  };
  const QString pattern = replace_->text();
  if (!expression_->isChecked()) {
    append(pattern);
    return replacement;
  }
  // A backslash and a digit insert what that group matched, including controls.
  static const QRegularExpression kGroup(R"(\\([0-9]))");
  const PageText& page = source_.Page().Content();
  qsizetype at = 0;
  for (auto group = kGroup.globalMatch(pattern); group.hasNext();) {
    const QRegularExpressionMatch reference = group.next();
    append(QStringView(pattern).sliced(at, reference.capturedStart() - at));
    at = reference.capturedEnd();
    const int number = reference.captured(1).toInt();
    const auto begin = static_cast<int>(match.capturedStart(number));
    if (begin < 0) continue;
    const auto length = static_cast<int>(match.capturedLength(number));
    std::vector<Embedded> parts;
    for (int position = begin; position < begin + length; ++position)
      if (const Embedded* part = page.At(position))
        parts.push_back({part->kind, position - begin, part->bytes});
    append(QStringView(page.Text()).sliced(begin, length), std::move(parts));
  }
  append(QStringView(pattern).sliced(at));
  return replacement;
}

void FindBar::Step(bool backwards) {
  if (find_->text().isEmpty()) return Open(false);
  const auto matches = Matches();
  if (!matches) return;
  if (matches->empty()) return message_->setText(Text(words::kNotFound));
  const QTextCursor cursor = source_.textCursor();
  // Takes the match after or before the selection; wraps around at the end of the page.
  auto next = backwards
                  ? std::ranges::lower_bound(*matches, cursor.selectionStart(), {}, &Match::begin)
                  : std::ranges::lower_bound(*matches, cursor.selectionEnd(), {}, &Match::begin);
  if (backwards)
    next = next == matches->begin() ? matches->end() - 1 : next - 1;
  else if (next == matches->end())
    next = matches->begin();
  source_.setTextCursor(source_.Page().Range(next->begin, next->begin + next->length));
  source_.centerCursor();
  message_->setText(Text(words::kMatchOf, {QString::number(next - matches->begin() + 1),
                                           QString::number(matches->size())}));
}

void FindBar::ReplaceOne() {
  const auto matches = Matches();
  if (!matches) return;
  const QTextCursor cursor = source_.textCursor();
  for (const Match& match : *matches) {
    if (match.begin != cursor.selectionStart() ||
        match.begin + match.length != cursor.selectionEnd())
      continue;
    QTextCursor place(cursor);
    source_.Page().Insert(place, match.replacement, Text(words::kReplaceStep));
    break;
  }
  Step(false);
}

void FindBar::ReplaceAll() {
  auto matches = Matches();
  if (!matches) return;
  const QString count = QString::number(matches->size());
  if (!matches->empty()) {
    const QString step = Text(words::kReplaceAllStep, {count});
    const PageDocument::Step named(source_.Page(), step);
    QTextCursor cursor(source_.document());
    cursor.beginEditBlock();
    std::ranges::reverse(*matches);  // so that earlier positions stay valid
    for (const auto& match : *matches) {
      QTextCursor place = source_.Page().Range(match.begin, match.begin + match.length);
      source_.Page().Insert(place, match.replacement, step);
    }
    cursor.endEditBlock();
  }
  message_->setText(Text(words::kReplaced, {count}));
}

}  // namespace kvo::editor
