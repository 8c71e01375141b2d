#include "document/preview/Template.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/check/Fields.h"
#include "document/check/Products.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"
#include "document/preview/Compiled.h"
#include "document/preview/Expression.h"

namespace kvo::preview {
namespace {

// What an author calls a tag's switch.
std::string NameOf(const RuntimeTag& tag) {
  if (const std::string* const name = tag.Find("display-value")) return DecodeMarkupTokens(*name);
  const std::string* const test = tag.Find("test");
  if (test == nullptr) return {};
  return std::string(WithoutPercentSigns(*test));
}

class Compiler {
 public:
  Compiler(Template::Compiled& compiled, std::string_view source, const ObjectRef& office)
      : compiled_(compiled), places_(source, compiled.encoding), fields_(check::FieldsOf(office)) {}

  void Compile() {
    RuntimeTags tags = FindRuntimeTags(compiled_.page, compiled_.encoding);
    markers_ = std::move(tags.markers);
    compiled_.pieces = Read({0, compiled_.page.bytes.size()}, tags.tags, {});
    if (!bannerPlaced_) PlaceBanner();
  }

 private:
  struct Range {
    std::size_t begin;
    std::size_t end;
  };
  // What surrounds a tag.
  struct Around {
    std::size_t part = RuntimeTag::kNoPart;
    std::size_t toggle = Switch::kNoSwitch;
    bool holds = true;
  };

  std::vector<Piece> Read(Range range, std::vector<RuntimeTag>& tags, const Around& around) {
    std::vector<Piece> pieces;
    std::size_t at = range.begin;
    for (RuntimeTag& tag : tags) {
      ReadPlain({at, tag.begin}, pieces);
      at = tag.end;
      pieces.push_back({Piece::Kind::tag, 0, 0, ReadTag(tag, around)});
    }
    ReadPlain({at, range.end}, pieces);
    return pieces;
  }

  // Appends what lies between tags, without markers.
  void ReadPlain(Range range, std::vector<Piece>& pieces) {
    std::size_t at = range.begin;
    while (marker_ < markers_.size() && markers_[marker_].begin < at) ++marker_;
    for (; marker_ < markers_.size() && markers_[marker_].begin < range.end; ++marker_) {
      AddPlain(at, markers_[marker_].begin, pieces);
      at = markers_[marker_].end;
    }
    AddPlain(at, range.end, pieces);
  }
  void AddPlain(std::size_t begin, std::size_t end, std::vector<Piece>& pieces) {
    if (begin >= end) return;
    const std::size_t before = reader_.ReadSoFar();
    reader_.Read(std::string_view(compiled_.page.bytes).substr(begin, end - begin));
    if (!bannerPlaced_ && reader_.BodyAt() != 0) {
      bannerPlaced_ = true;
      const std::size_t body = begin + (reader_.BodyAt() - before);
      pieces.push_back({Piece::Kind::plain, begin, body});
      pieces.push_back({Piece::Kind::banner});
      begin = body;
    }
    if (begin < end) pieces.push_back({Piece::Kind::plain, begin, end});
  }

  std::size_t ReadTag(RuntimeTag& tag, Around around) {
    const std::size_t index = compiled_.nodes.size();
    compiled_.nodes.emplace_back();
    if (tag.part != RuntimeTag::kNoPart) around.part = tag.part;
    Node node;
    node.html = reader_.Place();
    node.takesTags = reader_.TakesTags();
    node.part = around.part;
    node.offset = SourceOf(tag, around.part);
    node.place = places_.At(node.offset);
    std::vector<RuntimeTag> inner = std::move(tag.inner);
    node.tag = std::move(tag);
    NoteFields(node.tag);
    reader_.Pass();

    if (const auto kind = SwitchKind(node.tag)) node.toggle = AddSwitch(node, *kind, around);
    const Range content = {node.tag.contentBegin, node.tag.contentEnd};
    if (node.tag.kind == TagKind::condition)
      ReadCondition(node, content, inner, around);
    else
      node.content = Read(content, inner, around);
    compiled_.nodes[index] = std::move(node);
    return index;
  }

  // The first "else" among the tags divides them.
  void ReadCondition(Node& node, Range content, std::vector<RuntimeTag>& inner, Around around) {
    around.toggle = node.toggle;
    const HtmlReader before = reader_;
    const auto other = std::ranges::find(inner, TagKind::otherwise, &RuntimeTag::kind);
    if (other == inner.end()) {
      node.content = Read(content, inner, around);
      return;
    }
    RuntimeTag otherwise = std::move(*other);
    std::vector<RuntimeTag> behind(std::make_move_iterator(other + 1),
                                   std::make_move_iterator(inner.end()));
    inner.erase(other, inner.end());
    node.content = Read({content.begin, otherwise.begin}, inner, around);
    const HtmlReader after = reader_;
    reader_ = before;
    node.otherwise = Read({otherwise.contentBegin, otherwise.contentEnd}, otherwise.inner,
                          {around.part, around.toggle, false});
    // What follows the else part belongs to the condition again; nobody writes it on purpose.
    reader_ = after;
    std::vector<Piece> rest = Read({otherwise.end, content.end}, behind, around);
    node.content.insert(node.content.end(), rest.begin(), rest.end());
  }

  static std::optional<Switch::Kind> SwitchKind(const RuntimeTag& tag) {
    if (tag.kind == TagKind::condition) return Switch::Kind::condition;
    if (tag.kind == TagKind::positions) return Switch::Kind::positions;
    const std::string* const products =
        tag.kind == TagKind::products ? tag.Find("selected-products") : nullptr;
    // Without products there is nothing to fill the list with.
    if (products == nullptr || check::NumbersIn(*products).empty()) return std::nullopt;
    return Switch::Kind::products;
  }

  std::size_t AddSwitch(const Node& node, Switch::Kind kind, const Around& around) {
    const std::size_t index = compiled_.switches.size();
    Switch& added = compiled_.switches.emplace_back();
    added.kind = kind;
    added.name = NameOf(node.tag);
    added.place = node.place;
    added.parent = around.toggle;
    added.parentHolds = around.holds;
    added.same = index;
    if (const page::PublishedControl* const control = compiled_.ControlOf(node)) {
      added.control = control->className;
      added.id = control->id;
      added.index = control->index;
    }
    if (const std::string* const test = node.tag.Find("test");
        kind == Switch::Kind::condition && test)
      added.same = tests_.try_emplace(*test, index).first->second;
    return index;
  }

  std::size_t SourceOf(const RuntimeTag& tag, std::size_t part) const {
    const auto& controls = compiled_.page.controls;
    if (part != RuntimeTag::kNoPart) return controls[part].sourceBegin;
    const auto after =
        std::ranges::upper_bound(controls, tag.begin, {}, &page::PublishedControl::begin);
    if (after == controls.begin()) return tag.begin;
    const page::PublishedControl& before = *std::prev(after);
    return before.sourceEnd + (tag.begin - before.end);
  }

  // Looks the fields of a tag up in the office.
  void NoteFields(const RuntimeTag& tag) {
    const bool isContact = tag.kind == TagKind::contact;
    if (isContact || tag.kind == TagKind::order)
      if (const std::string* const field = tag.Find("field"))
        NoteField(isContact ? check::FieldKind::contact : check::FieldKind::order, *field);
    for (const auto& [name, value] : tag.attributes) {
      ForEachReference(value, [&](const Reference& reference) {
        // An order has values that are no fields.
        if (EqualIgnoringCase(reference.group, kCustomer))
          NoteField(check::FieldKind::contact, std::string(reference.name));
      });
    }
  }
  void NoteField(check::FieldKind kind, const std::string& name) {
    if (auto message = check::UnknownFieldMessage(kind, name, fields_))
      compiled_.unknownFields.emplace(
          std::string(kind == check::FieldKind::contact ? kCustomer : kOrder) + '.' + Lowered(name),
          std::move(*message));
  }

  // A page without a body begins with the banner, unless it has a head.
  void PlaceBanner() {
    const std::string start = Lowered(std::string_view(compiled_.page.bytes).substr(0, 200));
    const bool hasHead = start.find("<!doctype") != page::npos ||
                         start.find("<html") != page::npos || start.find("<head") != page::npos;
    compiled_.pieces.insert(hasHead ? compiled_.pieces.end() : compiled_.pieces.begin(),
                            {Piece::Kind::banner});
  }

  Template::Compiled& compiled_;
  page::PlaceFinder places_;
  check::KnownFields fields_;
  std::vector<RuntimeTags::Marker> markers_;
  std::size_t marker_ = 0;
  HtmlReader reader_;
  bool bannerPlaced_ = false;
  std::map<std::string, std::size_t> tests_;  // the first switch with each test
};

}  // namespace

Template::Template(const page::Page& page, const ObjectRef& office) {
  auto compiled = std::make_unique<Compiled>();
  compiled->page = page::PublishWithPlaces(page);
  compiled->encoding = page.Encoding();
  Compiler(*compiled, page.Bytes(), office).Compile();
  compiled_ = std::move(compiled);
}

Template::~Template() = default;
Template::Template(Template&&) noexcept = default;
Template& Template::operator=(Template&&) noexcept = default;

const std::vector<Switch>& Template::Switches() const { return compiled_->switches; }
const page::Problems& Template::Problems() const { return compiled_->page.problems; }

}  // namespace kvo::preview
