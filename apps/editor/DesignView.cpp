#include "apps/editor/DesignView.h"

#include <unistd.h>

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeDatabase>
#include <QPainter>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineUrlSchemeHandler>

#include "apps/editor/Words.h"

namespace kvo::editor {
namespace {

constexpr int kFrame = 2;  // shows that the view has the keyboard focus
constexpr char kScheme[] = "kvo-page";
// The page itself; everything else under the scheme is a file beside it.
constexpr char kPagePath[] = "/";
// Our script runs in a separate world, where scripts are allowed although the page's are not.
constexpr quint32 kWorld = QWebEngineScript::ApplicationWorld;

// Returns a text as a script literal.
QString Literal(const QString& text) {
  const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
  return QString::fromUtf8(list.sliced(1, list.size() - 2));
}

QString Resource(const QString& name) {
  QFile file(name);
  file.open(QIODevice::ReadOnly);
  return QString::fromUtf8(file.readAll());
}

// Only loading a new document can change the doctype.
QStringView DoctypeOf(const QString& html) {
  const QStringView text = QStringView(html).trimmed();
  return text.startsWith(u"<!doctype", Qt::CaseInsensitive) ? text.left(text.indexOf(u'>'))
                                                            : QStringView();
}

class OnlyThePage final : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    const QString scheme = info.requestUrl().scheme();
    info.block(scheme != kScheme && scheme != "data");
  }
};

}  // namespace

void PrepareDesignView() {
  // The browser cannot create its sandbox as root, and would not start.
  if (geteuid() == 0) qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
  QWebEngineUrlScheme scheme(kScheme);
  scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
  scheme.setFlags(QWebEngineUrlScheme::LocalScheme | QWebEngineUrlScheme::LocalAccessAllowed);
  QWebEngineUrlScheme::registerScheme(scheme);
}

// Answers the view's requests: the page, and pictures and style sheets from its folder.
class DesignView::Source final : public QWebEngineUrlSchemeHandler {
 public:
  void requestStarted(QWebEngineUrlRequestJob* job) override {
    const QString path = job->requestUrl().path();
    if (path == kPagePath) {
      // The mark sets the encoding, whatever the page declares for the file.
      return Reply(job, "text/html", "\xEF\xBB\xBF" + html.toUtf8());
    }
    const QString file = FileOf(path);
    const QString type = QMimeDatabase().mimeTypeForFile(file).name();
    QFile content(file);
    if (file.isEmpty() || !(type.startsWith("image/") || type == "text/css") ||
        !content.open(QIODevice::ReadOnly))
      return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    Reply(job, type.toUtf8(), content.readAll());
  }

  QString html;
  QString folder;

 private:
  // Returns the file's path; empty outside the folder.
  QString FileOf(const QString& path) const {
    if (folder.isEmpty()) return {};
    const QString root = QFileInfo(folder).canonicalFilePath() + '/';
    const QString file = QFileInfo(root + path.mid(1)).canonicalFilePath();
    return file.startsWith(root) ? file : QString();
  }
  static void Reply(QWebEngineUrlRequestJob* job, const QByteArray& type, const QByteArray& bytes) {
    auto* buffer = new QBuffer(job);
    buffer->setData(bytes);
    buffer->open(QIODevice::ReadOnly);
    job->reply(type, buffer);
  }
};

class DesignView::Page final : public QWebEnginePage {
 public:
  Page(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
    connect(this, &QWebEnginePage::newWindowRequested, this, [](QWebEngineNewWindowRequest&) {});
  }

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    return isMainFrame && type == NavigationTypeTyped && url.scheme() == kScheme &&
           url.path() == kPagePath;
  }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}
};

// Makes the Tab key wrap around inside the view. It must not move into the source, which would
// receive the next keys as text.
class KeepsTabKey final : public QWebEngineView {
 public:
  using QWebEngineView::QWebEngineView;

 protected:
  bool focusNextPrevChild(bool) override { return true; }
};

// Called by the script in the view.
class DesignView::Bridge final : public QObject {
  Q_OBJECT
 public:
  explicit Bridge(DesignView& view) : view_(view) {}

  Q_INVOKABLE void Clicked(int index) const {
    if (view_.onBoxClicked) view_.onBoxClicked(index);
  }
  Q_INVOKABLE void DoubleClicked(int index) const {
    if (view_.onBoxDoubleClicked) view_.onBoxDoubleClicked(index);
  }
  Q_INVOKABLE void Shown(int revision) { view_.shownRevision_ = revision; }

 private:
  DesignView& view_;
};

DesignView::DesignView(QWidget* parent)
    : QWidget(parent),
      source_(std::make_unique<Source>()),
      profile_(std::make_unique<QWebEngineProfile>()),
      bridge_(std::make_unique<Bridge>(*this)),
      view_(new KeepsTabKey(this)) {
  profile_->installUrlSchemeHandler(kScheme, source_.get());
  profile_->setUrlRequestInterceptor(new OnlyThePage(profile_.get()));
  auto* page = new Page(profile_.get(), view_);
  QWebEngineSettings* settings = page->settings();
  for (const auto off :
       {QWebEngineSettings::JavascriptEnabled, QWebEngineSettings::PluginsEnabled,
        QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::LocalStorageEnabled,
        QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::NavigateOnDropEnabled,
        QWebEngineSettings::FocusOnNavigationEnabled, QWebEngineSettings::FullScreenSupportEnabled,
        QWebEngineSettings::ErrorPageEnabled})
    settings->setAttribute(off, false);
  auto* channel = new QWebChannel(page);
  channel->registerObject("kvo", bridge_.get());
  page->setWebChannel(channel, kWorld);
  connect(page, &QWebEnginePage::loadFinished, this, [this] { Loaded(); });
  view_->setPage(page);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  view_->setAccessibleName(Text(words::kDesign));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kFrame, kFrame, kFrame, kFrame);
  layout->addWidget(view_);
  setFocusProxy(view_);
  connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

DesignView::~DesignView() {
  // Destroys the page before its profile.
  delete view_;
}

void DesignView::paintEvent(QPaintEvent*) {
  if (isAncestorOf(QApplication::focusWidget()))
    QPainter(this).fillRect(rect(), palette().highlight());
}

void DesignView::Folder(const QString& folder) { source_->folder = folder; }

void DesignView::Show(const Analysis& analysis) {
  design_ = analysis.design;
  revision_ = analysis.revision;
  if (analysis.first || DoctypeOf(design_) != DoctypeOf(source_->html)) return Reload();
  if (!loaded_) return;  // Loaded() will show the latest state
  const Splice& change = analysis.designChange;
  Run(QString("kvo.splice(%1,%2,%3,%4)")
          .arg(change.at)
          .arg(change.removed)
          .arg(revision_)
          .arg(Literal(change.added)));
}

void DesignView::Reload() {
  loaded_ = false;
  source_->html = design_;
  view_->load(QUrl(QString(kScheme) + ':' + kPagePath));
}

void DesignView::Loaded() {
  loaded_ = true;
  Run(Resource(":/qtwebchannel/qwebchannel.js") + Resource(":/editor/design.js"));
  Run(QString("kvo.begin(%1,%2,%3)")
          .arg(source_->html == design_ ? "true" : "false")
          .arg(revision_)
          .arg(Literal(design_)));
  if (marked_ >= 0) Mark(marked_);
}

void DesignView::Mark(int index) {
  marked_ = index;
  if (loaded_) Run(QString("kvo.mark(%1)").arg(index));
}

void DesignView::Run(const QString& script) { view_->page()->runJavaScript(script, kWorld); }

}  // namespace kvo::editor

#include "DesignView.moc"
