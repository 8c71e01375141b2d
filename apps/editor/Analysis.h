// Everything that is worked out from a page while it is being edited: outline, problems, runtime
// text, and the page as the design view shows it. It runs beside the window, which never waits.
#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apps/editor/PageText.h"
#include "document/office/Office.h"
#include "document/page/Problem.h"

namespace kvo::editor {

// A control of the page, in the order of the page.
struct OutlineEntry {
  int position = 0;
  bool boxed = false;  // one character of the text; else it stands there as text
  QString className;
  QString id;
  QString caption;  // what its box shows
};

struct ProblemEntry {
  int position = 0;
  page::Problem problem;  // its place is the one in the source view
};

// How a text came out of the one before: the characters between two equal ends.
struct Splice {
  qsizetype at = 0;
  qsizetype removed = 0;
  QString added;
  bool IsEmpty() const { return removed == 0 && added.isEmpty(); }
};
// UTF-16 code units, never inside a surrogate pair.
Splice Difference(const QString& before, const QString& after);

struct Analysis {
  int revision = 0;
  std::vector<OutlineEntry> outline;
  std::vector<ProblemEntry> problems;
  QString output;       // what publishing would write; empty with errors
  QString design;       // HTML, each control as its box with its number in `data-kvo`
  Splice designChange;  // since the analysis before
  bool first = false;   // of this page: the change is since nothing
};

struct AnalysisRequest {
  int revision = 0;
  PageText text;
  std::shared_ptr<const office::Office::Description> office;  // nullptr: none
  bool newPage = false;
};

// Does the work; also used directly. Needs a platform whose TextWidth may be called anywhere.
Analysis Analyse(const AnalysisRequest& request);

// A thread that works on the latest request; older ones that it did not begin are forgotten.
class Analyst {
 public:
  using Done = std::function<void(const std::shared_ptr<const Analysis>&)>;
  // `done` is called on the thread that made the analyst.
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
  QThreadPool thread_;  // one; ends first
};

}  // namespace kvo::editor
