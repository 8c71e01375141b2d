// The file behind the page: what was read from it, and how it is written.
#pragma once

#include <QByteArray>
#include <QString>
#include <string>

#include "document/page/Page.h"

namespace kvo::editor {

std::string FileName(const QString& file);

class PageFile {
 public:
  PageFile() = default;
  // One that an earlier run of the editor had, and what it knew.
  PageFile(QString name, QByteArray known) : name_(std::move(name)), known_(std::move(known)) {}

  // Empty for a page that was never saved.
  const QString& Name() const { return name_; }
  QString Folder() const;
  // A file of this name beside it; empty when there is none.
  QString Companion(const char* name) const;

  // Reads the file and remembers it. Throws page::FileError.
  std::string Read(const QString& name);
  // What stands in the file, as far as we know: a fingerprint.
  const QByteArray& Known() const { return known_; }
  // Replaces the file whole. Throws page::FileError.
  void Write(const QString& name, const std::string& bytes);

  // Whether somebody else wrote the file since. A file that is gone was not changed.
  bool IsChangedOutside() const;
  // From now on, what stands in the file counts as known.
  void AcceptOutside();

 private:
  QString name_;
  QByteArray known_;
};

// The page with every control as a saved span, or why that cannot be.
struct SavedPage {
  std::string bytes;
  page::Problems problems;
  bool IsGood() const { return !page::HasErrors(problems); }
  // Whether overwriting texts that were edited by hand is all that it takes.
  bool OnlyEditedByHand() const;
};
SavedPage SavePage(const std::string& bytes, bool overwriteHandEdited);

}  // namespace kvo::editor
