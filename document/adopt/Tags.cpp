#include "document/adopt/Tags.h"

#include <algorithm>

#include "controls/BlockLevel.h"
#include "document/adopt/TagControl.h"
#include "document/adopt/Words.h"
#include "document/page/Scanner.h"
#include "document/page/Surroundings.h"
#include "document/preview/RuntimeTag.h"
#include "document/preview/Words.h"
#include "host/registration/classes.h"

namespace kvo::adopt {
namespace {

using preview::RuntimeTag;
using preview::TagKind;

// The page as the finder of tags expects it, with nothing to look for in the controls.
preview::TagPrefixes PrefixesIn(std::string_view page, const page::Inspection& inspection,
                                const Mapping& mapping) {
  preview::TagPrefixes prefixes;
  for (const std::string& each : mapping.namespaces) prefixes.insert(each + ':');
  for (const page::FoundControl& control : inspection.controls) {
    const auto entry = std::ranges::find(control.bag, "namespace", &MemoryBag::Entry::first);
    if (entry != control.bag.end() && !entry->second.empty()) prefixes.insert(entry->second + ':');
  }
  // Markers stand around tags of the language alone.
  for (std::size_t at = page.find(kBlockStart); at != page::npos; at = page.find(kBlockStart, at)) {
    at += kBlockStart.size();
    const std::string_view tag = page.substr(at, 100);
    const std::size_t colon = tag.find_first_of(": />");
    if (tag.starts_with('<') && colon != page::npos && colon > 1 && tag[colon] == ':')
      prefixes.emplace(tag.substr(1, colon));
  }
  return prefixes;
}

class TagFinder {
 public:
  TagFinder(const page::Page& page, const page::Inspection& inspection, const Mapping& mapping,
            const FieldCaptions& captions)
      : page_(page), captions_(captions), around_(page) {
    source_.bytes = page.Bytes();
    for (const page::FoundControl& control : inspection.controls) {
      page::PublishedControl& part = source_.controls.emplace_back();
      part.begin = control.begin;
      part.end = control.end;
      part.failed = true;  // a part to leave alone
    }
    tags_ = preview::FindRuntimeTags(source_, page.Encoding(),
                                     PrefixesIn(page.Bytes(), inspection, mapping));
  }

  FoundTags Take() {
    Visit(tags_.tags, nullptr);
    return std::move(found_);
  }

 private:
  using Range = Block::Range;

  void Visit(const std::vector<RuntimeTag>& tags, const RuntimeTag* outer) {
    for (const RuntimeTag& tag : tags) {
      if (tag.kind == TagKind::failed) continue;
      // The inner tag of a condition that stays, too, is a part of it.
      const bool isElse = tag.kind == TagKind::otherwise && outer != nullptr &&
                          outer->kind == TagKind::condition &&
                          tag.mistake == RuntimeTag::Mistake::none;
      if (isElse || !TakeTag(tag)) Visit(tag.inner, &tag);
    }
  }

  // Adds the find of a tag; false when it stays, and its inner tags are to be looked at.
  bool TakeTag(const RuntimeTag& tag) {
    const std::string_view bytes = page_.Bytes();
    Range range = {tag.begin, tag.end};
    const bool marked = bytes.substr(0, range.begin).ends_with(kBlockStart) &&
                        bytes.substr(range.end).starts_with(kBlockEnd);
    if (marked) range = {range.begin - kBlockStart.size(), range.end + kBlockEnd.size()};

    Find found;
    found.begin = range.begin;
    found.end = range.end;
    found.text = Shown(bytes.substr(tag.begin, tag.end - tag.begin), page_.Encoding());
    found.reason = Convert(tag, range, marked, found);
    const bool taken = !found.edits.empty();
    // A part of a tag that stays needs no word of its own.
    found_.finds.push_back(std::move(found));
    if (marked && (found_.blocks.empty() || found_.blocks.back().end <= range.begin)) {
      Block& block = found_.blocks.emplace_back(Block{range.begin, range.end, {}});
      AddContents(tag, block.contents);
    }
    return taken;
  }

  static void AddContents(const RuntimeTag& tag, std::vector<Range>& contents) {
    if (tag.mistake != RuntimeTag::Mistake::none || tag.kind == TagKind::script) return;
    std::size_t begin = tag.contentBegin;
    for (const RuntimeTag& inner : tag.inner) {
      contents.push_back({begin, inner.begin});
      AddContents(inner, contents);
      begin = inner.end;
    }
    contents.push_back({begin, tag.contentEnd});
  }

  // Returns why the tag stays, or fills in the edits.
  Message Convert(const RuntimeTag& tag, Range range, bool marked, Find& found) {
    const page::Surroundings around = around_.At(range.begin);
    switch (tag.mistake) {
      case RuntimeTag::Mistake::quote:
        return preview::words::BrokenTag();
      case RuntimeTag::Mistake::unended:
        return preview::words::UnendedTag();
      case RuntimeTag::Mistake::unclosed:
        return preview::words::UnclosedTag(tag.name);
      case RuntimeTag::Mistake::stray:
        return preview::words::StrayEnd();
      case RuntimeTag::Mistake::deep:
        return preview::words::TooDeep();
      case RuntimeTag::Mistake::none:
        break;
    }
    const RegisteredControl* const registered = FindControlByName(preview::ClassOf(tag.kind));
    if (registered == nullptr) return words::UnknownTag(tag.name);
    if (!around.CanHoldControl()) return words::NoPlaceForControl();
    const auto& parts = source_.controls;
    const auto part =
        std::ranges::lower_bound(parts, range.begin, {}, &page::PublishedControl::begin);
    if (part != parts.end() && part->begin < range.end) return words::AroundControls();

    const ControlClass& contract = registered->contract();
    WrittenTag written;
    if (!Write(tag, range, contract, written)) return words::NotTheSame();
    // What is nothing without markers need not be read.
    const bool isBlock = tag.contentBegin != tag.end && tag.kind != TagKind::script;
    if (isBlock && !written.contents.empty() && !marked) return words::NoMarkers();
    TagControl control = ControlOf(contract, written);
    if (!control.bag) return std::move(control.reason);
    captions_.AddTo(contract, *control.bag);
    const auto made = Make(contract, *control.bag, page_.Encoding());
    const std::string_view old = page_.Bytes().substr(range.begin, range.end - range.begin);
    if (!made) return words::NotInEncoding();
    if (made->runtimeText != old) return words::NotTheSame();
    found.result = Find::Result::control;
    found.contract = &contract;
    found.properties = PropertiesOf(contract, *control.bag);
    found.edits = {{range.begin, range.end, made->element}};
    found.published = {{range.begin, range.end, std::string(old)}};
    return {};
  }

  // False when bytes are not valid in the page's encoding.
  bool Write(const RuntimeTag& tag, Range range, const ControlClass& contract,
             WrittenTag& written) const {
    const std::string_view bytes = page_.Bytes();
    const auto decode = [&](std::string_view part, std::string& text) {
      return page_.Encoding().Decode(part, text) == page::npos;
    };
    const std::size_t colon = tag.name.find(':');
    page::TagReader reader(bytes, tag.begin + 1 + tag.name.size());
    page::RawAttribute attribute;
    bool valid = decode(std::string_view(tag.name).substr(0, colon), written.prefix) &&
                 decode(std::string_view(tag.name).substr(colon + 1), written.name);
    while (valid && reader.Next(attribute)) {
      auto& [name, value] = written.attributes.emplace_back();
      valid = decode(attribute.name, name) && decode(attribute.value, value);
    }
    const auto addContent = [&](std::string_view property, std::size_t begin, std::size_t end) {
      if (contract.FindProperty(property) == nullptr) return;
      std::string text;
      valid = valid && decode(bytes.substr(begin, end - begin), text);
      written.contents.emplace_back(property, std::move(text));
    };
    std::size_t contentEnd = tag.contentEnd;
    if (!tag.inner.empty() && tag.kind == TagKind::condition) {
      const RuntimeTag& last = tag.inner.back();
      if (last.kind == TagKind::otherwise && last.end == tag.contentEnd) {
        addContent("OnFalse", last.contentBegin, last.contentEnd);
        contentEnd = last.begin;
      }
    }
    addContent("OnTrue", tag.contentBegin, contentEnd);
    addContent("HTMLContent", tag.contentBegin, tag.contentEnd);
    return valid && decode(bytes.substr(range.begin, range.end - range.begin), written.text);
  }

  const page::Page& page_;
  const FieldCaptions& captions_;
  page::PageSurroundings around_;
  page::PublishedPage source_;
  preview::RuntimeTags tags_;
  FoundTags found_;
};

}  // namespace

FoundTags FindTags(const page::Page& page, const page::Inspection& inspection,
                   const Mapping& mapping, const FieldCaptions& captions) {
  return TagFinder(page, inspection, mapping, captions).Take();
}

}  // namespace kvo::adopt
