#include "apps/editor/Analysis.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QMetaObject>
#include <QTextStream>
#include <algorithm>
#include <utility>

#include "apps/editor/ProblemMarks.h"
#include "apps/editor/SourceLines.h"
#include "common/values/RuntimeError.h"
#include "document/check/Check.h"
#include "document/page/Page.h"
#include "document/page/Utf8.h"
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

// Returns the character that stands for a part in the view.
char16_t ShownFor(const Embedded& part, const page::PageEncoding& encoding) {
  std::string utf8;
  const std::string_view bytes(part.bytes.constData(), static_cast<std::size_t>(part.bytes.size()));
  if (encoding.Decode(bytes, utf8) != std::string_view::npos) return page::kReplacementCharacter;
  const QString text = ToQt(utf8);
  return text.size() == 1 && !text[0].isNull() ? text[0].unicode() : page::kReplacementCharacter;
}

// The page as it is rendered: each line break is a line feed, and one character stands for bytes
// that are not text.
std::u16string ShownText(const PageText& page) {
  std::u16string text = page.Text().toStdU16String();
  for (const Embedded& part : page.EmbeddedParts())
    if (part.kind == Embedded::Kind::bytes)
      text[static_cast<std::size_t>(part.position)] = ShownFor(part, page.Encoding());
  std::ranges::replace(text, kLineBreakCharacter.unicode(), u'\n');
  return text;
}

// Where two texts differ.
struct Extent {
  qsizetype at;
  qsizetype removed;
  qsizetype added;
};
Extent DifferenceOf(QStringView before, QStringView after) {
  const auto shorter = std::min(before.size(), after.size());
  qsizetype begin =
      std::mismatch(before.begin(), before.begin() + shorter, after.begin()).first - before.begin();
  if (begin > 0 && before[begin - 1].isHighSurrogate()) --begin;
  qsizetype tail = 0;
  while (tail < shorter - begin &&
         before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
    ++tail;
  if (tail > 0 && before[before.size() - tail].isLowSurrogate()) --tail;
  return {begin, before.size() - tail - begin, after.size() - tail - begin};
}

// Appends a picture of the box, which the design view draws when the browser asks for it.
void AppendBox(const page::FoundControl& found, const Box& box, Analysis& analysis) {
  const auto begin = analysis.design.size();
  const QByteArray picture = QByteArray::fromStdString(BoxPicture({box}));
  const QString key = QCryptographicHash::hash(picture, QCryptographicHash::Sha1).toHex();
  analysis.boxes.insert(key, box);
  std::string name;
  AppendXml(name, found.className + ' ' + found.id + ": " + CaptionOf(box).toStdString());
  const QString url = kBoxUrl + key;
  QTextStream(&analysis.design) << "<img data-kvo=\"" << found.index << "\" src=\"" << url
                                << "/1\" srcset=\"" << url << "/1 1x, " << url << "/2 2x, " << url
                                << "/4 4x\" width=\"" << box.width / kTwipsPerPixel
                                << "\" height=\"" << box.height / kTwipsPerPixel
                                << "\" style=\"vertical-align:middle\" alt=\"" << ToQt(name)
                                << "\">";
  analysis.pictures += QStringView(analysis.design).sliced(begin);
}

// Follows a page whose tree is that of the former analysis; parses any other.
std::shared_ptr<const design::Rendering> RenderingOf(std::u16string shown,
                                                     std::vector<design::BoxPlace> boxes,
                                                     const Analysis* before) {
  if (before != nullptr && before->rendering != nullptr) {
    const std::u16string& old = before->rendering->Source();
    const auto [at, removed, added] = DifferenceOf(old, shown);
    auto same = std::make_shared<design::Rendering>(*before->rendering);
    const auto begin = static_cast<std::size_t>(at);
    if (same->ApplyInText({begin, begin + static_cast<std::size_t>(removed),
                           shown.substr(begin, static_cast<std::size_t>(added))}) &&
        same->Boxes() == boxes)
      return same;
  }
  return std::make_shared<design::Rendering>(std::move(shown), std::move(boxes));
}

constexpr int kNiceness = 10;

}  // namespace

QString TextOf(std::string_view bytes, const page::PageEncoding& encoding) {
  std::string utf8;
  while (!bytes.empty()) {
    const std::size_t bad = encoding.Decode(bytes, utf8);
    if (bad == std::string_view::npos) break;
    utf8 += "\xEF\xBF\xBD";
    bytes.remove_prefix(bad + 1);
  }
  return ToQt(utf8);
}

Splice Difference(const QString& before, const QString& after) {
  const Extent extent = DifferenceOf(before, after);
  return {extent.at, extent.removed, after.mid(extent.at, extent.added)};
}

Analysis Analyse(const AnalysisRequest& request, const Analysis* before) {
  Analysis analysis;
  analysis.revision = request.revision;
  PageText::Places places;
  const page::Page page(request.text.Bytes(places));
  std::u16string shown = ShownText(request.text);
  std::vector<design::BoxPlace> boxes;
  std::size_t written = 0;
  const auto copyTo = [&](std::size_t end) {
    analysis.design += QStringView(shown).sliced(static_cast<qsizetype>(written),
                                                 static_cast<qsizetype>(end - written));
    written = end;
  };
  for (const page::FoundControl& found : page::Inspect(page).controls) {
    const Box box = BoxOf(found);
    const int position = places.PositionOf(found.begin);
    const auto begin = static_cast<std::size_t>(position);
    const auto end = static_cast<std::size_t>(places.PositionOf(found.end));
    copyTo(begin);
    AppendBox(found, box, analysis);
    written = end;
    boxes.push_back({begin, end - begin});
    const Embedded* part = request.text.At(position);
    analysis.outline.push_back({position, part != nullptr && part->kind == Embedded::Kind::control,
                                ToQt(found.className), ToQt(found.id), CaptionOf(box)});
  }
  copyTo(shown.size());
  analysis.rendering = RenderingOf(std::move(shown), std::move(boxes), before);
  analysis.answered = request.answered;

  ObjectRef office;
  if (request.office != nullptr) office = std::make_shared<office::Office>(*request.office);
  SourceLines lines(page.Bytes(), places);
  for (page::Problem& problem : check::CheckPage(page, office)) {
    const int position = places.PositionOf(problem.offset);
    const int end = std::max(places.PositionOf(problem.end), position + 1);
    lines.Translate(problem);
    analysis.problems.push_back({position, end, std::move(problem)});
  }
  analysis.marks = MarksOf(analysis.problems, *analysis.rendering);

  page::StringSink sink;
  if (!page::HasErrors(page::Publish(page, sink)))
    analysis.output = TextOf(sink.Text(), page.Encoding());
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
    auto analysis = std::make_shared<Analysis>(Analyse(request, before.get()));
    analysis->first = before == nullptr || request.newPage;
    analysis->designChange =
        Difference(analysis->first ? QString() : before->design, analysis->design);
    analysis->sameBoxes = before != nullptr && analysis->pictures == before->pictures;
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
