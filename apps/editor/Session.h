// What an author has open: the page with its steps, the file behind it, its draft, and the office
// that its controls get. It has no window; what is to be asked, told and shown goes to a
// SessionUser. Nothing that was typed is given up unasked.
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

  // The number of the answer.
  virtual std::size_t Ask(const Question& question) = 0;
  // Returns when the user has seen it.
  virtual void Tell(const QString& text) = 0;
  // By the way; for that long, with 0 until the next.
  virtual void Note(const QString& text, std::chrono::milliseconds time) = 0;
  // The file to write; empty when the user gave up.
  virtual QString ChooseFile(const Localized& title, const QString& proposed) = 0;
  virtual void ShowProblems() = 0;

  virtual void PageChanged() = 0;
  // Another page takes the place of the one that is shown, or what is in its file now.
  virtual void PageEnds() = 0;
  virtual void PageStarted(bool sameFile) = 0;
  virtual void FileNamed() = 0;
  virtual void FolderChanged() = 0;
  virtual void OfficeChanged() = 0;

  // Does something with files; what it throws is told, and the answer is then false.
  bool Guarded(const std::function<bool()>& work);
};

class Session {
 public:
  struct Places {
    QString drafts;  // the folder
    office::ConnectionFactory connections;
  };
  // Empty, and silent to the user, until New, Open or a draft.
  Session(SessionUser& user, Places places);
  ~Session();  // the draft stays

  PageDocument& Page() { return page_; }
  const PageFile& File() const { return file_; }
  // The file's name without its folder.
  QString Title() const;

  void New();
  // An untitled page with the bytes of a template; not yet changed.
  void NewFrom(const std::string& bytes);
  // False when it could not be read, or the user kept what is open.
  bool Open(const QString& file);
  // Offers what a crash left behind; answers whether something was taken.
  bool OfferDrafts();
  // To be called before the end: false when the user goes on.
  bool End();

  bool Save();
  // The user is asked for the file when none is given.
  bool SaveAs(const QString& file);
  bool Publish(const QString& file);
  // Puts the runtime text of every control into the page, as saving does.
  bool WriteRuntimeTexts();
  // Markup that was typed becomes controls.
  void RecognizeControls();
  // Soon asks what is to be done if somebody else wrote the file.
  void LookAtFile();

  // Never null once a page is open; without an office file it has no fields.
  const std::shared_ptr<office::Office>& Office() const { return office_; }
  const QString& OfficeFile() const { return officeFile_; }
  bool UseOffice(const QString& file);
  // From now on for all pages of the folder.
  bool ChooseOffice(const QString& file);

  // The latest first.
  static QStringList RecentFiles();

 private:
  void Start(const std::string& bytes, bool modified, bool sameFile = false);
  // Nothing when the page is in an encoding that cannot be edited, which is then told.
  std::optional<std::string> Read(const QString& name, PageFile& file);
  bool MayDiscard();
  // What is to be written; nothing when the user gave up.
  std::optional<std::string> BytesToSave();
  bool WriteTo(const QString& file);
  // Without a name: undone together with the step before.
  void TakeOver(const std::string& saved, const QString& step);
  void Watch();
  void FileTouched();
  void KeepSoon();
  void WriteDraft();
  void DiscardDraft();
  // What goes with the pages of a folder.
  void FindCompanions();

  SessionUser& user_;
  Places places_;
  PageDocument page_;
  PageFile file_;
  std::shared_ptr<office::Office> office_;
  QString officeFile_;
  QFileSystemWatcher watcher_;
  bool asking_ = false;  // about a change outside
  QTimer draftTimer_;
  QTimer outsideTimer_;
  std::shared_ptr<Draft> draft_;
  QThreadPool draftWriter_;  // one thread: drafts are written in their order
};

}  // namespace kvo::editor
