#include "document/check/Fields.h"

#include <new>

#include "common/text/Suggest.h"
#include "common/values/Localized.h"
#include "document/page/Messages.h"

namespace kvo::check {
namespace {

using page::messages::Quoted;
using page::messages::WithSuggestion;

// Enough for a thousand unknown names against a hundred known ones; takes a few tenths of a second
// at most.
constexpr std::size_t kMostCompared = 100'000;

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

std::optional<FieldNames>& NamesIn(KnownFields& fields, FieldKind kind) {
  return kind == FieldKind::contact ? fields.contact : fields.order;
}

}  // namespace

FieldNames::FieldNames(std::vector<std::string> names) {
  const auto list = std::make_shared<List>();
  list->names = std::move(names);
  list->inOrder.assign(list->names.begin(), list->names.end());
  list->known.insert(list->names.begin(), list->names.end());
  list_ = list;
}

FieldNames::NearName FieldNames::Near(const std::string& name) {
  if (const auto asked = nearest_.find(name); asked != nearest_.end()) return asked->second;
  if (compared_ + list_->names.size() > kMostCompared) return {};
  compared_ += list_->names.size();
  const Suggestion near = SuggestNear(name, list_->inOrder);
  return nearest_[name] = {std::string(near.name), near.only};
}

std::string FieldNames::OnlyNear(const std::string& name) {
  NearName near = Near(name);
  return near.only ? std::move(near.name) : std::string();
}

KnownFields FieldsOf(const ObjectRef& office) {
  if (office == nullptr) return {};
  return {NamesOf(*office, "ContactFields"), NamesOf(*office, "OrderFields")};
}

std::string MeantField(FieldKind kind, const std::string& name, KnownFields& fields) {
  std::optional<FieldNames>& known = NamesIn(fields, kind);
  std::string meant = known && !known->Know(name) ? known->OnlyNear(name) : std::string();
  if (!uses::IsFieldName(meant)) meant.clear();
  return meant;
}

std::string WithFieldRenamed(const std::string& text, FieldKind kind, std::string_view name,
                             std::string_view newName) {
  page::TextEdits edits;
  ForEachFieldReference(text, [&](const FieldReference& reference) {
    if (reference.kind != kind || reference.name != name) return;
    const auto begin = static_cast<std::size_t>(reference.name.data() - text.data());
    edits.push_back({begin, begin + name.size(), std::string(newName)});
  });
  std::ranges::sort(edits, {}, &page::TextEdit::begin);
  return page::Applied(text, edits);
}

std::optional<Message> UnknownFieldMessage(FieldKind kind, const std::string& name,
                                           KnownFields& fields) {
  std::optional<FieldNames>& known = NamesIn(fields, kind);
  if (!known || known->Know(name)) return std::nullopt;
  const Localized what = kind == FieldKind::contact ? Localized{"Das Kontaktfeld", "contact field"}
                                                    : Localized{"Das Bestellfeld", "order field"};
  return WithSuggestion(
      {std::string(what.german) + ' ' + Quoted(name) +
           " gibt es nicht. Wählen Sie eines aus office.json oder ergänzen Sie es dort.",
       "There is no " + std::string(what.english) + ' ' + Quoted(name) +
           ". Choose one of office.json or add it there."},
      known->Nearest(name));
}

}  // namespace kvo::check
