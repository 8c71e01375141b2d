// Drafts: what was edited and not saved, kept beside the settings so that a crash loses nothing.
#pragma once

#include <QDateTime>
#include <QLockFile>
#include <QString>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvo::editor {

// A draft that another run of the editor left behind.
struct LeftDraft {
  QString file;      // of the draft
  QString pageFile;  // of the page it belongs to; empty: it was never saved
  QByteArray known;  // what stood in that file then (PageFile::Known)
  QDateTime time;
};

// One window's draft. A draft is two files: the page's bytes, and what they belong to; a lock file
// beside them tells whether the editor that wrote them still runs. What was not discarded stays.
class Draft {
 public:
  // `folder` is made when it is missing.
  explicit Draft(const QString& folder);

  // The file name is that of the page. Throws page::FileError.
  void Write(const std::string& bytes, const QString& pageFile, const QByteArray& known);
  void Discard();
  bool IsWritten() const { return written_; }

  // Those whose editor is gone, newest first.
  static std::vector<LeftDraft> LeftIn(const QString& folder);
  // The bytes; nothing when somebody else took the draft first. It is gone from the folder only
  // with Remove.
  static std::optional<std::string> Read(const LeftDraft& draft);
  static void Remove(const LeftDraft& draft);

 private:
  QString file_;
  std::unique_ptr<QLockFile> lock_;
  bool written_ = false;
};

// Where drafts are kept.
QString DraftFolder();

}  // namespace kvo::editor
