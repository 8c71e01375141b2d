// The source view: the page's text with its controls as boxes, and line numbers.
#pragma once

#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <functional>
#include <optional>
#include <vector>

#include "apps/editor/Highlighter.h"
#include "apps/editor/PageDocument.h"
#include "apps/editor/PageLayout.h"

namespace kvo::editor {

// The type of copied and dragged fragments: part of a page in UTF-8, with controls as elements.
inline constexpr char kFragmentType[] = "application/x-kvo-page-fragment";

class SourceEdit final : public QPlainTextEdit {
  Q_OBJECT  // for qobject_cast: some objects of the browser have no other type information
      public : SourceEdit(PageDocument& document, QWidget* parent);

  // Returns the position of the control that the user means: the only one selected, else the one
  // before or after the caret.
  std::optional<int> CurrentControl() const;
  // Selects a control and scrolls it into view.
  void SelectControl(int position);
  // Puts the caret after a control.
  void StandBehind(int position);
  // Makes Enter, if it is the next key, open the pages of the control at the caret.
  void ExpectEnter() { expectsEnter_ = true; }
  // Puts the caret at a place, or selects the control there, and scrolls it into view.
  void Reveal(int position);
  // Reveals the place and moves the keyboard focus there.
  void GoTo(int position);

  // Underlines places, and frames boxes: as an error where there is one. Only the first of very
  // many.
  struct Mark {
    int begin;
    int end;
    bool isError;
  };
  void MarkPlaces(std::vector<Mark> marks);

  // The user wants to edit a control: Enter on it, Alt+Enter, or a double click.
  std::function<void(int position, bool doubleClicked)> onOpenControl;
  // A toolbox entry was dropped; the caret is at the drop position.
  std::function<void(int entry)> onToolDropped;

  // Replaces the selection by a part of a page and puts the caret after it. If its controls are not
  // allowed there, tells the user, and offers to insert their runtime texts where possible.
  enum class Inserted { asItIs, asText, nothing };
  Inserted Insert(const PageText& part, const QString& step);
  // Inserts a fragment; gives controls new ids where theirs are taken.
  void InsertFragment(std::string_view fragment, const QString& step);

  // Returns a part of a page as it is copied and dragged. `plain` is what other programs get as
  // text.
  static QMimeData* MimeOf(const PageText& part, const std::optional<QString>& plain = {});

  // For screen readers: returns the text of a range with descriptions of embedded characters.
  QString SpokenText(int begin, int end) const;
  PageDocument& Page() const { return page_; }

  void Wrap(bool wraps);

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
  // Returns the position of the box at a point of the viewport.
  std::optional<int> BoxAt(const QPoint& point) const;
  PageText ReadFragment(std::string_view fragment) const;
  // Whether the dragged content is allowed at the drop position.
  bool CanDrop(const QMimeData& dragged, int position) const;
  void ShowCurrentLine();
  void PlaceLineNumbers();
  void TellLineWidth();

  PageDocument& page_;
  PageLayout* layout_;
  QWidget* lineNumbers_;
  QPointer<Highlighter> highlighter_;  // owned by the document
  std::optional<int> pressedBox_;
  QList<QTextEdit::ExtraSelection> marks_;
  bool expectsEnter_ = false;  // until a key or a move of the caret
  bool moving_ = false;        // a drag inside the view: ids stay as they are
};

}  // namespace kvo::editor
