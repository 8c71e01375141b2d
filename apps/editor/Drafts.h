// Drafts keep unsaved edits beside the settings, so that a crash loses nothing.
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
  QString pageFile;  // of its page; empty if that was never saved
  QByteArray known;  // fingerprint of that file then (PageFile::Known)
  QDateTime time;
};

// One window's draft, of two files: the page's bytes, and the page they belong to. A lock file
// beside them shows whether their editor is still running. A draft stays until it is discarded.
class Draft {
 public:
  // Creates `folder` if it is missing.
  explicit Draft(const QString& folder);

  // `pageFile` is the page's file name. Throws page::FileError.
  void Write(const std::string& bytes, const QString& pageFile, const QByteArray& known);
  void Discard();
  bool IsWritten() const { return written_; }

  // Lists the drafts whose editor is gone, newest first.
  static std::vector<LeftDraft> LeftIn(const QString& folder);
  // Reads the bytes; nothing when someone else took the draft first. Only Remove deletes the draft.
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
