// The source view: the page's text with its controls as boxes, and line numbers.
#pragma once

#include <QPlainTextEdit>
#include <QPointer>
#include <functional>
#include <optional>

#include "apps/editor/Highlighter.h"
#include "apps/editor/PageDocument.h"
#include "apps/editor/PageLayout.h"

namespace kvo::editor {

// A part of a page in UTF-8, its controls as elements, as it is copied and dragged.
inline constexpr char kFragmentType[] = "application/x-kvo-page-fragment";

class SourceEdit final : public QPlainTextEdit {
  Q_OBJECT  // for qobject_cast: some objects of the browser have no other type information
      public : SourceEdit(PageDocument& document, QWidget* parent);

  // The position of the control that the user means: the one that alone is selected, else the one
  // at the caret, before it first.
  std::optional<int> CurrentControl() const;
  // Selects a control and scrolls it into view.
  void SelectControl(int position);
  // Puts the caret behind a control.
  void StandBehind(int position);
  // If Enter is the next key, it opens the pages of the control at the caret.
  void ExpectEnter() { expectsEnter_ = true; }
  // Puts the caret at a place, or selects the control there, and scrolls it into view.
  void Reveal(int position);
  // The same, and moves the keyboard focus there.
  void GoTo(int position);

  // The user wants to edit a control: Enter on it, Alt+Enter, or a double click.
  std::function<void(int position, bool doubleClicked)> onOpenControl;
  // An entry of the toolbox was dropped; the caret stands at the place.
  std::function<void(int entry)> onToolDropped;

  // Replaces the selection by a part of a page and puts the caret behind it. Where its controls
  // cannot stand, the user is told, and asked whether their runtime texts are to stand there.
  enum class Inserted { asItIs, asText, nothing };
  Inserted Insert(const PageText& part, const QString& step);
  // The same; controls get new ids where theirs are taken.
  void InsertFragment(std::string_view fragment, const QString& step);

  // For accessibility: the text of a range, embedded characters described.
  QString SpokenText(int begin, int end) const;
  PageDocument& Page() const { return page_; }

  void PaintLineNumbers(QPaintEvent* event, QWidget& area);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  // The position of the box under a point of the viewport.
  std::optional<int> BoxAt(const QPoint& point) const;
  PageText ReadFragment(std::string_view fragment) const;
  // Whether the dragged content is allowed at the drop position.
  bool CanDrop(const QMimeData& dragged, int position) const;
  void ShowCurrentLine();
  void PlaceLineNumbers();

  PageDocument& page_;
  PageLayout* layout_;
  QWidget* lineNumbers_;
  QPointer<Highlighter> highlighter_;  // the document is its owner
  std::optional<int> pressedBox_;
  bool expectsEnter_ = false;  // until a key or the caret moves on
  bool moving_ = false;        // a drag inside the view: ids stay as they are
};

}  // namespace kvo::editor
