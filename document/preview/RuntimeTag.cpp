#include "document/preview/RuntimeTag.h"

#include <algorithm>
#include <iterator>

#include "common/values/Ascii.h"
#include "controls/BlockLevel.h"
#include "document/page/Scanner.h"
#include "host/registration/classes.h"

namespace kvo::preview {
namespace {

using page::npos;

constexpr std::string_view kElse = "else";
constexpr std::size_t kDeepest = 100;
constexpr std::size_t kLongestPrefix = 100;
// Beyond so many tags that never end, the rest of a text is read as plain.
constexpr int kMostUnended = 8;

struct ClassKind {
  std::string_view className;
  TagKind kind;
};
constexpr ClassKind kClassKinds[] = {{"DTCPrint", TagKind::print},
                                     {"DTCContact", TagKind::contact},
                                     {"DTCOrder", TagKind::order},
                                     {"DTCConfig", TagKind::config},
                                     {"DTCElement", TagKind::element},
                                     {"DTCScript", TagKind::script},
                                     {"DTCIf", TagKind::condition},
                                     {"DTCProductList", TagKind::products},
                                     {"DTCPositionList", TagKind::positions},
                                     {"DTCClicktracker", TagKind::click},
                                     {"DTCViewtracker", TagKind::view},
                                     {"DTCUnsubscriber", TagKind::unsubscribe}};

TagKind KindOfClass(std::string_view className) {
  const auto* const found = std::ranges::find(kClassKinds, className, &ClassKind::className);
  return found == std::end(kClassKinds) ? TagKind::unknown : found->kind;
}

// Most classes write "print" unless they are given another name, and then differ by an attribute.
struct Trait {
  std::string_view attribute;
  TagKind kind;
};
constexpr Trait kTraits[] = {{"value", TagKind::print},
                             {"item", TagKind::config},
                             {"name", TagKind::element},
                             {"order-id", TagKind::positions},
                             {"selected-products", TagKind::products},
                             {"href", TagKind::click},
                             {"recipient", TagKind::unsubscribe}};

TagKind KindOfName(const RuntimeTag& tag) {
  const std::string_view name = std::string_view(tag.name).substr(tag.name.find(':') + 1);
  if (name == kElse) return TagKind::otherwise;
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    if (contract.TagName() != name) continue;
    const TagKind kind = KindOfClass(contract.name);
    if (kind != TagKind::print) return kind;
    for (const Trait& trait : kTraits)
      if (tag.Find(trait.attribute) != nullptr) return trait.kind;
    return tag.attributes.empty() ? TagKind::view : TagKind::unknown;
  }
  return TagKind::unknown;
}

// Whether the tag is nothing without its content.
bool WrapsContent(TagKind kind) {
  return kind == TagKind::condition || kind == TagKind::otherwise || kind == TagKind::click ||
         kind == TagKind::unsubscribe || kind == TagKind::script;
}

class Finder {
 public:
  Finder(const page::PublishedPage& page, const page::PageEncoding& encoding, TagPrefixes prefixes)
      : text_(page.bytes),
        encoding_(encoding),
        parts_(page.controls),
        prefixes_(std::move(prefixes)) {}

  RuntimeTags Find() {
    FindPrefixes();
    Read(0, text_.size(), 0, parts_.size());
    std::ranges::sort(markers_, {}, &RuntimeTags::Marker::begin);
    return {std::move(found_), std::move(markers_)};
  }

 private:
  enum class Form { start, empty, end };

  void FindPrefixes() {
    prefixes_.emplace("kv:");
    for (const page::PublishedControl& part : parts_) {
      std::string_view tag = text_.substr(part.begin, part.end - part.begin);
      if (tag.starts_with(kBlockStart)) tag.remove_prefix(kBlockStart.size());
      const std::size_t colon = tag.find_first_of(": />");
      if (tag.starts_with('<') && colon != npos && colon > 1 && tag[colon] == ':')
        prefixes_.emplace(tag.substr(1, colon));
    }
  }

  // Finds the tags in [from, to), where the parts [part, endPart) stand, and appends them to
  // found_.
  void Read(std::size_t from, std::size_t to, std::size_t part, std::size_t endPart) {
    std::vector<RuntimeTag> before = std::exchange(found_, {});
    std::vector<RuntimeTag> openBefore = std::exchange(open_, {});
    const std::size_t skippedBefore = std::exchange(skipped_, 0);
    int unended = 0;
    for (std::size_t at = from; at < to;) {
      if (part != endPart && at == parts_[part].begin) {
        ReadPart(part);
        at = parts_[part++].end;
        continue;
      }
      const std::size_t limit = part == endPart ? to : parts_[part].begin;
      const std::size_t next =
          unended > kMostUnended ? limit : std::min(text_.substr(0, limit).find('<', at), limit);
      at = next < limit ? ReadHere(next, limit, unended) : limit;
      // Parts without text follow each other at one place.
      while (part != endPart && at == to && parts_[part].begin == to) ReadPart(part++);
    }
    while (!open_.empty()) GiveUp();
    open_ = std::move(openBefore);
    skipped_ = skippedBefore;
    if (!before.empty()) {
      std::ranges::move(found_, std::back_inserter(before));
      found_ = std::move(before);
    }
  }

  // Reads what begins with the "<" at `at`; returns where to read on.
  std::size_t ReadHere(std::size_t at, std::size_t limit, int& unended) {
    const std::string_view rest = text_.substr(at, limit - at);
    if (rest.starts_with(kBlockStart)) {
      markers_.push_back({at, at + kBlockStart.size()});
      return at + kBlockStart.size();
    }
    if (!IsOurs(rest.substr(rest.starts_with("</") ? 2 : 1))) return at + 1;
    RuntimeTag tag;
    Form form = Form::empty;
    if (!ReadTag(at, limit, tag, form)) {
      ++unended;
      tag.mistake = RuntimeTag::Mistake::unended;
      tag.end = tag.contentBegin = tag.contentEnd =
          page::EndOfTagName(text_.substr(0, limit), at + 1);
      const std::size_t end = tag.end;
      Add(std::move(tag));
      return end;
    }
    tag.kind = KindOfName(tag);
    std::size_t end = tag.contentBegin;
    if (form == Form::end) {
      Close(tag);
      if (text_.substr(end, limit - end).starts_with(kBlockEnd)) {
        markers_.push_back({end, end + kBlockEnd.size()});
        end += kBlockEnd.size();
      }
    } else if (form == Form::empty) {
      Add(std::move(tag));
    } else if (open_.size() == kDeepest) {
      ++skipped_;
      tag.kind = TagKind::unknown;
      tag.mistake = RuntimeTag::Mistake::deep;
      Add(std::move(tag));
    } else {
      open_.push_back(std::move(tag));
    }
    return end;
  }

  bool IsOurs(std::string_view name) const {
    const std::size_t end = name.substr(0, kLongestPrefix).find_first_of(": \t\r\n/>\"'<");
    return end != npos && name[end] == ':' && prefixes_.contains(name.substr(0, end + 1));
  }

  void ReadPart(std::size_t index) {
    const page::PublishedControl& part = parts_[index];
    RuntimeTag tag;
    tag.part = index;
    tag.begin = tag.contentBegin = tag.contentEnd = part.begin;
    tag.end = part.end;
    if (part.failed) {
      tag.kind = TagKind::failed;
      return Add(std::move(tag));
    }
    if (part.begin == part.end) return;  // a control without a value
    std::size_t begin = part.begin;
    std::size_t end = part.end;
    if (text_.substr(begin, end - begin).starts_with(kBlockStart)) {
      markers_.push_back({begin, begin + kBlockStart.size()});
      begin += kBlockStart.size();
    }
    if (text_.substr(begin, end - begin).ends_with(kBlockEnd)) {
      markers_.push_back({end - kBlockEnd.size(), end});
      end -= kBlockEnd.size();
    }
    Form form = Form::empty;
    if (!ReadTag(begin, end, tag, form)) tag.mistake = RuntimeTag::Mistake::quote;
    tag.kind = KindOfClass(part.className);
    tag.end = end;
    const std::string endTag = "</" + tag.name + ">";
    if (form == Form::start && end - tag.contentBegin >= endTag.size() &&
        text_.substr(tag.contentBegin, end - tag.contentBegin).ends_with(endTag)) {
      tag.contentEnd = end - endTag.size();
      if (tag.kind != TagKind::script) ReadContent(tag);
    } else {
      // The tag ends where a quotation mark in a value made it end.
      if (tag.contentBegin != end) tag.mistake = RuntimeTag::Mistake::quote;
      tag.contentBegin = tag.contentEnd = end;
    }
    Add(std::move(tag));
  }

  void ReadContent(RuntimeTag& tag) {
    std::vector<RuntimeTag> before = std::exchange(found_, {});
    Read(tag.contentBegin, tag.contentEnd, 0, 0);
    tag.inner = std::exchange(found_, std::move(before));
  }

  // Reads a tag at `at`, up to its content. False when it does not end before `limit`.
  bool ReadTag(std::size_t at, std::size_t limit, RuntimeTag& tag, Form& form) {
    const std::string_view text = text_.substr(0, limit);
    const bool isEnd = text.substr(at).starts_with("</");
    const std::size_t name = at + (isEnd ? 2 : 1);
    const std::size_t nameEnd = page::EndOfTagName(text, std::min(name, limit));
    tag.begin = at;
    tag.name = text.substr(name, nameEnd - name);
    page::TagReader reader(text, nameEnd);
    page::RawAttribute attribute;
    while (reader.Next(attribute)) {
      // What a quotation mark inside a value leaves behind.
      if (!attribute.hasValue || attribute.name.find('"') != npos)
        tag.mistake = RuntimeTag::Mistake::quote;
      std::string value;
      encoding_.DecodeAttribute(attribute.value, value);
      tag.attributes.emplace_back(attribute.name, std::move(value));
    }
    if (reader.CutOff()) return false;
    tag.contentBegin = tag.contentEnd = tag.end = reader.Position();
    form = isEnd ? Form::end : (text[tag.end - 2] == '/' ? Form::empty : Form::start);
    return true;
  }

  void Add(RuntimeTag tag) {
    (open_.empty() ? found_ : open_.back().inner).push_back(std::move(tag));
  }

  void Close(RuntimeTag& endTag) {
    if (skipped_ != 0) {
      --skipped_;
      return;
    }
    const auto open =
        std::ranges::find(open_.rbegin(), open_.rend(), endTag.name, &RuntimeTag::name);
    if (open == open_.rend()) {
      endTag.mistake = RuntimeTag::Mistake::stray;
      return Add(std::move(endTag));
    }
    for (auto above = std::distance(open_.rbegin(), open); above != 0; --above) GiveUp();
    RuntimeTag tag = std::move(open_.back());
    open_.pop_back();
    tag.contentEnd = endTag.begin;
    tag.end = endTag.contentBegin;
    Add(std::move(tag));
  }

  // The innermost open tag has no end tag: it is empty, and what followed it follows it still.
  void GiveUp() {
    RuntimeTag tag = std::move(open_.back());
    open_.pop_back();
    std::vector<RuntimeTag> inner = std::exchange(tag.inner, {});
    if (WrapsContent(tag.kind) || tag.kind == TagKind::element)
      tag.mistake = RuntimeTag::Mistake::unclosed;
    Add(std::move(tag));
    for (RuntimeTag& each : inner) Add(std::move(each));
  }

  std::string_view text_;
  const page::PageEncoding& encoding_;
  const std::vector<page::PublishedControl>& parts_;
  TagPrefixes prefixes_;
  std::vector<RuntimeTag> found_;
  std::vector<RuntimeTag> open_;
  std::size_t skipped_ = 0;  // open tags that are nested too deep
  std::vector<RuntimeTags::Marker> markers_;
};

}  // namespace

const std::string* RuntimeTag::Find(std::string_view attribute) const {
  const auto found =
      std::ranges::find_if(attributes, [&](const auto& each) { return each.first == attribute; });
  return found == attributes.end() ? nullptr : &found->second;
}

std::string_view ClassOf(TagKind kind) {
  const auto* const found = std::ranges::find(kClassKinds, kind, &ClassKind::kind);
  return found == std::end(kClassKinds) ? std::string_view() : found->className;
}

RuntimeTags FindRuntimeTags(const page::PublishedPage& page, const page::PageEncoding& encoding,
                            TagPrefixes prefixes) {
  return Finder(page, encoding, std::move(prefixes)).Find();
}

}  // namespace kvo::preview
