#include "apps/editor/PreviewView.h"

#include <QTimer>
#include <QWebEngineSettings>

#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

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
    : LocalView(parent, Text(words::kPreview), new QWebEngineView, std::make_unique<PageSource>(),
                std::make_unique<Bridge>(*this)),
      cover_(new QLabel(this)) {
  cover_->setAttribute(Qt::WA_TransparentForMouseEvents);
  cover_->hide();
}

void PreviewView::Show(const PreviewResult& result) {
  const bool sameDocument = !result.first && DoctypeOf(result.html) == DoctypeOf(LoadedHtml());
  html_ = result.html;
  revision_ = result.revision;
  if (result.first) scrolled_ = {};
  if (!sameDocument) return Reload();
  if (!IsLoaded()) return;  // Loaded() will show the latest state
  const Splice& change = result.change;
  Run(QString("kvo.splice(%1,%2,%3,%4)")
          .arg(change.at)
          .arg(change.removed)
          .arg(Literal(change.added))
          .arg(revision_));
}

void PreviewView::Reload() {
  Cover();
  Load(html_);
}

void PreviewView::Cover() {
  if (!isVisible() || !IsLoaded()) return;
  cover_->setPixmap(View().grab());
  cover_->setGeometry(View().geometry());
  cover_->raise();
  cover_->show();
}

void PreviewView::Loaded() {
  RunResource(":/editor/preview.js");
  Run(QString("kvo.dark(%1)").arg(dark_ ? "true" : "false"));
  Run(QString("kvo.pictures(%1)").arg(pictures_ ? "true" : "false"));
  Run(QString("kvo.begin(%1,%2,%3)")
          .arg(LoadedHtml() == html_ ? "true" : "false")
          .arg(Literal(html_))
          .arg(revision_));
  Run(QString("kvo.scroll(%1,%2)").arg(scrolled_.x()).arg(scrolled_.y()));
  Mark(marked_, false);
  QTimer::singleShot(kPaintDelay, this, [this] {
    if (IsLoaded()) cover_->hide();
  });
}

void PreviewView::Mark(int control, bool scrolls) {
  marked_ = control;
  if (IsLoaded()) Run(QString("kvo.mark(%1,%2)").arg(control).arg(scrolls ? "true" : "false"));
}

void PreviewView::ShowDark(bool dark) {
  dark_ = dark;
  if (IsLoaded()) Run(QString("kvo.dark(%1)").arg(dark ? "true" : "false"));
}

void PreviewView::ShowPictures(bool shows) {
  pictures_ = shows;
  View().settings()->setAttribute(QWebEngineSettings::AutoLoadImages, shows);
  // Takes away pictures that are loaded already.
  if (IsLoaded()) Run(QString("kvo.pictures(%1)").arg(shows ? "true" : "false"));
}

}  // namespace kvo::editor

#include "PreviewView.moc"
