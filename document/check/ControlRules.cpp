#include "document/check/ControlRules.h"

#include <algorithm>
#include <set>

#include "common/frame/TagWriter.h"
#include "common/values/RuntimeError.h"
#include "controls/BlockLevel.h"
#include "document/check/Conditions.h"
#include "document/check/Fixes.h"
#include "document/page/Messages.h"
#include "host/registration/classes.h"

namespace kvo::check {
namespace {

using page::Severity;
using page::messages::Quoted;

constexpr std::string_view kPrintTag = "print";

// Reports an empty property without which the control is useless.
void ExpectFilled(const Checked& checked, std::string_view property, const Localized& what,
                  const Report& report) {
  if (!checked.Has(property) || !checked.Text(property).empty()) return;
  const std::string name(property);
  report({std::string(what.german) + " Füllen Sie " + name + ".",
          std::string(what.english) + " Fill in " + name + "."});
}

// Renames a field in all texts of the control that mention it.
bool RenameField(Control& control, FieldKind kind, const std::string& name,
                 const std::string& newName) {
  for (const PropertyRow& row : control.Class().bag) {
    if (row.type != PropertyType::text || row.name.empty()) continue;
    const std::string text = ToText(control.Get(row.name));
    std::string renamed = WithFieldRenamed(text, kind, name, newName);
    if (renamed != text) control.Let(row.name, std::move(renamed));
  }
  bool gone = true;
  const std::string emitted = control.GetRuntimeText();
  ForEachFieldReference(emitted, [&](const FieldReference& reference) {
    if (reference.kind == kind && reference.name == name) gone = false;
  });
  return gone;
}

void ExpectField(FieldKind kind, const std::string& name, const Checked& checked,
                 const Report& report, bool offersFix = true) {
  auto message = UnknownFieldMessage(kind, name, checked.fields);
  if (!message) return;
  std::optional<page::Fix> fix;
  const std::string meant = offersFix ? MeantField(kind, name, checked.fields) : std::string();
  if (!meant.empty())
    fix = checked.FixBy(ChangeTitle(name, meant), [&](Control& control) {
      if (!checked.Has("Field")) return RenameField(control, kind, name, meant);
      control.Let("Field", meant);
      return true;
    });
  report(std::move(*message), std::move(fix));
}

// Checks the references in the runtime text that surely are fields, or the others; each once.
// Fixes only the first: each takes time in proportion to the control.
void ExpectReferences(const Checked& checked, bool forSure, const Report& report) {
  constexpr std::size_t kMostFixes = 10;
  std::set<std::pair<FieldKind, std::string>> seen;
  ForEachFieldReference(checked.runtimeText, [&](const FieldReference& reference) {
    if (IsFieldForSure(reference) != forSure || IsOrderNumberPath(reference)) return;
    const auto [entry, isNew] = seen.emplace(reference.kind, reference.name);
    if (!isNew) return;
    ExpectField(entry->first, entry->second, checked, report, forSure && seen.size() <= kMostFixes);
  });
}

void UnknownField(const Checked& checked, const Report& report) {
  if (!checked.Has("Field")) return ExpectReferences(checked, true, report);
  const std::string field = checked.Text("Field");
  if (field.empty()) return;
  ExpectField(checked.Is("DTCOrder") ? FieldKind::order : FieldKind::contact, field, checked,
              report);
}

void UnknownOrderValue(const Checked& checked, const Report& report) {
  if (!checked.Has("Field")) ExpectReferences(checked, false, report);
}

void OutputWithoutField(const Checked& checked, const Report& report) {
  ExpectFilled(checked, "Field", {"Es wird kein Feld ausgegeben.", "No field is printed."}, report);
}

// In any other control, the template engine reads this tag as an expression without a value.
void PrintTag(const Checked& checked, const Report& report) {
  constexpr page::messages::Quoting kSetBasename = {"basename auf {} setzen", "Set basename to {}"};
  const std::string_view fitting = checked.found.contract->TagName();
  if (fitting == kPrintTag || checked.Text("basename") != kPrintTag || checked.runtimeText.empty())
    return;
  report({"Das Control gibt ein Element " + Quoted(kPrintTag) +
              " aus, das für Ausdrücke da ist. Setzen Sie basename auf " + Quoted(fitting) + ".",
          "The control emits an element " + Quoted(kPrintTag) +
              ", which is for expressions. Set basename to " + Quoted(fitting) + "."},
         checked.FixBy(kSetBasename(fitting), [&](Control& control) {
           control.Let("basename", std::string(fitting));
           return true;
         }));
}

void MissingJoiner(const Checked& checked, const Report& report) {
  if (!checked.Has("Test")) return;
  const std::string test = checked.Text("Test");
  const std::size_t place = PlaceOfMissingJoiner(test);
  if (place == std::string::npos) return;
  const std::string second = Quoted(std::string_view(test).substr(place));
  report({"Vor der Bedingung " + second + " fehlt „&&“ oder „||“. Verbinden Sie sie mit der davor.",
          "There is no \"&&\" or \"||\" before the condition " + second +
              ". Join it with the one before."});
}

void ContradictoryFlags(const Checked& checked, const Report& report) {
  if (!checked.Has("OpeningTagOnly")) return;
  if (!checked.Flag("OpeningTagOnly") || !checked.Flag("ClosingTagOnly")) return;
  report(
      {"Das Element soll zugleich nur öffnen und nur schließen. Löschen Sie opening-tag-only oder "
       "closing-tag-only.",
       "The element is to be an opening tag only and a closing tag only. Delete opening-tag-only "
       "or closing-tag-only."});
}

// A property that is emitted only together with another.
struct Dependent {
  std::string_view property;
  std::string_view needs;
};
constexpr Dependent kDependents[] = {
    {"Format", "Value"}, {"Format", "Item"},  {"HTMLContent", "Value"},   {"Attributes", "Value"},
    {"OnTrue", "Test"},  {"OnFalse", "Test"}, {"FontSize", "FontFamily"},
};

void NeverEmitted(const Checked& checked, const Report& report) {
  for (const auto& [property, needs] : kDependents) {
    if (!checked.Has(property) || !checked.Has(needs)) continue;
    if (checked.Text(property).empty() || !checked.Text(needs).empty()) continue;
    const std::string name(property);
    const std::string other(needs);
    report({name + " wird nie ausgegeben, weil " + other + " leer ist. Füllen Sie " + other +
                " oder leeren Sie " + name + ".",
            name + " is never emitted because " + other + " is empty. Fill in " + other +
                " or empty " + name + "."});
  }
}

void AttributeFails(const Checked& checked, const Report& report) {
  if (!checked.Has("AttributesCollection")) return;
  ForEach(*ToObject(checked.control->Get("AttributesCollection")), [&](const Variant& item) {
    const std::string text = ToText(item);
    if (text.empty() || text.find('|') != std::string::npos) return;
    report({"Dem Attribut " + Quoted(text) +
                " fehlt „|“: Der Laufzeittext scheitert mit Fehler 9. Schreiben Sie Name|Wert.",
            "The attribute " + Quoted(text) +
                " has no \"|\": the runtime text fails with error 9. Write name|value."});
  });
}

void AttributeChanges(const Checked& checked, const Report& report) {
  if (!checked.Has("AttributesCollection")) return;
  const std::string_view stored = checked.found.contract->FindProperty("Attributes")->key;
  const auto key = std::ranges::find(checked.found.bag, stored, &MemoryBag::Entry::first);
  if (key != checked.found.bag.end() && key->second != checked.Text("Attributes"))
    report(
        {"Leere Attribute am Anfang der Liste gehen beim nächsten Speichern verloren. Löschen "
         "Sie die führenden „||“.",
         "Empty attributes at the front of the list get lost when it is next saved. Delete the "
         "leading \"||\"."});
  ForEach(*ToObject(checked.control->Get("AttributesCollection")), [&](const Variant& item) {
    const std::string text = ToText(item);
    if (text.starts_with('|') && std::ranges::count(text, '|') > 1)
      report({"Vor " + Quoted(text) +
                  " stand ein Attribut mit leerem Wert: Dabei ist ein „|“ hierher gerutscht. "
                  "Schreiben Sie Name|Wert und lassen Sie leere Werte weg.",
              "An attribute with an empty value stood before " + Quoted(text) +
                  ": a \"|\" has shifted to this one. Write name|value and leave out empty "
                  "values."});
    else if (std::ranges::count(text, '|') > 1)
      report({"Von " + Quoted(text) +
                  " wird nur der Teil bis zum zweiten „|“ ausgegeben. Ein Wert kann kein „|“ "
                  "enthalten.",
              "Only the part before the second \"|\" of " + Quoted(text) +
                  " is emitted. A value cannot hold a \"|\"."});
  });
}

void QuoteInAttribute(const Checked& checked, const Report& report) {
  if (!checked.Has("AttributesCollection")) return;
  ForEach(*ToObject(checked.control->Get("AttributesCollection")), [&](const Variant& item) {
    const std::string text = ToText(item);
    if (text.find('"') == std::string::npos) return;
    report({"Das Attribut " + Quoted(text) +
                " enthält ein Anführungszeichen, mit dem sein Wert endet. Schreiben Sie ' dafür.",
            "The attribute " + Quoted(text) +
                " holds a quotation mark, which ends its value. Write ' instead."});
  });
}

void MarkerInContent(const Checked& checked, const Report& report) {
  std::string_view inside = checked.runtimeText;
  if (!inside.starts_with(kBlockStart) || !inside.ends_with(kBlockEnd)) return;
  inside.remove_prefix(kBlockStart.size());
  inside.remove_suffix(kBlockEnd.size());
  for (const std::string_view marker :
       {std::string_view("-->"), std::string_view("--!>"), kBlockStart.substr(4),
        kBlockEnd.substr(0, kBlockEnd.size() - 3)})
    if (inside.find(marker) != std::string_view::npos)
      return report({"Der Inhalt enthält " + Quoted(marker) +
                         ": Damit endet der Block im HTML-Editor zu früh. Nehmen Sie es heraus.",
                     "The content holds " + Quoted(marker) +
                         ": it ends the block too early in an HTML editor. Take it out."});
}

void LinkWithoutAddress(const Checked& checked, const Report& report) {
  ExpectFilled(checked, "Href", {"Der Link hat keine Adresse.", "The link has no address."},
               report);
}
void UnsubscribeWithoutRecipient(const Checked& checked, const Report& report) {
  ExpectFilled(checked, "Recipient",
               {"Niemand empfängt die Abmeldungen.", "Nobody receives the unsubscriptions."},
               report);
}
void UnsubscribeWithoutSite(const Checked& checked, const Report& report) {
  if (checked.Has("Site") && checked.Text("Site") == "/")
    report({"Die Bestätigungsseite hat keine Adresse, nur „/“. Füllen Sie Site.",
            "The confirmation page has no address, only \"/\". Fill in Site."});
  ExpectFilled(
      checked, "Site",
      {"Die Bestätigungsseite hat keine Adresse.", "The confirmation page has no address."},
      report);
}

// An address that ends in an expression may end in "/" once it is evaluated.
void MissingSlash(const Checked& checked, const Report& report) {
  if (!checked.Has("Site")) return;
  const std::string site = checked.Text("Site");
  if (site.empty() || std::string_view("/#%").find(site.back()) != std::string_view::npos) return;
  report({"Der Adresse der Bestätigungsseite fehlt der Schrägstrich am Ende. Schreiben Sie " +
              Quoted(site + '/') + ".",
          "The address of the confirmation page has no slash at its end. Write " +
              Quoted(site + '/') + "."},
         checked.FixBy({"Den Schrägstrich ergänzen", "Add the slash"}, [&](Control& control) {
           control.Let("Site", site + '/');
           return true;
         }));
}

// Returns the attributes that a row emits. Empty when that fails, which another rule reports.
std::string AttributesOf(const PropertyRow& row, const Control& control) {
  std::string text;
  try {
    TagWriter tag(text, {}, {});
    row.emission.append(row, control, tag);
    tag.Close();
  } catch (const RuntimeError&) {
    text.clear();
  }
  return text;
}

bool HasBareAmpersand(const PropertyRow& row, const Control& control) {
  const std::string emitted = AttributesOf(row, control);
  return emitted.find('&') != std::string::npos && FixAmpersands(emitted) != emitted;
}

// Masks an "&" near the end, as browsers read it: there "&amp" needs no semicolon.
std::string WithLastAmpersandMasked(const std::string& value) {
  constexpr std::string_view kAmpersand = "&amp";
  const std::size_t at = value.rfind('&');
  if (at == std::string::npos) return value;
  const std::string_view tail = std::string_view(value).substr(at);
  if (!kAmpersand.starts_with(tail)) return value;
  return value.substr(0, at) + "&amp;" +
         std::string(tail == kAmpersand ? std::string_view() : tail.substr(1));
}

// Tries the smaller change first.
bool MaskAmpersands(const PropertyRow& row, Control& control) {
  const std::string value = ToText(control.Get(row.name));
  for (const std::string& masked :
       {WithLastAmpersandMasked(value), WithLastAmpersandMasked(FixAmpersands(value))}) {
    control.Let(row.name, masked);
    if (!HasBareAmpersand(row, control)) return true;
  }
  return false;
}

// Checks attributes only: in contents, an "&" is up to the author.
void BareAmpersand(const Checked& checked, const Report& report) {
  for (const PropertyRow& row : checked.found.contract->bag) {
    if (row.type != PropertyType::text || row.emission.append == nullptr) continue;
    // Escaping leaves an "&" raw when the value ends too soon after it to rule out "&amp;".
    if (!HasBareAmpersand(row, *checked.control)) continue;
    const std::string name(row.name);
    const std::string value = Quoted(checked.Text(row.name));
    report({"Ein „&“ in " + name + " bleibt unmaskiert: " + value + ". Schreiben Sie „&amp;“.",
            "An \"&\" in " + name + " stays raw: " + value + ". Write \"&amp;\"."},
           checked.FixBy({"„&amp;“ schreiben", "Write \"&amp;\""},
                         [&](Control& control) { return MaskAmpersands(row, control); }));
  }
}

constexpr ControlRule kRules[] = {
    {kUnknownField, UnknownField},
    {kUnknownOrderValue, UnknownOrderValue},
    {{"output-without-field",
      Severity::error,
      {"Ein Kontakt- oder Bestellfeld ohne Feld", "A contact or order control without a field"}},
     OutputWithoutField},
    {{"print-tag",
      Severity::warning,
      {"Ein Control einer anderen Klasse gibt ein Element „print“ aus",
       "A control of another class emits an element \"print\""}},
     PrintTag},
    {{"missing-joiner",
      Severity::error,
      {"Zwei Bedingungen ohne „&&“ oder „||“ dazwischen",
       "Two conditions without \"&&\" or \"||\" between them"}},
     MissingJoiner},
    {{"contradictory-flags",
      Severity::error,
      {"Ein Element, das nur öffnen und nur schließen soll",
       "An element that is an opening tag only and a closing tag only"}},
     ContradictoryFlags},
    {{"never-emitted",
      Severity::warning,
      {"Ein Wert, der nie ausgegeben wird, weil ein anderer fehlt",
       "A value that is never emitted because another one is missing"}},
     NeverEmitted},
    {{"attribute-fails",
      Severity::error,
      {"Ein Attribut ohne „|“, an dem der Laufzeittext scheitert",
       "An attribute without \"|\", which makes the runtime text fail"}},
     AttributeFails},
    {{"attribute-changes",
      Severity::warning,
      {"Eine Liste von Attributen, die anders gelesen wird, als sie aussieht",
       "A list of attributes that is read otherwise than it looks"}},
     AttributeChanges},
    {{"quote-in-attribute",
      Severity::error,
      {"Ein Anführungszeichen in einem Attribut, das seinen Wert beendet",
       "A quotation mark in an attribute, which ends its value"}},
     QuoteInAttribute},
    {{"marker-in-content",
      Severity::error,
      {"Ein Inhalt, der seinen Block im HTML-Editor zu früh beendet",
       "Content that ends its block too early in an HTML editor"}},
     MarkerInContent},
    {{"link-without-address",
      Severity::error,
      {"Ein Link ohne Adresse", "A link without an address"}},
     LinkWithoutAddress},
    {{"unsubscribe-without-recipient",
      Severity::error,
      {"Ein Abmeldelink ohne Empfänger", "An unsubscribe link without a recipient"}},
     UnsubscribeWithoutRecipient},
    {{"unsubscribe-without-site",
      Severity::error,
      {"Ein Abmeldelink ohne Bestätigungsseite",
       "An unsubscribe link without a confirmation page"}},
     UnsubscribeWithoutSite},
    {{"missing-slash",
      Severity::warning,
      {"Eine Bestätigungsseite, deren Adresse nicht auf „/“ endet",
       "A confirmation page whose address does not end in \"/\""}},
     MissingSlash},
    {{"bare-ampersand",
      Severity::warning,
      {"Ein „&“ in einem Attribut, das unmaskiert bleibt",
       "An \"&\" in an attribute that stays raw"}},
     BareAmpersand},
};

}  // namespace

std::span<const ControlRule> ControlRules() { return kRules; }

std::optional<page::Fix> Checked::FixBy(Message title,
                                        const std::function<bool(Control&)>& change) const {
  if (!wantsFixes) return std::nullopt;
  bool changed = false;
  try {
    page::ControlChange made =
        page::ChangeControl(page, found, [&](Control& each) { changed = change(each); });
    if (!changed || made.edits.empty()) return std::nullopt;
    return page::Fix{std::move(title), std::move(made.edits)};
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

}  // namespace kvo::check
