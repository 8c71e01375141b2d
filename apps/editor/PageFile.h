// Reads and writes the page's file and remembers its contents.
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
  // A file from an earlier run of the editor, with its fingerprint.
  PageFile(QString name, QByteArray known) : name_(std::move(name)), known_(std::move(known)) {}

  // Empty for a page that was never saved.
  const QString& Name() const { return name_; }
  QString Folder() const;
  // Returns a file of this name beside it; empty when there is none.
  QString Companion(const char* name) const;

  // Reads the file and remembers it. Throws page::FileError.
  std::string Read(const QString& name);
  // A fingerprint of the last known contents of the file.
  const QByteArray& Known() const { return known_; }
  // Replaces the file whole. Throws page::FileError.
  void Write(const QString& name, const std::string& bytes);

  // Whether someone else has written the file since. A missing file counts as unchanged.
  bool IsChangedOutside() const;
  // Accepts the current contents of the file as known.
  void AcceptOutside();

 private:
  QString name_;
  QByteArray known_;
};

// The page with every control as a saved span, or the problems that prevent it.
struct SavedPage {
  std::string bytes;
  page::Problems problems;
  bool IsGood() const { return !page::HasErrors(problems); }
  // Whether overwriting hand-edited texts is enough to save the page.
  bool OnlyEditedByHand() const;
};
SavedPage SavePage(const std::string& bytes, bool overwriteHandEdited);

}  // namespace kvo::editor
