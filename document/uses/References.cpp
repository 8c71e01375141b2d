#include "document/uses/References.h"

#include <algorithm>

#include "common/text/Blocks.h"
#include "common/values/Ascii.h"
#include "document/page/Scanner.h"

namespace kvo::uses {
namespace {

using page::npos;

struct FieldTag {
  FieldKind kind;
  std::string_view name;
};
constexpr char kPrefix = 'k';  // what both begin with
constexpr FieldTag kFieldTags[] = {{FieldKind::contact, "kv:contact"},
                                   {FieldKind::order, "kv:order"}};

constexpr std::string_view kScript = "kv:script";

// A character of a name in a script.
constexpr bool IsWord(char c) { return c != '-' && IsNameCharacter(c); }

using Found = std::function<void(const FieldReference&)>;

void FindPaths(std::string_view text, const Found& found) {
  for (std::size_t at = text.find('#'); at != npos; at = text.find('#', at)) {
    const auto reference = ReferenceAt(text.substr(at));
    const bool isContact = reference && reference->group == kContactGroup;
    const bool isField =
        reference && (isContact || reference->group == kOrderGroup) && IsFieldName(reference->name);
    if (isField)
      found({isContact ? FieldKind::contact : FieldKind::order, true, reference->name, at,
             at + reference->length});
    at += isField ? reference->length : 1;
  }
}

void FindTags(std::string_view text, const Found& found) {
  const char* const end = text.data() + text.size();
  Places<'<'> tags(text.data(), end);
  for (const char* place = tags.Next(); place != end; place = tags.Next()) {
    if (end - place < 2 || LowerAscii(place[1]) != kPrefix) continue;
    const auto begin = static_cast<std::size_t>(place - text.data());
    for (const FieldTag& fieldTag : kFieldTags) {
      if (!page::IsTagAt(text, begin, "<", fieldTag.name)) continue;
      page::TagReader tag(text, begin + 1 + fieldTag.name.size());
      page::RawAttribute attribute;
      std::optional<std::string_view> name;
      while (tag.Next(attribute))
        if (!name && EqualIgnoringCase(attribute.name, "field")) name = attribute.value;
      if (tag.CutOff()) return;
      if (name && IsFieldName(*name)) found({fieldTag.kind, false, *name, begin, tag.Position()});
      tags.SeekTo(text.data() + tag.Position());
      break;
    }
  }
}

// The statements are [from, to) of the text.
void FindWords(std::string_view text, std::size_t from, std::size_t to, const Found& found) {
  for (std::size_t dot = text.find('.', from); dot < to; dot = text.find('.', dot + 1)) {
    for (const FieldTag& field : kFieldTags) {
      const std::string_view group = GroupOf(field.kind);
      if (!text.substr(from, dot - from).ends_with(group)) continue;
      const std::size_t begin = dot - group.size();
      std::size_t end = dot + 1;
      while (end < to && IsWord(text[end])) ++end;
      // Neither the end of a longer path, nor its beginning, nor a call.
      const char before = begin > from ? text[begin - 1] : ' ';
      const char after = end < to ? text[end] : ' ';
      const std::string_view name = text.substr(dot + 1, end - dot - 1);
      if (!IsWord(before) && before != '.' && before != '#' && after != '.' && after != '(' &&
          IsNameInScript(name))
        found({field.kind, false, name, begin, end});
    }
  }
}

}  // namespace

bool IsFieldName(std::string_view name) {
  const auto belongs = [](char c) { return IsNameCharacter(c) || c == ' '; };
  return !name.empty() && name.front() != ' ' && name.back() != ' ' &&
         std::ranges::all_of(name, belongs);
}

std::optional<Reference> ReferenceAt(std::string_view text) {
  if (!text.starts_with('#')) return std::nullopt;
  std::size_t end = 1;
  while (end < text.size() && IsNameCharacter(text[end])) ++end;
  if (end == 1 || end >= text.size()) return std::nullopt;
  if (text[end] == '#' && IsLetter(text[1]))
    return Reference{kScriptGroup, text.substr(1, end - 1), end + 1, 0};
  if (text[end] != '.') return std::nullopt;
  // A path may have several names: "#system.mail.date#".
  const std::size_t names = end + 1;
  for (std::size_t name = names;; name = end + 1) {
    end = text.find_first_of(".#\n\"'<>", name);
    if (end == npos || !IsFieldName(text.substr(name, end - name))) return std::nullopt;
    if (text[end] == '#') break;
    if (text[end] != '.') return std::nullopt;
  }
  return Reference{text.substr(1, names - 2), text.substr(names, end - names), end + 1, 0};
}

void ForEachReference(std::string_view text, const std::function<void(const Reference&)>& found) {
  for (std::size_t at = text.find('#'); at != npos; at = text.find('#', at)) {
    auto reference = ReferenceAt(text.substr(at));
    if (reference) {
      reference->at = at;
      found(*reference);
    }
    at += reference ? reference->length : 1;
  }
}

void ForEachFieldReference(std::string_view text, const Found& found) {
  FindPaths(text, found);
  FindTags(text, found);
}

void ForEachScriptReference(std::string_view text, Statements where, const Found& found) {
  if (where == Statements::everywhere) return FindWords(text, 0, text.size(), found);
  for (std::size_t at = text.find('<'); at != npos; at = text.find('<', at + 1)) {
    if (!page::IsTagAt(text, at, "<", kScript)) continue;
    page::TagReader tag(text, at + 1 + kScript.size());
    tag.Skip();
    if (tag.CutOff()) return;
    const std::size_t from = tag.Position();
    if (text[from - 2] == '/') continue;
    for (at = text.find("</", from); at != npos && !page::IsTagAt(text, at, "</", kScript);)
      at = text.find("</", at + 2);
    if (at == npos) return;
    FindWords(text, from, at, found);
  }
}

bool IsNameInScript(std::string_view name) {
  return !name.empty() && !IsDigit(name.front()) && std::ranges::all_of(name, IsWord);
}

bool IsOrderNumber(FieldKind kind, std::string_view name) {
  return kind == FieldKind::order && EqualIgnoringCase(name, "orderid");
}

}  // namespace kvo::uses
