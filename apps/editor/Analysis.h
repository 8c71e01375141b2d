// Everything that is worked out from a page while it is being edited: outline, problems, runtime
// text, and the page as the design view shows it. It runs beside the window, which never waits.
#pragma once

#include <QObject>
#include <QString>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
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
  bool hasErrors = false;
  QString output;       // what publishing would write; empty with errors
  QString design;       // HTML, each control as its box with its number in `data-kvo`
  Splice outputChange;  // since the analysis before
  Splice designChange;
  bool first = false;  // of this page: the changes are since nothing
};

struct AnalysisRequest {
  int revision = 0;
  PageText text;
  std::shared_ptr<const office::Office::Description> office;  // nullptr: none
  bool newPage = false;
};

// Does the work; also used directly. Needs a platform whose TextWidth may be called anywhere.
Analysis Analyse(const AnalysisRequest& request);

// The page as HTML for the design view.
QString DesignHtml(const std::string& page);

// A thread that works on the latest request; older ones that it did not begin are forgotten.
class Analyst {
 public:
  // `done` is called on the thread that made the analyst.
  explicit Analyst(std::function<void(const std::shared_ptr<const Analysis>&)> done);
  Analyst(const Analyst&) = delete;
  Analyst& operator=(const Analyst&) = delete;
  ~Analyst();

  void Request(AnalysisRequest request);

 private:
  void Run();

  std::function<void(const std::shared_ptr<const Analysis>&)> done_;
  std::unique_ptr<QObject> receiver_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::optional<AnalysisRequest> next_;
  bool stop_ = false;
  std::thread thread_;
};

}  // namespace kvo::editor
