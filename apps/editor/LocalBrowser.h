// What the browsers of the editor's views share: they run no scripts of the page, follow no link,
// never use the network, and load pictures and style sheets from the page's folder only.
#pragma once

#include <QString>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineUrlSchemeHandler>
#include <QWebEngineView>
#include <memory>

namespace kvo::editor {

inline constexpr char kPageScheme[] = "kvo-page";
// The page itself; everything else under the scheme is a file beside it.
inline constexpr char kPagePath[] = "/";
// Our script runs in a separate world, where scripts are allowed although the page's are not.
inline constexpr quint32 kScriptWorld = QWebEngineScript::ApplicationWorld;

// Call before creating the application object.
void PrepareBrowsers();

// Answers the requests of a view: the page, and pictures and style sheets from its folder.
class PageSource : public QWebEngineUrlSchemeHandler {
 public:
  void requestStarted(QWebEngineUrlRequestJob* job) override;

  QString html;
  QString folder;  // empty for none

 protected:
  static void Reply(QWebEngineUrlRequestJob* job, const QByteArray& type, const QByteArray& bytes);

 private:
  // Returns the file's path; empty outside the folder.
  QString FileOf(const QString& path) const;
};

// A view with a browser in it, the channel to its script, and a frame that shows the keyboard
// focus.
class LocalView : public QWidget {
 public:
  ~LocalView() override;

  // Sets the folder of the page's pictures; empty for none.
  void Folder(const QString& folder) { source_->folder = folder; }
  QWebEngineView& View() { return *view_; }

 protected:
  // Takes `view`. The script calls `bridge` under the name kvo.
  LocalView(QWidget* parent, const QString& name, QWebEngineView* view,
            std::unique_ptr<PageSource> source, std::unique_ptr<QObject> bridge);

  // Loads a page; Loaded() follows when it is there.
  void Load(const QString& html);
  virtual void Loaded() = 0;
  bool IsLoaded() const { return loaded_; }
  // The page that was loaded; Run() may have changed it since.
  const QString& LoadedHtml() const { return source_->html; }
  // Runs a file of the resources, after which scripts can call the bridge.
  void RunResource(const QString& name);
  void Run(const QString& script);

  void paintEvent(QPaintEvent* event) override;

 private:
  std::unique_ptr<PageSource> source_;
  std::unique_ptr<QWebEngineProfile> profile_;
  std::unique_ptr<QObject> bridge_;
  QWebEngineView* view_;
  bool loaded_ = false;
};

// Returns a text as a script literal.
QString Literal(const QString& text);
// Only loading a new document can change the doctype.
QStringView DoctypeOf(const QString& html);

}  // namespace kvo::editor
