#include "apps/editor/FolderWork.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaObject>

#include "apps/editor/PageFile.h"
#include "document/page/File.h"

namespace kvo::editor {
namespace {

constexpr std::size_t kLargestPage = 64 << 20;

}  // namespace

std::vector<FolderPage> PagesBeside(const QString& openFile, std::string openBytes) {
  std::vector<FolderPage> pages;
  pages.push_back({openFile, std::move(openBytes)});
  if (openFile.isEmpty()) return pages;
  const QFileInfo open(openFile);
  for (const QFileInfo& each :
       open.dir().entryInfoList({"*.html", "*.htm"}, QDir::Files, QDir::Name))
    if (each != open) pages.push_back({each.absoluteFilePath(), std::nullopt});
  return pages;
}

FolderWork::~FolderWork() {
  Cancel();
  thread_.waitForDone();
}

void FolderWork::Cancel() {
  if (cancelled_) *cancelled_ = true;
}

void FolderWork::Start(std::vector<FolderPage> pages, Job job) {
  Cancel();
  const auto cancelled = cancelled_ = std::make_shared<std::atomic<bool>>(false);
  thread_.start([this, cancelled, pages = std::move(pages), job = std::move(job)] {
    const auto report = [&](std::function<void()> call) {
      QMetaObject::invokeMethod(
          &receiver_,
          [cancelled, call = std::move(call)] {
            if (!*cancelled) call();
          },
          Qt::QueuedConnection);
    };
    std::vector<QString> unread;
    int count = 0;
    for (const FolderPage& page : pages) {
      if (*cancelled) return;
      try {
        job.each(page, page.bytes ? *page.bytes
                                  : page::ReadRegularFile(FileName(page.file), kLargestPage));
      } catch (const page::FileError&) {
        unread.push_back(page.file);
      }
      report([progress = job.progress, number = ++count] { progress(number); });
    }
    report([done = job.done, unread] { done(unread); });
  });
}

}  // namespace kvo::editor
