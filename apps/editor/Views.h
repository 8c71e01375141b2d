// The middle of the window: the design view with the source beside it, below it, or hidden.
#pragma once

#include <QMap>
#include <QSplitter>
#include <functional>

namespace kvo::editor {

class Views final : public QSplitter {
 public:
  enum class Layout { beside, below, alone };

  Views(QWidget* design, QWidget* source, QWidget* parent);

  // Shows the design view, and the source where it belongs.
  void Arrange(Layout layout);
  Layout Arranged() const { return layout_; }

  // Hiding one view shows the other.
  void ShowSource(bool shows);
  void ShowDesign(bool shows);

  // Layout and sizes are kept in the settings; `preset` applies without them.
  void Restore(Layout preset);
  void Remember();

  std::function<void()> onArranged;

 private:
  void KeepSizes();

  QWidget* design_;
  QWidget* source_;
  Layout layout_ = Layout::below;
  Layout withSource_ = Layout::below;  // used when the source is shown again
  QMap<Layout, QByteArray> sizes_;
};

}  // namespace kvo::editor
