#include "apps/editor/Drafts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>
#include <algorithm>

#include "apps/editor/PageFile.h"
#include "document/page/File.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr char kPageSuffix[] = ".page";
constexpr char kNameSuffix[] = ".name";
constexpr char kLockSuffix[] = ".lock";

QString WithSuffix(const QString& pageFile, const char* suffix) {
  return pageFile.chopped(static_cast<qsizetype>(qstrlen(kPageSuffix))) + suffix;
}

void RemoveFiles(const QString& pageFile) {
  QFile::remove(WithSuffix(pageFile, kNameSuffix));
  QFile::remove(pageFile);
}

}  // namespace

QString DraftFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/drafts";
}

Draft::Draft(const QString& folder)
    : file_(folder + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces) + kPageSuffix) {
  QDir().mkpath(folder);
  lock_ = std::make_unique<QLockFile>(WithSuffix(file_, kLockSuffix));
  lock_->setStaleLockTime(0);  // age is no sign: a window may stay open for weeks
  lock_->tryLock();
}

void Draft::Write(const std::string& bytes, const QString& pageFile, const QByteArray& known) {
  page::WriteFile(FileName(WithSuffix(file_, kNameSuffix)),
                  known.toStdString() + '\n' + FromQt(pageFile));
  page::WriteFile(FileName(file_), bytes);
  written_ = true;
}

void Draft::Discard() {
  if (!written_) return;
  RemoveFiles(file_);
  written_ = false;
}

std::vector<LeftDraft> Draft::LeftIn(const QString& folder) {
  std::vector<LeftDraft> drafts;
  for (const QFileInfo& page : QDir(folder).entryInfoList({'*' + QString(kPageSuffix)})) {
    QLockFile lock(WithSuffix(page.filePath(), kLockSuffix));
    lock.setStaleLockTime(0);
    if (!lock.tryLock()) continue;  // its editor is still running
    QFile name(WithSuffix(page.filePath(), kNameSuffix));
    if (!name.open(QIODevice::ReadOnly)) continue;
    const QByteArray known = name.readLine().trimmed();
    drafts.push_back(
        {page.filePath(), QString::fromUtf8(name.readAll()), known, page.lastModified()});
  }
  std::ranges::sort(drafts, std::greater(), &LeftDraft::time);
  return drafts;
}

std::optional<std::string> Draft::Read(const LeftDraft& draft) {
  try {
    return page::ReadFile(FileName(draft.file));
  } catch (const page::FileError&) {
    return std::nullopt;
  }
}

void Draft::Remove(const LeftDraft& draft) { RemoveFiles(draft.file); }

}  // namespace kvo::editor
