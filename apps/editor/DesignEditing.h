// Writing in the design view: turns what the author does there into edits of the source, each a
// named step of the one undo history, and tells the view what became of it.
//
// The view is ahead of the page by the changes inside a text that it shows at once. A change from
// elsewhere (undo, the source, the file) wins: what the view sends before it shows that change is
// refused, and the view takes it back.
#pragma once

#include <QMimeData>
#include <functional>
#include <memory>
#include <optional>

#include "apps/editor/Analysis.h"
#include "apps/editor/DesignView.h"
#include "apps/editor/Session.h"
#include "apps/editor/SourceEdit.h"
#include "document/design/Changes.h"

namespace kvo::editor {

class DesignEditing {
 public:
  // Sets the view's callbacks. The caret of the source follows that of the view.
  DesignEditing(SessionUser& user, PageDocument& page, SourceEdit& source, DesignView& view);

  // Call after every change of the page: shows it at once if it is in a text.
  void PageChanged();
  // Shows an analysis of the page.
  void Analysed(const Analysis& analysis);
  // The last message of the view that the page holds or has refused.
  int Answered() const { return answered_; }

  // Whether the view had the keyboard focus after the source.
  bool IsActive() const { return active_; }
  // Whether the author writes in the view.
  bool IsInUse() const { return active_ && view_.isVisible(); }
  // An entry of the toolbox was dropped; the caret of the source is at the place.
  std::function<void(int entry)> onToolDropped;

  // The view waits for the page's next analysis.
  std::function<void()> onUrgent;

  // Call before inserting at the caret of the source, and FollowSource() afterwards. Deletes what
  // the view has selected, keeping tags that enclose more, and makes a space typed at the end of
  // its line an ordinary one. Returns whether the undo step has begun with that.
  bool PrepareInsert(const QString& step);

  // What the view should select after the page's next analysis: what the source has selected.
  void FollowSource();

  // Selects the control at a position of the source, or puts the caret there, in both views: as
  // near as the design view can, without moving the caret of the source to where that is.
  void Reveal(int position);

  // What the selection has, for the tool bar.
  struct State {
    bool bold = false;
    bool italic = false;
    bool underline = false;
    std::optional<QString> link;  // the address of the link around the caret
  };
  std::function<void(const State&)> onState;

 private:
  void Edited(const DesignMessage& message, int begin, int end, const QString& text);
  void Command(const DesignMessage& message, const QString& name, const QString& value);
  void Moved(const DesignMessage& message, const design::RenderedPlace& to);
  void Selected(const DesignMessage& message);

  // Returns nothing, after telling the user, where the place cannot be edited.
  std::optional<design::Selection> Find(const DesignMessage& message);
  bool IsOutdated(const DesignMessage& message) const;
  // Returns the change of a command; nothing when it has none, or when it is done already.
  std::optional<design::Change> ChangeFor(const design::Selection& selection, const QString& name,
                                          const QString& value);
  // Makes the space that was typed before turning formats around a plain one: a change that types
  // a word behind it makes it visible without more.
  void LetBreak(design::Change& change) const;
  void Make(const design::Change& change, const QString& step);
  PageText Part(const design::Selection& selection) const;
  void Copy(const design::Selection& selection);
  void Paste(const design::Selection& selection, const QMimeData& mime);
  void Step(bool back);
  // Mirrors the selection of the view in the source.
  void Mirror(const design::Selection& selection);
  void ShowState(const design::Selection& selection);
  // Adds or removes a format for typing at a caret.
  void TurnAround(const design::Selection& caret, const design::Format& format);
  void ForgetFormats();
  void Refuse(int number);
  void EndTyping();
  // Shows the page's last change in the view; returns false when the tree may change.
  bool WriteInView();
  void TreeChanged();

  SessionUser& user_;
  PageDocument& page_;
  SourceEdit& source_;
  DesignView& view_;

  std::optional<design::Rendering> rendering_;  // of the page as it is; else unknown
  int answered_ = 0;
  int seen_ = -1;                 // the page's revision after its last change
  std::vector<int> treeChanges_;  // revisions in which the tree may have changed; ascending
  int since_ = 0;  // the revision that the view has to show before its messages count
  std::optional<int> typedSpace_;  // the position of the space that was typed last
  // Typing at this position adds these formats where they lack, and leaves them where they are.
  std::vector<const design::Format*> turned_;
  std::size_t turnedAt_ = 0;
  bool ours_ = false;
  bool active_ = false;
  QObject receiver_;
  // To select once the view shows the revision.
  struct Wanted {
    int begin;
    int end;
    bool quietly = false;  // the view does not report the selection
  };
  std::optional<Wanted> wanted_;
  bool revealing_ = false;  // the view is about to select quietly
};

}  // namespace kvo::editor
