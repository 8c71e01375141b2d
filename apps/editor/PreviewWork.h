// Makes the preview of a page with a record, in the background, so that the window never waits.
#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "apps/editor/Analysis.h"
#include "document/preview/Template.h"

namespace kvo::editor {

// What the author chose for the switches, by SwitchEntry::key. Missing ones are as the record says.
using SwitchChoices = QHash<QString, preview::Choice>;

struct PreviewRequest {
  int revision = 0;
  PageText text;
  bool newPage = false;
  std::shared_ptr<const office::Office::Description> office;  // nullptr: none
  office::ConnectionFactory connections;                      // empty: asks no database
  QString recordsFile;                                        // empty: the page has no folder yet
  // Changes whenever the office or the file of records may have changed.
  int circumstances = 0;
  std::int64_t record = 0;
  QString find;  // the name or number of the record to show instead; empty for none
  SwitchChoices choices;
};

struct SwitchEntry {
  preview::Switch which;
  QString key;       // the control's id, else its place among the switches
  int position = 0;  // in the source view
  int depth = 0;     // the number of switches around it
  preview::Choice choice = preview::Choice::asRecord;
  bool reached = false;
  bool held = false;
};

struct FindingEntry {
  preview::Finding finding;  // its place is that in the source view
  int position = 0;
};

// A value that the page asks for: group and name.
using PageField = std::pair<std::string, std::string>;

struct PreviewResult {
  int revision = 0;
  QString html;
  Splice change;       // since the previous result that has HTML
  bool first = false;  // of this page: the change is since an empty text
  std::vector<SwitchEntry> switches;
  std::vector<FindingEntry> findings;
  std::set<PageField> fields;
  int errors = 0;          // that keep the page from being published
  bool isEmpty = false;    // nothing to see
  bool hasRecord = true;   // otherwise there is no HTML
  std::int64_t asked = 0;  // the record of the request
  std::int64_t record = 0;
  std::int64_t count = 0;
  preview::Record current;  // if there is one
  bool isFromQuery = false;
  QStringList names;       // of the first records
  bool notFound = false;   // what the request wanted to find
  QString recordsFailure;  // why there are no records; one line for each problem
};

// A thread that handles the latest request and drops older ones that it has not begun.
class Previewer {
 public:
  using Done = std::function<void(const std::shared_ptr<const PreviewResult>&)>;
  // Calls `done` on the thread that created it.
  explicit Previewer(Done done);
  ~Previewer();

  void Request(PreviewRequest request);

 private:
  class Work;

  void Begin(PreviewRequest request);
  void End(const std::shared_ptr<const PreviewResult>& result);

  Done done_;
  std::optional<PreviewRequest> next_;
  bool working_ = false;
  QObject receiver_;
  std::unique_ptr<Work> work_;  // used and destroyed on the thread: a database belongs to one
  QThreadPool thread_;          // one thread
};

}  // namespace kvo::editor
