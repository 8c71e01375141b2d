#include "apps/editor/PreviewWork.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QFileInfo>
#include <QMetaObject>
#include <algorithm>

#include "apps/editor/PageFile.h"
#include "common/values/RuntimeError.h"
#include "document/check/Fields.h"
#include "document/page/Page.h"
#include "document/page/Scanner.h"
#include "document/preview/OfficeShop.h"
#include "document/preview/Records.h"
#include "host/qt/Messages.h"
#include "host/qt/QtText.h"

namespace kvo::editor {
namespace {

constexpr int kPreviewNiceness = 10;
// The chooser lists this many; the others are found by name or number.
constexpr std::int64_t kMostNames = 1000;

// Finds "#GROUP.NAME#" of any group, and hand-written tags of fields.
std::set<PageField> FieldsIn(std::string_view published) {
  std::set<PageField> fields;
  uses::ForEachFieldReference(published, [&](const uses::FieldReference& reference) {
    fields.emplace(uses::GroupOf(reference.kind), reference.name);
  });
  uses::ForEachReference(published, [&](const uses::Reference& reference) {
    if (reference.group != uses::kScriptGroup && uses::IsFieldName(reference.name))
      fields.emplace(reference.group, reference.name);
  });
  constexpr std::string_view kConfigTag = "kv:config";
  for (std::size_t at = published.find('<'); at != page::npos; at = published.find('<', at + 1)) {
    if (!page::IsTagAt(published, at, "<", kConfigTag)) continue;
    page::TagReader tag(published, at + 1 + kConfigTag.size());
    for (page::RawAttribute attribute; tag.Next(attribute);)
      if (attribute.name == "item" && !attribute.value.empty())
        fields.emplace(preview::kConfig, attribute.value);
  }
  return fields;
}

// Finds the bytes of places, each behind the one before.
class PlaceFinder {
 public:
  explicit PlaceFinder(const page::Page& page) : page_(page) {}

  std::size_t OffsetOf(const page::Place& place) {
    if (place.line < at_.line || (place.line == at_.line && place.column < at_.column)) {
      at_ = {};
      offset_ = 0;
    }
    const std::string_view bytes = page_.Bytes();
    for (; at_.line < place.line; at_ = {at_.line + 1, 1}) {
      offset_ = bytes.find_first_of("\r\n", offset_);
      if (offset_ == page::npos) return offset_ = bytes.size();
      offset_ += bytes.substr(offset_, 2) == "\r\n" ? 2 : 1;
    }
    for (; at_.column < place.column && offset_ < bytes.size(); ++at_.column)
      offset_ += page_.Encoding().CharacterLength(bytes.substr(offset_));
    return offset_;
  }

 private:
  const page::Page& page_;
  page::Place at_;
  std::size_t offset_ = 0;
};

// Whether a browser would show nothing: neither text nor anything that takes room by itself.
bool ShowsNothing(const QString& html) {
  constexpr QStringView kSkipped[] = {u"head", u"title", u"style", u"script"};
  constexpr QStringView kSeen[] = {u"img",   u"hr",     u"svg",    u"input", u"button",
                                   u"video", u"object", u"iframe", u"table", u"li"};
  const QStringView text(html);
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (text[at] != u'<') {
      if (!text[at].isSpace()) return false;
      continue;
    }
    const bool comment = text.sliced(at).startsWith(u"<!--");
    const qsizetype end = comment ? text.indexOf(u"-->", at) : text.indexOf(u'>', at);
    if (end < 0) return true;
    qsizetype nameEnd = at + 1;
    while (nameEnd < end && text[nameEnd].isLetterOrNumber()) ++nameEnd;
    const QStringView name = text.sliced(at + 1, nameEnd - at - 1);
    const auto isIn = [name](const auto& names) {
      return std::ranges::any_of(
          names, [name](QStringView each) { return name.compare(each, Qt::CaseInsensitive) == 0; });
    };
    if (isIn(kSeen)) return false;
    at = comment ? end + 2 : end;
    if (!isIn(kSkipped)) continue;
    const qsizetype close = text.indexOf(QString("</" + name.toString()), end, Qt::CaseInsensitive);
    if (close < 0) return true;
    at = text.indexOf(u'>', close);
    if (at < 0) return true;
  }
  return true;
}

}  // namespace

// What lives on the thread: the page and the records, each read only when it changed.
class Previewer::Work {
 public:
  std::shared_ptr<const PreviewResult> Make(const PreviewRequest& request) {
    auto result = std::make_shared<PreviewResult>();
    result->revision = request.revision;
    result->asked = result->record = request.record;
    if (circumstances_ != request.circumstances) ReadCircumstances(request);
    if (page_ == nullptr || page_->revision != request.revision || request.newPage)
      page_ = std::make_unique<Compiled>(request, office_);
    result->errors = static_cast<int>(std::ranges::count(
        page_->shown.Problems(), page::Severity::error, &page::Problem::severity));
    result->fields = page_->fields;
    result->recordsFailure = recordsFailure_;
    result->names = names_;
    if (request.newPage) html_.reset();
    const auto record = RecordFor(request, *result);
    if (!record) return result;
    Render(request, *record, *result);
    result->first = !html_;
    result->change = Difference(html_.value_or(QString()), result->html);
    html_ = result->html;
    return result;
  }

 private:
  // The page as the request has it.
  struct Compiled {
    Compiled(const PreviewRequest& request, const ObjectRef& office)
        : revision(request.revision),
          text(request.text),
          page(text.Bytes(places)),
          shown(page, office) {
      page::StringSink published;
      page::Publish(page, published);
      fields = FieldsIn(published.Text());
    }

    int revision;
    const PageText text;  // the places refer to it
    PageText::Places places;
    const page::Page page;
    const preview::Template shown;
    std::set<PageField> fields;
  };

  void ReadCircumstances(const PreviewRequest& request) {
    circumstances_ = request.circumstances;
    page_.reset();  // it knows the office
    shop_.reset();
    office_.reset();
    if (request.office != nullptr)
      office_ = std::make_shared<office::Office>(*request.office, request.connections);
    if (office_ != nullptr && request.connections && request.office->shopDatabase)
      shop_ = std::make_unique<preview::OfficeShop>(office_);
    recordsFailure_.clear();
    names_.clear();
    count_ = 0;
    inFile_ = 0;
    records_.reset();
    try {
      preview::RecordsFile file;
      if (!request.recordsFile.isEmpty() && QFileInfo::exists(request.recordsFile))
        file = preview::LoadRecords(FileName(request.recordsFile));
      inFile_ = static_cast<std::int64_t>(file.records.size());
      records_ = std::make_unique<preview::RecordList>(std::move(file), office_);
      count_ = inFile_;
      count_ = records_->Count();
      ReadNames();
    } catch (const std::exception& failure) {
      recordsFailure_ = ToQt(FailureText(failure));
    }
  }

  void ReadNames() {
    for (std::int64_t index = 0; index < std::min(count_, kMostNames); ++index) {
      const auto record = records_->At(index);
      if (!record) break;
      names_ += ToQt(record->name);
    }
  }

  // Returns nothing when there is none; the result says why.
  std::optional<preview::Record> RecordFor(const PreviewRequest& request, PreviewResult& result) {
    result.hasRecord = false;
    result.count = count_;
    if (records_ == nullptr) return std::nullopt;
    try {
      result.record =
          std::clamp<std::int64_t>(request.record, 0, std::max<std::int64_t>(count_ - 1, 0));
      if (!request.find.isEmpty()) {
        const auto found = records_->Find(FromQt(request.find));
        result.notFound = !found;
        if (found) result.record = *found;
      }
      const auto record = records_->At(result.record);
      if (!record) return std::nullopt;
      result.hasRecord = true;
      result.current = *record;
      result.isFromQuery = !record->madeUp && result.record >= inFile_;
      return record;
    } catch (const std::exception& failure) {
      result.recordsFailure = ToQt(FailureText(failure));
    }
    return std::nullopt;
  }

  void Render(const PreviewRequest& request, const preview::Record& record,
              PreviewResult& result) const {
    const std::vector<preview::Switch>& switches = page_->shown.Switches();
    preview::RenderOptions options;
    options.shop = shop_.get();
    options.language = UserLanguage();
    options.marks = true;
    PlaceFinder places(page_->page);
    for (const preview::Switch& each : switches) {
      SwitchEntry entry;
      entry.which = each;
      const std::size_t number = result.switches.size();
      entry.key = each.id.empty() ? '#' + QString::number(number) : ToQt(each.id);
      entry.position = page_->places.PositionOf(places.OffsetOf(each.place));
      entry.choice = request.choices.value(entry.key, preview::Choice::asRecord);
      if (each.parent < number) entry.depth = result.switches[each.parent].depth + 1;
      options.choices.push_back(entry.choice);
      result.switches.push_back(std::move(entry));
    }
    preview::Preview made = page_->shown.Render(record, options);
    for (std::size_t at = 0; at < std::min(made.switches.size(), switches.size()); ++at) {
      result.switches[at].reached = made.switches[at].reached;
      result.switches[at].held = made.switches[at].held;
    }
    for (preview::Finding& finding : made.findings) {
      const int position = page_->places.PositionOf(finding.offset);
      finding.place = page_->places.PlaceOf(position);
      result.findings.push_back({std::move(finding), position});
    }
    result.html = TextOf(made.html, page_->page.Encoding());
    result.isEmpty = result.findings.empty() && ShowsNothing(result.html);
  }

  int circumstances_ = -1;
  std::unique_ptr<Compiled> page_;
  ObjectRef office_;
  std::unique_ptr<preview::OfficeShop> shop_;
  std::unique_ptr<preview::RecordList> records_;
  std::int64_t inFile_ = 0;
  std::int64_t count_ = 0;
  QStringList names_;
  QString recordsFailure_;
  std::optional<QString> html_;  // the last one of this page
};

Previewer::Previewer(Done done) : done_(std::move(done)), work_(std::make_unique<Work>()) {
  thread_.setMaxThreadCount(1);
  thread_.setExpiryTimeout(-1);  // the same thread always: it has the database
}

Previewer::~Previewer() {
  thread_.start([this] { work_.reset(); });
  thread_.waitForDone();
}

void Previewer::Request(PreviewRequest request) {
  if (!working_) return Begin(std::move(request));
  // What the dropped request wanted is still wanted.
  if (next_) {
    request.newPage |= next_->newPage;
    if (request.find.isEmpty() && request.record == next_->record) request.find = next_->find;
  }
  next_ = std::move(request);
}

void Previewer::Begin(PreviewRequest request) {
  working_ = true;
  thread_.start([this, request = std::move(request)] {
    // Gives typing priority.
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kPreviewNiceness);
    const auto result = work_->Make(request);
    QMetaObject::invokeMethod(
        &receiver_, [this, result] { End(result); }, Qt::QueuedConnection);
  });
}

void Previewer::End(const std::shared_ptr<const PreviewResult>& result) {
  working_ = false;
  if (next_) Begin(*std::exchange(next_, std::nullopt));
  done_(result);
}

}  // namespace kvo::editor
