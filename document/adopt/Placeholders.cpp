#include "document/adopt/Placeholders.h"

#include <algorithm>
#include <optional>
#include <set>
#include <span>

#include "common/values/Ascii.h"
#include "controls/BlockLevel.h"
#include "document/adopt/AttributeValues.h"
#include "document/adopt/BlockContents.h"
#include "document/adopt/ElementTags.h"
#include "document/adopt/Pattern.h"
#include "document/adopt/TagControl.h"
#include "document/adopt/Words.h"
#include "document/page/ElementWriter.h"
#include "document/page/Scanner.h"
#include "document/page/Surroundings.h"
#include "host/registration/classes.h"

namespace kvo::adopt {
namespace {

using page::Surroundings;
using Around = Surroundings::Kind;
using Result = Find::Result;

// Elements whose content is text, so that it can stand in a property.
constexpr std::string_view kTextElements[] = {"a",  "b",  "button", "em", "font", "h1",    "h2",
                                              "h3", "h4", "i",      "p",  "span", "strong"};
constexpr std::size_t kLongestContent = 2000;

// Elements of the head, where a control would begin the body.
constexpr std::string_view kHeadElements[] = {"base", "link", "meta", "html", "head", "body"};

bool IsOneOf(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::any_of(names,
                             [&](std::string_view each) { return EqualIgnoringCase(each, name); });
}

// The first of sorted parts that do not overlap which ends behind an offset.
template <class Parts, class End>
auto FirstBehind(const Parts& parts, std::size_t offset, End end) {
  return std::ranges::upper_bound(parts, offset, {}, end);
}

class PlaceholderTaker {
 public:
  PlaceholderTaker(const page::Page& page, const page::Inspection& inspection,
                   const FoundTags& tags, const Mapping& mapping, const FieldCaptions& captions,
                   const ObjectRef& office)
      : page_(page),
        bytes_(page.Bytes()),
        inspection_(inspection),
        tags_(tags.finds),
        contents_(page.Bytes(), tags.blocks),
        mapping_(mapping),
        captions_(captions),
        suggestions_(office) {
    for (const Find& tag : tags_) taken_.insert(taken_.end(), tag.edits.begin(), tag.edits.end());
  }

  std::vector<Find> Take() {
    ReadHits();
    for (std::size_t at = 0; at < hits_.size();) {
      const Hit& hit = hits_[at];
      if (hit.block != nullptr) {
        std::size_t end = at + 1;
        while (end < hits_.size() && hits_[end].block == hit.block) ++end;
        TakeInBlock({hits_.data() + at, end - at});
        at = end;
      } else if (hit.around.kind == Around::attributeValue && !hit.insideTag) {
        std::size_t end = at + 1;
        while (end < hits_.size() && hits_[end].around.kind == Around::attributeValue &&
               hits_[end].around.tag == hit.around.tag)
          ++end;
        TakeAttributes({hits_.data() + at, end - at});
        at = end;
      } else {
        TakeOne(hits_[at++]);
      }
    }
    RemakeBlocks();
    std::ranges::stable_sort(finds_, {}, &Find::begin);
    return std::move(finds_);
  }
  // Whether a tag is in the find of its placeholders.
  bool IsRemade(const Find& tag) const { return remade_.contains(tag.begin); }

 private:
  // The placeholders in a block, and the edits that put tags in their place.
  struct Filling {
    const Block* block;
    std::vector<const Hit*> hits;
    page::TextEdits edits;
  };

  void ReadHits() {
    page::PageSurroundings around(page_);
    auto control = inspection_.controls.begin();
    const PlaceholderFinder finder(mapping_, page_.Encoding());
    auto tag = tags_.begin();
    std::size_t tagsEnd = 0;  // of the runtime tags so far
    for (Placeholder& found : finder.Find(bytes_)) {
      while (control != inspection_.controls.end() && control->end <= found.begin) ++control;
      if (control != inspection_.controls.end() && control->begin < found.end) continue;
      const Surroundings here = around.At(found.begin);
      Hit hit{std::move(found), here};
      for (; tag != tags_.end() && tag->begin < hit.found.end; ++tag)
        if (!tag->edits.empty()) tagsEnd = std::max(tagsEnd, tag->end);
      hit.insideTag = hit.found.begin < tagsEnd || IsInRuntimeTag(hit.around);
      contents_.GoTo(hit.found.begin);
      if (contents_.IsInBlock()) {
        hit.block = contents_.Holding(hit.found.begin, hit.found.end);
        hit.insideTag = hit.block == nullptr;
        if (hit.block != nullptr) hit.around = contents_.At(hit.found.begin);
      }
      // Other things look like placeholders in style sheets and programs.
      if (hit.found.target == nullptr && hit.around.kind == Around::rawText &&
          (EqualIgnoringCase(hit.around.name, "style") ||
           EqualIgnoringCase(hit.around.name, "script")))
        continue;
      if (const Target* const target = hit.found.target; target != nullptr && !hit.insideTag) {
        hit.bag = BagFor(*target, hit.found.name);
        captions_.AddTo(*target->contract, hit.bag);
        hit.made = Make(*target->contract, hit.bag, page_.Encoding());
      }
      hits_.push_back(std::move(hit));
    }
  }

  // Whether a value belongs to a tag that stays by its find.
  bool IsInRuntimeTag(const Surroundings& around) const {
    if (around.kind != Around::attributeValue) return false;
    const auto tag = std::ranges::lower_bound(tags_, around.tag, {}, &Find::begin);
    return tag != tags_.end() && tag->begin == around.tag;
  }

  Find Begin(const Hit& hit) {
    Find find;
    find.kind = hit.found.statement ? Find::Kind::statement : Find::Kind::placeholder;
    find.begin = hit.found.begin;
    find.end = hit.found.end;
    find.text = Shown(Bytes(hit.found.begin, hit.found.end), page_.Encoding());
    find.name = hit.found.name;
    if (hit.found.target != nullptr) {
      find.contract = hit.found.target->contract;
      find.properties = PropertiesOf(*find.contract, hit.bag);
    } else if (!hit.found.statement) {
      find.suggestion = suggestions_.For(hit.found.name);
    }
    return find;
  }

  // The find of several placeholders that become one thing.
  Find Begin(const std::vector<const Hit*>& hits) {
    Find find = Begin(*hits.front());
    for (auto hit = hits.begin() + 1; hit != hits.end(); ++hit) {
      find.text += ", " + Shown(Bytes((*hit)->found.begin, (*hit)->found.end), page_.Encoding());
      find.end = (*hit)->found.end;
    }
    return find;
  }

  void Keep(const Hit& hit, Message reason) {
    Find find = Begin(hit);
    find.contract = nullptr;
    find.properties.clear();
    find.reason = std::move(reason);
    finds_.push_back(std::move(find));
  }

  // What keeps a placeholder wherever it stands.
  std::optional<Message> ReasonToKeep(const Hit& hit) const {
    if (hit.found.statement) return words::Statement();
    if (hit.insideTag) return words::InsideRuntimeTag();
    if (hit.found.target == nullptr) return words::NotMapped();
    if (!hit.made) return words::NotInEncoding();
    if (hit.made->runtimeText.empty()) return words::GivesNothing();
    return std::nullopt;
  }

  void TakeOne(const Hit& hit) {
    if (hit.around.kind == Around::comment && !hit.found.statement && !hit.insideTag)
      return Keep(hit, words::InComment());
    if (auto reason = ReasonToKeep(hit)) return Keep(hit, std::move(*reason));
    if (hit.around.CanHoldControl())
      AddOne(hit, Result::control, hit.made->element);
    else if (TakesTag(hit))
      AddOne(hit, Result::tag, hit.made->runtimeText);
    else
      Keep(hit, words::NotHere());
  }

  void AddOne(const Hit& hit, Result result, const std::string& bytes) {
    Find find = Begin(hit);
    find.result = result;
    find.edits = {{find.begin, find.end, bytes}};
    find.published = {{find.begin, find.end, hit.made->runtimeText}};
    finds_.push_back(std::move(find));
  }

  // Whether the tag of its control can stand where the control itself cannot.
  bool TakesTag(const Hit& hit) const {
    if (hit.around.kind != Around::rawText && hit.around.kind != Around::conditionalComment)
      return false;
    std::string utf8;
    page_.Encoding().Decode(hit.made->runtimeText, utf8);
    return page::PastingOf(hit.around, utf8) == page::Pasting::asItStands;
  }

  // Placeholders in the content of one block become the tags of their controls. The block's control
  // is made anew then; around a block that stays, each stands for itself.
  void TakeInBlock(Hits hits) {
    Filling filling{hits.front().block, {}, {}};
    for (std::size_t at = 0; at < hits.size();) {
      std::size_t end = at + 1;
      const Surroundings& around = hits[at].around;
      if (around.kind == Around::attributeValue)
        while (end < hits.size() && hits[end].around.kind == Around::attributeValue &&
               hits[end].around.begin == around.begin)
          ++end;
      const Hits together = hits.subspan(at, end - at);
      if (auto edit = EditInBlock(together)) {
        for (const Hit& hit : together) filling.hits.push_back(&hit);
        if (!IsTaken(*filling.block)) AddAround(together, Result::tag, {*edit}, {*edit});
        filling.edits.push_back(std::move(*edit));
      }
      at = end;
    }
    if (!filling.edits.empty() && IsTaken(*filling.block)) fillings_.push_back(std::move(filling));
  }

  // Nothing after keeping them.
  std::optional<page::TextEdit> EditInBlock(Hits hits) {
    const Hit& hit = hits.front();
    if (hit.around.kind == Around::attributeValue)
      return EditOfValue(ElementTagAt(bytes_, hit.around.tag), hits);
    auto reason = ReasonToKeep(hit);
    if (hit.around.kind == Around::comment && !hit.found.statement) reason = words::InComment();
    if (!reason && hit.made->runtimeText.starts_with(kBlockStart)) reason = words::BlockInBlock();
    if (!reason && !hit.around.CanHoldControl() && !TakesTag(hit)) reason = words::NotHere();
    if (!reason) return page::TextEdit{hit.found.begin, hit.found.end, hit.made->runtimeText};
    Keep(hit, std::move(*reason));
    return std::nullopt;
  }

  const Find* TagAt(std::size_t begin, const std::vector<Find>& tags) const {
    const auto tag = std::ranges::lower_bound(tags, begin, {}, &Find::begin);
    return tag == tags.end() || tag->begin != begin || tag->edits.empty() ? nullptr : &*tag;
  }
  bool IsTaken(const Block& block) const { return TagAt(block.begin, tags_) != nullptr; }

  // Takes the blocks over that hold tags now. A block that cannot hold them becomes what it would
  // be without them.
  void RemakeBlocks() {
    if (fillings_.empty()) return;
    page::TextEdits edits;
    for (const Filling& each : fillings_)
      edits.insert(edits.end(), each.edits.begin(), each.edits.end());
    const page::Page filled(page::Applied(bytes_, edits));
    std::vector<Find> tags;
    if (filled.Encoding().ReadsAs(page_.Encoding()))
      tags = FindTags(filled, page::Inspect(filled), mapping_, captions_).finds;
    std::size_t shift = 0;  // wraps around
    for (const Filling& each : fillings_) {
      const std::size_t begin = each.block->begin + shift;
      for (const page::TextEdit& edit : each.edits)
        shift += edit.bytes.size() - (edit.end - edit.begin);
      const Find* const tag = TagAt(begin, tags);
      if (tag == nullptr || tag->end != each.block->end + shift) {
        for (const Hit* const hit : each.hits) Keep(*hit, words::InsideRuntimeTag());
        continue;
      }
      Find find = Begin(each.hits);
      find.result = tag->result;
      find.contract = tag->contract;
      find.properties = tag->properties;
      find.edits = {{each.block->begin, each.block->end, tag->edits.front().bytes}};
      find.published = {{each.block->begin, each.block->end, tag->published.front().bytes}};
      finds_.push_back(std::move(find));
      remade_.insert(each.block->begin);
    }
  }

  // Placeholders in the attributes of one tag.
  void TakeAttributes(Hits hits) {
    const auto tag = ElementTagAt(bytes_, hits.front().around.tag);
    const bool all =
        std::ranges::none_of(hits, [&](const Hit& hit) { return ReasonToKeep(hit).has_value(); });
    if (tag && all && TakeElement(*tag, hits)) return;
    for (std::size_t at = 0; at < hits.size();) {
      std::size_t end = at + 1;
      while (end < hits.size() && hits[end].around.begin == hits[at].around.begin) ++end;
      TakeValue(tag, hits.subspan(at, end - at));
      at = end;
    }
  }

  void TakeValue(const std::optional<ElementTag>& tag, Hits hits) {
    if (const auto edit = EditOfValue(tag, hits)) AddAround(hits, Result::tag, {*edit}, {*edit});
  }

  // Writes the tags of all placeholders into one value. Nothing after keeping them.
  std::optional<page::TextEdit> EditOfValue(const std::optional<ElementTag>& tag, Hits hits) {
    const Hit* kept = nullptr;
    for (const Hit& hit : hits)
      if (ReasonToKeep(hit)) kept = &hit;
    const auto attribute = [&]() -> const ElementTag::Attribute* {
      if (!tag) return nullptr;
      const auto found = std::ranges::find_if(tag->attributes, [&](const auto& each) {
        return each.hasValue && each.begin <= hits.front().found.begin &&
               hits.back().found.end <= each.end;
      });
      return found == tag->attributes.end() ? nullptr : &*found;
    }();
    std::optional<std::string> value;
    if (kept == nullptr && attribute != nullptr) value = ValueWithTags(page_, *attribute, hits);
    if (!value) {
      for (const Hit& hit : hits) {
        auto reason = ReasonToKeep(hit);
        if (!reason && kept != nullptr)
          reason = words::NeighbourNotMapped(
              Shown(Bytes(kept->found.begin, kept->found.end), page_.Encoding()));
        if (!reason)
          reason = attribute != nullptr && attribute->value.find('\'') != page::npos
                       ? words::QuotesInValue()
                       : words::NotHere();
        Keep(hit, std::move(*reason));
      }
      return std::nullopt;
    }
    return page::TextEdit{attribute->begin, attribute->end, std::move(*value)};
  }

  // Adds the find of several placeholders that become one thing. The first one carries the edits.
  void AddAround(Hits hits, Result result, page::TextEdits edits, page::TextEdits published,
                 const ControlClass* contract = nullptr,
                 std::vector<std::pair<std::string, std::string>> properties = {}) {
    std::vector<const Hit*> all;
    for (const Hit& hit : hits) all.push_back(&hit);
    Find find = Begin(all);
    find.result = result;
    if (contract != nullptr) {
      find.contract = contract;
      find.properties = std::move(properties);
    }
    find.edits = std::move(edits);
    find.published = std::move(published);
    finds_.push_back(std::move(find));
  }

  // Turns the element into an element control, or two around its content. False when that would
  // not give the same HTML.
  bool TakeElement(const ElementTag& tag, Hits hits) {
    if (tag.name.find(':') != page::npos || IsOneOf(kHeadElements, tag.name)) return false;
    const auto pairs = AttributesOf(page_, tag, hits);
    if (!pairs) return false;
    const auto end = tag.isVoid ? std::nullopt : EndTagOf(tag.begin);
    if (!tag.isVoid && !end) return false;
    const bool alone = end && IsOneOf(kTextElements, tag.name) && IsPlain(tag.end, end->begin);
    if (alone && TakeLink(tag, *pairs, *end, hits)) return true;

    const ControlClass& contract = ElementClass();
    std::string list;
    for (const auto& [name, value] : *pairs)
      list += (list.empty() ? "" : "||") + name + '|' + value;
    Target target{&contract, {{"Value", std::string(tag.name)}, {"Attributes", list}}};
    std::string content;
    if (alone) {
      page_.Encoding().Decode(Bytes(tag.end, end->begin), content);
      target.properties.emplace_back("HTMLContent", content);
    } else if (end) {
      target.properties.emplace_back("OpeningTagOnly", "true");
    }
    const Bag bag = BagFor(target, {});
    const auto made = Make(contract, bag, page_.Encoding());
    if (!made || !GivesAttributes(page_.Encoding(), *made, *pairs)) return false;
    if (alone) {
      AddAround(hits, Result::element, {{tag.begin, end->end, made->element}},
                {{tag.begin, end->end, made->runtimeText}}, &contract, PropertiesOf(contract, bag));
      return true;
    }
    page::TextEdits edits = {{tag.begin, tag.end, made->element}};
    page::TextEdits published = {{tag.begin, tag.end, made->runtimeText}};
    if (end) {
      const Target closing{&contract,
                           {{"Value", std::string(tag.name)}, {"ClosingTagOnly", "true"}}};
      const auto closed = Make(contract, BagFor(closing, {}), page_.Encoding());
      if (!closed) return false;
      edits.push_back({end->begin, end->end, closed->element});
      published.push_back({end->begin, end->end, closed->runtimeText});
    }
    AddAround(hits, Result::element, std::move(edits), std::move(published), &contract,
              PropertiesOf(contract, bag));
    return true;
  }

  // Turns a link into a click tracker where the mapping asks for it.
  bool TakeLink(const ElementTag& tag, const AttributePairs& pairs, const EndTag& end, Hits hits) {
    if (!mapping_.links || !EqualIgnoringCase(tag.name, "a") || pairs.size() != 1 ||
        !EqualIgnoringCase(pairs.front().name, "href"))
      return false;
    Target target = *mapping_.links;
    std::string content;
    page_.Encoding().Decode(Bytes(tag.end, end.begin), content);
    target.properties.emplace_back("HTMLContent", content);
    target.properties.emplace_back("Href", pairs.front().value);
    for (auto& [property, value] : target.properties)
      if (const std::size_t hole = value.find(kNumberHole); hole != std::string::npos)
        value.replace(hole, kNumberHole.size(), std::to_string(links_ + 1));
    const Bag bag = BagFor(target, {});
    const auto made = Make(*target.contract, bag, page_.Encoding());
    if (!made) return false;
    ++links_;
    AddAround(hits, Result::element, {{tag.begin, end.end, made->element}},
              {{tag.begin, end.end, made->runtimeText}}, target.contract,
              PropertiesOf(*target.contract, bag));
    return true;
  }

  std::optional<EndTag> EndTagOf(std::size_t startTag) {
    if (!endTags_) endTags_.emplace(bytes_, inspection_);
    const auto end = endTags_->Of(startTag);
    // An end tag in a runtime tag belongs to it.
    if (end) {
      const auto around = FirstBehind(taken_, end->begin, &page::TextEdit::end);
      if (around != taken_.end() && around->begin < end->end) return std::nullopt;
    }
    return end;
  }

  // Whether a content can stand in a property: without controls, tags, placeholders and comments,
  // and without white space at its ends, which would be lost.
  bool IsPlain(std::size_t begin, std::size_t end) const {
    if (end <= begin || end - begin > kLongestContent || !endTags_->AreBalanced(begin, end))
      return false;
    const auto control = FirstBehind(inspection_.controls, begin, &page::FoundControl::end);
    if (control != inspection_.controls.end() && control->begin < end) return false;
    const auto tag = std::ranges::lower_bound(tags_, begin, {}, &Find::begin);
    if (tag != tags_.end() && tag->begin < end) return false;
    const auto hit = FirstBehind(hits_, begin, [](const Hit& each) { return each.found.end; });
    if (hit != hits_.end() && hit->found.begin < end) return false;
    std::string content;
    if (page_.Encoding().Decode(Bytes(begin, end), content) != page::npos) return false;
    return content.find("<!") == std::string::npos && content.find("-->") == std::string::npos &&
           content.find("--!>") == std::string::npos && TrimCrLf(content) == content &&
           DecodeMarkupTokens(EncodeMarkupTokens(content)) == content;
  }

  std::string_view Bytes(std::size_t begin, std::size_t end) const {
    return bytes_.substr(begin, end - begin);
  }

  const page::Page& page_;
  std::string_view bytes_;
  const page::Inspection& inspection_;
  const std::vector<Find>& tags_;
  BlockContents contents_;
  const Mapping& mapping_;
  const FieldCaptions& captions_;
  FieldSuggestions suggestions_;
  page::TextEdits taken_;  // of the runtime tags
  std::vector<Hit> hits_;
  std::vector<Find> finds_;
  std::vector<Filling> fillings_;
  std::set<std::size_t> remade_;  // where their blocks begin
  std::optional<EndTags> endTags_;
  int links_ = 0;
};

}  // namespace

std::vector<Find> FindPlaceholders(const page::Page& page, const page::Inspection& inspection,
                                   FoundTags& tags, const Mapping& mapping,
                                   const FieldCaptions& captions, const ObjectRef& office) {
  PlaceholderTaker taker(page, inspection, tags, mapping, captions, office);
  std::vector<Find> placeholders = taker.Take();
  std::erase_if(tags.finds, [&](const Find& tag) { return taker.IsRemade(tag); });
  return placeholders;
}

}  // namespace kvo::adopt
