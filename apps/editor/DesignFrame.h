// The ground of a view of the page: gives the page a width of its own, and zooms it.
#pragma once

#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QWebEngineView;

namespace kvo::editor {

class DesignFrame final : public QWidget {
 public:
  // In pixels of the page; with `fit` the page is as wide as the view, and as small as it takes to
  // see all of it.
  enum class PageWidth { fit = 0, mail = 600, phone = 360 };

  // `view` shows the page in `browser`, which is inside of it.
  DesignFrame(QWidget& view, QWebEngineView& browser, QWidget* parent);

  void Show(PageWidth width);
  PageWidth Shown() const { return width_; }
  // Keeps the width in the settings.
  void Restore();
  void Remember() const;

  double Zoom() const { return zoom_; }
  // A page of a width of its own is never zoomed beyond the view.
  void ZoomTo(double zoom);
  void ZoomIn();
  void ZoomOut();

  // Call it when the text of the page changed.
  void PageChanged();

  std::function<void()> onZoomed;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Measured in the page, in its own pixels.
  struct Measures {
    double content = 0;  // the width that its content needs
    double shown = 0;    // the width for it
    double window = 0;   // the same with the scroll bar
    double zoom = 0;
    double margin = 0;  // of the body, both sides together
    double needed = 0;  // the width that it would need at 100 %; 0 when unknown
  };
  void Measure();
  void Measured(const Measures& page);
  void MeasureSoon();
  void Begin(std::chrono::milliseconds delay);
  // What is known about the page's width.
  void Forget();
  // Applies width and zoom.
  void Place();
  double WantedZoom() const;
  int Room() const;    // for the page, without scroll bar
  int Margin() const;  // of the view around the page, both sides together
  // The width that was chosen. Body margins are added to the 600 pixels of a mail that fills them,
  // so that a table of that width fits.
  double OwnWidth() const;

  QWidget& view_;
  QWebEngineView& browser_;
  PageWidth width_ = PageWidth::fit;
  std::optional<double> chosenZoom_;  // unset: as large as fits, at most 100 %
  double zoom_ = 1;
  double contentWidth_ = 0;  // of a page that was wider than the view
  bool fitted_ = false;      // since the last change, to that width
  bool grows_ = false;       // the page is always wider than the view, so zooming out is no use
  double bodyMargin_ = 0;    // added to a mail's width
  int scrollBar_ = 0;
  int attempts_ = 0;
  QTimer timer_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>();
};

}  // namespace kvo::editor
