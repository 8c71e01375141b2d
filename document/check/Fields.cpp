#include "document/check/Fields.h"

#include <algorithm>
#include <new>

#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "common/values/Localized.h"
#include "document/page/Messages.h"
#include "document/page/Scanner.h"

namespace kvo::check {
namespace {

using page::messages::Quoted;
using page::messages::WithSuggestion;

// Enough for a thousand unknown names against a hundred known ones; takes a few tenths of a second
// at most.
constexpr std::size_t kMostCompared = 100'000;

struct Spelling {
  FieldKind kind;
  std::string_view path;  // after "#"
  std::string_view tag;   // after "<"
  Localized what;
};
constexpr Spelling kSpellings[] = {
    {FieldKind::contact, "customer.", "kv:contact", {"Das Kontaktfeld", "contact field"}},
    {FieldKind::order, "order.", "kv:order", {"Das Bestellfeld", "order field"}},
};

// Position lists use this name for the order number, in two spellings, whatever the office calls
// it.
constexpr std::string_view kOrderNumber = "orderid";

using Found = std::function<void(const FieldReference&)>;

void FindPaths(std::string_view text, const Found& found) {
  for (std::size_t at = text.find('#'); at != page::npos; at = text.find('#', at)) {
    const std::size_t begin = at++;
    for (const Spelling& spelling : kSpellings) {
      if (!text.substr(at).starts_with(spelling.path)) continue;
      const std::size_t name = at + spelling.path.size();
      const std::size_t end = text.find_first_of("#\n\"'<>", name);
      if (end == page::npos) return;
      if (text[end] != '#' || !IsFieldName(text.substr(name, end - name))) break;
      if (spelling.kind != FieldKind::order ||
          !EqualIgnoringCase(text.substr(name, end - name), kOrderNumber))
        found({spelling.kind, true, text.substr(name, end - name), begin, end + 1});
      at = end + 1;
      break;
    }
  }
}

void FindTags(std::string_view text, const Found& found) {
  for (std::size_t at = text.find('<'); at != page::npos; at = text.find('<', at)) {
    const std::size_t begin = at++;
    for (const Spelling& spelling : kSpellings) {
      if (!page::IsTagAt(text, begin, "<", spelling.tag)) continue;
      page::TagReader tag(text, at + spelling.tag.size());
      page::RawAttribute attribute;
      std::optional<std::string_view> name;
      while (tag.Next(attribute))
        if (!name && EqualIgnoringCase(attribute.name, "field")) name = attribute.value;
      if (tag.CutOff()) return;
      if (name && IsFieldName(*name)) found({spelling.kind, false, *name, begin, tag.Position()});
      at = tag.Position();
      break;
    }
  }
}

std::optional<FieldNames> NamesOf(Object& office, std::string_view list) {
  std::vector<std::string> names;
  try {
    ForEach(*ToObject(office.Get(list)), [&](const Variant& field) {
      names.push_back(ToText(ToObject(field)->Get("SQLName")));
    });
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return std::nullopt;  // a context object without this list
  }
  if (names.empty()) return std::nullopt;
  return FieldNames(std::move(names));
}

}  // namespace

bool IsFieldName(std::string_view name) {
  const auto belongs = [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '_' || c == '-' || c == ' ' ||
           static_cast<unsigned char>(c) >= 0x80;
  };
  return !name.empty() && name.front() != ' ' && name.back() != ' ' &&
         std::ranges::all_of(name, belongs);
}

FieldNames::FieldNames(std::vector<std::string> names)
    : names_(std::move(names)),
      inOrder_(names_.begin(), names_.end()),
      known_(names_.begin(), names_.end()) {}

std::string FieldNames::Nearest(const std::string& name) {
  if (const auto asked = nearest_.find(name); asked != nearest_.end()) return asked->second;
  if (compared_ + names_.size() > kMostCompared) return {};
  compared_ += names_.size();
  return nearest_[name] = Suggest(name, inOrder_);
}

KnownFields FieldsOf(const ObjectRef& office) {
  if (office == nullptr) return {};
  return {NamesOf(*office, "ContactFields"), NamesOf(*office, "OrderFields")};
}

void ForEachFieldReference(std::string_view text, const Found& found) {
  FindPaths(text, found);
  FindTags(text, found);
}

std::optional<Message> UnknownFieldMessage(FieldKind kind, const std::string& name,
                                           KnownFields& fields) {
  std::optional<FieldNames>& known = kind == FieldKind::contact ? fields.contact : fields.order;
  if (!known || known->Know(name)) return std::nullopt;
  const Localized what = std::ranges::find(kSpellings, kind, &Spelling::kind)->what;
  return WithSuggestion(
      {std::string(what.german) + ' ' + Quoted(name) +
           " gibt es nicht. Wählen Sie eines aus office.json oder ergänzen Sie es dort.",
       "There is no " + std::string(what.english) + ' ' + Quoted(name) +
           ". Choose one of office.json or add it there."},
      known->Nearest(name));
}

}  // namespace kvo::check
