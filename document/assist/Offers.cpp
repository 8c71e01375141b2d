#include "document/assist/Offers.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "common/text/modGlobal.h"
#include "common/values/Ascii.h"
#include "document/assist/ElementPlace.h"
#include "document/page/ElementWriter.h"
#include "document/page/Scanner.h"
#include "document/uses/References.h"
#include "host/registration/classes.h"

namespace kvo::assist {
namespace {

using office::Field;
using page::npos;
using Kind = Offer::Kind;
using Part = ElementPlace::Part;

constexpr std::string_view kTokenMark = "kv:@";

// How far back a hand-written tag may begin.
constexpr std::size_t kTagReach = 1000;

Message Both(const Localized& text) {
  return {std::string(text.german), std::string(text.english)};
}
Message Both(const std::string& text) { return {text, text}; }

constexpr std::string_view TagOf(uses::FieldKind kind) {
  return kind == uses::FieldKind::contact ? "kv:contact" : "kv:order";
}

class Offers {
 public:
  Offers(const page::Page& page, std::size_t place, const office::Office::Description* office)
      : page_(page),
        text_(page.Bytes()),
        place_(std::min(place, text_.size())),
        office_(office),
        element_(ElementPlaceAt(page, place_)) {}

  std::vector<Offer> Take() {
    if (!element_) {
      AddFields();
    } else if (element_->part == Part::value) {
      AddForValue();
    } else if (element_->part == Part::attribute) {
      AddAttributes();
    } else {
      AddParams();
    }
    return std::move(offers_);
  }

 private:
  void AddForValue() {
    if (EqualIgnoringCase(element_->attribute, element_->inParam ? "name" : "classid")) {
      if (element_->inParam)
        AddKeys();
      else
        AddClasses();
    } else if (element_->inParam && EqualIgnoringCase(element_->attribute, "value")) {
      AddFields();
      AddValues();
    }
  }

  void AddClasses() {
    for (const RegisteredControl& registered : RegisteredControls()) {
      const ControlClass& contract = registered.contract();
      AddWhole(Kind::controlClass, std::string(contract.name), Both(contract.title),
               Both(contract.description),
               "progid:" + std::string(kLibraryName) + '.' + std::string(contract.name));
    }
  }

  // Calls `add` with each row whose key the element lacks.
  template <class Add>
  void ForEachMissingKey(Add add) const {
    if (element_->contract == nullptr) return;
    for (const PropertyRow& row : element_->contract->bag)
      // A row without a property is read for old pages only.
      if (row.id != 0 &&
          std::ranges::find(element_->otherKeys, row.key) == element_->otherKeys.end())
        add(row);
  }

  void AddKeys() {
    ForEachMissingKey([this](const PropertyRow& row) {
      AddWhole(Kind::key, std::string(row.key), Both(row.Caption()), Both(row.input.help),
               std::string(row.key));
    });
  }

  void AddParams() {
    ForEachMissingKey([this](const PropertyRow& row) {
      std::string tag = "<param name=\"" + std::string(row.key) + "\" value=\"";
      page::AppendAttributeValue(row.readDefault, page_.Encoding(), tag);
      const std::size_t caret = tag.size();
      offers_.push_back({Kind::key,
                         std::string(row.key),
                         Both(row.Caption()),
                         Both(row.input.help),
                         {element_->begin, place_, tag + "\">"},
                         caret});
    });
  }

  void AddAttributes() {
    constexpr std::string_view kOfObject[] = {"classid", "id"};
    constexpr std::string_view kOfParam[] = {"name", "value"};
    for (const std::string_view name : element_->inParam ? kOfParam : kOfObject) {
      const std::string bytes = std::string(name) + "=\"\"";
      offers_.push_back({Kind::attribute,
                         std::string(name),
                         {},
                         {},
                         {element_->begin, place_, bytes},
                         bytes.size() - 1});
    }
  }

  void AddValues() {
    const PropertyRow* row =
        element_->contract == nullptr ? nullptr : element_->contract->FindKey(element_->key);
    if (row == nullptr) return;
    if (row->type == PropertyType::flag) {
      const bool hasWords = !row->codec.yes.empty();
      AddValue(hasWords ? row->codec.yes : "true", {"ja", "yes"});
      AddValue(hasWords ? row->codec.no : "false", {"nein", "no"});
    }
    if (row->input.kind == InputKind::officeField)
      for (const Field& field : FieldsOf(KindOfClass()))
        AddWhole(Kind::field, field.sqlName, Both(field.displayName), {}, field.sqlName);
    if (row->input.choices != nullptr)
      for (const Choice& choice : row->input.choices())
        AddWhole(Kind::value, ToText(choice.value), choice.caption, {}, ToText(choice.value));
    if (row->name == "basename") AddValue(element_->contract->TagName(), element_->contract->title);
  }
  void AddValue(std::string_view value, const Localized& meaning) {
    AddWhole(Kind::value, std::string(value), Both(meaning), {}, std::string(value));
  }

  // Adds an offer that replaces the whole value.
  void AddWhole(Kind kind, std::string label, Message detail, Message help,
                const std::string& value) {
    if (text_.substr(element_->begin, place_ - element_->begin).find_first_of("\r\n") != npos)
      return;  // too long to be the beginning of one of ours
    page::TextEdit edit{element_->begin, place_, {}};
    if (page::AppendAttributeValue(value, page_.Encoding(), edit.bytes)) return;
    if (element_->quote == '\0') {
      edit.bytes = '"' + edit.bytes + '"';
    } else {
      const std::size_t end = text_.find_first_of(std::string("<>\r\n") + element_->quote, place_);
      if (end != npos && text_[end] == element_->quote) edit.end = end;
    }
    const std::size_t caret = edit.bytes.size();
    offers_.push_back(
        {kind, std::move(label), std::move(detail), std::move(help), std::move(edit), caret});
  }

  uses::FieldKind KindOfClass() const {
    return element_->contract->name == "DTCOrder" ? uses::FieldKind::order
                                                  : uses::FieldKind::contact;
  }
  std::span<const Field> FieldsOf(uses::FieldKind kind) const {
    if (office_ == nullptr) return {};
    return kind == uses::FieldKind::contact ? office_->contactFields : office_->orderFields;
  }

  // Adds the fields that a reference begun in front of the place may name, in a value or in the
  // page's own text.
  void AddFields() {
    std::size_t word = place_;
    const std::size_t first = element_ ? element_->begin : place_ - std::min(place_, kTagReach);
    while (word > first && uses::IsNameCharacter(text_[word - 1])) --word;
    const std::string before = Plain(text_.substr(first, word - first));
    for (const uses::FieldKind kind : {uses::FieldKind::contact, uses::FieldKind::order}) {
      const std::string group(uses::GroupOf(kind));
      if (before.ends_with('#' + group + '.')) return AddNames(kind, word, true);
      const auto value = OpenValueOf(before, TagOf(kind));
      if (value && value->begin == before.size() && EqualIgnoringCase(value->attribute, "field"))
        return AddNames(kind, word, false);
      if (BeginsReference(before, word) && group.starts_with(text_.substr(word, place_ - word)))
        for (const Field& field : FieldsOf(kind)) AddReference(group + '.', field, word);
    }
  }

  // Returns the text before a word as its reader sees it.
  std::string Plain(std::string_view bytes) const {
    if (!element_) return std::string(bytes);
    std::string value;
    page_.Encoding().DecodeAttribute(bytes, value);
    return DecodeMarkupTokens(value);
  }

  // Whether the word follows a "#" that ends no reference. In the page's own text, where most "#"
  // belong to colours and links, the word must have begun.
  bool BeginsReference(std::string_view before, std::size_t word) const {
    if (!before.ends_with('#') || (!element_ && word == place_)) return false;
    const std::size_t line = before.find_last_of("\r\n");
    return std::ranges::count(before.substr(line == npos ? 0 : line), '#') % 2 == 1;
  }

  void AddNames(uses::FieldKind kind, std::size_t word, bool isPath) {
    for (const Field& field : FieldsOf(kind)) {
      if (isPath)
        AddReference({}, field, word);
      else
        AddField(field, {word, EndOfName(), field.sqlName}, field.sqlName);
    }
  }
  // Adds a reference with the "#" at its end.
  void AddReference(const std::string& group, const Field& field, std::size_t word) {
    std::size_t end = EndOfName();
    if (text_.substr(end).starts_with('#')) ++end;
    AddField(field, {word, end, {}}, group + field.sqlName + '#');
  }
  void AddField(const Field& field, page::TextEdit edit, const std::string& text) {
    if (!uses::IsFieldName(field.sqlName)) return;  // cannot be referred to
    edit.bytes.clear();
    const bool unwritable =
        element_ ? page::AppendAttributeValue(text, page_.Encoding(), edit.bytes).has_value()
                 : page::AppendText(text, page_.Encoding(), edit.bytes).has_value();
    if (unwritable) return;
    const std::size_t caret = edit.bytes.size();
    offers_.push_back(
        {Kind::field, field.sqlName, Both(field.displayName), {}, std::move(edit), caret});
  }
  std::size_t EndOfName() const {
    std::size_t end = place_;
    // A token may follow, which begins with letters.
    while (end < text_.size() && uses::IsNameCharacter(text_[end]) &&
           !text_.substr(end).starts_with(kTokenMark))
      ++end;
    return end;
  }

  const page::Page& page_;
  std::string_view text_;
  std::size_t place_;
  const office::Office::Description* office_;
  std::optional<ElementPlace> element_;
  std::vector<Offer> offers_;
};

}  // namespace

std::vector<Offer> OffersAt(const page::Page& page, std::size_t place,
                            const office::Office::Description* office) {
  return Offers(page, place, office).Take();
}

}  // namespace kvo::assist
