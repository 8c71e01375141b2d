// Keeps the preview up to date: with the page, its record, the office, and the file of records
// beside the page, which other programs may write as well.
#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <memory>

#include "apps/editor/PreviewWork.h"
#include "apps/editor/Session.h"

namespace kvo::editor {

class PreviewPanel;

class Previewing {
 public:
  Previewing(Session& session, SessionUser& user, PreviewPanel& panel);

  // Call when the page, its folder or the office changed.
  void PageChanged();
  void PageStarted(bool sameFile);
  void FolderChanged();
  void OfficeChanged();

  // The latest preview; nullptr before the first.
  const std::shared_ptr<const PreviewResult>& Shown() const { return shown_; }
  std::function<void()> onShown;

 private:
  void Request();
  void Previewed(const std::shared_ptr<const PreviewResult>& result);
  void Go(std::int64_t record);
  void Watch();
  void FolderTouched();
  void ReadAgain();
  bool MayAskShop() const;
  void OfferShop();
  void EditRecords();

  // What tells one state of a file from the next.
  struct Stamp {
    bool exists = false;
    QDateTime time;
    qint64 size = 0;
    bool operator==(const Stamp&) const = default;
  };
  Stamp StampOfFile() const;

  Session& session_;
  SessionUser& user_;
  PreviewPanel& panel_;
  std::int64_t record_ = 0;
  QString find_;
  SwitchChoices choices_;
  QString recordsFile_;
  Stamp stamp_;
  QString shopAllowed_;  // the office file whose shop the author wants to be read
  std::shared_ptr<const office::Office::Description> office_;
  int circumstances_ = 0;
  bool newPage_ = true;
  std::shared_ptr<const PreviewResult> shown_;
  QFileSystemWatcher watcher_;
  QTimer touched_;
  Previewer previewer_;  // destroyed first
};

}  // namespace kvo::editor
