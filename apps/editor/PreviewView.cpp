#include "apps/editor/PreviewView.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineSettings>

#include "apps/editor/LocalBrowser.h"
#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kFocusFrame = 2;
// The browser paints a while after it has loaded.
constexpr std::chrono::milliseconds kPaintDelay(80);

}  // namespace

// Called by the script in the view.
class PreviewView::Bridge final : public QObject {
  Q_OBJECT
 public:
  explicit Bridge(PreviewView& view) : view_(view) {}

  Q_INVOKABLE void Clicked(int control) const {
    if (view_.onClicked) view_.onClicked(control);
  }
  Q_INVOKABLE void Scheme(bool own) const {
    if (view_.onScheme) view_.onScheme(own);
  }
  Q_INVOKABLE void Scrolled(double x, double y) { view_.scrolled_ = {x, y}; }
  Q_INVOKABLE void Shown(int revision) { view_.shownRevision_ = revision; }

 private:
  PreviewView& view_;
};

PreviewView::PreviewView(QWidget* parent)
    : QWidget(parent),
      source_(std::make_unique<PageSource>()),
      profile_(std::make_unique<QWebEngineProfile>()),
      bridge_(std::make_unique<Bridge>(*this)),
      view_(new QWebEngineView(this)),
      page_(new LocalPage(profile_.get(), view_)),
      cover_(new QLabel(this)) {
  UseSource(*profile_, *source_);
  auto* channel = new QWebChannel(page_);
  channel->registerObject("kvo", bridge_.get());
  page_->setWebChannel(channel, kScriptWorld);
  connect(page_, &QWebEnginePage::loadFinished, this, [this] { Loaded(); });
  view_->setPage(page_);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  view_->setAccessibleName(Text(words::kPreview));
  cover_->setAttribute(Qt::WA_TransparentForMouseEvents);
  cover_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kFocusFrame, kFocusFrame, kFocusFrame, kFocusFrame);
  layout->addWidget(view_);
  setFocusProxy(view_);
  connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

PreviewView::~PreviewView() {
  // Destroys the page before its profile.
  delete view_;
}

void PreviewView::paintEvent(QPaintEvent*) {
  if (isAncestorOf(QApplication::focusWidget()))
    QPainter(this).fillRect(rect(), palette().highlight());
}

void PreviewView::Folder(const QString& folder) { source_->folder = folder; }

void PreviewView::Show(const PreviewResult& result) {
  const bool sameDocument = !result.first && DoctypeOf(result.html) == DoctypeOf(source_->html);
  html_ = result.html;
  revision_ = result.revision;
  if (result.first) scrolled_ = {};
  if (!sameDocument) return Reload();
  if (!loaded_) return;  // Loaded() will show the latest state
  const Splice& change = result.change;
  Run(QString("kvo.splice(%1,%2,%3,%4)")
          .arg(change.at)
          .arg(change.removed)
          .arg(Literal(change.added))
          .arg(revision_));
}

void PreviewView::Reload() {
  Cover();
  loaded_ = false;
  source_->html = html_;
  page_->Load();
}

void PreviewView::Cover() {
  if (!isVisible() || !loaded_) return;
  cover_->setPixmap(view_->grab());
  cover_->setGeometry(view_->geometry());
  cover_->raise();
  cover_->show();
}

void PreviewView::Loaded() {
  loaded_ = true;
  Run(Resource(":/qtwebchannel/qwebchannel.js") + Resource(":/editor/preview.js"));
  Run(QString("kvo.dark(%1)").arg(dark_ ? "true" : "false"));
  Run(QString("kvo.pictures(%1)").arg(pictures_ ? "true" : "false"));
  Run(QString("kvo.begin(%1,%2,%3)")
          .arg(source_->html == html_ ? "true" : "false")
          .arg(Literal(html_))
          .arg(revision_));
  Run(QString("kvo.scroll(%1,%2)").arg(scrolled_.x()).arg(scrolled_.y()));
  Mark(marked_, false);
  QTimer::singleShot(kPaintDelay, this, [this] {
    if (loaded_) cover_->hide();
  });
}

void PreviewView::Mark(int control, bool scrolls) {
  marked_ = control;
  if (loaded_) Run(QString("kvo.mark(%1,%2)").arg(control).arg(scrolls ? "true" : "false"));
}

void PreviewView::ShowDark(bool dark) {
  dark_ = dark;
  if (loaded_) Run(QString("kvo.dark(%1)").arg(dark ? "true" : "false"));
}

void PreviewView::ShowPictures(bool shows) {
  pictures_ = shows;
  page_->settings()->setAttribute(QWebEngineSettings::AutoLoadImages, shows);
  // Takes away pictures that are loaded already.
  if (loaded_) Run(QString("kvo.pictures(%1)").arg(shows ? "true" : "false"));
}

void PreviewView::Run(const QString& script) { page_->runJavaScript(script, kScriptWorld); }

}  // namespace kvo::editor

#include "PreviewView.moc"
