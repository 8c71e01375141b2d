#include "document/adopt/ElementTags.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/page/Scanner.h"

namespace kvo::adopt {
namespace {

constexpr std::string_view kVoid[] = {"area",  "base", "br",   "col",   "embed",  "hr",    "img",
                                      "input", "link", "meta", "param", "source", "track", "wbr"};

bool IsVoid(std::string_view name) {
  return std::ranges::find(kVoid, Lowered(name)) != std::end(kVoid);
}

}  // namespace

std::optional<ElementTag> ElementTagAt(std::string_view page, std::size_t begin) {
  if (begin + 1 >= page.size() || page[begin] != '<' || !IsLetter(page[begin + 1]))
    return std::nullopt;
  ElementTag tag;
  tag.begin = begin;
  const std::size_t nameEnd = page::EndOfTagName(page, begin + 1);
  tag.name = page.substr(begin + 1, nameEnd - begin - 1);
  page::TagReader reader(page, nameEnd);
  page::RawAttribute raw;
  while (reader.Next(raw)) {
    ElementTag::Attribute& attribute =
        tag.attributes.emplace_back(ElementTag::Attribute{raw.name, raw.value, raw.hasValue});
    if (!raw.hasValue) continue;
    attribute.begin = static_cast<std::size_t>(raw.value.data() - page.data());
    attribute.end = attribute.begin + raw.value.size();
    const char before = page[attribute.begin - 1];
    if (before != '"' && before != '\'') continue;
    --attribute.begin;
    ++attribute.end;
  }
  if (reader.CutOff()) return std::nullopt;
  tag.end = reader.Position();
  tag.isVoid = IsVoid(tag.name);
  return tag;
}

EndTags::EndTags(std::string_view page, const page::Inspection& inspection) {
  std::map<std::string, std::vector<std::size_t>> open;
  page::Scanner scanner(page);
  auto control = inspection.controls.begin();
  for (;;) {
    std::size_t at = page.find('<', scanner.Position());
    while (control != inspection.controls.end() && control->begin < at) {
      if (control->end > at || control->end > scanner.Position()) {
        scanner.SeekTo(std::max(scanner.Position(), control->end));
        at = page.find('<', scanner.Position());
      }
      ++control;
    }
    if (at == page::npos) return;
    if (control != inspection.controls.end() && control->begin == at) {
      scanner.SeekTo(control->end);
      ++control;
      continue;
    }
    scanner.SeekTo(at);
    scanner.SkipOne();
    const bool isEnd = page.substr(at).starts_with("</");
    const std::size_t nameBegin = at + (isEnd ? 2 : 1);
    if (nameBegin >= page.size() || !IsLetter(page[nameBegin])) continue;
    const std::size_t nameEnd = page::EndOfTagName(page, nameBegin);
    const std::string name = Lowered(page.substr(nameBegin, nameEnd - nameBegin));
    if (!isEnd) {
      if (!IsVoid(name)) open[name].push_back(at);
      continue;
    }
    const auto starts = open.find(name);
    if (starts == open.end() || starts->second.empty()) continue;
    byStart_.emplace(starts->second.back(), EndTag{at, scanner.Position()});
    startOf_.emplace(at, starts->second.back());
    starts->second.pop_back();
  }
}

std::optional<EndTag> EndTags::Of(std::size_t startTag) const {
  const auto found = byStart_.find(startTag);
  if (found == byStart_.end()) return std::nullopt;
  return found->second;
}

bool EndTags::AreBalanced(std::size_t begin, std::size_t end) const {
  for (auto each = startOf_.lower_bound(begin); each != startOf_.end() && each->first < end; ++each)
    if (each->second < begin) return false;
  return true;
}

}  // namespace kvo::adopt
