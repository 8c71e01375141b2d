#include "host/qt/EditViews.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <limits>

#include "host/desktop/Measures.h"
#include "host/qt/QtText.h"
#include "host/qt/ShownText.h"

namespace kvo {
namespace {

// Keeps the form's selection when it gets the focus, where a line edit would select all.
class FormLine final : public SteadyLine {
 public:
  using SteadyLine::SteadyLine;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    KeepSelection([&] { QLineEdit::focusInEvent(event); });
  }
};

// Uses the palette's role for the colour, so that it follows the user's theme.
void ShowBackColor(QWidget& widget, SystemColor color) {
  QPalette palette;
  if (color == SystemColor::buttonFace)
    palette.setBrush(QPalette::Base, QApplication::palette().brush(QPalette::Button));
  widget.setPalette(palette);
}

}  // namespace

// --- a line ---

void SteadyLine::KeepSelection(const std::function<void()>& action) {
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

bool SteadyLine::event(QEvent* event) {
  const bool activated = event->type() == QEvent::WindowActivate;
  return activated ? QWidget::event(event) : QLineEdit::event(event);
}

void SteadyLine::focusOutEvent(QFocusEvent* event) {
  KeepSelection([&] { QLineEdit::focusOutEvent(event); });
}

void SteadyLine::keyPressEvent(QKeyEvent* event) {
  if (hasSelectedText() && event->matches(QKeySequence::MoveToPreviousChar))
    setCursorPosition(selectionStart());
  else if (hasSelectedText() && event->matches(QKeySequence::MoveToNextChar))
    setCursorPosition(selectionStart() + selectionLength());
  else
    QLineEdit::keyPressEvent(event);
}

LineSync::LineSync(QLineEdit& line, EditedText& text, FormActions& host)
    : TextSync(text, Lines::one, kQtStyle, host), line_(line) {
  line.setMaxLength(std::numeric_limits<int>::max());
  ShowText();
  QObject::connect(&line, &QLineEdit::textEdited, &line, [this] { Edited(); });
  QObject::connect(&line, &QLineEdit::selectionChanged, &line, [this] { Selected(); });
  QObject::connect(&line, &QLineEdit::cursorPositionChanged, &line, [this] { Selected(); });
}

std::u16string LineSync::Units() const { return line_.text().toStdU16String(); }

void LineSync::ShowUnits(const std::u16string& units) {
  line_.setText(QString::fromStdU16String(units));
}

UnitRange LineSync::Selection() const {
  if (line_.hasSelectedText()) return {line_.selectionStart(), line_.selectionLength()};
  return {line_.cursorPosition(), 0};
}

void LineSync::Select(const UnitRange& selection) {
  if (selection.length > 0)
    line_.setSelection(selection.start, selection.length);
  else
    line_.setCursorPosition(selection.start);
}

// --- several lines ---

namespace {

class Area final : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;
  std::function<std::string()> selectedText;

 protected:
  // Copies the form's text, not the characters shown in its place.
  QMimeData* createMimeDataFromSelection() const override {
    auto copied = std::make_unique<QMimeData>();
    copied->setText(ToQt(selectedText()));
    return copied.release();
  }
};

class AreaSync final : public TextSync {
 public:
  AreaSync(Area& area, EditedText& text, FormActions& host)
      : TextSync(text, Lines::many, kQtStyle, host), area_(area) {
    ShowText();
    area.selectedText = [this] { return SelectedText(); };
    QObject::connect(area.document(), &QTextDocument::contentsChange, &area, [this, &host] {
      if (!host.IsUpdating()) editing_ = true;
    });
    QObject::connect(&area, &QPlainTextEdit::textChanged, &area, [this] {
      if (std::exchange(editing_, false)) Edited();
    });
    QObject::connect(&area, &QPlainTextEdit::selectionChanged, &area, [this] { Selected(); });
    QObject::connect(&area, &QPlainTextEdit::cursorPositionChanged, &area, [this] { Selected(); });
  }

 private:
  // The document separates its lines by its own characters.
  std::u16string Units() const override {
    QString units = area_.document()->toRawText();
    return units.replace(QChar::ParagraphSeparator, QLatin1Char('\n')).toStdU16String();
  }
  void ShowUnits(const std::u16string& units) override {
    const QSignalBlocker quiet(&area_);
    area_.setPlainText(QString::fromStdU16String(units));
  }
  UnitRange Selection() const override {
    const QTextCursor cursor = area_.textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
  }
  void Select(const UnitRange& selection) override {
    QTextCursor cursor = area_.textCursor();
    cursor.setPosition(selection.start);
    cursor.setPosition(selection.start + selection.length, QTextCursor::KeepAnchor);
    area_.setTextCursor(cursor);
  }
  // The caret moves before textChanged is emitted, and the typed text may equal the old text.
  bool IsAhead() const override { return editing_; }

  Area& area_;
  bool editing_ = false;
};

}  // namespace

TextBoxView::TextBoxView(TextBox& box, QWidget& parent, ViewHost& host)
    : ViewOf(box, host, nullptr), text_(box) {
  if (box.MultiLine()) {
    auto* area = new Area(&parent);
    area->setTabChangesFocus(true);
    area->document()->setDocumentMargin(1);
    if (box.At().height < kTwoLines) area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    sync_ = std::make_unique<AreaSync>(*area, text_, host);
    widget_ = area;
  } else {
    auto* line = new FormLine(&parent);
    sync_ = std::make_unique<LineSync>(*line, text_, host);
    widget_ = line;
  }
  Show(Aspect::color);
}

void TextBoxView::Show(Aspect aspect) {
  if (aspect == Aspect::text) sync_->ShowText();
  if (aspect == Aspect::selection) sync_->ShowSelection();
  if (aspect == Aspect::color) ShowBackColor(*widget_, control_.BackColor());
}

// --- lists ---

void MakeFreeText(QComboBox& list) {
  list.setEditable(true);
  list.setLineEdit(new SteadyLine(&list));
  list.setInsertPolicy(QComboBox::NoInsert);
  list.setCompleter(nullptr);
  QObject::disconnect(list.lineEdit(), &QLineEdit::editingFinished, &list, nullptr);
  QObject::disconnect(list.lineEdit(), &QLineEdit::returnPressed, &list, nullptr);
}

void ListOfRows::Add(std::string_view text) { list_.addItem(ToQt(text)); }

ComboBoxView::ComboBoxView(ComboBox& box, QWidget& parent, ViewHost& host)
    : ViewOf(box, host, new QComboBox(&parent)), text_(box) {
  if (box.Editable()) {
    MakeFreeText(*widget_);
    sync_ = std::make_unique<LineSync>(*widget_->lineEdit(), text_, host);
  }
  ShowChoices();
  QObject::connect(widget_, &QComboBox::activated, widget_, [this](int row) {
    host_.Act([this, row] { FormRenderer::Choose(control_, row); });
    host_.Update([this] { ShowChoices(); });
  });
}

void ComboBoxView::Show(Aspect aspect) {
  if (aspect == Aspect::choices || aspect == Aspect::text) ShowChoices();
  if (aspect == Aspect::selection && sync_) sync_->ShowSelection();
}

void ComboBoxView::ShowChoices() {
  ShowRows(ListOfRows(*widget_), control_.Rows(), &ComboBox::Row::text, control_.ListIndex());
  if (sync_) sync_->ShowText();
}

}  // namespace kvo
