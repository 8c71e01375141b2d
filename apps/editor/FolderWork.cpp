#include "apps/editor/FolderWork.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <vector>

#include "apps/editor/PageFile.h"
#include "apps/editor/Words.h"
#include "document/page/Folder.h"

namespace kvo::editor {
namespace {

constexpr std::size_t kLargestPage = 64 << 20;

// Returns the open page and the others; adds the errors of folders to `unread`.
std::vector<FolderPage> PagesAround(const QString& openFile, const std::atomic<bool>& cancelled,
                                    QStringList& unread) {
  if (openFile.isEmpty()) return {{openFile, Text(words::kUntitled), true}};
  std::vector<FolderPage> pages = {{openFile, QFileInfo(openFile).fileName(), true}};
  page::KnownFiles known;
  known.Add(FileName(openFile));
  const auto name = [](const std::filesystem::path& path) {
    return QFile::decodeName(path.string().c_str());
  };
  page::SearchFolder(
      FileName(QFileInfo(openFile).absolutePath()),
      {[&](const std::filesystem::path& file, const std::filesystem::path& below) {
         if (known.Add(file)) pages.push_back({name(file), name(below), false});
       },
       [&](const std::filesystem::path&) { return !cancelled; },
       [&](const page::FileError& error) { unread.append(ToQt(error.Text(UserLanguage()))); }});
  return pages;
}

}  // namespace

FolderWork::~FolderWork() {
  Cancel();
  thread_.waitForDone();
}

void FolderWork::Cancel() {
  if (cancelled_) *cancelled_ = true;
}

void FolderWork::Start(const QString& openFile, std::string openBytes, Job job) {
  Cancel();
  const auto cancelled = cancelled_ = std::make_shared<std::atomic<bool>>(false);
  thread_.start(
      [this, cancelled, openFile, openBytes = std::move(openBytes), job = std::move(job)] {
        const auto report = [&](std::function<void()> call) {
          QMetaObject::invokeMethod(
              &receiver_,
              [cancelled, call = std::move(call)] {
                if (!*cancelled) call();
              },
              Qt::QueuedConnection);
        };
        QStringList unread;
        const std::vector<FolderPage> pages = PagesAround(openFile, *cancelled, unread);
        const auto of = static_cast<int>(pages.size());
        int count = 0;
        for (const FolderPage& page : pages) {
          if (*cancelled) return;
          try {
            job.each(page, page.isOpen ? openBytes
                                       : page::ReadRegularFile(FileName(page.file), kLargestPage));
          } catch (const page::FileError&) {
            unread.append(Text(words::kUnreadPage, {page.shown}));
          }
          report([progress = job.progress, number = ++count, of] { progress(number, of); });
        }
        report([done = job.done, unread] { done(unread); });
      });
}

}  // namespace kvo::editor
