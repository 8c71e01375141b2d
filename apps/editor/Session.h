// An editing session: the page with its undo steps, its file, its draft, and the office for its
// controls. Has no window; questions and messages go to a SessionUser. Never discards edits without
// asking.
#pragma once

#include <QFileSystemWatcher>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/editor/Ask.h"
#include "apps/editor/Drafts.h"
#include "apps/editor/PageDocument.h"
#include "apps/editor/PageFile.h"
#include "document/office/Office.h"

namespace kvo::editor {

class SessionUser {
 public:
  virtual ~SessionUser() = default;

  // Returns the index of the answer.
  virtual std::size_t Ask(const Question& question) = 0;
  // Shows a message and waits until the user closes it.
  virtual void Tell(const QString& text) = 0;
  // Shows a passing note for `time`; with 0, until the next one.
  virtual void Note(const QString& text, std::chrono::milliseconds time) = 0;
  // Returns the file to write; empty when the user cancels.
  virtual QString ChooseFile(const Localized& title, const QString& proposed) = 0;
  virtual void ShowProblems() = 0;

  virtual void PageChanged() = 0;
  // The shown page is replaced by another one or by its file's current contents.
  virtual void PageEnds() = 0;
  virtual void PageStarted(bool sameFile) = 0;
  virtual void FileNamed() = 0;
  virtual void FolderChanged() = 0;
  virtual void OfficeChanged() = 0;

  // Runs work with files; shows an exception to the user and returns false.
  bool Guarded(const std::function<bool()>& work);
};

class Session {
 public:
  struct Places {
    QString drafts;  // the folder
    office::ConnectionFactory connections;
  };
  // Empty, without calls to the user, until New, Open or a draft.
  Session(SessionUser& user, Places places);
  ~Session();  // the draft stays

  PageDocument& Page() { return page_; }
  const PageFile& File() const { return file_; }
  // The file's name without its folder.
  QString Title() const;

  void New();
  // An untitled page with the bytes of a template; not yet changed.
  void NewFrom(const std::string& bytes);
  // False when the file could not be read or the user kept the current page.
  bool Open(const QString& file);
  // Offers the drafts that a crash left behind; returns whether one was recovered.
  bool OfferDrafts();
  // Call before closing; false when the user cancels.
  bool End();

  bool Save();
  // SaveAs and Publish ask the user for the file when none is given.
  bool SaveAs(const QString& file);
  bool Publish(const QString& file);
  // Writes the runtime text of every control into the page, as saving does.
  bool WriteRuntimeTexts();
  // Turns typed markup into controls.
  void RecognizeControls();
  // Checks the file soon, and asks the user if someone else changed it.
  void LookAtFile();

  // Never null once a page is open; without an office file it has no fields.
  const std::shared_ptr<office::Office>& Office() const { return office_; }
  const QString& OfficeFile() const { return officeFile_; }
  bool UseOffice(const QString& file);
  // Whether the author chose the office file; otherwise it was found beside the page.
  bool IsOfficeChosen() const { return officeIsChosen_; }
  // Opens databases of offices; empty if the editor has none.
  const office::ConnectionFactory& Connections() const { return places_.connections; }
  // Uses the file from now on for all pages of the folder.
  bool ChooseOffice(const QString& file);

  // Latest first.
  static QStringList RecentFiles();

 private:
  void Start(const std::string& bytes, bool modified, bool sameFile = false);
  // Reads a page; nothing after reporting an encoding that cannot be edited.
  std::optional<std::string> Read(const QString& name, PageFile& file);
  bool MayDiscard();
  // Returns the bytes to write; nothing when the user cancels.
  std::optional<std::string> BytesToSave();
  bool WriteTo(const QString& file);
  // With an empty name, it is undone together with the previous step.
  void TakeOver(const std::string& saved, const QString& step);
  void Watch();
  void FileTouched();
  void KeepSoon();
  void WriteDraft();
  void DiscardDraft();
  // Finds the office and toolbox of the page's folder.
  void FindCompanions();

  SessionUser& user_;
  Places places_;
  PageDocument page_;
  PageFile file_;
  std::shared_ptr<office::Office> office_;
  QString officeFile_;
  bool officeIsChosen_ = false;
  QFileSystemWatcher watcher_;
  bool asking_ = false;  // about a change outside
  QTimer draftTimer_;
  QTimer outsideTimer_;
  std::shared_ptr<Draft> draft_;
  QThreadPool draftWriter_;  // one thread: drafts are written in their order
};

}  // namespace kvo::editor
