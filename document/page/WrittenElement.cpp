#include "document/page/WrittenElement.h"

#include <algorithm>

#include "common/values/Ascii.h"
#include "document/page/Scanner.h"

namespace kvo::page {
namespace {

WrittenValue ValueOf(const RawAttribute& attribute, std::string_view bytes) {
  const auto begin = static_cast<std::size_t>(attribute.value.data() - bytes.data());
  const char before = bytes[begin - 1];
  return {begin, begin + attribute.value.size(), before == '"' || before == '\''};
}

}  // namespace

WrittenElement ReadWrittenElement(const Page& page, const FoundControl& found) {
  const std::string_view bytes = page.Bytes().substr(0, found.end);
  WrittenElement element;
  std::size_t next = FindObject(bytes, found.begin, bytes.size());
  if (next == npos) return element;
  RawAttribute attribute;
  TagReader start(bytes, next + kObjectStart.size());
  while (start.Next(attribute))
    if (attribute.hasValue)
      element.attributes.push_back({attribute.name, ValueOf(attribute, bytes)});
  next = element.firstParam = start.Position();
  for (;;) {
    WrittenParam param;
    param.begin = next;
    while (next < bytes.size() && IsHtmlSpace(bytes[next])) ++next;
    param.tag = next;
    const bool isParam = IsTagAt(bytes, next, "<", "param");
    if (!isParam && !IsTagAt(bytes, next, "</", "param")) return element;
    TagReader tag(bytes, EndOfTagName(bytes, next + (isParam ? 1 : 2)));
    while (tag.Next(attribute)) {
      if (param.key.empty() && EqualIgnoringCase(attribute.name, "name"))
        page.Encoding().DecodeAttribute(attribute.value, param.key);
      else if (!param.value && attribute.hasValue && EqualIgnoringCase(attribute.name, "value"))
        param.value = ValueOf(attribute, bytes);
    }
    param.end = next = tag.Position();
    if (isParam) element.params.push_back(std::move(param));
  }
}

}  // namespace kvo::page
