#include "document/uses/Uses.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/values/Ascii.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"
#include "document/page/WrittenElement.h"
#include "document/uses/MappedText.h"
#include "document/uses/References.h"
#include "host/registration/classes.h"

namespace kvo::uses {
namespace {

using page::npos;

Kind KindOf(FieldKind kind) {
  return kind == FieldKind::contact ? Kind::contactField : Kind::orderField;
}

// Whether a value of a tag, which begins at `at`, is in quotation marks.
bool IsQuotedAt(std::string_view text, std::size_t at) {
  return at > 0 && (text[at - 1] == '"' || text[at - 1] == '\'');
}

class Search {
 public:
  explicit Search(const page::Page& page) : page_(page) {}

  PageUses Run() {
    if (page_.Encoding().kind() == page::PageEncoding::Kind::utf16) return {};
    found_.controls = page::Inspect(page_).controls;
    for (const page::FoundControl& control : found_.controls) SearchControl(control);
    SearchOwnText();
    std::ranges::stable_sort(found_.uses, {}, &Use::begin);
    page::PlaceFinder places(page_.Bytes(), page_.Encoding());
    for (Use& use : found_.uses) use.place = places.At(use.begin);
    return std::move(found_);
  }

 private:
  void SearchControl(const page::FoundControl& control) {
    const page::WrittenElement element = page::ReadWrittenElement(page_, control);
    bool hasId = false;  // browsers and the page's reader take the first one
    for (const auto& [attribute, value] : element.attributes) {
      const std::string property(attribute);
      if (EqualIgnoringCase(attribute, "classid")) {
        Add(control, property, value, {Kind::controlClass, control.className});
      } else if (EqualIgnoringCase(attribute, "id")) {
        if (!hasId && !control.id.empty())
          Add(control, property, value, {Kind::controlId, control.id});
        hasId = true;
      } else {
        SearchValue(control, property, value, nullptr);
      }
    }
    for (const page::WrittenParam& param : element.params) {
      if (!param.value) continue;
      const PropertyRow* const row =
          control.contract == nullptr ? nullptr : control.contract->FindKey(param.key);
      const std::string property(row == nullptr || row->name.empty() ? param.key : row->name);
      if (property == "Field")
        SearchField(control, *param.value);
      else
        SearchValue(control, property, *param.value, row);
    }
  }

  std::string_view Bytes(const page::WrittenValue& value) const {
    return page_.Bytes().substr(value.begin, value.end - value.begin);
  }

  void Add(const page::FoundControl& control, const std::string& property,
           const page::WrittenValue& value, Name name) {
    found_.uses.push_back({std::move(name),
                           Form::value,
                           {},
                           value.begin,
                           value.end,
                           value.quoted,
                           control.index,
                           property});
  }

  void SearchField(const page::FoundControl& control, const page::WrittenValue& value) {
    std::string name;
    page_.Encoding().DecodeAttribute(Bytes(value), name);
    const bool isOrder = control.className == "DTCOrder";
    if (!name.empty())
      Add(control, "Field", value,
          {isOrder ? Kind::orderField : Kind::contactField, std::move(name)});
  }

  // `row` is nullptr where there is none to say whether the value is in token form.
  void SearchValue(const page::FoundControl& control, const std::string& property,
                   const page::WrittenValue& value, const PropertyRow* row) {
    MappedText text(Bytes(value), value.begin, page_.Encoding());
    if (row == nullptr || row->codec.name == kAsTokens.name) {
      if (row != nullptr && row->codec.read == kEncoding.read) text.RemoveCData();
      text.DecodeTokens();
    }
    ForEachFieldReference(text.Text(), [&](const FieldReference& reference) {
      const auto at = static_cast<std::size_t>(reference.name.data() - text.Text().data());
      const bool quoted = value.quoted && (reference.isPath || IsQuotedAt(text.Text(), at));
      found_.uses.push_back({{KindOf(reference.kind), std::string(reference.name)},
                             reference.isPath ? Form::path : Form::tag,
                             {},
                             text.PlaceOf(at),
                             text.PlaceOf(at + reference.name.size()),
                             quoted,
                             control.index,
                             property});
    });
  }

  void SearchOwnText() {
    const std::string text = WithoutControls(page_, found_.controls);
    ForEachFieldReference(text, [&](const FieldReference& reference) {
      std::string name;
      if (page_.Encoding().Decode(reference.name, name) != npos) return;
      const auto at = static_cast<std::size_t>(reference.name.data() - text.data());
      found_.uses.push_back({{KindOf(reference.kind), std::move(name)},
                             reference.isPath ? Form::path : Form::tag,
                             {},
                             at,
                             at + reference.name.size(),
                             reference.isPath || IsQuotedAt(text, at),
                             Use::kNoControl,
                             {}});
    });
  }

  const page::Page& page_;
  PageUses found_;
};

}  // namespace

std::string Written(const Name& name) {
  if (!IsField(name)) return name.text;
  const auto kind = name.kind == Kind::contactField ? FieldKind::contact : FieldKind::order;
  return std::string(GroupOf(kind)) + '.' + name.text;
}

std::vector<Name> NamesMeant(std::string_view word) {
  std::vector<Name> names;
  for (const FieldKind kind : {FieldKind::contact, FieldKind::order}) {
    const std::string prefix = std::string(GroupOf(kind)) + '.';
    if (word.starts_with(prefix) && word.size() > prefix.size())
      names.push_back({KindOf(kind), std::string(word.substr(prefix.size()))});
  }
  if (FindControlByName(word) != nullptr) names.push_back({Kind::controlClass, std::string(word)});
  names.push_back({Kind::controlId, std::string(word)});
  return names;
}

PageUses FindUses(const page::Page& page) { return Search(page).Run(); }

std::vector<Use> UsesOf(const Name& name, const std::vector<Use>& uses) {
  std::vector<Use> same;
  std::ranges::copy_if(uses, std::back_inserter(same),
                       [&](const Use& use) { return use.name == name; });
  return same;
}

std::string WithoutControls(const page::Page& page,
                            const std::vector<page::FoundControl>& controls) {
  std::string text(page.Bytes());
  for (const page::FoundControl& control : controls) {
    const std::size_t end = std::min(control.end, text.size());
    if (control.begin < end)
      text.replace(control.begin, end - control.begin, end - control.begin, ' ');
  }
  return text;
}

}  // namespace kvo::uses
