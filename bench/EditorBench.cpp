// Measures the editor on a large page, 2,000 controls in 2 MB of text: from opening it until the
// source is painted, and from a key press until it is painted and until the design view and the
// preview show it.
//
// Times are wall-clock times of the real window, with the analysis running in the background. There
// is no display, so they leave out the graphics card.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/editor/DesignView.h"
#include "apps/editor/LocalBrowser.h"
#include "apps/editor/MainWindow.h"
#include "apps/editor/PreviewPanel.h"
#include "apps/editor/PreviewView.h"
#include "apps/editor/Views.h"
#include "host/qt/TahomaFont.h"
#include "host/registration/classes.h"

namespace kvo::editor {
namespace {

constexpr int kControls = 2000;
constexpr std::size_t kPageSize = 2000000;

std::string LargePage() {
  const std::string line =
      "  <td class=\"text\">Aus Kenia und &Auml;thiopien, frisch <b>ger&ouml;stet</b> im "
      "Hafen</td>\n";
  std::string page = "<html><body><table>\n";
  const std::size_t perControl = kPageSize / kControls;
  for (int control = 0; control < kControls; ++control) {
    const std::size_t begin = page.size();
    const std::string number = std::to_string(control);
    page += "<tr><td><object classid=\"progid:KVOPDesignObjects.DTCPrint\" id=\"P" + number +
            "\"><param name=\"value\" value=\"#order.total" + number + "#\"></object></td>\n";
    while (page.size() - begin + line.size() < perControl) page += line;
    page += "</tr>\n";
  }
  return page + "</table></body></html>\n";
}

// One window for all benchmarks, because the process starts with only one as well.
class Bench {
 public:
  Bench() : platform_(CreatePage), scope_(platform_) {
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder_.path());
    QFile file(page);
    if (file.open(QIODevice::WriteOnly)) file.write(QByteArray::fromStdString(LargePage()));
    file.close();
    window =
        std::make_unique<MainWindow>(platform_, Session::Places{folder_.filePath("drafts"), {}});
    window->resize(1400, 900);
    window->show();
    window->activateWindow();
    static_cast<void>(QTest::qWaitForWindowActive(window.get()));
  }
  ~Bench() { window->Page().Document()->setModified(false); }

  bool Follows() const { return window->Design().ShownRevision() == window->Page().Revision(); }
  void Settle() {
    while (!Follows()) QTest::qWait(5);
    QTest::qWait(100);
  }

 private:
  QTemporaryDir folder_;
  QtPlatform platform_;
  PlatformScope scope_;

 public:
  const QString page = folder_.filePath("large.html");
  std::unique_ptr<MainWindow> window;
};

Bench* bench = nullptr;

// Collects the times of one benchmark; reports their median and maximum as counters, in
// milliseconds.
class Times {
 public:
  explicit Times(benchmark::State& state) : state_(state) {}
  ~Times() {
    std::ranges::sort(milliseconds_);
    if (milliseconds_.empty()) return;
    state_.counters["median_ms"] = milliseconds_[milliseconds_.size() / 2];
    state_.counters["longest_ms"] = milliseconds_.back();
  }
  void Add(const QElapsedTimer& timer) { Add(timer.nsecsElapsed()); }
  void Add(qint64 nanoseconds) {
    const double seconds = static_cast<double>(nanoseconds) / 1e9;
    state_.SetIterationTime(seconds);
    milliseconds_.push_back(seconds * 1000);
  }

 private:
  benchmark::State& state_;
  std::vector<double> milliseconds_;
};

void Open(benchmark::State& state) {
  Times times(state);
  for (auto _ : state) {
    bench->window->Page().Document()->setModified(false);
    QElapsedTimer timer;
    timer.start();
    if (!bench->window->Work().Open(bench->page)) state.SkipWithError("cannot open the page");
    QCoreApplication::processEvents();
    bench->window->Source().repaint();
    times.Add(timer);
    bench->Settle();
  }
}
BENCHMARK(Open)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

// The keys of words of five letters. A longer one would widen the table, and zoom the page anew.
Qt::Key NextKey() {
  static int keys = 0;
  return ++keys % 6 == 0 ? Qt::Key_Space : Qt::Key_X;
}

// Records whether a widget was painted.
class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  bool painted = false;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    painted |= event->type() == QEvent::Paint;
    return false;
  }
};

void Key(benchmark::State& state) {
  SourceEdit& source = bench->window->Source();
  const QString& text = bench->window->Page().Content().Text();
  PaintWatch watch(*source.viewport());
  source.GoTo(static_cast<int>(text.indexOf("frisch", text.size() / 2)));
  bench->Settle();
  Times times(state);
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    watch.painted = false;
    QTest::keyClick(&source, NextKey());
    while (!watch.painted) QCoreApplication::processEvents();
    times.Add(timer);
    // Types at a fast typist's speed, so that the analysis and the views run in between.
    QTest::qWait(60);
  }
  bench->Settle();
}
BENCHMARK(Key)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);

void Follow(benchmark::State& state) {
  SourceEdit& source = bench->window->Source();
  bench->Settle();
  Times times(state);
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    QTest::keyClick(&source, NextKey());
    while (!bench->Follows()) QTest::qWait(1);
    times.Add(timer);
    QTest::qWait(100);
  }
}
BENCHMARK(Follow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

// --- a key in the design view ---

// Runs a script in the view and waits for what it returns.
QVariant Ask(const QString& script) {
  std::optional<QVariant> answer;
  bench->window->Design().View().page()->runJavaScript(
      script, QWebEngineScript::ApplicationWorld,
      [&answer](const QVariant& value) { answer = value; });
  while (!answer) QTest::qWait(1);
  return *answer;
}

void StandInDesign() {
  bench->window->Design().setFocus();
  bench->Settle();
  Ask("{ const walker = document.createTreeWalker(document.body, 4);"
      "const all = []; while (walker.nextNode()) if (walker.currentNode.data.includes('frisch'))"
      "all.push(walker.currentNode); getSelection().collapse(all[all.length >> 1], 5); 0 }");
  bench->Settle();
}

// Until the source has the key.
void DesignKey(benchmark::State& state) {
  StandInDesign();
  Times times(state);
  for (auto _ : state) {
    const int revision = bench->window->Page().Revision();
    QElapsedTimer timer;
    timer.start();
    QTest::keyClick(QApplication::focusWidget(), NextKey());
    while (bench->window->Page().Revision() == revision) QTest::qWait(1);
    times.Add(timer);
    QTest::qWait(60);
  }
  bench->Settle();
}
BENCHMARK(DesignKey)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);

// The longest time for which the window does nothing else while a key becomes an edit.
void DesignWindow(benchmark::State& state) {
  StandInDesign();
  Times times(state);
  for (auto _ : state) {
    const int revision = bench->window->Page().Revision();
    QTest::keyClick(QApplication::focusWidget(), NextKey());
    QElapsedTimer timer;
    do {
      QThread::usleep(200);
      timer.start();
      QCoreApplication::processEvents();
    } while (bench->window->Page().Revision() == revision);
    times.Add(timer);
    QTest::qWait(60);
  }
  bench->Settle();
}
BENCHMARK(DesignWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(50);

// --- the preview ---

// Shows the preview beside the source.
void StandInPreview() {
  MainWindow& window = *bench->window;
  window.Middle().ShowPreview(true);
  window.Middle().ShowSource(true);
  window.Source().setFocus();
  const auto follows = [&window] {
    return window.Preview().View().ShownRevision() == window.Page().Revision();
  };
  while (!follows()) QTest::qWait(5);
  QTest::qWait(500);
}

// From a key in the source until the preview shows it.
void PreviewFollow(benchmark::State& state) {
  StandInPreview();
  SourceEdit& source = bench->window->Source();
  Times times(state);
  for (auto _ : state) {
    QElapsedTimer timer;
    timer.start();
    QTest::keyClick(&source, Qt::Key_X);
    while (bench->window->Preview().View().ShownRevision() != bench->window->Page().Revision())
      QTest::qWait(1);
    times.Add(timer);
    QTest::qWait(300);
  }
}
BENCHMARK(PreviewFollow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

// The longest time for which the window does nothing else while the preview follows a key.
void PreviewWindow(benchmark::State& state) {
  StandInPreview();
  SourceEdit& source = bench->window->Source();
  Times times(state);
  for (auto _ : state) {
    QTest::keyClick(&source, Qt::Key_X);
    qint64 most = 0;
    do {
      QThread::usleep(200);
      QElapsedTimer timer;
      timer.start();
      QCoreApplication::processEvents();
      most = std::max(most, timer.nsecsElapsed());
    } while (bench->window->Preview().View().ShownRevision() != bench->window->Page().Revision());
    times.Add(most);
    QTest::qWait(300);
  }
  bench->window->Middle().ShowPreview(false);
}
BENCHMARK(PreviewWindow)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
}  // namespace kvo::editor

int main(int argc, char** argv) {
  using namespace kvo::editor;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  PrepareBrowsers();
  QApplication application(argc, argv);
  QApplication::setOrganizationName("KVOPDesignObjects");
  QApplication::setApplicationName("kvo-editor-bench");
  kvo::LoadTahoma();
  benchmark::Initialize(&argc, argv);
  Bench bench_;
  bench = &bench_;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
