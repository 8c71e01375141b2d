#include "document/page/Messages.h"

namespace kvo::page::messages {

std::string Quoted(std::string_view text) {
  constexpr std::size_t kShown = 60;
  std::string quoted = "\"";
  for (const char c : text.substr(0, kShown)) quoted += c >= 0 && c < ' ' ? ' ' : c;
  // No half character at the cut.
  if (text.size() > kShown) {
    while (!quoted.empty() && (static_cast<unsigned char>(quoted.back()) & 0xC0U) == 0x80)
      quoted.pop_back();
    if (static_cast<unsigned char>(quoted.back()) >= 0xC0) quoted.pop_back();
    quoted += "...";
  }
  return quoted + '"';
}

Message WithSuggestion(Message message, std::string_view suggestion) {
  if (suggestion.empty()) return message;
  message.german += " Meinten Sie " + Quoted(suggestion) + "?";
  message.english += " Did you mean " + Quoted(suggestion) + "?";
  return message;
}

Message UnknownClass(std::string_view className, std::string_view suggestion) {
  const std::string name = Quoted(className);
  return WithSuggestion(
      {"Die Klasse " + name +
           " gibt es nicht; \"kvo classes\" nennt alle. Berichtigen Sie classid.",
       "There is no class " + name + "; \"kvo classes\" lists them all. Correct the classid."},
      suggestion);
}

Message UnknownKey(std::string_view key, std::string_view suggestion) {
  const std::string name = Quoted(key);
  return WithSuggestion(
      {"Den Schlüssel " + name +
           " kennt dieses Control nicht. Berichtigen oder löschen Sie den param.",
       "This control does not know the key " + name + ". Correct or delete the param."},
      suggestion);
}

Message DuplicateParam(std::string_view key) {
  const std::string name = Quoted(key);
  return {"Der Schlüssel " + name + " steht zweimal. Löschen Sie einen der beiden param.",
          "The key " + name + " stands twice. Delete one of the two params."};
}

Message ParamWithoutName() {
  return {"Ein param ohne name. Ergänzen Sie name=\"...\".",
          "A param without a name. Add name=\"...\"."};
}

Message ParamWithoutValue(std::string_view key) {
  const std::string name = Quoted(key);
  return {"Der param " + name + " hat kein value. Ergänzen Sie value=\"\", wenn er leer sein soll.",
          "The param " + name + " has no value. Add value=\"\" if it is to be empty."};
}

Message ParamAttribute(std::string_view attribute) {
  const std::string name = Quoted(attribute);
  return {"Ein param hat nur name und value, je einmal; " + name +
              " ginge verloren. Löschen Sie das Attribut.",
          "A param has only name and value, once each; " + name +
              " would be lost. Delete the attribute."};
}

Message DuplicateAttribute(std::string_view attribute) {
  const std::string name = Quoted(attribute);
  return {"Das Attribut " + name + " steht zweimal. Löschen Sie eines der beiden.",
          "The attribute " + name + " stands twice. Delete one of the two."};
}

Message UnwritableAttribute(std::string_view attribute) {
  const std::string name = Quoted(attribute);
  return {"Das Attribut " + name +
              " kann nicht erhalten werden; fehlt davor ein Anführungszeichen? Berichtigen oder "
              "löschen Sie es.",
          "The attribute " + name +
              " cannot be kept; is a quote missing in front of it? Correct or delete it."};
}

Message UnexpectedContent(std::string_view content) {
  const std::string found = Quoted(content);
  return {"In einem Control dürfen nur param stehen; " + found +
              " ginge verloren. Löschen Sie es, oder setzen Sie </object> davor.",
          "Only params may stand in a control; " + found +
              " would be lost. Delete it, or put </object> in front of it."};
}

Message UnclosedControl() {
  return {"Das Control ist nicht geschlossen. Ergänzen Sie </object> hinter dem letzten param.",
          "The control is not closed. Add </object> behind the last param."};
}

Message CutOffTag() {
  return {"Das Tag endet nicht. Ergänzen Sie das fehlende Anführungszeichen oder \">\".",
          "The tag does not end. Add the missing quote or \">\"."};
}

Message SpanWithoutNumber() {
  return {
      "Hinter STARTSPAN fehlt die Nummer (1, 2, ...). Ergänzen Sie sie wie in ENDSPAN, mit "
      "Leerzeichen davor und dahinter.",
      "The number (1, 2, ...) behind STARTSPAN is missing. Add it as in ENDSPAN, with blanks "
      "around it."};
}

Message SpanWithoutControl() {
  return {
      "Hinter STARTSPAN und seiner Nummer steht kein Control dieser Bibliothek. Ergänzen Sie "
      "<object classid=\"progid:KVOPDesignObjects...\">...</object>, oder löschen Sie den "
      "Kommentar.",
      "Behind STARTSPAN and its number there is no control of this library. Add <object "
      "classid=\"progid:KVOPDesignObjects...\">...</object>, or delete the comment."};
}

Message SpanCommentGoesOn() {
  return {
      "Hinter </object> muss der Kommentar mit \"-->\" enden. Löschen Sie, was dazwischen "
      "steht.",
      "Behind </object> the comment must end with \"-->\". Delete what stands between."};
}

Message SpanCommentEndsEarly() {
  return {"Der Kommentar endet hier, mitten im Control. Schreiben Sie \">\" als &gt;.",
          "The comment ends here, inside the control. Write \">\" as &gt;."};
}

Message SpanCommentNeverEnds() {
  return {"Der Kommentar endet nicht. Ergänzen Sie \"-->\" hinter </object>.",
          "The comment never ends. Add \"-->\" behind </object>."};
}

Message MissingEnd(std::string_view endComment) {
  const std::string comment(endComment);
  return {"Der Endekommentar fehlt. Ergänzen Sie " + comment + " hinter dem Text des Controls.",
          "The end comment is missing. Add " + comment + " behind the control's text."};
}

namespace {

// "(DTCPrint "Preis", Zeile 12)".
Message InBrackets(Subject control, std::size_t line) {
  std::string name(control.control);
  if (!control.id.empty()) name += ' ' + Quoted(control.id);
  if (!name.empty()) name += ", ";
  const std::string number = std::to_string(line);
  return {"(" + name + "Zeile " + number + ")", "(" + name + "line " + number + ")"};
}

}  // namespace

Message ControlInsideSpan(Subject other, std::size_t line, std::string_view endComment) {
  const std::string comment(endComment);
  const Message which = InBrackets(other, line);
  return {"Vor dem Endekommentar beginnt ein anderes Control " + which.german +
              "; der eigene scheint zu fehlen. Ergänzen Sie " + comment +
              " hinter dem Text des Controls.",
          "Another control " + which.english +
              " begins before the end comment; this control's own seems to be missing. Add " +
              comment + " behind the control's text."};
}

Message NestedControl(Subject other, std::size_t line, std::string_view endComment) {
  const std::string comment(endComment);
  const Message which = InBrackets(other, line);
  return {"Im Text dieses Controls steht ein anderes " + which.german +
              ", das verloren ginge. Setzen Sie es hinter " + comment +
              "; fehlt dieser Endekommentar, ergänzen Sie ihn davor.",
          "In the text of this control stands another one " + which.english +
              ", which would be lost. Put it behind " + comment +
              "; if this end comment is missing, add it in front of that control."};
}

namespace {

// "in einem Kommentar, der in Zeile 12 beginnt", "inside a comment that begins in line 12".
Message Inside(const Surroundings& place, std::size_t line) {
  using Kind = Surroundings::Kind;
  const std::string name = Quoted(place.name);
  const auto where = [&](const std::string& german, const std::string& english) {
    const std::string number = std::to_string(line);
    return Message{german + " in Zeile " + number + " beginnt",
                   english + " begins in line " + number};
  };
  switch (place.kind) {
    case Kind::comment:
      return where("in einem Kommentar, der", "inside a comment that");
    case Kind::conditionalComment:
      return where("in einem bedingten Kommentar, der", "inside a conditional comment that");
    case Kind::declaration:
      return where("in einer Deklaration, die", "inside a declaration that");
    case Kind::cdata:
      return where("in einem CDATA-Abschnitt, der", "inside a CDATA section that");
    case Kind::rawText:
      return where("im Text eines Elements " + name + ", das",
                   "inside the text of an element " + name + " that");
    case Kind::tag:
      return where("in einem Tag " + name + ", das", "inside a tag " + name + " that");
    case Kind::attributeValue:
      return where("im Wert eines Attributs " + name + ", der",
                   "inside the value of an attribute " + name + " that");
    case Kind::control:
      return where("in einem Control, das", "inside a control that");
    case Kind::content:
      break;
  }
  return {};
}

}  // namespace

Message MisplacedControl(const Surroundings& place, std::size_t line, std::string_view runtimeText,
                         Pasting pasting) {
  const Message inside = Inside(place, line);
  const std::string text(runtimeText);
  const bool isTag =
      place.kind == Surroundings::Kind::tag || place.kind == Surroundings::Kind::attributeValue;
  Message advice;
  if (pasting == Pasting::asItStands)
    advice = {" Schreiben Sie stattdessen " + text, " Write this instead: " + text};
  else if (pasting == Pasting::inSingleQuotes)
    advice = {
        " Setzen Sie den Wert in einfache Anführungszeichen, und schreiben Sie stattdessen " + text,
        " Put the value in single quotes and write this instead: " + text};
  else if (isTag)
    advice = {" Lassen Sie das ganze Tag von einem DTCElement oder DTCClicktracker schreiben.",
              " Let a DTCElement or DTCClicktracker write the whole tag."};
  else
    advice = {" Setzen Sie es dorthin, wo HTML Text oder Elemente hat.",
              " Put it where HTML has text or elements."};
  return {"Ein Control kann nicht " + inside.german + ", stehen: Es ginge roh an den Empfänger." +
              advice.german,
          "A control cannot stand " + inside.english + ": it would reach the recipient raw." +
              advice.english};
}

Message StrayEnd() {
  return {
      "Ein Endekommentar ohne Anfangskommentar. Stellen Sie den Anfangskommentar wieder her; in "
      "ihm stand das Control.",
      "An end comment without a start comment. Restore the start comment; it held the control."};
}

Message StrayEndOfMisplaced(const Surroundings& place, std::size_t line) {
  const Message inside = Inside(place, line);
  return {"Der Anfangskommentar dieses Controls steht " + inside.german +
              ", und zählt dort nicht. Schließen Sie, was dort beginnt, vor dem Control.",
          "The start comment of this control stands " + inside.english +
              " and does not count there. Close what begins there in front of the control."};
}

Message Utf16() {
  return {"Die Seite ist in UTF-16 gespeichert. Speichern Sie sie im Editor als UTF-8.",
          "The page is stored in UTF-16. Save it as UTF-8 in your editor."};
}

Message OtherEncoding(std::string_view encoding) {
  const std::string name = Quoted(encoding);
  return {"Die Kodierung " + name +
              " wird in Seiten mit Controls nicht unterstützt. Speichern Sie die Seite als UTF-8, "
              "windows-1252, ISO-8859-1 oder ISO-8859-15, und ändern Sie charset.",
          "The encoding " + name +
              " is not supported in pages with controls. Save the page as UTF-8, windows-1252, "
              "ISO-8859-1 or ISO-8859-15, and change the charset."};
}

Message EncodingChanges(std::string_view now, std::string_view saved) {
  return {"Die Seite ist in " + Quoted(now) + ", gespeichert würde sie aber als " + Quoted(saved) +
              " gelesen: Die Angabe <meta charset> gilt nur in den ersten 1024 Bytes. Setzen Sie "
              "sie vor alle Controls.",
          "The page is in " + Quoted(now) + ", but once saved it would be read as " +
              Quoted(saved) + ": <meta charset> counts within the first 1024 bytes only. Put it " +
              "in front of all controls."};
}

Message InvalidBytes(unsigned char byte, std::string_view encoding) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const std::string hex = {'0', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
  const std::string name(encoding);
  return {"Das Byte " + hex + " ist in " + name +
              " kein gültiges Zeichen. Berichtigen Sie es, oder die Angabe charset der Seite.",
          "The byte " + hex + " is no valid character in " + name +
              ". Correct it, or the charset that the page declares."};
}

Message ValueNotInEncoding(std::string_view character, std::string_view encoding) {
  const std::string what(character);
  const std::string name(encoding);
  return {
      "Ein Wert enthält " + what + ", das eine Seite in " + name +
          " nicht aufnehmen kann. Ändern Sie den Wert.",
      "A value holds " + what + ", which a page in " + name + " cannot hold. Change the value."};
}

Message TextNotInEncoding(std::string_view character, std::string_view encoding,
                          const TextWayOut& wayOut) {
  const std::string what(character);
  const std::string name(encoding);
  Message message = {"Der Laufzeittext enthält " + what + ", das es in " + name + " nicht gibt.",
                     "The runtime text holds " + what + ", which does not exist in " + name + "."};
  if (wayOut.windows1252) {
    message.german +=
        " Schreiben Sie windows-1252 ins charset der Seite: So lesen Browser " + name + " ohnehin.";
    message.english +=
        " Write windows-1252 into the page's charset: browsers read " + name + " as that anyway.";
  } else {
    message.german += " Speichern Sie die Seite als UTF-8, oder ändern Sie den Wert.";
    message.english += " Save the page as UTF-8, or change the value.";
  }
  if (!wayOut.content.empty()) {
    const std::string content(wayOut.content);
    const std::string reference(wayOut.reference);
    message.german += " In " + content + " können Sie auch " + reference + " schreiben.";
    message.english += " In " + content + " you can also write " + reference + ".";
  }
  return message;
}

Message UndeclaredEncoding(std::string_view encoding) {
  const std::string name(encoding);
  return {
      "Die Seite gibt ihre Kodierung nicht an und ist kein gültiges UTF-8; wie ein Browser "
      "liest kvo sie als " +
          name + ". Ergänzen Sie <meta charset=\"" + name + "\">.",
      "The page does not declare its encoding and is not valid UTF-8; kvo reads it as " + name +
          ", as browsers do. Add <meta charset=\"" + name + "\">."};
}

Message VoidDeclaration(const PageEncoding::VoidDeclaration& declaration,
                        std::string_view encoding) {
  const std::string declared = Quoted(declaration.name);
  const std::string name(encoding);
  if (declaration.tooFar)
    return {"Die Angabe charset " + declared +
                " zählt nicht, weil sie nicht in den ersten 1024 Bytes steht; die Seite wird als " +
                name + " gelesen. Setzen Sie sie an den Anfang von <head>.",
            "The charset " + declared +
                " does not count because it is not within the first 1024 bytes; the page is read "
                "as " +
                name + ". Put it at the beginning of <head>."};
  return {"Die Angabe charset " + declared +
              " ist keine Kodierung, sondern ein Platzhalter; die Seite wird als " + name +
              " gelesen. Geben Sie die Kodierung der Vorlage an.",
          "The charset " + declared + " is no encoding but a placeholder; the page is read as " +
              name + ". Declare the encoding of the template."};
}

Message ControlFails(const RuntimeError& error) {
  const std::string number = std::to_string(error.Number());
  return {"Laufzeitfehler " + number + ": " + error.Text(Language::german) +
              ". Berichtigen Sie die Werte der param.",
          "Run-time error " + number + ": " + error.Text(Language::english) +
              ". Correct the values of the params."};
}

Message EditedByHand() {
  return {
      "Der Text zwischen den Kommentaren wurde von Hand geändert. Übernehmen Sie die Änderung "
      "in die Eigenschaften; \"kvo save --force\" überschreibt sie.",
      "The text between the comments was edited by hand. Take the change over into the "
      "properties; \"kvo save --force\" overwrites it."};
}

Message EditedByHandPublished() {
  return {
      "Der Text zwischen den Kommentaren wurde von Hand geändert; veröffentlicht wurde, was "
      "die Eigenschaften ergeben.",
      "The text between the comments was edited by hand; what the properties give was "
      "published."};
}

Message UnstableBag() {
  return {
      "Neu gespeichert läse sich dieses Control beim nächsten Mal anders; die Seite behält, "
      "was sich gleich bleibt. Ändern Sie die Werte, wenn das nicht gemeint ist.",
      "Stored anew, this control would read differently the next time; the page keeps what "
      "stays the same. Change the values if that is not what you mean."};
}

Message DuplicateId(std::string_view id) {
  const std::string name = Quoted(id);
  return {"Die id " + name + " steht schon bei einem anderen Control. Geben Sie jedem eine eigene.",
          "Another control has the id " + name + " already. Give each an id of its own."};
}

}  // namespace kvo::page::messages
