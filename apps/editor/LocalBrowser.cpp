#include "apps/editor/LocalBrowser.h"

#include <unistd.h>

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeDatabase>
#include <QPainter>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

namespace kvo::editor {
namespace {

class OnlyThePage final : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    const QString scheme = info.requestUrl().scheme();
    info.block(scheme != kPageScheme && scheme != "data");
  }
};

class LocalPage final : public QWebEnginePage {
 public:
  LocalPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
    connect(this, &QWebEnginePage::newWindowRequested, this, [](QWebEngineNewWindowRequest&) {});
    for (const auto off :
         {QWebEngineSettings::JavascriptEnabled, QWebEngineSettings::PluginsEnabled,
          QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::LocalStorageEnabled,
          QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::NavigateOnDropEnabled,
          QWebEngineSettings::FocusOnNavigationEnabled,
          QWebEngineSettings::FullScreenSupportEnabled, QWebEngineSettings::ErrorPageEnabled})
      settings()->setAttribute(off, false);
  }

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    return isMainFrame && type == NavigationTypeTyped && url.scheme() == kPageScheme &&
           url.path() == kPagePath;
  }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}
};

QString Resource(const QString& name) {
  QFile file(name);
  file.open(QIODevice::ReadOnly);
  return QString::fromUtf8(file.readAll());
}

}  // namespace

void PrepareBrowsers() {
  // The browser cannot create its sandbox as root, and would not start.
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  QWebEngineUrlScheme scheme(kPageScheme);
  scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
  scheme.setFlags(QWebEngineUrlScheme::LocalScheme | QWebEngineUrlScheme::LocalAccessAllowed);
  QWebEngineUrlScheme::registerScheme(scheme);
}

void PageSource::requestStarted(QWebEngineUrlRequestJob* job) {
  const QString path = job->requestUrl().path();
  if (path == kPagePath) {
    // The mark sets the encoding, whatever the page declares for the file.
    return Reply(job, "text/html", "\xEF\xBB\xBF" + html.toUtf8());
  }
  const QString file = FileOf(path);
  if (file.isEmpty()) return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
  const QString type = QMimeDatabase().mimeTypeForFile(file).name();
  QFile content(file);
  if (!(type.startsWith("image/") || type == "text/css") || !content.open(QIODevice::ReadOnly))
    return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
  Reply(job, type.toUtf8(), content.readAll());
}

QString PageSource::FileOf(const QString& path) const {
  if (folder.isEmpty()) return {};
  const QString root = QFileInfo(folder).canonicalFilePath() + '/';
  const QString file = QFileInfo(root + path.mid(1)).canonicalFilePath();
  return file.startsWith(root) ? file : QString();
}

void PageSource::Reply(QWebEngineUrlRequestJob* job, const QByteArray& type,
                       const QByteArray& bytes) {
  auto* buffer = new QBuffer(job);
  buffer->setData(bytes);
  buffer->open(QIODevice::ReadOnly);
  job->reply(type, buffer);
}

LocalView::LocalView(QWidget* parent, const QString& name, QWebEngineView* view,
                     std::unique_ptr<PageSource> source, std::unique_ptr<QObject> bridge)
    : QWidget(parent),
      source_(std::move(source)),
      profile_(std::make_unique<QWebEngineProfile>()),
      bridge_(std::move(bridge)),
      view_(view) {
  constexpr int kFrame = 2;
  profile_->installUrlSchemeHandler(kPageScheme, source_.get());
  profile_->setUrlRequestInterceptor(new OnlyThePage(profile_.get()));
  auto* page = new LocalPage(profile_.get(), view_);
  auto* channel = new QWebChannel(page);
  channel->registerObject("kvo", bridge_.get());
  page->setWebChannel(channel, kScriptWorld);
  connect(page, &QWebEnginePage::loadFinished, this, [this] {
    loaded_ = true;
    Loaded();
  });
  view_->setPage(page);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  view_->setAccessibleName(name);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kFrame, kFrame, kFrame, kFrame);
  layout->addWidget(view_);
  setFocusProxy(view_);
  connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

LocalView::~LocalView() {
  view_->page()->disconnect(this);
  // Destroys the page before its profile.
  delete view_;
}

void LocalView::Load(const QString& html) {
  loaded_ = false;
  source_->html = html;
  view_->page()->load(QUrl(QString(kPageScheme) + ':' + kPagePath));
}

void LocalView::RunResource(const QString& name) {
  Run(Resource(":/qtwebchannel/qwebchannel.js") + Resource(name));
}

void LocalView::Run(const QString& script) { view_->page()->runJavaScript(script, kScriptWorld); }

void LocalView::paintEvent(QPaintEvent*) {
  if (isAncestorOf(QApplication::focusWidget()))
    QPainter(this).fillRect(rect(), palette().highlight());
}

QString Literal(const QString& text) {
  const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
  return QString::fromUtf8(list.sliced(1, list.size() - 2));
}

QStringView DoctypeOf(const QString& html) {
  const QStringView text = QStringView(html).trimmed();
  return text.startsWith(u"<!doctype", Qt::CaseInsensitive) ? text.left(text.indexOf(u'>'))
                                                            : QStringView();
}

}  // namespace kvo::editor
