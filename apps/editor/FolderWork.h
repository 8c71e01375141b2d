// Reads the pages of a folder in the background, one after the other.
#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvo::editor {

struct FolderPage {
  QString file;
  std::optional<std::string> bytes;  // of the page in the editor; nothing: read the file
};

// Returns the pages beside an open one, which comes first, in the order of their names.
std::vector<FolderPage> PagesBeside(const QString& openFile, std::string openBytes);

class FolderWork {
 public:
  FolderWork() { thread_.setMaxThreadCount(1); }
  // Stops the work and waits for its end.
  ~FolderWork();
  FolderWork(const FolderWork&) = delete;
  FolderWork& operator=(const FolderWork&) = delete;

  struct Job {
    // Runs in the background for each page. Files that cannot be read are left out.
    std::function<void(const FolderPage& page, const std::string& bytes)> each;
    // Run on the thread that started the job. `unread` are the files that could not be read.
    std::function<void(int pages)> progress;
    std::function<void(const std::vector<QString>& unread)> done;
  };
  // Drops an earlier job without reporting its result.
  void Start(std::vector<FolderPage> pages, Job job);
  void Cancel();

 private:
  std::shared_ptr<std::atomic<bool>> cancelled_;  // of the latest job
  QObject receiver_;
  QThreadPool thread_;  // one thread; destroyed first
};

}  // namespace kvo::editor
