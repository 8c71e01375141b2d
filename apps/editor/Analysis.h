// Analyses the page while it is being edited: outline, problems, runtime text, and the page for the
// design view. Runs in the background, so that the window never waits.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apps/editor/PageText.h"
#include "common/frame/DesignBox.h"
#include "document/design/Rendering.h"
#include "document/office/Office.h"
#include "document/page/Problem.h"

namespace kvo::editor {

// The beginning of a box's address; its key and "/", and its scale follow.
inline constexpr char kBoxUrl[] = "kvo-page:/~box/";

// A control of the page, in the order of the page.
struct OutlineEntry {
  int position = 0;
  bool boxed = false;  // one character in the source; otherwise plain text
  QString className;
  QString id;
  QString caption;  // shown in its box
};

struct ProblemEntry {
  int position = 0;
  int end = 0;            // of the characters that it is about, at least one
  page::Problem problem;  // its place is that in the source view
};

// Where the design view marks a problem.
struct ProblemMark {
  int box = -1;  // the number of the control; -1 for a problem of the page's own text
  design::RenderedPlace place;
  bool isError = false;
  QString tip;
};

// The difference between two texts: the characters between their equal ends.
struct Splice {
  qsizetype at = 0;
  qsizetype removed = 0;
  QString added;
  bool IsEmpty() const { return removed == 0 && added.isEmpty(); }
};
// Counts UTF-16 code units; never splits a surrogate pair.
Splice Difference(const QString& before, const QString& after);

struct Analysis {
  int revision = 0;
  std::vector<OutlineEntry> outline;
  std::vector<ProblemEntry> problems;
  std::vector<ProblemMark> marks;
  QString output;  // the published page; empty if there are errors
  QString design;  // HTML; each control is the picture of a box, with its number in `data-kvo`
  QHash<QString, Box> boxes;  // by what follows kBoxUrl in the address of a picture
  Splice designChange;        // since the previous analysis
  QString pictures;           // of all boxes, as in `design`
  bool sameBoxes = false;     // as in the previous analysis
  bool first = false;         // of this page: the change is since an empty text
  std::shared_ptr<const design::Rendering> rendering;  // where in the source the design stands
  int answered = 0;  // the last message of the design view that the page holds
};

struct AnalysisRequest {
  int revision = 0;
  PageText text;
  std::shared_ptr<const office::Office::Description> office;  // nullptr: none
  bool newPage = false;
  int answered = 0;
};

// Returns the text of bytes in an encoding; U+FFFD for each byte that is no text.
QString TextOf(std::string_view bytes, const page::PageEncoding& encoding);

// Does the work; also used directly. Requires a platform whose TextWidth works on any thread.
// Takes over from an analysis of an earlier state what has not changed.
Analysis Analyse(const AnalysisRequest& request, const Analysis* before = nullptr);

// A thread that handles the latest request and drops older ones that it has not begun.
class Analyst {
 public:
  using Done = std::function<void(const std::shared_ptr<const Analysis>&)>;
  // Calls `done` on the thread that created the analyst.
  explicit Analyst(Done done);

  void Request(AnalysisRequest request);

 private:
  void Begin(AnalysisRequest request);
  void End(const std::shared_ptr<const Analysis>& analysis);

  Done done_;
  std::shared_ptr<const Analysis> latest_;
  std::optional<AnalysisRequest> next_;
  bool working_ = false;
  QObject receiver_;
  QThreadPool thread_;  // one thread; destroyed first
};

}  // namespace kvo::editor
