// Shows the page as a browser renders it, with boxes in place of its controls. Runs no scripts of
// the page and never uses the network; loads pictures and style sheets from the page's folder.
#pragma once

#include <QWebEngineView>
#include <functional>
#include <memory>

#include "apps/editor/Analysis.h"

namespace kvo::editor {

// Call before creating the application object.
void PrepareDesignView();

class DesignView final : public QWidget {
 public:
  explicit DesignView(QWidget* parent);
  ~DesignView() override;

  // Sets the folder of the page's pictures; empty for none.
  void Folder(const QString& folder);
  // Shows the analysed page, updating only what changed.
  void Show(const Analysis& analysis);
  // Marks a box and scrolls to it; -1 for none.
  void Mark(int index);

  std::function<void(int index)> onBoxClicked;
  std::function<void(int index)> onBoxDoubleClicked;
  // The displayed revision of the page; -1 before the first.
  int ShownRevision() const { return shownRevision_; }

  QWebEngineView& View() { return *view_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  class Bridge;
  class Page;
  class Source;

  void Reload();
  void Loaded();
  void Run(const QString& script);

  std::unique_ptr<Source> source_;
  std::unique_ptr<QWebEngineProfile> profile_;
  std::unique_ptr<Bridge> bridge_;
  QWebEngineView* view_;
  bool loaded_ = false;
  QString design_;
  int revision_ = 0;
  int shownRevision_ = -1;
  int marked_ = -1;
};

}  // namespace kvo::editor
