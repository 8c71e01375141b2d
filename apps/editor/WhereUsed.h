// "Where is this field used?": finds the uses of a name in the pages of the page's folder and its
// subfolders, and renames it there.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "apps/editor/FolderWork.h"
#include "apps/editor/Session.h"
#include "apps/editor/SourceEdit.h"
#include "document/page/File.h"
#include "document/uses/Rename.h"

namespace kvo::editor {

class UsesPanel;
struct UseRow;

class WhereUsed {
 public:
  WhereUsed(Session& session, SessionUser& user, SourceEdit& source, UsesPanel& panel,
            QWidget& window);

  // Searches for the field at the caret: of the control, or of the reference in the text. Asks for
  // a name where there is none or more than one.
  void Ask();
  // Searches for a name as the user writes it: "customer.City", an id, a class.
  void Search(const QString& word);
  // Shows a position of the page: a control, or a place that only the source surely shows. With
  // `goes`, the keyboard focus goes there.
  std::function<void(int position, bool isControl, bool goes)> onShow;
  std::function<void()> onShowPanel;

  bool IsSearching() const { return searching_; }

 private:
  // A use by its page and its number among those of the page, which edits elsewhere keep.
  struct Found {
    QString file;
    std::size_t number;
  };
  struct Uses;
  struct Renames;

  std::vector<QString> WordsAtCaret() const;
  std::optional<QString> AskForWord(const std::vector<QString>& words, bool all);
  void ShowUses(const Uses& uses, const QStringList& unread);
  void Show(int row, bool goes);
  void Stop();
  void Rename();
  void AskAndRename(const Renames& renames);
  void Start(FolderWork::Job job);
  void End();
  // Returns the edit of the page's office; nothing when that does not list the field.
  std::optional<page::FileChange> OfficeChange(const uses::Renaming& renaming) const;

  Session& session_;
  SessionUser& user_;
  SourceEdit& source_;
  UsesPanel& panel_;
  QWidget& window_;
  QString word_;
  std::vector<Found> found_;
  QString heading_;  // of the list
  bool mayRename_ = false;
  bool searching_ = false;
  FolderWork work_;
};

}  // namespace kvo::editor
