#include "apps/editor/Previewing.h"

#include <QFileInfo>
#include <chrono>
#include <utility>

#include "apps/editor/PreviewPanel.h"
#include "apps/editor/PreviewView.h"
#include "apps/editor/RecordForm.h"
#include "apps/editor/Words.h"
#include "document/preview/Records.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

// Other programs may write a file in several steps.
constexpr std::chrono::milliseconds kTouchDelay(150);
constexpr std::chrono::milliseconds kFindNote(5000);

}  // namespace

Previewing::Previewing(Session& session, SessionUser& user, PreviewPanel& panel)
    : session_(session),
      user_(user),
      panel_(panel),
      previewer_(
          [this](const std::shared_ptr<const PreviewResult>& result) { Previewed(result); }) {
  panel_.onVisible = [this] { Request(); };
  panel_.onRecord = [this](std::int64_t record) { Go(record); };
  panel_.onStep = [this](int by) {
    const std::int64_t wanted = record_ + by;
    if (shown_ != nullptr && wanted >= 0 && wanted < shown_->count) Go(wanted);
  };
  panel_.onFind = [this](const QString& nameOrNumber) {
    find_ = nameOrNumber;
    Request();
  };
  panel_.onChoice = [this](const QString& key, preview::Choice choice) {
    if (choice == preview::Choice::asRecord)
      choices_.remove(key);
    else
      choices_[key] = choice;
    Request();
  };
  panel_.onReset = [this] {
    choices_.clear();
    Request();
  };
  panel_.onShop = [this] {
    shopAllowed_ = session_.OfficeFile();
    OfferShop();
    ReadAgain();
  };
  panel_.onEdit = [this] { EditRecords(); };
  touched_.setSingleShot(true);
  touched_.setInterval(kTouchDelay);
  touched_.callOnTimeout([this] { FolderTouched(); });
  for (const auto signal :
       {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged})
    QObject::connect(&watcher_, signal, &touched_, qOverload<>(&QTimer::start));
}

void Previewing::PageChanged() { Request(); }

void Previewing::PageStarted(bool sameFile) {
  newPage_ = true;
  if (sameFile) return;
  record_ = 0;
  find_.clear();
  choices_.clear();
}

void Previewing::FolderChanged() {
  const QString folder = session_.File().Folder();
  panel_.View().Folder(folder);
  const QString file = folder.isEmpty() ? QString() : folder + '/' + ToQt(preview::kRecordsFile);
  if (file == recordsFile_) return;
  recordsFile_ = file;
  Watch();
  ReadAgain();
}

void Previewing::OfficeChanged() {
  office_.reset();
  if (!session_.OfficeFile().isEmpty())
    office_ = std::make_shared<office::Office::Description>(session_.Office()->Described());
  OfferShop();
  ReadAgain();
}

void Previewing::ReadAgain() {
  ++circumstances_;
  Request();
}

void Previewing::Request() {
  // A hidden preview costs nothing.
  if (!panel_.isVisible()) return;
  PreviewRequest request;
  request.revision = session_.Page().Revision();
  request.text = session_.Page().Content();
  request.newPage = std::exchange(newPage_, false);
  request.office = office_;
  if (MayAskShop()) request.connections = session_.Connections();
  request.recordsFile = recordsFile_;
  request.circumstances = circumstances_;
  request.record = record_;
  request.find = std::exchange(find_, {});
  request.choices = choices_;
  previewer_.Request(std::move(request));
}

void Previewing::Previewed(const std::shared_ptr<const PreviewResult>& result) {
  shown_ = result;
  // Unless the author has chosen another one meanwhile.
  if (record_ == result->asked) record_ = result->record;
  panel_.Show(result);
  if (result->notFound) user_.Note(Text(words::kRecordNotFound), kFindNote);
  if (onShown) onShown();
}

void Previewing::Go(std::int64_t record) {
  record_ = record;
  Request();
}

// --- the shop ---

// An office file beside the page may have come along with it, so its shop is read only when the
// author wants that.
bool Previewing::MayAskShop() const {
  return session_.IsOfficeChosen() ||
         (!shopAllowed_.isEmpty() && shopAllowed_ == session_.OfficeFile());
}

void Previewing::OfferShop() {
  panel_.OfferShop(office_ != nullptr && office_->shopDatabase && session_.Connections() &&
                   !MayAskShop());
}

// --- the file of records ---

Previewing::Stamp Previewing::StampOfFile() const {
  const QFileInfo info(recordsFile_);
  if (recordsFile_.isEmpty() || !info.exists()) return {};
  return {true, info.lastModified(), info.size()};
}

void Previewing::Watch() {
  const QStringList watched = watcher_.files() + watcher_.directories();
  if (!watched.isEmpty()) watcher_.removePaths(watched);
  stamp_ = StampOfFile();
  if (recordsFile_.isEmpty()) return;
  watcher_.addPath(QFileInfo(recordsFile_).path());
  if (stamp_.exists) watcher_.addPath(recordsFile_);
}

void Previewing::FolderTouched() {
  if (StampOfFile() == stamp_) return;
  Watch();  // the watcher loses a file that was replaced
  ReadAgain();
}

void Previewing::EditRecords() {
  if (recordsFile_.isEmpty()) return user_.Tell(Text(words::kRecordsUnsaved));
  if (shown_ == nullptr) return;
  RecordsToEdit edit;
  edit.file = PageFile(recordsFile_, {});
  const bool isGood = user_.Guarded([&] {
    if (!QFileInfo::exists(recordsFile_)) return true;
    edit.file.Read(recordsFile_);
    edit.records = preview::LoadRecords(FileName(recordsFile_));
    return true;
  });
  if (!isGood) return;
  edit.current = record_;
  edit.office = office_;
  edit.fields = shown_->fields;
  if (shown_->hasRecord && (shown_->current.madeUp || shown_->isFromQuery))
    edit.other = shown_->current;
  const auto next = editor::EditRecords(std::move(edit), panel_.window());
  if (!next) return;
  record_ = *next;
  Watch();
  ReadAgain();
}

}  // namespace kvo::editor
