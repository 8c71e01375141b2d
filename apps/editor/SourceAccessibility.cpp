#include "apps/editor/SourceAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <mutex>

#include "apps/editor/SourceEdit.h"

namespace kvo::editor {
namespace {

// Positions are those of the document, where a control is one character; only the returned texts
// are longer.
class SourceAccessible final : public QAccessibleWidget,
                               public QAccessibleTextInterface,
                               public QAccessibleEditableTextInterface {
 public:
  explicit SourceAccessible(SourceEdit* edit)
      : QAccessibleWidget(edit, QAccessible::EditableText), edit_(*edit) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface)
      return static_cast<QAccessibleEditableTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = true;
    state.multiLine = true;
    return state;
  }
  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
    return edit_.SpokenText(0, characterCount());
  }

  void selection(int index, int* start, int* end) const override {
    const QTextCursor cursor = edit_.textCursor();
    const bool has = index == 0 && cursor.hasSelection();
    *start = has ? cursor.selectionStart() : 0;
    *end = has ? cursor.selectionEnd() : 0;
  }
  int selectionCount() const override { return edit_.textCursor().hasSelection() ? 1 : 0; }
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int) override { setCursorPosition(cursorPosition()); }
  void setSelection(int, int start, int end) override {
    edit_.setTextCursor(edit_.Page().Range(Clamped(start), Clamped(end)));
  }
  int cursorPosition() const override { return edit_.textCursor().position(); }
  void setCursorPosition(int position) override { setSelection(0, position, position); }
  QString text(int start, int end) const override { return edit_.SpokenText(start, end); }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                           int* end) const override {
    Unit(offset, type, start, end);
    return *start <= 0 ? Nothing(start, end) : textAtOffset(*start - 1, type, start, end);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                          int* end) const override {
    Unit(offset, type, start, end);
    return *end >= characterCount() ? Nothing(start, end) : textAtOffset(*end, type, start, end);
  }
  QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                       int* end) const override {
    Unit(offset, type, start, end);
    return edit_.SpokenText(*start, *end);
  }
  int characterCount() const override {
    return static_cast<int>(edit_.Page().Content().Text().size());
  }
  QRect characterRect(int offset) const override {
    QTextCursor cursor(edit_.document());
    cursor.setPosition(Clamped(offset));
    QRect rect = edit_.cursorRect(cursor);
    cursor.setPosition(Clamped(offset + 1));
    rect = rect.united(edit_.cursorRect(cursor));
    return {edit_.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    return edit_.cursorForPosition(edit_.viewport()->mapFromGlobal(point)).position();
  }
  void scrollToSubstring(int start, int) override { setCursorPosition(start); }
  QString attributes(int offset, int* start, int* end) const override {
    *start = offset;
    *end = offset + 1;
    return {};
  }

  void deleteText(int start, int end) override { replaceText(start, end, {}); }
  void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
  void replaceText(int start, int end, const QString& text) override {
    edit_.Page().Range(Clamped(start), Clamped(end)).insertText(text);
  }

 private:
  int Clamped(int position) const { return std::clamp(position, 0, characterCount()); }
  static QString Nothing(int* start, int* end) {
    *start = *end = -1;
    return {};
  }
  // The character, word, line or paragraph around an offset.
  void Unit(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const {
    offset = Clamped(offset);
    const QTextBlock block = edit_.document()->findBlock(offset);
    *start = block.position();
    *end = std::min(block.position() + block.length(), characterCount());
    if (type == QAccessible::NoBoundary) {
      *start = 0;
      *end = characterCount();
    } else if (type == QAccessible::CharBoundary || type == QAccessible::WordBoundary) {
      const QString line = block.text();
      QTextBoundaryFinder finder(type == QAccessible::CharBoundary ? QTextBoundaryFinder::Grapheme
                                                                   : QTextBoundaryFinder::Word,
                                 line);
      const int inside = offset - block.position();
      finder.setPosition(inside);
      if (!finder.isAtBoundary()) finder.toPreviousBoundary();
      *start = block.position() + static_cast<int>(finder.position());
      finder.setPosition(inside);
      const auto next = finder.toNextBoundary();
      *end = next < 0 ? *end : block.position() + static_cast<int>(next);
    }
  }

  SourceEdit& edit_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* edit = qobject_cast<SourceEdit*>(object);
  return edit == nullptr ? nullptr : new SourceAccessible(edit);
}

}  // namespace

void InstallSourceAccessibility() {
  static std::once_flag once;
  std::call_once(once, QAccessible::installFactory, Make);
}

}  // namespace kvo::editor
