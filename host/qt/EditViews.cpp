#include "host/qt/EditViews.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <limits>

#include "host/qt/QtText.h"
#include "host/qt/Twips.h"

namespace kvo {
namespace {

// Being entered leaves the selection to the form as well; a line edit would select all.
class FormLine final : public CalmLine {
 public:
  using CalmLine::CalmLine;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    KeepSelection([&] { QLineEdit::focusInEvent(event); });
  }
};

UnitRange SelectionOf(const QLineEdit& line) {
  if (line.hasSelectedText()) return {line.selectionStart(), line.selectionLength()};
  return {line.cursorPosition(), 0};
}

UnitRange SelectionOf(const EditBox& box, const ShownText& shown) {
  const int start = shown.ToWidget(box.SelStart());
  return {start, shown.ToWidget(box.SelStart() + box.SelLength()) - start};
}

void Select(EditBox& box, const ShownText& shown, const UnitRange& selected) {
  const std::size_t start = shown.ToForm(selected.start);
  UserAction::Select(box, start, shown.ToForm(selected.start + selected.length) - start);
}

// A colour of the desktop, in whatever palette the user has.
void ShowBackColor(QWidget& widget, SystemColor color) {
  QPalette palette;
  if (color == SystemColor::buttonFace)
    palette.setBrush(QPalette::Base, QApplication::palette().brush(QPalette::Button));
  widget.setPalette(palette);
}

}  // namespace

// --- a line ---

void CalmLine::KeepSelection(const std::function<void()>& action) {
  const QSignalBlocker quiet(this);
  const int caret = cursorPosition();
  const int start = selectionStart();
  const int length = selectionLength();
  action();
  if (start < 0)
    setCursorPosition(caret);
  else if (caret == start)
    setSelection(start + length, -length);
  else
    setSelection(start, length);
}

bool CalmLine::event(QEvent* event) {
  const bool activated = event->type() == QEvent::WindowActivate;
  return activated ? QWidget::event(event) : QLineEdit::event(event);
}

void CalmLine::focusOutEvent(QFocusEvent* event) {
  KeepSelection([&] { QLineEdit::focusOutEvent(event); });
}

void CalmLine::keyPressEvent(QKeyEvent* event) {
  if (hasSelectedText() && event->matches(QKeySequence::MoveToPreviousChar))
    setCursorPosition(selectionStart());
  else if (hasSelectedText() && event->matches(QKeySequence::MoveToNextChar))
    setCursorPosition(selectionStart() + selectionLength());
  else
    QLineEdit::keyPressEvent(event);
}

LineSync::LineSync(QLineEdit& line, EditBox& box, ViewHost& host)
    : line_(line), box_(box), host_(host), shown_({}, Lines::one, kQtStyle) {
  line.setMaxLength(std::numeric_limits<int>::max());
  ShowText();
  QObject::connect(&line, &QLineEdit::textEdited, &line, [this] { Edited(); });
  QObject::connect(&line, &QLineEdit::selectionChanged, &line, [this] { Selected(); });
  QObject::connect(&line, &QLineEdit::cursorPositionChanged, &line, [this] { Selected(); });
}

void LineSync::ShowText() {
  shown_ = ShownText(box_.Text(), Lines::one, kQtStyle);
  if (const QString units = UnitsOf(shown_); line_.text() != units) line_.setText(units);
  ShowSelection();
}

void LineSync::ShowSelection() {
  const UnitRange selected = SelectionOf(box_, shown_);
  if (SelectionOf(line_) == selected) return;
  if (selected.length > 0)
    line_.setSelection(selected.start, selected.length);
  else
    line_.setCursorPosition(selected.start);
}

void LineSync::Edited() {
  host_.Act([this] {
    const auto edit = FindEdit(shown_, SelectionOf(box_, shown_), line_.text().toStdU16String(),
                               line_.cursorPosition());
    if (edit) UserAction::Edit(box_, edit->start, edit->length, edit->typed);
  });
  // What the form did not take goes from the line as well.
  host_.Update([this] { ShowText(); });
}

void LineSync::Selected() {
  // A text that is ahead of the form's is being edited, and its caret comes with it.
  if (line_.text() != UnitsOf(shown_) || SelectionOf(line_) == SelectionOf(box_, shown_)) return;
  host_.Act([this] { Select(box_, shown_, SelectionOf(line_)); });
}

LineView::LineView(TextBox& box, QWidget& parent, ViewHost& host)
    : box_(box), widget_(new FormLine(&parent)), sync_(*widget_, box, host) {
  Show(Aspect::color);
}

void LineView::Show(Aspect aspect) {
  if (aspect == Aspect::text) sync_.ShowText();
  if (aspect == Aspect::selection) sync_.ShowSelection();
  if (aspect == Aspect::color) ShowBackColor(*widget_, box_.BackColor());
}

// --- several lines ---

class TextAreaView::Area final : public QPlainTextEdit {
 public:
  Area(TextAreaView& view, QWidget* parent) : QPlainTextEdit(parent), view_(view) {}

 protected:
  // What is copied is the form's text, not what stands for it.
  QMimeData* createMimeDataFromSelection() const override {
    const UnitRange selected = view_.Selection();
    const std::string& text = view_.box_.Text();
    const std::size_t start = CharacterOffset(text, view_.shown_.ToForm(selected.start));
    const std::size_t end =
        CharacterOffset(text, view_.shown_.ToForm(selected.start + selected.length));
    auto copied = std::make_unique<QMimeData>();
    copied->setText(ToQt(std::string_view(text).substr(start, end - start)));
    return copied.release();
  }

 private:
  TextAreaView& view_;
};

TextAreaView::TextAreaView(TextBox& box, QWidget& parent, ViewHost& host)
    : box_(box), host_(host), widget_(new Area(*this, &parent)), shown_({}, Lines::many, kQtStyle) {
  constexpr int kTwoLines = 600;
  widget_->setTabChangesFocus(true);
  widget_->document()->setDocumentMargin(1);
  if (box.At().height < kTwoLines) widget_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  ShowText();
  Show(Aspect::color);
  QObject::connect(widget_->document(), &QTextDocument::contentsChange, widget_,
                   [this] { editing_ = true; });
  QObject::connect(widget_, &QPlainTextEdit::textChanged, widget_, [this] { Edited(); });
  QObject::connect(widget_, &QPlainTextEdit::selectionChanged, widget_, [this] { Selected(); });
  QObject::connect(widget_, &QPlainTextEdit::cursorPositionChanged, widget_,
                   [this] { Selected(); });
}

QWidget* TextAreaView::Widget() const { return widget_; }

void TextAreaView::Show(Aspect aspect) {
  if (aspect == Aspect::text) ShowText();
  if (aspect == Aspect::selection) ShowSelection();
  if (aspect == Aspect::color) ShowBackColor(*widget_, box_.BackColor());
}

// As it stands in the document, which separates its lines by marks of its own.
QString TextAreaView::Units() const {
  QString units = widget_->document()->toRawText();
  return units.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
}

UnitRange TextAreaView::Selection() const {
  const QTextCursor cursor = widget_->textCursor();
  return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
}

void TextAreaView::ShowText() {
  shown_ = ShownText(box_.Text(), Lines::many, kQtStyle);
  if (const QString units = UnitsOf(shown_); Units() != units) {
    const QSignalBlocker quiet(widget_);
    widget_->setPlainText(units);
  }
  editing_ = false;
  ShowSelection();
}

void TextAreaView::ShowSelection() {
  const UnitRange selected = SelectionOf(box_, shown_);
  if (Selection() == selected) return;
  QTextCursor cursor = widget_->textCursor();
  cursor.setPosition(selected.start);
  cursor.setPosition(selected.start + selected.length, QTextCursor::KeepAnchor);
  widget_->setTextCursor(cursor);
}

void TextAreaView::Edited() {
  if (!editing_) return;
  host_.Act([this] {
    const UnitRange now = Selection();
    // A change of the layout alone leaves the selection as it is.
    const UnitRange before = now.length > 0 ? UnitRange{now.start, 0} : SelectionOf(box_, shown_);
    const auto edit =
        FindEdit(shown_, before, Units().toStdU16String(), widget_->textCursor().position());
    editing_ = false;
    if (edit) UserAction::Edit(box_, edit->start, edit->length, edit->typed);
  });
  host_.Update([this] { ShowText(); });
}

void TextAreaView::Selected() {
  if (editing_ || Selection() == SelectionOf(box_, shown_)) return;
  host_.Act([this] { Select(box_, shown_, Selection()); });
}

// --- lists ---

void MakeFreeText(QComboBox& list) {
  list.setEditable(true);
  list.setLineEdit(new CalmLine(&list));
  list.setInsertPolicy(QComboBox::NoInsert);
  list.setCompleter(nullptr);
  QObject::disconnect(list.lineEdit(), &QLineEdit::editingFinished, &list, nullptr);
  QObject::disconnect(list.lineEdit(), &QLineEdit::returnPressed, &list, nullptr);
}

ComboBoxView::ComboBoxView(ComboBox& box, QWidget& parent, ViewHost& host)
    : box_(box), widget_(new QComboBox(&parent)) {
  if (box.Editable()) MakeFreeText(*widget_);
  ShowChoices();
  if (box.Editable()) sync_ = std::make_unique<LineSync>(*widget_->lineEdit(), box, host);
  QObject::connect(widget_, &QComboBox::activated, widget_, [this, &host](int row) {
    host.Act([this, row] { UserAction::Choose(box_, row); });
    host.Update([this] { ShowChoice(); });
  });
}

void ComboBoxView::Show(Aspect aspect) {
  if (aspect == Aspect::choices) ShowChoices();
  if (aspect == Aspect::text) ShowChoice();
  if (aspect == Aspect::selection && sync_) sync_->ShowSelection();
}

// Rows are only ever added at the end, or all removed.
void ComboBoxView::ShowChoices() {
  const auto& rows = box_.Rows();
  if (static_cast<int>(rows.size()) < widget_->count()) widget_->clear();
  for (auto row = static_cast<std::size_t>(widget_->count()); row < rows.size(); ++row)
    widget_->addItem(ToQt(rows[row].text));
  ShowChoice();
}

void ComboBoxView::ShowChoice() {
  if (widget_->currentIndex() != box_.ListIndex()) widget_->setCurrentIndex(box_.ListIndex());
  if (sync_) sync_->ShowText();
}

}  // namespace kvo
