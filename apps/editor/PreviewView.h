// Shows a rendered mail as a mail program would. Runs no scripts of the mail and never uses the
// network; loads pictures and style sheets from the page's folder.
#pragma once

#include <QLabel>
#include <QWebEngineView>
#include <functional>
#include <memory>

#include "apps/editor/PreviewWork.h"

namespace kvo::editor {

class LocalPage;
class PageSource;

class PreviewView final : public QWidget {
 public:
  explicit PreviewView(QWidget* parent);
  ~PreviewView() override;

  // Sets the folder of the page's pictures; empty for none.
  void Folder(const QString& folder);
  // Updates only what changed; keeps the scroll position within a page.
  void Show(const PreviewResult& result);
  // Outlines what a control became; -1 for none.
  void Mark(int control, bool scrolls);
  void ShowDark(bool dark);
  void ShowPictures(bool shows);

  std::function<void(int control)> onClicked;
  // Whether the mail is dark by its own style rules.
  std::function<void(bool)> onScheme;
  // The displayed revision of the page; -1 before the first.
  int ShownRevision() const { return shownRevision_; }

  QWebEngineView& View() { return *view_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  class Bridge;

  void Reload();
  void Loaded();
  // Covers the view with its present picture until the page is loaded anew.
  void Cover();
  void Run(const QString& script);

  std::unique_ptr<PageSource> source_;
  std::unique_ptr<QWebEngineProfile> profile_;
  std::unique_ptr<Bridge> bridge_;
  QWebEngineView* view_;
  LocalPage* page_;
  QLabel* cover_;
  QPointF scrolled_;  // where the page is scrolled to, in its own pixels
  bool loaded_ = false;
  bool dark_ = false;
  bool pictures_ = true;
  QString html_;
  int revision_ = -1;
  int shownRevision_ = -1;
  int marked_ = -1;
};

}  // namespace kvo::editor
