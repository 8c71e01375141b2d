// Goes through the page's problems, marks their places, and makes their fixes.
#pragma once

#include <memory>
#include <optional>

#include "apps/editor/Analysis.h"
#include "apps/editor/DesignEditing.h"
#include "apps/editor/Panels.h"
#include "apps/editor/Session.h"
#include "apps/editor/SourceEdit.h"

namespace kvo::editor {

class Mending {
 public:
  Mending(SessionUser& user, PageDocument& page, SourceEdit& source, DesignEditing& design,
          ProblemsPanel& list);

  // Marks the problems of an analysis in the source.
  void Analysed(std::shared_ptr<const Analysis> analysis);

  // Shows the next problem behind the caret, or the one before it, and begins anew at the end: in
  // the view that the author writes in.
  void Step(bool backwards);
  // Makes the fix of the problem that the user means, as one undo step: of the row chosen in the
  // list while the list has the keyboard focus, else of a problem at the caret. Tells the user when
  // there is none.
  void Fix();

 private:
  // Whether the problems are those of the page as it is now.
  bool IsCurrent() const;
  const ProblemEntry* Meant() const;
  void Reveal(int position);

  SessionUser& user_;
  PageDocument& page_;
  SourceEdit& source_;
  DesignEditing& design_;
  ProblemsPanel& list_;
  std::shared_ptr<const Analysis> analysis_;
};

}  // namespace kvo::editor
