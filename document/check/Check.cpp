#include "document/check/Check.h"

#include <algorithm>
#include <map>

#include "common/values/RuntimeError.h"
#include "document/check/ControlRules.h"
#include "document/check/Fixes.h"
#include "document/check/Products.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/ProblemList.h"
#include "document/uses/Uses.h"

namespace kvo::check {
namespace {

using page::messages::Plain;
using page::messages::Quoting;

std::string PlaceText(const page::FoundControl& control) {
  return std::to_string(control.place.line) + ":" + std::to_string(control.place.column);
}

// Pairs the tag-only elements of a page, noted in page order, and reports those without a partner.
// A closing element pairs with the last open element of its name. A message names both places where
// there are two.
class Balance {
 public:
  void Note(const Checked& checked) {
    if (!checked.Has("OpeningTagOnly")) return;
    const bool opens = checked.Flag("OpeningTagOnly");
    const std::string name = checked.Text("Value");
    if (opens == checked.Flag("ClosingTagOnly") || name.empty()) return;
    if (opens)
      Open(names_[name], checked.found);
    else
      Close(name, names_[name], checked.found);
  }

  page::Problems Take() {
    constexpr Quoting kNeverClosed = {"Dieses öffnende Element {} wird nie geschlossen.",
                                      "This opening element {} is never closed."};
    constexpr Plain kLast = {" Das letzte schließende steht in {}.",
                             " The last closing one stands at {}."};
    for (const auto& [name, tags] : names_)
      for (const page::FoundControl* control : tags.open)
        Add(*control, kNeverClosed(name),
            tags.lastClose == nullptr ? Message() : kLast(PlaceText(*tags.lastClose)));
    return std::move(problems_);
  }

 private:
  struct Tags {
    std::vector<const page::FoundControl*> open;
    const page::FoundControl* lastOpen = nullptr;
    const page::FoundControl* lastClose = nullptr;
  };

  static void Open(Tags& tags, const page::FoundControl& control) {
    tags.open.push_back(&control);
    tags.lastOpen = &control;
  }

  void Close(const std::string& name, Tags& tags, const page::FoundControl& control) {
    constexpr Quoting kNotOpen = {"Dieses schließende Element {} hat kein öffnendes vor sich.",
                                  "This closing element {} has no opening one before it."};
    constexpr Plain kLast = {" Das letzte öffnende ({}) schließt schon das Element in {}.",
                             " The last opening one ({}) is closed by the element at {} already."};
    if (tags.open.empty())
      return Add(control, kNotOpen(name),
                 tags.lastClose == nullptr
                     ? Message()
                     : kLast(PlaceText(*tags.lastOpen), PlaceText(*tags.lastClose)));
    tags.open.pop_back();
    tags.lastClose = &control;
  }

  void Add(const page::FoundControl& control, const Message& message, const Message& more) {
    problems_.push_back(ProblemOf(kUnbalanced, control,
                                  {message.german + more.german, message.english + more.english}));
  }

  std::map<std::string, Tags> names_;
  page::Problems problems_;
};

// Returns the edit that writes another field's name in a reference; nothing when the page's
// encoding lacks its characters or a blank would end a value without quotation marks.
std::optional<page::TextEdit> Renaming(std::string_view text, const FieldReference& reference,
                                       const std::string& newName,
                                       const page::PageEncoding& encoding) {
  const auto begin = static_cast<std::size_t>(reference.name.data() - text.data());
  if (newName.find(' ') != std::string::npos && begin > 0 && text[begin - 1] == '=')
    return std::nullopt;
  page::TextEdit edit{begin, begin + reference.name.size(), {}};
  if (page::AppendText(newName, encoding, edit.bytes)) return std::nullopt;
  return edit;
}

// Reports unknown fields in the page's text between its controls.
page::Problems CheckOwnText(const page::Page& page, const std::vector<page::FoundControl>& controls,
                            KnownFields& fields, Fixes wanted) {
  constexpr std::size_t kMostTold = 1'000;  // a page may hold nothing but unknown fields
  if (!fields.contact && !fields.order) return {};
  if (page.Encoding().kind() == page::PageEncoding::Kind::utf16) return {};
  page::ProblemList problems;
  std::map<std::size_t, page::Fix> made;  // by the place of their problem
  std::size_t told = 0;
  const std::string text = uses::WithoutControls(page, controls);
  ForEachFieldReference(text, [&](const FieldReference& reference) {
    if (told > kMostTold || IsOrderNumberPath(reference)) return;
    std::string name;
    page.Encoding().Decode(reference.name, name);
    auto message = UnknownFieldMessage(reference.kind, name, fields);
    if (!message) return;
    if (++told > kMostTold)
      message = Message{"Weitere unbekannte Felder im Text der Seite werden nicht genannt.",
                        "Further unknown fields in the page's text are not named."};
    const Rule& rule = IsFieldForSure(reference) ? kUnknownField : kUnknownOrderValue;
    const bool fixes = wanted == Fixes::add && IsFieldForSure(reference) && told <= kMostTold;
    const std::string meant = fixes ? MeantField(reference.kind, name, fields) : std::string();
    if (!meant.empty())
      if (auto edit = Renaming(text, reference, meant, page.Encoding()))
        made[reference.at] = {ChangeTitle(name, meant), {std::move(*edit)}};
    problems.Add({reference.at, reference.end}, rule.id, {}, std::move(*message), rule.severity);
  });
  page::Problems found = problems.Take(page.Bytes(), page.Encoding());
  for (page::Problem& problem : found)
    if (const auto fix = made.find(problem.offset); fix != made.end()) problem.fix = fix->second;
  return found;
}

}  // namespace

page::Problem ProblemOf(const Rule& rule, const page::FoundControl& control, Message message) {
  return {rule.severity, rule.id, control.place, control.className, control.id, std::move(message),
          control.begin, 0,       control.end};
}

namespace {

// Runs the rules about single controls. `note` is called for each control that can be loaded.
void CheckControls(const page::Page& page, const page::LoadedControls& controls,
                   KnownFields& fields, Fixes fixes,
                   const std::function<void(const Checked&)>& note, page::Problems& problems) {
  for (std::size_t i = 0; i < controls.found.size(); ++i) {
    const page::FoundControl& found = controls.found[i];
    const page::LoadedControls::Loaded& loaded = controls.loaded[i];
    if (loaded.control == nullptr) continue;
    const Checked checked{
        page, found, loaded.control, fields, loaded.runtimeText, fixes == Fixes::add};
    note(checked);
    for (const ControlRule& rule : ControlRules())
      rule.check(checked, Report([&](Message message, std::optional<page::Fix> fix) {
                   problems.push_back(ProblemOf(rule.rule, found, std::move(message)));
                   problems.back().fix = std::move(fix);
                 }));
  }
}

}  // namespace

page::Problems CheckPage(const page::Page& page, const ObjectRef& office, ShopProducts* products,
                         Fixes fixes) {
  return WithProducts(CheckButProducts(page, FieldsOf(office), fixes), products);
}

CheckedPage CheckButProducts(const page::Page& page, KnownFields known, Fixes fixes) {
  page::LoadedControls controls;
  CheckedPage result{page::Check(page, &controls), {}};
  page::Problems& problems = result.problems;
  Balance balance;
  const auto note = [&](const Checked& checked) {
    balance.Note(checked);
    if (checked.Has("SelectedProducts"))
      if (auto numbers = NumbersIn(checked.Text("SelectedProducts")); !numbers.empty())
        result.selections.push_back({checked.found, std::move(numbers)});
  };
  CheckControls(page, controls, known, fixes, note, problems);
  const auto add = [&](page::Problems&& more) {
    std::ranges::move(more, std::back_inserter(problems));
  };
  add(balance.Take());
  add(CheckOwnText(page, controls.found, known, fixes));
  std::ranges::stable_sort(problems, {}, &page::Problem::offset);
  if (fixes == Fixes::add) AddPageFixes(page, controls.found, problems);
  return result;
}

page::Problems WithProducts(CheckedPage checked, ShopProducts* products) {
  page::Problems problems = std::move(checked.problems);
  if (products == nullptr) return problems;
  std::ranges::move(CheckProducts(checked.selections, *products), std::back_inserter(problems));
  std::ranges::stable_sort(problems, {}, &page::Problem::offset);
  return problems;
}

}  // namespace kvo::check
