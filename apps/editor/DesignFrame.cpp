#include "apps/editor/DesignFrame.h"

#include <QChildEvent>
#include <QLayout>
#include <QPainter>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace kvo::editor {
namespace {

constexpr double kSteps[] = {0.25, 0.33, 0.5, 0.67, 0.75, 0.8, 0.9, 1,
                             1.1,  1.25, 1.5, 1.75, 2,    2.5, 3,   4};
constexpr double kSmallest = kSteps[0];
constexpr double kTolerance = 0.005;

using std::chrono::milliseconds;

constexpr milliseconds kMeasureDelay(60);
// Measuring a large page takes a while, which should not come between two keys.
constexpr milliseconds kTypingDelay(300);
constexpr int kAttempts = 8;  // until the page has taken over what was set

// In quirks mode it is the body that scrolls.
constexpr char kMeasure[] =
    "(() => {"
    "  const root = document.scrollingElement || document.documentElement;"
    "  return [root.scrollWidth, root.clientWidth, innerWidth, devicePixelRatio];"
    "})()";

// In whole percents: a little too small rather than too wide.
double Rounded(double zoom) { return std::floor(zoom * 100 + 0.01) / 100; }

}  // namespace

DesignFrame::DesignFrame(QWidget& view, QWebEngineView& browser, QWidget* parent)
    : QWidget(parent), view_(view), browser_(browser) {
  view.setParent(this);
  setFocusProxy(&view);
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { Measure(); });
  connect(browser.page(), &QWebEnginePage::loadFinished, this, [this] {
    Forget();
    browser_.setZoomFactor(zoom_);  // a page begins with 100 %
    Place();
    MeasureSoon();
  });
  // The widget that draws the page and gets the mouse is added to the view later.
  browser.installEventFilter(this);
  for (QWidget* child : browser.findChildren<QWidget*>()) child->installEventFilter(this);
}

void DesignFrame::Show(PageWidth width) {
  width_ = width;
  chosenZoom_.reset();
  Forget();
  Place();
  MeasureSoon();
}

void DesignFrame::ZoomTo(double zoom) {
  chosenZoom_ = zoom;
  Place();
  MeasureSoon();
}

void DesignFrame::ZoomIn() {
  const auto* next =
      std::ranges::find_if(kSteps, [this](double step) { return step > zoom_ + kTolerance; });
  if (next != std::end(kSteps)) ZoomTo(*next);
}

void DesignFrame::ZoomOut() {
  const auto* next = std::ranges::lower_bound(kSteps, zoom_ - kTolerance);
  if (next != std::begin(kSteps)) ZoomTo(*(next - 1));
}

void DesignFrame::PageChanged() { Begin(kTypingDelay); }

int DesignFrame::Margin() const {
  const QMargins margins = view_.layout()->contentsMargins();
  return margins.left() + margins.right();
}

int DesignFrame::Room() const { return std::max(1, width() - Margin() - scrollBar_); }

double DesignFrame::WantedZoom() const {
  if (width_ == PageWidth::fit) {
    if (chosenZoom_) return *chosenZoom_;
    const bool tooWide = contentWidth_ > 0 && !grows_;
    return tooWide ? std::min(1.0, Rounded(Room() / contentWidth_)) : 1;
  }
  const double most = Rounded(Room() / static_cast<double>(width_));
  return std::min(chosenZoom_.value_or(1), most);
}

void DesignFrame::Place() {
  const double zoom = std::max(kSmallest, WantedZoom());
  int wide = width();
  if (width_ != PageWidth::fit)
    wide = std::min(wide, qRound(static_cast<double>(width_) * zoom) + scrollBar_ + Margin());
  view_.setGeometry((width() - wide) / 2, 0, wide, height());
  if (std::abs(browser_.zoomFactor() - zoom) > kTolerance) browser_.setZoomFactor(zoom);
  if (std::abs(zoom - zoom_) < kTolerance) return;
  zoom_ = zoom;
  if (onZoomed) onZoomed();
}

void DesignFrame::Forget() {
  contentWidth_ = 0;
  grows_ = false;
}

void DesignFrame::MeasureSoon() { Begin(kMeasureDelay); }

void DesignFrame::Begin(std::chrono::milliseconds delay) {
  attempts_ = kAttempts;
  fitted_ = false;
  timer_.start(delay);
}

void DesignFrame::Measure() {
  browser_.page()->runJavaScript(
      kMeasure, QWebEngineScript::ApplicationWorld,
      [this, alive = std::weak_ptr(alive_)](const QVariant& answer) {
        // The page answers while it is destroyed, too, which is after this object's members.
        const QVariantList list = answer.toList();
        if (alive.expired() || list.size() != 4) return;
        Measured({list[0].toDouble(), list[1].toDouble(), list[2].toDouble(),
                  list[3].toDouble() / devicePixelRatioF()});
      });
}

void DesignFrame::Measured(const Measures& page) {
  if (page.zoom <= 0 || page.shown <= 0) return;
  const double zoom = zoom_;
  const int bar = scrollBar_;
  scrollBar_ = qRound((page.window - page.shown) * page.zoom);
  const bool applied = std::abs(page.zoom - zoom) < kTolerance;
  // A page that became narrower is noticed only when it is loaded or shown anew, because looking
  // for that would have to zoom in first.
  if (applied && width_ == PageWidth::fit && !chosenZoom_ && page.content > page.shown) {
    if (std::exchange(fitted_, true)) grows_ = true;
    contentWidth_ = std::max(contentWidth_, page.content);
  }
  Place();
  const bool settled = std::abs(page.zoom - zoom_) < kTolerance &&
                       std::abs(zoom - zoom_) < kTolerance && bar == scrollBar_;
  if (!settled && --attempts_ > 0) timer_.start(kMeasureDelay);
}

void DesignFrame::resizeEvent(QResizeEvent*) {
  Place();
  MeasureSoon();
}

void DesignFrame::paintEvent(QPaintEvent* event) {
  QPainter(this).fillRect(event->rect(), palette().color(QPalette::Mid));
}

bool DesignFrame::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ChildAdded) {
    static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
  } else if (event->type() == QEvent::Wheel) {
    const auto* wheel = static_cast<QWheelEvent*>(event);
    if (wheel->modifiers() == Qt::ControlModifier) {
      if (wheel->angleDelta().y() > 0) ZoomIn();
      if (wheel->angleDelta().y() < 0) ZoomOut();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kvo::editor
