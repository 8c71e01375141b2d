#include "host/check/ControlRules.h"

#include <algorithm>
#include <new>

#include "common/Suggest.h"
#include "common/modGlobal.h"
#include "controls/BlockLevel.h"
#include "host/page/Messages.h"

namespace kvo::check {
namespace {

using page::Message;
using page::Severity;
using page::messages::Quoted;
using page::messages::WithSuggestion;

void ExpectField(std::string_view field, const std::optional<std::vector<std::string>>& known,
                 const Localized& kind, const Report& report) {
  if (!known || field.empty() || std::ranges::find(*known, field) != known->end()) return;
  const std::vector<std::string_view> names(known->begin(), known->end());
  report(WithSuggestion(
      {std::string(kind.german) + " " + Quoted(field) +
           " gibt es nicht. Wählen Sie eines aus office.json oder ergänzen Sie es dort.",
       "There is no " + std::string(kind.english) + " " + Quoted(field) +
           ". Choose one of office.json or add it there."},
      Suggest(field, names)));
}

constexpr Localized kContactField{"Das Kontaktfeld", "contact field"};
constexpr Localized kOrderField{"Das Bestellfeld", "order field"};

void UnknownField(const Checked& checked, const Report& report) {
  if (checked.Is("DTCContact"))
    ExpectField(checked.Text("Field"), checked.fields.contact, kContactField, report);
  if (checked.Is("DTCOrder"))
    ExpectField(checked.Text("Field"), checked.fields.order, kOrderField, report);
  if (!checked.Has("Test")) return;
  // Contact fields of a test are written "#customer.NAME#".
  constexpr std::string_view kStart = "#customer.";
  const std::string test = checked.Text("Test");
  for (std::size_t at = test.find(kStart); at != std::string::npos; at = test.find(kStart, at)) {
    at += kStart.size();
    const std::size_t end = test.find('#', at);
    if (end == std::string::npos) break;
    ExpectField(std::string_view(test).substr(at, end - at), checked.fields.contact, kContactField,
                report);
    at = end + 1;
  }
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

// What a control emits only together with another property.
struct Dependent {
  std::string_view property;
  std::string_view needs;
};
constexpr Dependent kDependents[] = {
    {"Format", "Value"},     {"Format", "Field"}, {"Format", "Item"},  {"HTMLContent", "Value"},
    {"Attributes", "Value"}, {"OnTrue", "Test"},  {"OnFalse", "Test"}, {"FontSize", "FontFamily"},
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
  const auto key = std::ranges::find(checked.found.bag, "attributes", &MemoryBag::Entry::first);
  if (key != checked.found.bag.end() && key->second != checked.Text("Attributes"))
    report(
        {"Leere Attribute am Anfang der Liste gehen beim nächsten Speichern verloren. Löschen "
         "Sie die führenden „||“.",
         "Empty attributes at the front of the list get lost when it is saved next. Delete the "
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

// A property without which a link leads nowhere.
void ExpectFilled(const Checked& checked, std::string_view className, std::string_view property,
                  const Localized& what, const Report& report) {
  if (!checked.Is(className) || !checked.Text(property).empty()) return;
  const std::string name(property);
  report({std::string(what.german) + " Füllen Sie " + name + ".",
          std::string(what.english) + " Fill in " + name + "."});
}

void LinkWithoutAddress(const Checked& checked, const Report& report) {
  ExpectFilled(checked, "DTCClicktracker", "Href",
               {"Der Link hat keine Adresse.", "The link has no address."}, report);
}
void UnsubscribeWithoutRecipient(const Checked& checked, const Report& report) {
  ExpectFilled(checked, "DTCUnsubscriber", "Recipient",
               {"Niemand empfängt die Abmeldungen.", "Nobody receives the unsubscriptions."},
               report);
}
void UnsubscribeWithoutSite(const Checked& checked, const Report& report) {
  if (checked.Is("DTCUnsubscriber") && checked.Text("Site") == "/")
    report({"Die Bestätigungsseite hat keine Adresse, nur „/“. Füllen Sie Site.",
            "The confirmation page has no address, only \"/\". Fill in Site."});
  ExpectFilled(
      checked, "DTCUnsubscriber", "Site",
      {"Die Bestätigungsseite hat keine Adresse.", "The confirmation page has no address."},
      report);
}

// Properties that become attribute values; contents are HTML, where an "&" is the author's own.
// clang-format off
constexpr std::string_view kAttributeValues[] = {
    "Value", "Field", "Item", "Format", "Test", "Href", "ClickId", "Recipient", "Site",
    "TableWidth", "SelectedProducts", "ShopHTTPURL", "ImagesHTTPURL", "FontFamily", "FontSize",
    "Border", "TableBgColor", "HeaderBgColor", "HeaderCSSStyle", "DefaultExtension", "OrderId",
    "TableCellSpacing", "TableCellPadding", "TableBorder", "TableBackground", "TableCssStyle",
    "HeaderBackground", "BodyBackground", "BodyCssStyle",
};
// clang-format on

void BareAmpersand(const Checked& checked, const Report& report) {
  const auto complain = [&](std::string_view property, std::string_view value) {
    const std::string name(property);
    report(
        {"Ein „&“ in " + name + " bleibt unmaskiert: " + Quoted(value) + ". Schreiben Sie „&amp;“.",
         "An \"&\" in " + name + " stays raw: " + Quoted(value) + ". Write \"&amp;\"."});
  };
  for (const std::string_view property : kAttributeValues) {
    if (!checked.Has(property)) continue;
    // The escaping leaves an "&" raw only where the text ends before it could be told from "&amp;".
    const std::string value = checked.Text(property);
    if (FixAmpersands(value + ' ') != FixAmpersands(value) + ' ') complain(property, value);
  }
  if (checked.Has("Headline")) {
    const std::string headline = checked.Text("Headline");
    if (FixAmpersands(headline + ' ') != headline + ' ') complain("Headline", headline);
  }
}

constexpr ControlRule kRules[] = {
    {{"unknown-field", Severity::error}, UnknownField},
    {{"contradictory-flags", Severity::error}, ContradictoryFlags},
    {{"never-emitted", Severity::warning}, NeverEmitted},
    {{"attribute-fails", Severity::error}, AttributeFails},
    {{"attribute-changes", Severity::warning}, AttributeChanges},
    {{"marker-in-content", Severity::error}, MarkerInContent},
    {{"link-without-address", Severity::error}, LinkWithoutAddress},
    {{"unsubscribe-without-recipient", Severity::error}, UnsubscribeWithoutRecipient},
    {{"unsubscribe-without-site", Severity::error}, UnsubscribeWithoutSite},
    {{"bare-ampersand", Severity::warning}, BareAmpersand},
};

std::optional<std::vector<std::string>> FieldNames(Object& office, std::string_view list) {
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
  return names;
}

}  // namespace

KnownFields FieldsOf(const ObjectRef& office) {
  if (office == nullptr) return {};
  return {FieldNames(*office, "ContactFields"), FieldNames(*office, "OrderFields")};
}

std::span<const ControlRule> ControlRules() { return kRules; }

}  // namespace kvo::check
