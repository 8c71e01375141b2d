#include "document/uses/Uses.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/values/Ascii.h"
#include "document/page/ProblemList.h"
#include "document/page/Scanner.h"
#include "document/page/Utf8.h"
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

// The row of a param; nullptr for one that the control's class does not know.
const PropertyRow* RowOf(const page::FoundControl& control, std::string_view key) {
  return control.contract == nullptr ? nullptr : control.contract->FindKey(key);
}

// Decodes a value as its control reads it. Without a row, nothing says whether it is in token form;
// then tokens are decoded.
MappedText Decoded(const page::Page& page, const page::WrittenValue& value,
                   const PropertyRow* row) {
  MappedText text(page.Bytes().substr(value.begin, value.end - value.begin), value.begin,
                  page.Encoding());
  if (row == nullptr || row->codec.name == kAsTokens.name) {
    if (row != nullptr && row->codec.read == kEncoding.read) text.RemoveCData();
    text.DecodeTokens();
  }
  return text;
}

// A use in a text around it, as UTF-8.
struct Around {
  std::string text;
  std::size_t begin = 0;
  std::size_t end = 0;
};

Around InValue(const page::Page& page, const page::FoundControl& control, const Use& use) {
  const page::WrittenElement element = page::ReadWrittenElement(page, control);
  const auto holds = [&](const page::WrittenValue& value) {
    return value.begin <= use.begin && use.end <= value.end;
  };
  const auto inside = [&](const page::WrittenValue& value, const PropertyRow* row) {
    const MappedText text = Decoded(page, value, row);
    Around around{text.Text(), 0, text.Text().size()};
    while (around.begin < around.end && text.PlaceOf(around.begin) < use.begin) ++around.begin;
    while (around.end > around.begin && text.PlaceOf(around.end) > use.end) --around.end;
    return around;
  };
  for (const page::WrittenAttribute& attribute : element.attributes)
    if (holds(attribute.value)) return inside(attribute.value, nullptr);
  for (const page::WrittenParam& param : element.params)
    if (param.value && holds(*param.value)) return inside(*param.value, RowOf(control, param.key));
  return {};
}

Around InLine(const page::Page& page, const Use& use) {
  constexpr std::size_t kReach = 200;  // a line may be as long as its page
  const std::string_view bytes = page.Bytes();
  const std::size_t line = bytes.find_last_of("\r\n", use.begin) + 1;  // 0 for the first one
  const std::size_t begin = std::max(line, use.begin - std::min(use.begin, kReach));
  const std::size_t end =
      std::min({bytes.find_first_of("\r\n", use.end), use.end + kReach, bytes.size()});
  Around around;
  const auto append = [&](std::string_view rest) {
    while (!rest.empty()) {
      const std::size_t length = page.Encoding().CharacterLength(rest);
      if (page.Encoding().Decode(rest.substr(0, length), around.text) != npos)
        page::AppendUtf8(around.text, page::kReplacementCharacter);
      rest.remove_prefix(length);
    }
    return around.text.size();
  };
  around.begin = append(bytes.substr(begin, use.begin - begin));
  around.end = append(bytes.substr(use.begin, use.end - use.begin));
  append(bytes.substr(use.end, end - use.end));
  return around;
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
      const PropertyRow* const row = RowOf(control, param.key);
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

  void SearchValue(const page::FoundControl& control, const std::string& property,
                   const page::WrittenValue& value, const PropertyRow* row) {
    const MappedText text = Decoded(page_, value, row);
    const auto add = [&](const FieldReference& reference, Form form) {
      const auto at = static_cast<std::size_t>(reference.name.data() - text.Text().data());
      const bool quoted = value.quoted && (form != Form::tag || IsQuotedAt(text.Text(), at));
      found_.uses.push_back({{KindOf(reference.kind), std::string(reference.name)},
                             form,
                             {},
                             text.PlaceOf(at),
                             text.PlaceOf(at + reference.name.size()),
                             quoted,
                             control.index,
                             property});
    };
    const bool isScript = control.className == "DTCScript" && property == "HTMLContent";
    Find(text.Text(), isScript ? Statements::everywhere : Statements::inTags, add);
  }

  void SearchOwnText() {
    const std::string text = WithoutControls(page_, found_.controls);
    Find(text, Statements::inTags, [&](const FieldReference& reference, Form form) {
      std::string name;
      if (page_.Encoding().Decode(reference.name, name) != npos) return;
      const auto at = static_cast<std::size_t>(reference.name.data() - text.data());
      found_.uses.push_back({{KindOf(reference.kind), std::move(name)},
                             form,
                             {},
                             at,
                             at + reference.name.size(),
                             form != Form::tag || IsQuotedAt(text, at),
                             Use::kNoControl,
                             {}});
    });
  }

  template <class Add>
  static void Find(std::string_view text, Statements scripts, const Add& add) {
    ForEachFieldReference(text, [&](const FieldReference& reference) {
      add(reference, reference.isPath ? Form::path : Form::tag);
    });
    ForEachScriptReference(text, scripts,
                           [&](const FieldReference& reference) { add(reference, Form::word); });
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

std::string Excerpt(const page::Page& page, const std::vector<page::FoundControl>& controls,
                    const Use& use) {
  constexpr std::size_t kMost = 40;  // bytes on each side
  constexpr std::string_view kDots = "...";
  const Around around = use.control == Use::kNoControl ? InLine(page, use)
                                                       : InValue(page, controls[use.control], use);
  const std::string& text = around.text;
  const auto isInside = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80;
  };
  std::size_t begin = around.begin - std::min(around.begin, kMost);
  std::size_t end = std::min(text.size(), around.end + kMost);
  while (isInside(begin)) ++begin;
  while (isInside(end)) --end;
  std::string excerpt = text.substr(begin, end - begin);
  std::ranges::replace_if(
      excerpt, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  excerpt.erase(0, std::min(excerpt.find_first_not_of(' '), excerpt.size()));
  if (begin > 0) excerpt.insert(0, kDots);
  return excerpt.append(end == text.size() ? std::string_view() : kDots);
}

std::string WithoutControls(const page::Page& page,
                            const std::vector<page::FoundControl>& controls) {
  std::string text(page.Bytes());
  for (const page::FoundControl& control : controls) {
    const std::size_t end = std::min(control.end, text.size());
    if (control.begin < end)
      text.replace(control.begin, end - control.begin, end - control.begin, '\n');
  }
  return text;
}

}  // namespace kvo::uses
