#include "apps/editor/DesignView.h"

#include <QBuffer>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QPainter>
#include <QToolTip>
#include <QWebEngineUrlRequestJob>

#include "apps/editor/SourceEdit.h"
#include "apps/editor/Toolbox.h"
#include "apps/editor/Words.h"
#include "host/qt/BoxPainter.h"
#include "host/qt/QtText.h"

namespace kvo::editor {

// Also draws the boxes.
class DesignView::Source final : public PageSource {
 public:
  void requestStarted(QWebEngineUrlRequestJob* job) override {
    const QString url = job->requestUrl().toString();
    if (!url.startsWith(kBoxUrl)) return PageSource::requestStarted(job);
    ReplyBox(job, url.mid(QString(kBoxUrl).size()));
  }

  QHash<QString, Box> boxes;

 private:
  // `name` is the key of the box, "/" and the scale.
  void ReplyBox(QWebEngineUrlRequestJob* job, const QString& name) const {
    constexpr int kLargest = 4;
    const auto box = boxes.find(name.section('/', 0, 0));
    const int scale = std::clamp(name.section('/', 1).toInt(), 1, kLargest);
    if (box == boxes.end()) return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    const QSize size = (BoxSize(*box, nullptr) * scale).toSize();
    QImage picture(size.expandedTo({1, 1}), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPalette palette = QGuiApplication::palette();  // the mail is white on a dark desktop, too
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    QPainter painter(&picture);
    PaintBox(painter, *box, QRectF(QPointF(), QSizeF(size)), false, palette);
    painter.end();
    QBuffer png;
    picture.save(&png, "PNG");
    Reply(job, "image/png", png.data());
  }
};

// Makes the Tab key wrap around inside the view. It must not move into the source, which would
// receive the next keys as text. Accepts drags from the toolbox and from source views. Explains the
// problems under the pointer.
class DesignView::Browser final : public QWebEngineView {
 public:
  explicit Browser(DesignView& view) : view_(view) {}

 protected:
  bool focusNextPrevChild(bool) override { return true; }
  bool event(QEvent* event) override {
    QStringList tips;
    if (event->type() == QEvent::ToolTip)
      for (const std::size_t problem : view_.pointed_)
        if (problem < view_.problems_.size()) tips.append(view_.problems_[problem].tip);
    if (tips.isEmpty()) return QWebEngineView::event(event);
    QToolTip::showText(dynamic_cast<QHelpEvent&>(*event).globalPos(), ToolTipOf(tips.join("\n\n")),
                       this);
    return true;
  }
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (!IsOurs(*event->mimeData())) return QWebEngineView::dragEnterEvent(event);
    event->acceptProposedAction();
  }
  void dragMoveEvent(QDragMoveEvent* event) override {
    if (!IsOurs(*event->mimeData())) return QWebEngineView::dragMoveEvent(event);
    view_.PointAt(mapTo(&view_, event->position().toPoint()), [](bool) {});
    event->setDropAction(Qt::CopyAction);
    event->accept();
  }
  void dropEvent(QDropEvent* event) override {
    const QMimeData& dragged = *event->mimeData();
    if (!IsOurs(dragged)) return QWebEngineView::dropEvent(event);
    const bool isTool = dragged.hasFormat(kToolType);
    const QString value = QString::fromUtf8(dragged.data(isTool ? kToolType : kFragmentType));
    event->setDropAction(Qt::CopyAction);
    event->accept();
    view_.PointAt(mapTo(&view_, event->position().toPoint()), [this, isTool, value](bool hit) {
      if (hit) view_.Perform(isTool ? "tool" : "fragment", value);
    });
  }

 private:
  // Whether it comes from the toolbox or from a source view.
  static bool IsOurs(const QMimeData& dragged) {
    return dragged.hasFormat(kToolType) || dragged.hasFormat(kFragmentType);
  }

  DesignView& view_;
};

design::RenderedPlace ReadPlace(const QJsonObject& object) {
  design::RenderedPlace place;
  for (const QJsonValue& level : object["path"].toArray())
    place.path.push_back({static_cast<std::uint32_t>(level[0].toDouble()),
                          static_cast<std::uint32_t>(level[1].toDouble())});
  const QString kind = object["kind"].toString();
  place.kind = kind == "text"    ? design::RenderedPlace::Kind::text
               : kind == "blank" ? design::RenderedPlace::Kind::blank
                                 : design::RenderedPlace::Kind::gap;
  place.offset = static_cast<std::size_t>(std::max(0, object["offset"].toInt()));
  place.hash = static_cast<std::uint32_t>(object["hash"].toDouble());
  return place;
}

QString Written(const design::RenderedPlace& place) {
  QJsonArray path;
  for (const design::RenderedPlace::Level& level : place.path)
    path.append(QJsonArray{static_cast<double>(level.child), static_cast<double>(level.names)});
  const char* kind = place.kind == design::RenderedPlace::Kind::text    ? "text"
                     : place.kind == design::RenderedPlace::Kind::blank ? "blank"
                                                                        : "gap";
  const QJsonObject object{{"path", path},
                           {"kind", kind},
                           {"offset", static_cast<int>(place.offset)},
                           {"hash", static_cast<double>(place.hash)}};
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

DesignMessage Message(int number, int revision, const QJsonObject& from, const QJsonObject& to) {
  return {number, revision, ReadPlace(from), ReadPlace(to)};
}

// Called by the script in the view.
class DesignView::Bridge final : public QObject {
  Q_OBJECT
 public:
  explicit Bridge(DesignView& view) : view_(view) {}

  Q_INVOKABLE void Clicked(int index) const {
    if (view_.onBoxClicked) view_.onBoxClicked(index);
  }
  Q_INVOKABLE void DoubleClicked(int index) const {
    if (view_.onBoxDoubleClicked) view_.onBoxDoubleClicked(index);
  }
  Q_INVOKABLE void Shown(int revision) { view_.shownRevision_ = revision; }
  Q_INVOKABLE void Edited(int number, int revision, const QJsonObject& place, int begin, int end,
                          const QString& text) const {
    if (view_.onEdited) view_.onEdited(Message(number, revision, place, place), begin, end, text);
  }
  Q_INVOKABLE void Command(int number, int revision, const QString& name, const QJsonObject& from,
                           const QJsonObject& to, const QString& value) const {
    if (view_.onCommand) view_.onCommand(Message(number, revision, from, to), name, value);
  }
  Q_INVOKABLE void Moved(int number, int revision, const QJsonObject& from, const QJsonObject& to,
                         const QJsonObject& at) const {
    if (view_.onMoved) view_.onMoved(Message(number, revision, from, to), ReadPlace(at));
  }
  Q_INVOKABLE void Selected(int number, int revision, const QJsonObject& from,
                            const QJsonObject& to) const {
    if (view_.onSelected) view_.onSelected(Message(number, revision, from, to));
  }
  Q_INVOKABLE void QuietlySelected() const {
    if (view_.onQuietlySelected) view_.onQuietlySelected();
  }
  Q_INVOKABLE void Asked(int revision, const QJsonObject& place) const {
    if (view_.onAsked) view_.onAsked(Message(0, revision, place, place));
  }
  // The numbers of the problems that are marked under the pointer.
  Q_INVOKABLE void Pointed(const QJsonArray& problems) const {
    view_.pointed_.clear();
    for (const QJsonValue& number : problems)
      view_.pointed_.push_back(static_cast<std::size_t>(number.toInt()));
  }

 private:
  DesignView& view_;
};

DesignView::DesignView(QWidget* parent) : DesignView(parent, new Source) {}

DesignView::DesignView(QWidget* parent, Source* source)
    : LocalView(parent, Text(words::kDesign), new Browser(*this),
                std::unique_ptr<PageSource>(source), std::make_unique<Bridge>(*this)),
      source_(*source) {}

void DesignView::Show(const Analysis& analysis, bool written) {
  design_ = analysis.design;
  revision_ = analysis.revision;
  answered_ = analysis.answered;
  source_.boxes = analysis.boxes;
  problems_ = analysis.marks;
  if (analysis.first || DoctypeOf(design_) != DoctypeOf(LoadedHtml())) return Reload();
  if (!IsLoaded()) return;  // Loaded() will show the latest state
  const Splice& change = analysis.designChange;
  Run(QString("kvo.splice(%1,%2,%3,%4,%5,%6)")
          .arg(change.at)
          .arg(change.removed)
          .arg(revision_)
          .arg(Literal(change.added))
          .arg(analysis.answered)
          .arg(written ? "true" : "false"));
  if (!written) wholeRevision_ = revision_;
  ShowProblems();
}

void DesignView::Reload() {
  missed_ = false;
  wholeRevision_ = -1;
  Load(design_);
}

void DesignView::Loaded() {
  RunResource(":/editor/design.js");
  Run(QString("kvo.begin(%1,%2,%3,%4)")
          .arg(LoadedHtml() == design_ ? "true" : "false")
          .arg(revision_)
          .arg(Literal(design_))
          .arg(answered_));
  wholeRevision_ = std::exchange(missed_, false) ? -1 : revision_;
  if (marked_ >= 0) Mark(marked_);
  marksProblems_ = false;
  ShowProblems();
  if (onQuietlySelected) onQuietlySelected();  // the former document cannot say it any more
}

void DesignView::ShowProblems() {
  if (problems_.empty() && !marksProblems_) return;
  marksProblems_ = !problems_.empty();
  QStringList marks;
  for (const ProblemMark& mark : problems_)
    marks.append(QString("{\"box\":%1,\"place\":%2,\"error\":%3}")
                     .arg(mark.box)
                     .arg(Written(mark.place), mark.isError ? "true" : "false"));
  Run("kvo.problems([" + marks.join(',') + "])");
}

void DesignView::Mark(int index) {
  marked_ = index;
  if (IsLoaded()) Run(QString("kvo.mark(%1)").arg(index));
}

void DesignView::Wait() { Run("kvo.wait()"); }

void DesignView::Settle(int number) { Run(QString("kvo.settle(%1)").arg(number)); }

void DesignView::Refuse(int number, int revision) {
  Run(QString("kvo.refuse(%1,%2)").arg(number).arg(revision));
}

void DesignView::Write(const design::RenderedPlace& place, const QString& text, int revision) {
  if (!IsLoaded()) {
    missed_ = true;
    return;
  }
  Run(QString("kvo.write(%1,%2,%3)").arg(Written(place), Literal(text)).arg(revision));
}

void DesignView::Select(const design::RenderedPlace& from, const design::RenderedPlace& to,
                        bool quietly) {
  Run(QString("kvo.select(%1,%2,%3)").arg(Written(from), Written(to), quietly ? "true" : "false"));
}

void DesignView::ShowPointer(bool editable) {
  Run(QString("kvo.pointer(%1)").arg(editable ? "true" : "false"));
}

void DesignView::Arm(bool on) { Run(QString("kvo.arm(%1)").arg(on ? "true" : "false")); }

void DesignView::Perform(const QString& name, const QString& value) {
  Run(QString("kvo.run(%1,%2)").arg(Literal(name), Literal(value)));
}

void DesignView::SelectAll() { View().page()->triggerAction(QWebEnginePage::SelectAll); }

void DesignView::PointAt(const QPoint& point, std::function<void(bool)> done) {
  const QPointF at = QPointF(View().mapFrom(this, point)) / View().zoomFactor();
  View().page()->runJavaScript(
      QString("kvo.pointAt(%1,%2)").arg(at.x()).arg(at.y()), kScriptWorld,
      [done = std::move(done)](const QVariant& hit) { done(hit.toBool()); });
}

}  // namespace kvo::editor

#include "DesignView.moc"
