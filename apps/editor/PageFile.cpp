#include "apps/editor/PageFile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "document/page/File.h"

namespace kvo::editor {
namespace {

QByteArray FingerprintOf(const std::string& bytes) {
  return QCryptographicHash::hash(
             QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())),
             QCryptographicHash::Sha256)
      .toHex();
}

}  // namespace

std::string FileName(const QString& file) { return QFile::encodeName(file).toStdString(); }

QString PageFile::Folder() const {
  return name_.isEmpty() ? QString() : QFileInfo(name_).absolutePath();
}

QString PageFile::Companion(const char* name) const {
  const QString file = Folder() + '/' + name;
  return !name_.isEmpty() && QFileInfo::exists(file) ? file : QString();
}

std::string PageFile::Read(const QString& name) {
  std::string bytes = page::ReadFile(FileName(name));
  name_ = name;
  known_ = FingerprintOf(bytes);
  return bytes;
}

void PageFile::Write(const QString& name, const std::string& bytes) {
  page::WriteFile(FileName(name), bytes);
  name_ = name;
  known_ = FingerprintOf(bytes);
}

bool PageFile::IsChangedOutside() const {
  if (name_.isEmpty() || !QFileInfo::exists(name_)) return false;
  try {
    return FingerprintOf(page::ReadFile(FileName(name_))) != known_;
  } catch (const page::FileError&) {
    return false;
  }
}

void PageFile::AcceptOutside() {
  known_.clear();
  try {
    if (QFileInfo::exists(name_)) known_ = FingerprintOf(page::ReadFile(FileName(name_)));
  } catch (const page::FileError&) {
    // The next save reports the error.
  }
}

bool SavedPage::OnlyEditedByHand() const {
  return std::ranges::all_of(problems, [](const page::Problem& problem) {
    return problem.severity != page::Severity::error || problem.rule == page::rule::editedByHand;
  });
}

SavedPage SavePage(const std::string& bytes, bool overwriteHandEdited) {
  page::SaveOptions options;
  options.force = overwriteHandEdited;
  page::StringSink sink;
  SavedPage saved;
  saved.problems = page::Save(page::Page(bytes), sink, options);
  if (saved.IsGood()) saved.bytes = sink.Text();
  return saved;
}

}  // namespace kvo::editor
