#include "document/page/Messages.h"

#include <iterator>

namespace kvo::page::messages {
namespace {

Message operator+(const Message& front, const Message& rest) {
  return {front.german + rest.german, front.english + rest.english};
}

// Returns a prefix for a line number: "DTCPrint "Preis", ".
std::string InFront(Subject control) {
  std::string name(control.control);
  if (!control.id.empty()) name += ' ' + Quoted(control.id);
  return name.empty() ? name : name + ", ";
}

// In the order of Surroundings::Kind; "{}" is the name of the place.
constexpr Localized kInside[] = {
    {"", ""},
    {"in einem Kommentar, der", "inside a comment that"},
    {"in einem bedingten Kommentar, der", "inside a conditional comment that"},
    {"in einer Deklaration, die", "inside a declaration that"},
    {"in einem CDATA-Abschnitt, der", "inside a CDATA section that"},
    {"im Text eines Elements {}, das", "inside the text of an element {} that"},
    {"in einem Tag {}, das", "inside a tag {} that"},
    {"im Wert eines Attributs {}, der", "inside the value of an attribute {} that"},
    {"in einem Control, das", "inside a control that"},
};
static_assert(std::size(kInside) == static_cast<std::size_t>(Surroundings::Kind::control) + 1);

// Returns "in einem Kommentar, der in Zeile 12 beginnt", "inside a comment that begins in line 12".
Message Inside(const Surroundings& place, std::size_t line) {
  const Localized& inside = kInside[static_cast<std::size_t>(place.kind)];
  std::vector<std::string> name;
  if (inside.german.find("{}") != npos) name.push_back(Quoted(place.name));
  constexpr Plain kLine = {" in Zeile {} beginnt", " begins in line {}"};
  return Filled(inside, name) + kLine(std::to_string(line));
}

Message AdviceFor(const Surroundings& place, std::string_view runtimeText, Pasting pasting) {
  constexpr Plain kWrite = {" Schreiben Sie stattdessen {}", " Write this instead: {}"};
  constexpr Plain kSingleQuotes = {
      " Setzen Sie den Wert in einfache Anführungszeichen, und schreiben Sie "
      "stattdessen {}",
      " Put the value in single quotes and write this instead: {}"};
  if (pasting == Pasting::asItStands) return kWrite(runtimeText);
  if (pasting == Pasting::inSingleQuotes) return kSingleQuotes(runtimeText);
  if (place.kind == Surroundings::Kind::tag || place.kind == Surroundings::Kind::attributeValue)
    return {
        " Lassen Sie das ganze Tag von einem DTCElement oder "
        "DTCClicktracker schreiben.",
        " Let a DTCElement or DTCClicktracker write the whole tag."};
  return {" Setzen Sie es dorthin, wo HTML Text oder Elemente hat.",
          " Put it where HTML has text or elements."};
}

}  // namespace

std::string Quoted(std::string_view text) {
  constexpr std::size_t kShown = 60;
  std::string quoted = "\"";
  for (const char c : text.substr(0, kShown)) quoted += c >= 0 && c < ' ' ? ' ' : c;
  // Do not cut a character in half.
  if (text.size() > kShown) {
    while (!quoted.empty() && (static_cast<unsigned char>(quoted.back()) & 0xC0U) == 0x80)
      quoted.pop_back();
    if (static_cast<unsigned char>(quoted.back()) >= 0xC0) quoted.pop_back();
    quoted += "...";
  }
  return quoted + '"';
}

Message WithSuggestion(Message message, std::string_view suggestion) {
  constexpr Quoting kSuggestion = {" Meinten Sie {}?", " Did you mean {}?"};
  return suggestion.empty() ? message : message + kSuggestion(suggestion);
}

Message UnknownClass(std::string_view className, std::string_view suggestion) {
  constexpr Quoting kText = {
      "Die Klasse {} gibt es nicht; \"kvo classes\" "
      "nennt alle. Berichtigen Sie classid.",
      "There is no class {}; \"kvo classes\" lists them "
      "all. Correct the classid."};
  return WithSuggestion(kText(className), suggestion);
}

Message UnknownKey(std::string_view key, std::string_view suggestion) {
  constexpr Quoting kText = {
      "Den Schlüssel {} kennt dieses Control nicht. Berichtigen oder löschen "
      "Sie den param.",
      "This control does not know the key {}. Correct or delete the param."};
  return WithSuggestion(kText(key), suggestion);
}

Message ControlInsideSpan(Subject other, std::size_t line, std::string_view endComment) {
  constexpr Plain kText = {
      "Vor dem Endekommentar beginnt ein anderes Control ({}Zeile {}); der "
      "eigene scheint zu "
      "fehlen. Ergänzen Sie {} hinter dem Text des Controls.",
      "Another control ({}line {}) begins before the end comment; this "
      "control's own seems to be "
      "missing. Add {} behind the control's text."};
  return kText(InFront(other), std::to_string(line), endComment);
}

Message NestedControl(Subject other, std::size_t line, std::string_view endComment) {
  constexpr Plain kText = {
      "Im Text dieses Controls steht ein anderes ({}Zeile {}), das verloren "
      "ginge. Setzen Sie es "
      "hinter {}; fehlt dieser Endekommentar, ergänzen Sie ihn davor.",
      "In the text of this control stands another one ({}line {}), which would "
      "be lost. Put it "
      "behind {}; if this end comment is missing, add it in front of that "
      "control."};
  return kText(InFront(other), std::to_string(line), endComment);
}

Message MisplacedControl(const Surroundings& place, std::size_t line, std::string_view runtimeText,
                         Pasting pasting) {
  const Message inside = Inside(place, line);
  const Message advice = AdviceFor(place, runtimeText, pasting);
  return {"Ein Control kann nicht " + inside.german + ", stehen: Es ginge roh an den Empfänger." +
              advice.german,
          "A control cannot stand " + inside.english + ": it would reach the recipient raw." +
              advice.english};
}

Message StrayEndOfMisplaced(const Surroundings& place, std::size_t line) {
  const Message inside = Inside(place, line);
  return {"Der Anfangskommentar dieses Controls steht " + inside.german +
              ", und zählt dort nicht. Schließen Sie, was dort beginnt, vor "
              "dem Control.",
          "The start comment of this control stands " + inside.english +
              " and does not count there. Close what begins there in front of "
              "the control."};
}

Message InvalidBytes(unsigned char byte, std::string_view encoding) {
  constexpr Plain kText = {
      "Das Byte {} ist in {} kein gültiges Zeichen. "
      "Berichtigen Sie es, oder die Angabe charset "
      "der Seite.",
      "The byte {} is no valid character in {}. Correct "
      "it, or the charset that the page "
      "declares."};
  constexpr std::string_view digits = "0123456789ABCDEF";
  const std::string hex = {'0', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
  return kText(hex, encoding);
}

Message TextNotInEncoding(std::string_view character, std::string_view encoding,
                          const TextWayOut& wayOut) {
  constexpr Plain kText = {"Der Laufzeittext enthält {}, das es in {} nicht gibt.",
                           "The runtime text holds {}, which does not exist in {}."};
  constexpr Plain kWindows1252 = {
      " Schreiben Sie windows-1252 ins charset der "
      "Seite: So lesen Browser {} ohnehin.",
      " Write windows-1252 into the page's "
      "charset: browsers read {} as that anyway."};
  constexpr Plain kUtf8 = {" Speichern Sie die Seite als UTF-8, oder ändern Sie den Wert.",
                           " Save the page as UTF-8, or change the value."};
  constexpr Plain kReference = {" In {} können Sie auch {} schreiben.",
                                " In {} you can also write {}."};
  Message message =
      kText(character, encoding) + (wayOut.windows1252 ? kWindows1252(encoding) : kUtf8());
  if (wayOut.content.empty()) return message;
  return message + kReference(wayOut.content, wayOut.reference);
}

Message UndeclaredEncoding(std::string_view encoding) {
  constexpr Plain kText = {
      "Die Seite gibt ihre Kodierung nicht an und ist kein gültiges UTF-8; wie "
      "ein Browser liest "
      "kvo sie als {}. Ergänzen Sie <meta charset=\"{}\">.",
      "The page does not declare its encoding and is not valid UTF-8; kvo "
      "reads it as {}, as "
      "browsers do. Add <meta charset=\"{}\">."};
  return kText(encoding, encoding);
}

Message VoidDeclaration(const PageEncoding::VoidDeclaration& declaration,
                        std::string_view encoding) {
  constexpr Plain kTooFar = {
      "Die Angabe charset {} zählt nicht, weil sie nicht in den ersten 1024 "
      "Bytes steht; die Seite "
      "wird als {} gelesen. Setzen Sie sie an den Anfang von <head>.",
      "The charset {} does not count because it is not within the first 1024 "
      "bytes; the page is "
      "read as {}. Put it at the beginning of <head>."};
  constexpr Plain kTemplate = {
      "Die Angabe charset {} ist keine Kodierung, sondern ein Platzhalter; die "
      "Seite wird als {} "
      "gelesen. Geben Sie die Kodierung der Vorlage an.",
      "The charset {} is no encoding but a placeholder; the page is read as "
      "{}. Declare the "
      "encoding of the template."};
  return (declaration.tooFar ? kTooFar : kTemplate)(Quoted(declaration.name), encoding);
}

Message ControlFails(const RuntimeError& error) {
  const std::string number = std::to_string(error.Number());
  return {"Laufzeitfehler " + number + ": " + error.Text(Language::german) +
              ". Berichtigen Sie die Werte der param.",
          "Run-time error " + number + ": " + error.Text(Language::english) +
              ". Correct the values of the params."};
}

}  // namespace kvo::page::messages
