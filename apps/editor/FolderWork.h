// Reads the pages of a folder and its subfolders in the background, one after the other.
#pragma once

#include <QObject>
#include <QStringList>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace kvo::editor {

struct FolderPage {
  QString file;   // empty for a page without one
  QString shown;  // its path below the folder
  bool isOpen = false;
};

class FolderWork {
 public:
  FolderWork() { thread_.setMaxThreadCount(1); }
  // Stops the work and waits for its end.
  ~FolderWork();
  FolderWork(const FolderWork&) = delete;
  FolderWork& operator=(const FolderWork&) = delete;

  struct Job {
    // Runs in the background for each page: the open one first, then the others as `kvo` finds
    // them in the folder.
    std::function<void(const FolderPage& page, const std::string& bytes)> each;
    // Run on the thread that started the job. `unread` says which pages and folders could not be
    // read.
    std::function<void(int pages, int of)> progress;
    std::function<void(const QStringList& unread)> done;
  };
  // Works on the folder of an open page, which counts as it is in the editor. Drops an earlier job
  // without reporting its result.
  void Start(const QString& openFile, std::string openBytes, Job job);
  void Cancel();

 private:
  std::shared_ptr<std::atomic<bool>> cancelled_;  // of the latest job
  QObject receiver_;
  QThreadPool thread_;  // one thread; destroyed first
};

}  // namespace kvo::editor
