// The middle of the window: the design view with the source beside it, below it, or hidden; or the
// preview, with the views beside it that the author writes in.
#pragma once

#include <QMap>
#include <QSplitter>
#include <functional>

namespace kvo::editor {

class Views final : public QSplitter {
 public:
  enum class Layout { beside, below, alone, preview };

  Views(QWidget* design, QWidget* source, QWidget* preview, QWidget* parent);

  // Shows the design view, and the source where it belongs.
  void Arrange(Layout layout);
  Layout Arranged() const { return layout_; }
  bool IsSourceHidden() const { return source_->isHidden(); }

  // Hiding one view shows the other, unless the preview shows.
  void ShowSource(bool shows);
  void ShowDesign(bool shows);
  // Hiding it arranges the views as before.
  void ShowPreview(bool shows);

  // Layout and sizes are kept in the settings; `preset` applies without them.
  void Restore(Layout preset);
  void Remember();

  std::function<void()> onArranged;

 private:
  void KeepSizes();

  QWidget* design_;
  QWidget* source_;
  QWidget* preview_;
  Layout layout_ = Layout::below;
  Layout withSource_ = Layout::below;  // used when the source is shown again
  Layout former_ = Layout::below;      // used when the preview is hidden
  bool designInPreview_ = false;
  bool sourceInPreview_ = false;
  QMap<Layout, QByteArray> sizes_;
};

}  // namespace kvo::editor
