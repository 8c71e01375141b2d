// Shows a rendered mail as a mail program would. Runs no scripts of the mail and never uses the
// network; loads pictures and style sheets from the page's folder.
#pragma once

#include <QLabel>
#include <functional>

#include "apps/editor/LocalBrowser.h"
#include "apps/editor/PreviewWork.h"

namespace kvo::editor {

class PreviewView final : public LocalView {
 public:
  explicit PreviewView(QWidget* parent);

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

 private:
  class Bridge;

  void Reload();
  void Loaded() override;
  // Covers the view with its present picture until the page is loaded anew.
  void Cover();

  QLabel* cover_;
  QPointF scrolled_;  // where the page is scrolled to, in its own pixels
  bool dark_ = false;
  bool pictures_ = true;
  QString html_;
  int revision_ = -1;
  int shownRevision_ = -1;
  int marked_ = -1;
};

}  // namespace kvo::editor
