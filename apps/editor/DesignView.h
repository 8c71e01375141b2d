// The page as a browser renders it, with the boxes of the controls in place. Nothing in the page
// runs, and nothing reaches the network; pictures and style sheets come from the page's own folder.
#pragma once

#include <QWebEngineView>
#include <functional>
#include <memory>

#include "apps/editor/Analysis.h"

namespace kvo::editor {

// Must be called before the application object is made.
void PrepareDesignView();

class DesignView final : public QWidget {
 public:
  explicit DesignView(QWidget* parent);
  ~DesignView() override;

  // Where the page's pictures are; empty: nowhere.
  void Folder(const QString& folder);
  // Shows what the analysis made of the page, changing only what changed.
  void Show(const Analysis& analysis);
  // Marks one box and scrolls to it; -1: none.
  void Mark(int index);

  std::function<void(int index)> onBoxClicked;
  std::function<void(int index)> onBoxDoubleClicked;
  // The revision of the page that shows; -1: none yet.
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
