// Shows the page as a browser renders it, with boxes in place of its controls, and lets the author
// write in it: reports each input and shows what became of it. Runs no scripts of
// the page and never uses the network; loads pictures and style sheets from the page's folder.
#pragma once

#include <functional>

#include "apps/editor/Analysis.h"
#include "apps/editor/LocalBrowser.h"
#include "document/design/Rendering.h"

namespace kvo::editor {

// What the author did, as the script in the view reports it. Messages come in their order.
struct DesignMessage {
  int number = 0;    // of the last change that the view sent
  int revision = 0;  // of the page that the view showed
  design::RenderedPlace from;
  design::RenderedPlace to;
};

class DesignView final : public LocalView {
 public:
  explicit DesignView(QWidget* parent);

  // Shows the analysed page, updating only what changed. With `written`, all that changed is in
  // texts, which the view has sent or has been given by Write().
  void Show(const Analysis& analysis, bool written);
  // The latest revision that was shown as a whole; -1 for none.
  int WholeRevision() const { return wholeRevision_; }
  // Marks a box as the selected one and scrolls to it; -1 for none.
  void Mark(int index);

  // --- what the author does ---
  // The view shows this change already: the units [begin, end) of the text at `from` became `text`.
  std::function<void(const DesignMessage&, int begin, int end, const QString& text)> onEdited;
  // The view waits for Settle.
  std::function<void(const DesignMessage&, const QString& name, const QString& value)> onCommand;
  // The selection was dragged to another place; the view waits for Settle.
  std::function<void(const DesignMessage&, const design::RenderedPlace& to)> onMoved;
  std::function<void(const DesignMessage&)> onSelected;
  // A quiet Select() is done: later selections are the author's.
  std::function<void()> onQuietlySelected;
  // The pointer is at a place: ShowPointer answers.
  std::function<void(const DesignMessage&)> onAsked;

  // Keeps further inputs until Settle.
  void Wait();

  // --- answers ---
  // The page holds, or has refused, all changes up to this one.
  void Settle(int number);
  // Takes a change back that the view shows already: it shows this revision of the page instead.
  void Refuse(int number, int revision);
  // Shows another text at a place, ahead of the analysis of the page.
  void Write(const design::RenderedPlace& place, const QString& text, int revision);
  // `quietly`: onQuietlySelected follows instead of onSelected.
  void Select(const design::RenderedPlace& from, const design::RenderedPlace& to, bool quietly);
  void ShowPointer(bool editable);
  // Makes the view send the text that is typed next as a command.
  void Arm(bool on);
  // Performs a command on what is selected: the view answers with onCommand.
  void Perform(const QString& name, const QString& value = {});
  void SelectAll();
  // Puts the caret under a point of the view.
  void PointAt(const QPoint& point, std::function<void(bool)> done);

  std::function<void(int index)> onBoxClicked;
  std::function<void(int index)> onBoxDoubleClicked;
  // The displayed revision of the page; -1 before the first.
  int ShownRevision() const { return shownRevision_; }

 private:
  class Bridge;
  class Browser;
  class Source;

  DesignView(QWidget* parent, Source* source);
  void Reload();
  void ShowProblems();
  void Loaded() override;

  Source& source_;  // owned by the base class
  QString design_;
  int revision_ = 0;
  int shownRevision_ = -1;
  int wholeRevision_ = -1;
  bool missed_ = false;  // a Write() while the page was loading
  int answered_ = 0;
  int marked_ = -1;
  std::vector<ProblemMark> problems_;
  bool marksProblems_ = false;
  std::vector<std::size_t> pointed_;  // the problems under the pointer
};

}  // namespace kvo::editor
