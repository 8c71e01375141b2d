#include "apps/editor/SourceEdit.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolTip>
#include <algorithm>
#include <functional>
#include <unordered_set>
#include <utility>

#include "apps/editor/Ask.h"
#include "apps/editor/Colors.h"
#include "apps/editor/Highlighter.h"
#include "apps/editor/Placement.h"
#include "apps/editor/SourceAccessibility.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "document/page/Page.h"
#include "document/page/Surroundings.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr int kNumberMargin = 6;

class LineNumbers final : public QWidget {
 public:
  explicit LineNumbers(SourceEdit& edit) : QWidget(&edit), edit_(edit) {}

 protected:
  void paintEvent(QPaintEvent* event) override { edit_.PaintLineNumbers(event, *this); }

 private:
  SourceEdit& edit_;
};

std::string Published(const std::string& fragment) {
  page::StringSink sink;
  page::Publish(page::Page(fragment), sink);
  return sink.Text();
}

std::string FragmentOf(const QMimeData& data) {
  return data.hasFormat(kFragmentType) ? data.data(kFragmentType).toStdString()
                                       : data.text().toStdString();
}

constexpr std::string_view kUtf8Declaration = "<meta charset=utf-8>";

}  // namespace

SourceEdit::SourceEdit(PageDocument& document, QWidget* parent)
    : QPlainTextEdit(parent),
      page_(document),
      layout_(new PageLayout(document)),
      lineNumbers_(new LineNumbers(*this)) {
  InstallSourceAccessibility();
  const QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  page_.Document()->setDefaultFont(font);
  setFont(font);
  layout_->Device(viewport());
  layout_->isSelected = [this](int position) {
    const QTextCursor cursor = textCursor();
    return cursor.selectionStart() <= position && position < cursor.selectionEnd();
  };
  layout_->frameOf = [this](int position) -> std::optional<QColor> {
    for (const QTextEdit::ExtraSelection& mark : marks_)
      if (mark.cursor.selectionStart() <= position && position < mark.cursor.selectionEnd())
        return mark.format.underlineColor();
    return std::nullopt;
  };
  page_.Document()->setDocumentLayout(layout_);
  setDocument(page_.Document());
  highlighter_ = new Highlighter(page_.Document(), palette());
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setCursorWidth(2);
  setAccessibleName(Text(words::kSource));
  connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { PlaceLineNumbers(); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy != 0)
      lineNumbers_->scroll(0, dy);
    else
      lineNumbers_->update(0, rect.y(), lineNumbers_->width(), rect.height());
  });
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
    expectsEnter_ = false;
    ShowCurrentLine();
  });
  PlaceLineNumbers();
  ShowCurrentLine();
}

std::optional<int> SourceEdit::CurrentControl() const {
  const QTextCursor cursor = textCursor();
  if (cursor.hasSelection()) {
    const int begin = cursor.selectionStart();
    if (cursor.selectionEnd() == begin + 1 && page_.IsControl(begin)) return begin;
    return std::nullopt;
  }
  for (const int position : {cursor.position() - 1, cursor.position()})
    if (page_.IsControl(position)) return position;
  return std::nullopt;
}

void SourceEdit::SelectControl(int position) {
  setTextCursor(page_.Range(position, position + 1));
  // Shows the line from its start, if the box is still visible then.
  horizontalScrollBar()->setValue(0);
  ensureCursorVisible();
}

void SourceEdit::StandBehind(int position) {
  setTextCursor(page_.Range(position + 1, position + 1));
  ensureCursorVisible();
}

void SourceEdit::Reveal(int position) {
  if (page_.IsControl(position)) {
    SelectControl(position);
  } else {
    const int place = std::min(position, page_.Document()->characterCount() - 1);
    setTextCursor(page_.Range(place, place));
    centerCursor();
  }
}

void SourceEdit::GoTo(int position) {
  Reveal(position);
  setFocus();
}

std::optional<int> SourceEdit::BoxAt(const QPoint& point) const {
  const QTextCursor near = cursorForPosition(point);
  for (const int position : {near.position(), near.position() - 1}) {
    if (!page_.IsControl(position)) continue;
    // Within its own line: at its end, the next position is at the start of the line below.
    const QTextBlock block = page_.Document()->findBlock(position);
    const int inBlock = position - block.position();
    const QTextLine line = block.layout()->lineForTextPosition(inBlock);
    if (!line.isValid()) continue;
    const double left = line.cursorToX(inBlock);
    const double right = line.cursorToX(inBlock + 1);
    const QPointF origin =
        blockBoundingGeometry(block).translated(contentOffset()).topLeft() + QPointF(0, line.y());
    if (QRectF(origin + QPointF(left, 0), QSizeF(right - left, line.height())).contains(point))
      return position;
  }
  return std::nullopt;
}

void SourceEdit::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const auto control = CurrentControl();
  const bool alt = event->modifiers().testFlag(Qt::AltModifier);
  const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
  const bool expected = std::exchange(expectsEnter_, false);
  const bool meant = textCursor().hasSelection() || expected;
  if (enter && control && (alt || (plain && meant))) {
    if (onOpenControl) onOpenControl(*control, false);
    return;
  }
  // The widget's own undo does not know that steps belong together.
  if (event->matches(QKeySequence::Undo)) return page_.Undo();
  if (event->matches(QKeySequence::Redo)) return page_.Redo();
  if (event->matches(QKeySequence::Cut)) {
    const PageDocument::Step step(page_, Text(words::kCutStep));
    return cut();
  }
  const bool deletes = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
  if (deletes) {
    const PageDocument::Step step(page_, Text(words::kDeleteStep));
    return QPlainTextEdit::keyPressEvent(event);
  }
  QPlainTextEdit::keyPressEvent(event);
}

void SourceEdit::mousePressEvent(QMouseEvent* event) {
  const auto box = BoxAt(event->pos());
  const QTextCursor cursor = textCursor();
  pressedBox_.reset();
  const bool inSelection = box && cursor.hasSelection() && cursor.selectionStart() <= *box &&
                           *box < cursor.selectionEnd();
  if (box && event->button() == Qt::LeftButton && !inSelection &&
      event->modifiers() == Qt::NoModifier) {
    SelectControl(*box);
    // The press is now inside the selection, so that a drag moves the control.
    pressedBox_ = box;
  }
  QPlainTextEdit::mousePressEvent(event);
}

void SourceEdit::mouseReleaseEvent(QMouseEvent* event) {
  QPlainTextEdit::mouseReleaseEvent(event);
  // Selects again: without a drag, the widget has cleared the selection.
  if (const auto box = std::exchange(pressedBox_, std::nullopt); box && page_.IsControl(*box))
    SelectControl(*box);
}

void SourceEdit::mouseDoubleClickEvent(QMouseEvent* event) {
  if (const auto box = BoxAt(event->pos()); box && event->button() == Qt::LeftButton) {
    SelectControl(*box);
    if (onOpenControl) onOpenControl(*box, true);
    return;
  }
  QPlainTextEdit::mouseDoubleClickEvent(event);
}

bool SourceEdit::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    if (const auto box = BoxAt(viewport()->mapFrom(this, help->pos()))) {
      QToolTip::showText(help->globalPos(), ToolTipOf(page_.LookAt(*box)->description), this);
      return true;
    }
    QToolTip::hideText();
  }
  return QPlainTextEdit::event(event);
}

void SourceEdit::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && highlighter_ != nullptr) {
    delete highlighter_;
    highlighter_ = new Highlighter(page_.Document(), palette());
    ShowCurrentLine();
  }
  QPlainTextEdit::changeEvent(event);
}

bool SourceEdit::CanDrop(const QMimeData& dragged, int position) const {
  if (dragged.hasFormat(kToolType)) {
    PageText::Places places;
    const PageText text = page_.Content();
    const page::Page page(text.Bytes(places));
    return page::SurroundingsAt(page, places.OffsetOf(position)).CanHoldControl();
  }
  PageText text = page_.Content();
  PageText part = ReadFragment(FragmentOf(dragged));
  const QTextCursor cursor = textCursor();
  if (moving_) {
    const int begin = cursor.selectionStart();
    const int length = cursor.selectionEnd() - begin;
    text.Replace(begin, length, {}, {});
    if (position > begin) position = std::max(begin, position - length);
  }
  return !FindMisplacement(text, {std::move(part), position, position});
}

void SourceEdit::dropEvent(QDropEvent* event) {
  pressedBox_.reset();
  moving_ = event->source() == viewport() && event->proposedAction() == Qt::MoveAction;
  const QTextCursor place = cursorForPosition(event->position().toPoint());
  if (!CanDrop(*event->mimeData(), place.position())) {
    // Leaves the dragged text in place; asks after the drag has ended.
    moving_ = false;
    event->setDropAction(Qt::IgnoreAction);
    QDragLeaveEvent leave;
    dragLeaveEvent(&leave);
    auto dragged = std::make_shared<QMimeData>();
    for (const char* format : {kToolType, kFragmentType})
      if (event->mimeData()->hasFormat(format))
        dragged->setData(format, event->mimeData()->data(format));
    if (event->mimeData()->hasText()) dragged->setText(event->mimeData()->text());
    QMetaObject::invokeMethod(
        this,
        [this, place, dragged] {
          setTextCursor(place);
          insertFromMimeData(dragged.get());
        },
        Qt::QueuedConnection);
    return;
  }
  const PageDocument::Step step(page_, Text(moving_ ? words::kMoveStep : words::kPasteStep));
  QPlainTextEdit::dropEvent(event);
  moving_ = false;
}

QMimeData* SourceEdit::createMimeDataFromSelection() const {
  const QTextCursor cursor = textCursor();
  return MimeOf(page_.Content().Part(cursor.selectionStart(), cursor.selectionEnd()));
}

QMimeData* SourceEdit::MimeOf(const PageText& part, const std::optional<QString>& plain) {
  const std::string fragment = part.Fragment();
  auto* mime = new QMimeData;
  mime->setData(kFragmentType, QByteArray::fromStdString(fragment));
  const std::string page = Published(std::string(kUtf8Declaration) + fragment);
  // What has errors cannot be published: other programs get it as it is written.
  const QString published =
      ToQt(page.empty() ? std::string_view(fragment)
                        : std::string_view(page).substr(kUtf8Declaration.size()));
  mime->setText(plain.value_or(published));
  if (plain) mime->setHtml(published);
  return mime;
}

bool SourceEdit::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasFormat(kFragmentType) || source->hasFormat(kToolType) || source->hasText();
}

void SourceEdit::insertFromMimeData(const QMimeData* source) {
  if (source->hasFormat(kToolType)) {
    if (onToolDropped) onToolDropped(source->data(kToolType).toInt());
    return;
  }
  InsertFragment(FragmentOf(*source), Text(moving_ ? words::kMoveStep : words::kPasteStep));
  ensureCursorVisible();
}

PageText SourceEdit::ReadFragment(std::string_view fragment) const {
  return PageText::OfFragment(fragment, page_.Content().Encoding());
}

void SourceEdit::InsertFragment(std::string_view fragment, const QString& step) {
  PageText text = ReadFragment(fragment);
  if (!moving_) {
    std::unordered_set<std::string> taken;
    for (const Embedded& part : std::vector<Embedded>(text.EmbeddedParts())) {
      if (part.kind != Embedded::Kind::control) continue;
      const ControlSource control(part.bytes, text.Encoding());
      const std::string& id = control.Id();
      if (id.empty() || (!page_.HasId(id) && taken.insert(id).second)) continue;
      const auto name = std::string_view(id).substr(0, id.find_last_not_of("0123456789") + 1);
      std::size_t number = 1;
      std::string fresh;
      do fresh = std::string(name) + std::to_string(++number);
      while (page_.HasId(fresh) || taken.contains(fresh));
      taken.insert(fresh);
      text.Replace(part.position, 1, QStringView(&kEmbeddedCharacter, 1),
                   {{Embedded::Kind::control, 0, control.WithId(fresh)}});
    }
  }
  Insert(text, step);
}

SourceEdit::Inserted SourceEdit::Insert(const PageText& part, const QString& step) {
  QTextCursor cursor = textCursor();
  // CanDrop has already checked a move.
  const auto misplacement =
      moving_ ? std::nullopt
              : FindMisplacement(page_.Content(),
                                 {part, cursor.selectionStart(), cursor.selectionEnd()});
  if (!misplacement) {
    page_.Insert(cursor, part, step);
    setTextCursor(cursor);
    return Inserted::asItIs;
  }
  const QString message = ToQt(misplacement->message.In(UserLanguage()));
  if (!misplacement->asText) {
    ShowMessageBox(this, message);
    return Inserted::nothing;
  }
  if (Ask(this, Confirmation(message, words::kInsertText, words::kCancel, Default::yes)) != 0)
    return Inserted::nothing;
  const PageDocument::Step named(page_, step);
  const int begin = cursor.selectionStart();
  const int end = cursor.selectionEnd();
  cursor.beginEditBlock();
  if (misplacement->quotes)
    for (const int position : {misplacement->quotes->close, misplacement->quotes->open})
      page_.Range(position, position + 1).insertText("'");
  cursor.setPosition(begin);
  cursor.setPosition(end, QTextCursor::KeepAnchor);
  page_.Insert(cursor, *misplacement->asText, step);
  cursor.endEditBlock();
  setTextCursor(cursor);
  return Inserted::asText;
}

QString SourceEdit::SpokenText(int begin, int end) const {
  const QString& text = page_.Content().Text();
  QString spoken;
  for (int at = begin; at < std::min(end, static_cast<int>(text.size())); ++at) {
    const Embedded* part = page_.Content().At(at);
    if (part == nullptr || part->kind == Embedded::Kind::lineBreak)
      spoken += text[at] == kLineBreakCharacter ? u'\n' : text[at];
    else if (part->kind == Embedded::Kind::control)
      spoken += page_.LookAt(at)->description;
    else
      spoken += Text(words::kBytesSpoken, {OddText(part->bytes)});
  }
  return spoken;
}

void SourceEdit::PlaceLineNumbers() {
  const auto digits = QString::number(std::max(blockCount(), 99)).size();
  const int width =
      fontMetrics().horizontalAdvance(u'9') * static_cast<int>(digits) + 2 * kNumberMargin;
  setViewportMargins(width, 0, 0, 0);
  const QRect inside = contentsRect();
  lineNumbers_->setGeometry(inside.left(), inside.top(), width, inside.height());
}

void SourceEdit::Wrap(bool wraps) {
  setLineWrapMode(wraps ? WidgetWidth : NoWrap);
  TellLineWidth();
  document()->markContentsDirty(0, document()->characterCount());
}

void SourceEdit::TellLineWidth() {
  const double room = viewport()->width() - 2 * document()->documentMargin();
  layout_->LineWidth(lineWrapMode() == WidgetWidth ? room : 0);
}

void SourceEdit::resizeEvent(QResizeEvent* event) {
  TellLineWidth();
  QPlainTextEdit::resizeEvent(event);
  PlaceLineNumbers();
}

void SourceEdit::PaintLineNumbers(QPaintEvent* event, QWidget& area) {
  QPainter painter(&area);
  painter.fillRect(event->rect(), palette().color(QPalette::Window));
  painter.setFont(font());
  const int current = textCursor().blockNumber();
  QTextBlock block = firstVisibleBlock();
  double top = blockBoundingGeometry(block).translated(contentOffset()).top();
  for (; block.isValid() && top <= event->rect().bottom(); block = block.next()) {
    const QTextLayout& lines = *block.layout();
    const double height = blockBoundingRect(block).height();
    // Of the first of its lines, when it is wrapped.
    const double first = lines.lineCount() > 1 ? lines.lineAt(0).height() : height;
    painter.setPen(palette().color(block.blockNumber() == current ? QPalette::WindowText
                                                                  : QPalette::PlaceholderText));
    painter.drawText(QRectF(0, top, area.width() - kNumberMargin, first),
                     Qt::AlignRight | Qt::AlignVCenter, QString::number(block.blockNumber() + 1));
    top += height;
  }
}

void SourceEdit::ShowCurrentLine() {
  QTextEdit::ExtraSelection line;
  line.format.setBackground(palette().color(QPalette::AlternateBase));
  line.format.setProperty(QTextFormat::FullWidthSelection, true);
  line.cursor = textCursor();
  line.cursor.clearSelection();
  setExtraSelections(QList<QTextEdit::ExtraSelection>{line} + marks_);
}

void SourceEdit::MarkPlaces(std::vector<Mark> marks) {
  constexpr std::size_t kMost = 300;  // each costs time whenever something is painted
  const SourceColors colors = ColorsOfSource(SchemeOf(palette()));
  std::ranges::stable_sort(marks, std::greater<>(), &Mark::isError);
  marks_.clear();
  for (std::size_t i = 0; i < std::min(marks.size(), kMost); ++i) {
    const Mark& mark = marks[i];
    QTextEdit::ExtraSelection place;
    place.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    place.format.setUnderlineColor(mark.isError ? colors.error : colors.warning);
    place.cursor = page_.Range(mark.begin, std::min(mark.end, document()->characterCount() - 1));
    marks_.push_back(place);
  }
  ShowCurrentLine();
  viewport()->update();
}

}  // namespace kvo::editor
