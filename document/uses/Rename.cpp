#include "document/uses/Rename.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "document/page/ElementWriter.h"
#include "document/page/Messages.h"
#include "document/page/NewGuids.h"
#include "document/page/Utf8.h"
#include "document/page/WrittenElement.h"
#include "document/uses/References.h"
#include "host/registration/classes.h"

namespace kvo::uses {
namespace {

using page::messages::Plain;
using page::messages::Quoting;

constexpr Plain kBroken = {"Das Control hat Fehler. Beheben Sie sie erst; „kvo check“ nennt sie.",
                           "The control has errors. Mend them first; \"kvo check\" names them."};
constexpr Quoting kNotHeld = {
    "Eine Seite in {} kann den neuen Namen nicht aufnehmen. Wählen Sie einen anderen.",
    "A page in {} cannot hold the new name. Choose another one."};
constexpr Plain kUnquoted = {
    "Der neue Name braucht Anführungszeichen. Ergänzen Sie sie um den alten.",
    "The new name needs quotation marks. Add them around the old one."};

constexpr Plain kScriptName = {
    "In einem Skript kann ein Name nur aus Buchstaben, Ziffern und _ bestehen. Wählen Sie einen "
    "solchen.",
    "In a script, a name can consist of letters, digits and _ only. Choose such a name."};

// Whether a value without quotation marks can hold the name.
bool NeedsQuotes(std::string_view name) {
  return !std::ranges::all_of(name, [](char c) { return IsLetter(c) || IsDigit(c) || c == '_'; });
}

class Work {
 public:
  Work(const page::Page& page, const PageUses& found, const Renaming& renaming)
      : page_(page), renaming_(renaming), found_(found) {}

  Renamed Run() {
    made_.uses = UsesOf(renaming_.from, found_.uses);
    made_.merged = UsesOf(renaming_.to, found_.uses);
    if (made_.uses.empty()) return std::move(made_);
    if (const auto why = WhyNotHere()) return KeepAll(*why);
    std::vector<Use> uses = std::exchange(made_.uses, {});
    for (auto next = uses.begin(); next != uses.end();) {
      const std::size_t control = next->control;
      const auto end = control == Use::kNoControl
                           ? next + 1
                           : std::find_if(next, uses.end(), [control](const Use& use) {
                               return use.control != control;
                             });
      RenameTogether({next, end});
      next = end;
    }
    const page::Page renamed(page::Applied(page_.Bytes(), made_.edits));
    const bool readsAlike = renamed.Encoding().ReadsAs(page_.Encoding()) ||
                            page::AsciiPrefix(renamed.Bytes()) == renamed.Bytes().size();
    if (!readsAlike)
      return KeepAll(
          page::messages::EncodingChanges(page_.Encoding().Name(), renamed.Encoding().Name()));
    return std::move(made_);
  }

 private:
  using Uses = std::vector<Use>;
  using Entries = std::vector<MemoryBag::Entry>;

  // Why nothing in this page can be renamed. Sets the name's bytes.
  std::optional<Message> WhyNotHere() {
    const page::PageEncoding& encoding = page_.Encoding();
    if (encoding.kind() == page::PageEncoding::Kind::other)
      return page::messages::OtherEncoding(encoding.Name());
    if (!IsField(renaming_.from)) {
      if (!made_.merged.empty()) return page::messages::DuplicateId(renaming_.to.text);
    } else if (page::AppendText(renaming_.to.text, encoding, nameInText_)) {
      return kNotHeld(encoding.Name());
    }
    if (page::AppendAttributeValue(renaming_.to.text, encoding, nameInValue_))
      return kNotHeld(encoding.Name());
    return std::nullopt;
  }

  Renamed KeepAll(const Message& why) {
    made_.edits.clear();
    made_.kept.clear();
    for (Use& use : UsesOf(renaming_.from, found_.uses))
      made_.kept.push_back({std::move(use), why});
    made_.uses.clear();
    return std::move(made_);
  }

  void Keep(const Uses& uses, const Message& why) {
    for (const Use& use : uses) made_.kept.push_back({use, why});
  }

  // Renames all uses of a control, or one in the page's own text.
  void RenameTogether(const Uses& uses) {
    const bool unquoted = std::ranges::any_of(uses, [](const Use& use) { return !use.quoted; });
    if (unquoted && NeedsQuotes(renaming_.to.text)) return Keep(uses, kUnquoted());
    const bool inScript =
        std::ranges::any_of(uses, [](const Use& use) { return use.form == Form::word; });
    if (inScript && !IsNameInScript(renaming_.to.text)) return Keep(uses, kScriptName());
    const bool ownText = uses.front().control == Use::kNoControl;
    page::TextEdits edits;
    for (const Use& use : uses)
      edits.push_back({use.begin, use.end, ownText ? nameInText_ : nameInValue_});
    if (!ownText) {
      const page::FoundControl& control = found_.controls[uses.front().control];
      if (control.broken) return Keep(uses, kBroken());
      if (control.form == page::Form::span && IsField(renaming_.from))
        if (const auto why = RenameInText(control, edits)) return Keep(uses, *why);
    }
    std::ranges::move(edits, std::back_inserter(made_.edits));
    made_.uses.insert(made_.uses.end(), uses.begin(), uses.end());
  }

  // Adds to the edits of a span's element those of its runtime text; returns why it can't.
  std::optional<Message> RenameInText(const page::FoundControl& found, page::TextEdits& edits) {
    const std::string_view saved =
        page_.Bytes().substr(found.textBegin, found.textEnd - found.textBegin);
    try {
      if (!Gives(found, found.bag, saved)) return page::messages::EditedByHand();
      const Entries renamed = RenamedBag(found, edits);
      page::TextEdits inText;
      ForEachFieldReference(saved, [&](const FieldReference& reference) {
        std::string name;
        page_.Encoding().Decode(reference.name, name);
        const Kind kind =
            reference.kind == FieldKind::contact ? Kind::contactField : Kind::orderField;
        const auto at = static_cast<std::size_t>(reference.name.data() - saved.data());
        if (renaming_.from == Name{kind, name})
          inText.push_back({at, at + reference.name.size(), nameInText_});
      });
      std::ranges::sort(inText, {}, &page::TextEdit::begin);
      if (!Gives(found, renamed, page::Applied(saved, inText)))
        inText = {{0, saved.size(), TextOf(found, renamed)}};
      for (page::TextEdit& edit : inText)
        edits.push_back(
            {found.textBegin + edit.begin, found.textBegin + edit.end, std::move(edit.bytes)});
    } catch (const RuntimeError& error) {
      return page::messages::ControlFails(error);
    }
    return std::nullopt;
  }

  // Whether a control with this bag gives the text, made up identifiers aside.
  bool Gives(const page::FoundControl& found, const Entries& bag, std::string_view text) const {
    const std::string now = TextOf(found, bag);
    return now == text || page::EqualButForNewGuids(text, now, TextOf(found, bag));
  }
  // The runtime text in the page's encoding, up to what that cannot hold.
  std::string TextOf(const page::FoundControl& found, const Entries& bag) const {
    std::string text;
    page::AppendText(page::Load(*found.contract, bag)->GetRuntimeText(), page_.Encoding(), text);
    return text;
  }

  // The control's bag after the edits of its params.
  Entries RenamedBag(const page::FoundControl& found, const page::TextEdits& edits) const {
    Entries bag = found.bag;
    for (const page::WrittenParam& param : page::ReadWrittenElement(page_, found).params) {
      const page::WrittenValue& value = *param.value;  // not broken, so it has one
      page::TextEdits inside;
      for (const page::TextEdit& edit : edits)
        if (edit.begin >= value.begin && edit.end <= value.end)
          inside.push_back({edit.begin - value.begin, edit.end - value.begin, edit.bytes});
      if (inside.empty()) continue;
      std::string text;
      page_.Encoding().DecodeAttribute(
          page::Applied(page_.Bytes().substr(value.begin, value.end - value.begin), inside), text);
      std::ranges::find(bag, param.key, &MemoryBag::Entry::first)->second = std::move(text);
    }
    return bag;
  }

  const page::Page& page_;
  const Renaming& renaming_;
  const PageUses& found_;
  std::string nameInText_;
  std::string nameInValue_;
  Renamed made_;
};

}  // namespace

Renaming RenamingOf(std::string_view from, std::string_view to) {
  constexpr Quoting kClass = {"{} ist eine Klasse, und die lassen sich nicht umbenennen.",
                              "{} is a class, and classes cannot be renamed."};
  constexpr Quoting kSame = {"Der neue Name {} ist der alte.", "The new name {} is the old one."};
  constexpr Quoting kOtherGroup = {
      "Ein Feld bleibt in seiner Gruppe. Schreiben Sie den neuen Namen wie {}.",
      "A field stays in its group. Write the new name like {}."};
  constexpr Quoting kNoFieldName = {
      "{} kann kein Feld heißen. Erlaubt sind Buchstaben, Ziffern, _ und -, innen auch "
      "Leerzeichen.",
      "{} cannot be the name of a field. Use letters, digits, _ and -, and blanks inside."};
  constexpr Quoting kOrderNumber = {
      "{} ist die Bestellnummer der Template-Engine. Nehmen Sie einen anderen Namen.",
      "{} is the template engine's order number. Choose another name."};
  constexpr Plain kNoId = {"Die neue id ist leer.", "The new id is empty."};

  Renaming renaming{NamesMeant(from).front(), {}};
  Name& name = renaming.to;
  if (renaming.from.kind == Kind::controlClass) throw RenameError(kClass(from));
  if (from == to) throw RenameError(kSame(to));
  if (!IsField(renaming.from)) {
    if (to.empty()) throw RenameError(kNoId());
    name = {renaming.from.kind, std::string(to)};
    return renaming;
  }
  const bool isContact = renaming.from.kind == Kind::contactField;
  const FieldKind kind = isContact ? FieldKind::contact : FieldKind::order;
  const std::string prefix = std::string(GroupOf(kind)) + '.';
  name = {renaming.from.kind,
          std::string(to.starts_with(prefix) ? to.substr(prefix.size()) : std::string_view())};
  if (name.text.empty()) throw RenameError(kOtherGroup(prefix + "Name"));
  if (!IsFieldName(name.text)) throw RenameError(kNoFieldName(name.text));
  for (const std::string_view each : {from, to})
    if (IsOrderNumber(kind, each.substr(prefix.size()))) throw RenameError(kOrderNumber(each));
  return renaming;
}

Renamed Rename(const page::Page& page, const PageUses& found, const Renaming& renaming) {
  return Work(page, found, renaming).Run();
}

}  // namespace kvo::uses
