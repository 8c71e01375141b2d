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

  // The one that stays shows if the other one is hidden.
  void ShowSource(bool shows);
  void ShowDesign(bool shows);

  // Layout and sizes are kept in the settings; `preset` is for who has none there.
  void Restore(Layout preset);
  void Remember();

  std::function<void()> onArranged;

 private:
  void KeepSizes();

  QWidget* design_;
  QWidget* source_;
  Layout layout_ = Layout::below;
  Layout withSource_ = Layout::below;  // where the source shows when it shows again
  QMap<Layout, QByteArray> sizes_;
};

}  // namespace kvo::editor
