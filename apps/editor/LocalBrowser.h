// What the browsers of the editor's views share: they run no scripts of the page, follow no link,
// never use the network, and load pictures and style sheets from the page's folder only.
#pragma once

#include <QString>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineUrlSchemeHandler>

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

// Connects a profile to its source, and blocks all other requests. The source must outlive it.
void UseSource(QWebEngineProfile& profile, PageSource& source);

class LocalPage final : public QWebEnginePage {
 public:
  LocalPage(QWebEngineProfile* profile, QObject* parent);
  void Load();  // what the source has

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}
};

// Returns a text as a script literal.
QString Literal(const QString& text);
QString Resource(const QString& name);
// Only loading a new document can change the doctype.
QStringView DoctypeOf(const QString& html);

}  // namespace kvo::editor
