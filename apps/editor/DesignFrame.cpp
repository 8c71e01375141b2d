#include "apps/editor/DesignFrame.h"

#include <QChildEvent>
#include <QLayout>
#include <QPainter>
#include <QSettings>
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
constexpr char kPageWidth[] = "pageWidth";
constexpr double kUsualMargins = 16;  // of a body without style, both sides together
constexpr double kSmallest = kSteps[0];
constexpr double kTolerance = 0.005;

using std::chrono::milliseconds;

constexpr milliseconds kMeasureDelay(60);
// Measuring a large page takes a while, which should not come between two keys.
constexpr milliseconds kTypingDelay(300);
constexpr int kAttempts = 8;  // until the page has taken over what was set

// In quirks mode it is the body that scrolls. The last number is the width that the page would need
// in a view of %1 pixels; 0 when nobody asks, because the browser has to lay it out twice for that.
constexpr char kMeasure[] =
    "(() => {"
    "  const root = document.scrollingElement || document.documentElement;"
    "  const body = document.body && getComputedStyle(document.body);"
    "  const margin = body ? parseFloat(body.marginLeft) + parseFloat(body.marginRight) : 0;"
    "  return [root.scrollWidth, root.clientWidth, innerWidth, devicePixelRatio, margin,"
    "          %1 && body && document.getElementsByTagName('*').length < 5000 ? needed(%1) : 0];"
    "  function needed(room) {"
    "    const [x, y] = [scrollX, scrollY];"
    "    const narrow = new CSSStyleSheet();"
    "    narrow.replaceSync('html{max-width:' + room + 'px!important}');"
    "    const sheets = document.adoptedStyleSheets;"
    "    document.adoptedStyleSheets = [...sheets, narrow];"
    "    const inner = root === document.body ? document.documentElement : document.body;"
    "    const width = Math.ceil(inner.getBoundingClientRect().left + scrollX + inner.scrollWidth);"
    "    document.adoptedStyleSheets = sheets;"
    "    scrollTo(x, y);"
    "    return Math.max(room, width);"
    "  }"
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

void DesignFrame::Restore() {
  for (const PageWidth width : {PageWidth::fit, PageWidth::mail, PageWidth::phone})
    if (QSettings().value(kPageWidth).toInt() == static_cast<int>(width)) width_ = width;
}

void DesignFrame::Remember() const { QSettings().setValue(kPageWidth, static_cast<int>(width_)); }

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

double DesignFrame::OwnWidth() const {
  return static_cast<double>(width_) + (width_ == PageWidth::mail ? bodyMargin_ : 0);
}

double DesignFrame::WantedZoom() const {
  if (width_ == PageWidth::fit) {
    if (chosenZoom_) return *chosenZoom_;
    const bool tooWide = contentWidth_ > 0 && !grows_;
    return tooWide ? std::min(1.0, Rounded(Room() / contentWidth_)) : 1;
  }
  const double most = Rounded(Room() / OwnWidth());
  return std::min(chosenZoom_.value_or(1), most);
}

void DesignFrame::Place() {
  const double zoom = std::max(kSmallest, WantedZoom());
  int wide = width();
  if (width_ != PageWidth::fit)
    wide = std::min(wide, qRound(OwnWidth() * zoom) + scrollBar_ + Margin());
  view_.setGeometry((width() - wide) / 2, 0, wide, height());
  if (std::abs(browser_.zoomFactor() - zoom) > kTolerance) browser_.setZoomFactor(zoom);
  if (std::abs(zoom - zoom_) < kTolerance) return;
  zoom_ = zoom;
  if (onZoomed) onZoomed();
}

void DesignFrame::Forget() {
  contentWidth_ = 0;
  bodyMargin_ = 0;
  grows_ = false;
}

void DesignFrame::MeasureSoon() { Begin(kMeasureDelay); }

void DesignFrame::Begin(std::chrono::milliseconds delay) {
  attempts_ = kAttempts;
  fitted_ = false;
  timer_.start(delay);
}

void DesignFrame::Measure() {
  const bool zoomedOut = width_ == PageWidth::fit && !chosenZoom_ && !grows_ && contentWidth_ > 0;
  browser_.page()->runJavaScript(
      QString(kMeasure).arg(zoomedOut ? Room() : 0), QWebEngineScript::ApplicationWorld,
      [this, alive = std::weak_ptr(alive_)](const QVariant& answer) {
        // The page answers while it is destroyed, too, which is after this object's members.
        const QVariantList list = answer.toList();
        if (alive.expired() || list.size() != 6) return;
        Measured({list[0].toDouble(), list[1].toDouble(), list[2].toDouble(),
                  list[3].toDouble() / devicePixelRatioF(), list[4].toDouble(),
                  list[5].toDouble()});
      });
}

void DesignFrame::Measured(const Measures& page) {
  if (page.zoom <= 0 || page.shown <= 0) return;
  const double zoom = zoom_;
  const int bar = scrollBar_;
  scrollBar_ = qRound((page.window - page.shown) * page.zoom);
  const bool applied = std::abs(page.zoom - zoom) < kTolerance;
  const double margin = bodyMargin_;
  if (width_ == PageWidth::mail && page.content > page.shown &&
      page.content - page.shown <= std::min(page.margin, kUsualMargins))
    bodyMargin_ = page.margin;
  if (applied && width_ == PageWidth::fit && !chosenZoom_ && page.content > page.shown) {
    if (std::exchange(fitted_, true)) grows_ = true;
    contentWidth_ = std::max(contentWidth_, page.content);
  } else if (applied && page.needed > 0 && page.needed < contentWidth_ && !fitted_) {
    contentWidth_ = page.needed;
  }
  Place();
  const bool settled = std::abs(page.zoom - zoom_) < kTolerance &&
                       std::abs(zoom - zoom_) < kTolerance && bar == scrollBar_ &&
                       margin == bodyMargin_;
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
