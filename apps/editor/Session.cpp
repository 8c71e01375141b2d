#include "apps/editor/Session.h"

#include <QFileInfo>
#include <QLocale>
#include <QSettings>

#include "apps/editor/SourceLines.h"
#include "apps/editor/Words.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kDraftDelay(800);
constexpr milliseconds kOutsideDelay(300);
constexpr milliseconds kNoteTime(5000);

constexpr qsizetype kProblemsNamed = 3;  // in a question; the window lists them all

constexpr char kRecent[] = "recent";
constexpr int kMostRecent = 10;
constexpr char kOffices[] = "offices";  // a chosen office file for each folder of pages
constexpr char kOfficeName[] = "office.json";

constexpr char kNewPage[] =
    "<!DOCTYPE html>\n"
    "<html>\n"
    "<head>\n"
    "<meta charset=\"utf-8\">\n"
    "<title></title>\n"
    "</head>\n"
    "<body>\n"
    "\n"
    "</body>\n"
    "</html>\n";

// Folder names are settings keys, where "/" has a meaning.
QString SettingOf(QString folder) { return QString(kOffices) + '/' + folder.replace('/', '|'); }

void Remember(const QString& file) {
  QStringList files = Session::RecentFiles();
  files.removeAll(file);
  files.prepend(file);
  QSettings().setValue(kRecent, files.mid(0, kMostRecent));
}

QString TitleOf(const QString& file) {
  return file.isEmpty() ? Text(words::kUntitled) : QFileInfo(file).fileName();
}

// The page's current bytes, and the places of its problems in the source view.
struct Standing {
  explicit Standing(const PageText& page) : content(page), bytes(content.Bytes(places)) {}

  // Returns the introduction followed by the first errors.
  QString Told(const Localized& introduction, const page::Problems& problems) const {
    SourceLines lines(bytes, places);
    QStringList told = {Text(introduction)};
    for (page::Problem problem : problems) {
      if (problem.severity != page::Severity::error || told.size() > kProblemsNamed) continue;
      lines.Translate(problem);
      told += ToQt(page::Describe(problem, "", UserLanguage())).mid(1);
    }
    return told.join("\n\n");
  }

  const PageText content;  // the places refer to it
  PageText::Places places;
  const std::string bytes;
};

}  // namespace

bool SessionUser::Guarded(const std::function<bool()>& work) {
  try {
    return work();
  } catch (const std::exception& failure) {
    Tell(ToQt(FailureText(failure)));
  }
  return false;
}

Session::Session(SessionUser& user, Places places)
    : user_(user),
      places_(std::move(places)),
      page_(nullptr),
      draft_(std::make_shared<Draft>(places_.drafts)) {
  draftWriter_.setMaxThreadCount(1);
  draftTimer_.setSingleShot(true);
  draftTimer_.setInterval(kDraftDelay);
  draftTimer_.callOnTimeout([this] { WriteDraft(); });
  outsideTimer_.setSingleShot(true);
  outsideTimer_.setInterval(kOutsideDelay);
  outsideTimer_.callOnTimeout([this] { FileTouched(); });
  QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &outsideTimer_,
                   qOverload<>(&QTimer::start));
  // A page's first change is signalled before it counts as modified.
  QObject::connect(page_.Document(), &QTextDocument::modificationChanged, &draftTimer_,
                   [this] { KeepSoon(); });
}

Session::~Session() { draftWriter_.waitForDone(); }

QString Session::Title() const { return TitleOf(file_.Name()); }

void Session::Start(const std::string& bytes, bool modified, bool sameFile) {
  user_.PageEnds();
  page_.onChanged = [this] {
    user_.PageChanged();
    KeepSoon();
  };
  page_.Load(PageText(bytes));
  page_.Document()->setModified(modified);
  Watch();
  user_.PageStarted(sameFile);
}

void Session::New() { NewFrom(kNewPage); }

void Session::NewFrom(const std::string& bytes) {
  if (!MayDiscard()) return;
  DiscardDraft();
  file_ = {};
  FindCompanions();
  Start(bytes, false);
}

bool Session::Open(const QString& file) {
  return user_.Guarded([&] {
    if (!MayDiscard()) return false;
    PageFile opened;
    const auto bytes = Read(QFileInfo(file).absoluteFilePath(), opened);
    if (!bytes) return false;
    DiscardDraft();
    file_ = opened;
    FindCompanions();
    Start(*bytes, false);
    Remember(file_.Name());
    return true;
  });
}

std::optional<std::string> Session::Read(const QString& name, PageFile& file) {
  std::string bytes = file.Read(name);
  if (page::Page(bytes).Encoding().kind() != page::PageEncoding::Kind::utf16) return bytes;
  user_.Tell(Text(words::kUtf16, {name}));
  return std::nullopt;
}

bool Session::MayDiscard() {
  if (!page_.IsModified()) return true;
  enum { save, discard };
  const std::size_t answer = user_.Ask({Text(words::kUnsaved, {Title()}),
                                        {{Answer::Kind::agrees, words::kSave},
                                         {Answer::Kind::destroys, words::kDiscard},
                                         {Answer::Kind::refuses, words::kCancel}}});
  return answer == discard || (answer == save && Save());
}

bool Session::End() {
  if (!MayDiscard()) return false;
  DiscardDraft();
  return true;
}

// --- saving ---

std::optional<std::string> Session::BytesToSave() {
  const Standing page(page_.Content());
  // Writes an unmodified page unchanged.
  if (!page_.IsModified()) return page.bytes;
  const SavedPage saved = SavePage(page.bytes, false);
  if (saved.IsGood()) return saved.bytes;
  enum { show, asItStands, overwrite };
  Question question{
      page.Told(words::kCannotSave, saved.problems) + "\n\n" + Text(words::kSaveAnywayMeans),
      {{Answer::Kind::refuses, words::kShowProblems}, {Answer::Kind::acts, words::kSaveAsItStands}},
      show,
      true};
  if (saved.OnlyEditedByHand())
    question.answers.push_back({Answer::Kind::destroys, words::kOverwrite});
  switch (user_.Ask(question)) {
    case asItStands:
      return page.bytes;
    case overwrite:
      return SavePage(page.bytes, true).bytes;
    default:
      user_.ShowProblems();
      return std::nullopt;
  }
}

void Session::TakeOver(const std::string& saved, const QString& step) {
  page_.TakeOver(PageText(saved, page_.Content().LineBreak()), step);
}

bool Session::WriteTo(const QString& file) {
  return user_.Guarded([&] {
    const auto bytes = BytesToSave();
    if (!bytes) return false;
    file_.Write(file, *bytes);
    TakeOver(*bytes, {});
    page_.Document()->setModified(false);
    DiscardDraft();
    Watch();
    user_.FileNamed();
    Remember(file);
    user_.Note(Text(words::kSaved, {Title()}), kNoteTime);
    return true;
  });
}

bool Session::Save() {
  if (file_.Name().isEmpty()) return SaveAs({});
  if (file_.IsChangedOutside() &&
      user_.Ask(Confirmation(Text(words::kOverwriteOutside, {file_.Name()}),
                             words::kOverwriteAnyway, words::kCancel, Default::no)) != 0)
    return false;
  return WriteTo(file_.Name());
}

bool Session::SaveAs(const QString& file) {
  QString chosen = file;
  if (chosen.isEmpty())
    chosen = user_.ChooseFile(words::kSaveTitle,
                              file_.Name().isEmpty() ? Title() + ".html" : file_.Name());
  if (chosen.isEmpty()) return false;
  const QString folder = file_.Folder();
  if (!WriteTo(QFileInfo(chosen).absoluteFilePath())) return false;
  if (file_.Folder() != folder) FindCompanions();
  return true;
}

bool Session::WriteRuntimeTexts() {
  return user_.Guarded([&] {
    const Standing page(page_.Content());
    const SavedPage saved = SavePage(page.bytes, false);
    if (!saved.IsGood()) {
      user_.Tell(page.Told(words::kCannotSave, saved.problems));
      user_.ShowProblems();
      return false;
    }
    TakeOver(saved.bytes, Text(words::kTextsStep));
    return true;
  });
}

bool Session::Publish(const QString& file) {
  return user_.Guarded([&] {
    const Standing page(page_.Content());
    page::StringSink sink;
    const page::Problems problems = page::Publish(page::Page(page.bytes), sink);
    if (page::HasErrors(problems)) {
      user_.Tell(page.Told(words::kCannotPublish, problems));
      user_.ShowProblems();
      return false;
    }
    QString chosen = file;
    if (chosen.isEmpty()) chosen = user_.ChooseFile(words::kPublishTitle, file_.Folder());
    if (chosen.isEmpty()) return false;
    if (QFileInfo(chosen) == QFileInfo(file_.Name())) {
      user_.Tell(Text(words::kPublishOverPage));
      return false;
    }
    page::WriteFile(FileName(chosen), sink.Text());
    user_.Note(Text(words::kPublished, {TitleOf(chosen)}), kNoteTime);
    return true;
  });
}

void Session::RecognizeControls() {
  page_.ReplaceAll(PageText(page_.Content().Bytes(), page_.Content().LineBreak()),
                   Text(words::kRecognizeStep));
}

// --- changes by other programs ---

void Session::Watch() {
  if (!watcher_.files().isEmpty()) watcher_.removePaths(watcher_.files());
  if (!file_.Name().isEmpty()) watcher_.addPath(file_.Name());
}

void Session::LookAtFile() {
  if (!file_.Name().isEmpty()) outsideTimer_.start();
}

void Session::FileTouched() {
  Watch();  // the watcher loses a file that was replaced
  if (asking_ || !file_.IsChangedOutside()) return;
  asking_ = true;
  const bool modified = page_.IsModified();
  const bool reload =
      user_.Ask(Confirmation(
          Text(modified ? words::kChangedOutsideModified : words::kChangedOutside, {file_.Name()}),
          words::kReload, words::kKeep, modified ? Default::no : Default::yes)) == 0;
  asking_ = false;
  if (!reload) {
    file_.AcceptOutside();
    page_.Document()->setModified(true);
    return;
  }
  user_.Guarded([&] {
    PageFile reread;
    const auto bytes = Read(file_.Name(), reread);
    if (!bytes) return false;
    DiscardDraft();
    file_ = reread;
    Start(*bytes, false, true);
    return true;
  });
}

// --- drafts ---

void Session::KeepSoon() {
  // Started by the first key; the next ones do not postpone it.
  if (page_.IsModified() && !draftTimer_.isActive()) draftTimer_.start();
}

void Session::WriteDraft() {
  if (!page_.IsModified()) return;
  draftWriter_.start(
      [draft = draft_, text = page_.Content(), name = file_.Name(), known = file_.Known(), this] {
        try {
          draft->Write(text.Bytes(), name, known);
        } catch (const page::FileError& failure) {
          const QString message = ToQt(FailureText(failure));
          QMetaObject::invokeMethod(
              &draftTimer_,
              [this, message] { user_.Note(Text(words::kNoDraft, {message}), milliseconds(0)); },
              Qt::QueuedConnection);
        }
      });
}

void Session::DiscardDraft() {
  draftTimer_.stop();
  draftWriter_.start([draft = draft_] { draft->Discard(); });
  draftWriter_.waitForDone();
}

bool Session::OfferDrafts() {
  enum { recover, discard };
  const QLocale locale(UserLanguage() == Language::german ? QLocale::German : QLocale::English);
  for (const LeftDraft& left : Draft::LeftIn(places_.drafts)) {
    const QString time = locale.toString(left.time, QLocale::ShortFormat);
    const std::size_t answer = user_.Ask({Text(words::kDraftFound, {TitleOf(left.pageFile), time}),
                                          {{Answer::Kind::agrees, words::kRecover},
                                           {Answer::Kind::destroys, words::kDiscard},
                                           {Answer::Kind::refuses, words::kLater}}});
    if (answer == discard) Draft::Remove(left);
    if (answer != recover || !MayDiscard()) continue;
    const auto bytes = Draft::Read(left);
    if (!bytes) continue;
    DiscardDraft();
    file_ = PageFile(left.pageFile, left.known);
    FindCompanions();
    Start(*bytes, true);
    WriteDraft();
    draftWriter_.waitForDone();
    // Removes the draft only once this session's own draft contains it.
    if (draft_->IsWritten()) Draft::Remove(left);
    return true;
  }
  return false;
}

// --- the office, and other companions ---

void Session::FindCompanions() {
  // A new page has no folder yet; it keeps the current companions.
  if (file_.Folder().isEmpty() && office_ != nullptr) return;
  const QString chosen = QSettings().value(SettingOf(file_.Folder())).toString();
  officeIsChosen_ = QFileInfo::exists(chosen);
  if (!UseOffice(officeIsChosen_ ? chosen : file_.Companion(kOfficeName))) UseOffice({});
  user_.FolderChanged();
}

bool Session::UseOffice(const QString& file) {
  return user_.Guarded([&] {
    // Without a file, the field lists of property pages are empty.
    office_ = file.isEmpty() ? std::make_shared<office::Office>(office::Office::Description())
                             : office::LoadOffice(FileName(file), places_.connections);
    officeFile_ = file;
    user_.OfficeChanged();
    return true;
  });
}

bool Session::ChooseOffice(const QString& file) {
  const bool before = std::exchange(officeIsChosen_, true);
  if (!UseOffice(file)) {
    officeIsChosen_ = before;
    return false;
  }
  QSettings().setValue(SettingOf(file_.Folder()), file);
  return true;
}

QStringList Session::RecentFiles() { return QSettings().value(kRecent).toStringList(); }

}  // namespace kvo::editor
