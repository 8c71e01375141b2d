#include "apps/editor/Analysis.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QMetaObject>
#include <algorithm>
#include <utility>

#include "apps/editor/SourceLines.h"
#include "common/values/RuntimeError.h"
#include "document/check/Check.h"
#include "document/page/Page.h"
#include "host/headless/BoxPicture.h"
#include "host/headless/Xml.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

// Returns the design view's box for a control that cannot be loaded.
Box BrokenBox(const std::string& className) {
  constexpr int kMargin = 90;
  constexpr int kHeight = 390;
  const std::string caption = className + " ?";
  const int width = ThePlatform().TextWidth(caption, FontWeight::bold) + 2 * kMargin;
  Box box{
      width,
      kHeight,
      {kTwipsPerPixel, kTwipsPerPixel, width - 2 * kTwipsPerPixel, kHeight - 2 * kTwipsPerPixel},
      {}};
  box.labels.push_back({"lblBasename",
                        caption,
                        FontWeight::bold,
                        {kMargin, kMargin, width - 2 * kMargin, kHeight - 2 * kMargin}});
  return box;
}

Box BoxOf(const page::FoundControl& found) {
  if (found.contract != nullptr && !found.broken) {
    try {
      return page::Load(*found.contract, found.bag)->DesignTimeBox();
    } catch (const RuntimeError&) {
    }
  }
  return BrokenBox(found.className);
}

QString CaptionOf(const Box& box) {
  QString caption;
  for (const Box::Label& label : box.labels) {
    if (label.caption.empty()) continue;
    if (!caption.isEmpty()) caption += ' ';
    caption += ToQt(label.caption);
  }
  return caption;
}

void AppendUtf8Of(std::string_view bytes, const page::PageEncoding& encoding, std::string& utf8) {
  while (!bytes.empty()) {
    const std::size_t bad = encoding.Decode(bytes, utf8);
    if (bad == std::string_view::npos) return;
    utf8 += "\xEF\xBF\xBD";
    bytes.remove_prefix(bad + 1);
  }
}

// Writes the page with a box in place of each control.
class DesignWriter {
 public:
  explicit DesignWriter(const page::Page& page)
      : page_(page), at_(page::PageEncoding::Mark(page.Bytes())) {}

  void Replace(const page::FoundControl& found, const Box& box) {
    CopyTo(found.begin);
    std::string attributes =
        "data-kvo=\"" + std::to_string(found.index) + "\" role=\"img\" " + "aria-label=\"";
    AppendXml(attributes, found.className + ' ' + found.id);
    AppendInlineBox(html_, box, attributes + '"');
    at_ = found.end;
  }
  QString Take() {
    CopyTo(page_.Bytes().size());
    return ToQt(html_);
  }

 private:
  void CopyTo(std::size_t end) {
    AppendUtf8Of(page_.Bytes().substr(at_, end - at_), page_.Encoding(), html_);
    at_ = end;
  }

  const page::Page& page_;
  std::size_t at_;
  std::string html_;
};

constexpr int kNiceness = 10;

}  // namespace

Splice Difference(const QString& before, const QString& after) {
  const auto shorter = std::min(before.size(), after.size());
  qsizetype begin =
      std::mismatch(before.begin(), before.begin() + shorter, after.begin()).first - before.begin();
  if (begin > 0 && before[begin - 1].isHighSurrogate()) --begin;
  qsizetype tail = 0;
  while (tail < shorter - begin &&
         before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
    ++tail;
  if (tail > 0 && before[before.size() - tail].isLowSurrogate()) --tail;
  return {begin, before.size() - tail - begin, after.mid(begin, after.size() - tail - begin)};
}

Analysis Analyse(const AnalysisRequest& request) {
  Analysis analysis;
  analysis.revision = request.revision;
  PageText::Places places;
  const page::Page page(request.text.Bytes(places));
  DesignWriter design(page);
  for (const page::FoundControl& found : page::Inspect(page).controls) {
    const Box box = BoxOf(found);
    design.Replace(found, box);
    const int position = places.PositionOf(found.begin);
    const Embedded* part = request.text.At(position);
    analysis.outline.push_back({position, part != nullptr && part->kind == Embedded::Kind::control,
                                ToQt(found.className), ToQt(found.id), CaptionOf(box)});
  }
  analysis.design = design.Take();

  ObjectRef office;
  if (request.office != nullptr) office = std::make_shared<office::Office>(*request.office);
  SourceLines lines(page.Bytes(), places);
  for (page::Problem& problem : check::CheckPage(page, office)) {
    const int position = places.PositionOf(problem.offset);
    lines.Translate(problem);
    analysis.problems.push_back({position, std::move(problem)});
  }

  page::StringSink sink;
  if (!page::HasErrors(page::Publish(page, sink))) {
    std::string output;
    AppendUtf8Of(sink.Text(), page.Encoding(), output);
    analysis.output = ToQt(output);
  }
  return analysis;
}

Analyst::Analyst(Done done) : done_(std::move(done)) { thread_.setMaxThreadCount(1); }

void Analyst::Request(AnalysisRequest request) {
  if (!working_) return Begin(std::move(request));
  // The dropped request may have been the first of its page.
  if (next_ && next_->newPage) request.newPage = true;
  next_ = std::move(request);
}

void Analyst::Begin(AnalysisRequest request) {
  working_ = true;
  thread_.start([this, request = std::move(request), before = latest_] {
    // Gives typing priority over analysis.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNiceness);
    auto analysis = std::make_shared<Analysis>(Analyse(request));
    analysis->first = before == nullptr || request.newPage;
    analysis->designChange =
        Difference(analysis->first ? QString() : before->design, analysis->design);
    QMetaObject::invokeMethod(
        &receiver_, [this, analysis] { End(analysis); }, Qt::QueuedConnection);
  });
}

void Analyst::End(const std::shared_ptr<const Analysis>& analysis) {
  latest_ = analysis;
  working_ = false;
  if (next_) Begin(*std::exchange(next_, std::nullopt));
  done_(analysis);
}

}  // namespace kvo::editor
