// The message of every problem of a page: what is wrong, and what to do.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "common/values/RuntimeError.h"
#include "document/page/Problem.h"
#include "document/page/ProblemList.h"
#include "document/page/Surroundings.h"

namespace kvo::page::messages {

// Quotes a text from a page, shortening a long one.
std::string Quoted(std::string_view text);
// Appends "Did you mean ...?" to the message, unless the suggestion is empty.
Message WithSuggestion(Message message, std::string_view suggestion);

// A message template; takes one text for each "{}".
template <bool quoted>
struct Wording {
  std::string_view german;
  std::string_view english;

  template <class... Texts>
  Message operator()(const Texts&... texts) const {
    const std::array<std::string, sizeof...(Texts)> values = {quoted ? Quoted(texts)
                                                                     : std::string(texts)...};
    return Filled(Localized{german, english}, values);
  }
};
using Plain = Wording<false>;
using Quoting = Wording<true>;

// `suggestion` may be empty.
Message UnknownClass(std::string_view className, std::string_view suggestion);
Message UnknownKey(std::string_view key, std::string_view suggestion);
inline constexpr Quoting DuplicateParam = {
    "Der Schlüssel {} steht zweimal. Löschen Sie einen der beiden param.",
    "The key {} occurs twice. Delete one of the two params."};
inline constexpr Plain ParamWithoutName = {"Ein param ohne name. Ergänzen Sie name=\"...\".",
                                           "A param without a name. Add name=\"...\"."};
inline constexpr Quoting ParamWithoutValue = {
    "Der param {} hat kein value. Ergänzen Sie value=\"\", wenn er leer sein "
    "soll.",
    "The param {} has no value. Add value=\"\" if it is to be empty."};
inline constexpr Quoting ParamAttribute = {
    "Ein param hat nur name und value, je einmal; {} ginge verloren. Löschen "
    "Sie das Attribut.",
    "A param has only name and value, once each; {} would be lost. Delete the "
    "attribute."};
inline constexpr Quoting DuplicateAttribute = {
    "Das Attribut {} steht zweimal. Löschen Sie eines der beiden.",
    "The attribute {} occurs twice. Delete one of the two."};
inline constexpr Quoting UnwritableAttribute = {
    "Das Attribut {} kann nicht erhalten werden; fehlt davor ein "
    "Anführungszeichen? Berichtigen "
    "oder löschen Sie es.",
    "The attribute {} cannot be kept; is a quote missing before it? "
    "Correct or delete it."};
inline constexpr Quoting UnexpectedContent = {
    "In einem Control dürfen nur param stehen; {} ginge verloren. Löschen Sie "
    "es, oder setzen Sie "
    "</object> davor.",
    "Only params may stand in a control; {} would be lost. Delete it, or put "
    "</object> in front of "
    "it."};
inline constexpr Plain UnclosedControl = {
    "Das Control ist nicht geschlossen. Ergänzen Sie </object> hinter dem "
    "letzten param.",
    "The control is not closed. Add </object> behind the last param."};
inline constexpr Plain CutOffTag = {
    "Das Tag endet nicht. Ergänzen Sie das fehlende Anführungszeichen oder "
    "\">\".",
    "The tag does not end. Add the missing quote or \">\"."};

inline constexpr Plain SpanWithoutNumber = {
    "Hinter STARTSPAN fehlt die Nummer (1, 2, ...). Ergänzen Sie sie wie in "
    "ENDSPAN, mit "
    "Leerzeichen davor und dahinter.",
    "The number (1, 2, ...) behind STARTSPAN is missing. Add it as in ENDSPAN, "
    "with blanks around "
    "it."};
inline constexpr Plain SpanWithoutControl = {
    "Hinter STARTSPAN und seiner Nummer steht kein Control dieser Bibliothek. "
    "Ergänzen Sie "
    "<object classid=\"progid:KVOPDesignObjects...\">...</object>, oder "
    "löschen Sie den Kommentar.",
    "Behind STARTSPAN and its number there is no control of this library. Add "
    "<object "
    "classid=\"progid:KVOPDesignObjects...\">...</object>, or delete the "
    "comment."};
inline constexpr Plain SpanCommentGoesOn = {
    "Hinter </object> muss der Kommentar mit \"-->\" enden. Löschen Sie, was "
    "dazwischen steht.",
    "Behind </object> the comment must end with \"-->\". Delete what stands "
    "between."};
inline constexpr Plain SpanCommentEndsEarly = {
    "Der Kommentar endet hier, mitten im Control. Schreiben Sie \">\" als "
    "&gt;.",
    "The comment ends here, inside the control. Write \">\" as &gt;."};
inline constexpr Plain SpanCommentNeverEnds = {
    "Der Kommentar endet nicht. Ergänzen Sie \"-->\" hinter </object>.",
    "The comment never ends. Add \"-->\" behind </object>."};
// Takes the missing end comment.
inline constexpr Plain MissingEnd = {
    "Der Endekommentar fehlt. Ergänzen Sie {} hinter dem Text des Controls.",
    "The end comment is missing. Add {} behind the control's text."};
// Another control, which begins in `line`, is inside the text of a saved one.
Message ControlInsideSpan(Subject other, std::size_t line, std::string_view endComment);
Message NestedControl(Subject other, std::size_t line, std::string_view endComment);
// `line` is where the place begins.
Message MisplacedControl(const Surroundings& place, std::size_t line, std::string_view runtimeText,
                         Pasting pasting);
inline constexpr Plain StrayEnd = {
    "Ein Endekommentar ohne Anfangskommentar. Stellen Sie den Anfangskommentar "
    "wieder her; in ihm "
    "stand das Control.",
    "An end comment without a start comment. Restore the start comment; it "
    "held the control."};
// For an end comment whose start comment is misplaced.
Message StrayEndOfMisplaced(const Surroundings& place, std::size_t line);

inline constexpr Plain Utf16 = {
    "Die Seite ist in UTF-16 gespeichert. Speichern Sie sie im Editor als "
    "UTF-8.",
    "The page is stored in UTF-16. Save it as UTF-8 in your editor."};
inline constexpr Quoting OtherEncoding = {
    "Die Kodierung {} wird in Seiten mit Controls nicht unterstützt. Speichern "
    "Sie die Seite als "
    "UTF-8, windows-1252, ISO-8859-1 oder ISO-8859-15, und ändern Sie charset.",
    "The encoding {} is not supported in pages with controls. Save the page as "
    "UTF-8, "
    "windows-1252, ISO-8859-1 or ISO-8859-15, and change the charset."};
// Takes the page's encoding now and after saving.
inline constexpr Quoting EncodingChanges = {
    "Die Seite ist in {}, gespeichert würde sie aber als {} gelesen: Die "
    "Angabe <meta charset> "
    "gilt nur in den ersten 1024 Bytes. Setzen Sie sie vor alle Controls.",
    "The page is in {}, but once saved it would be read as {}: <meta charset> "
    "counts within the "
    "first 1024 bytes only. Put it in front of all controls."};
Message InvalidBytes(unsigned char byte, std::string_view encoding);
// Takes a character and the page's encoding.
inline constexpr Plain ValueNotInEncoding = {
    "Ein Wert enthält {}, das eine Seite in {} nicht aufnehmen kann. Ändern "
    "Sie den Wert.",
    "A value holds {}, which a page in {} cannot hold. Change the value."};
// Ways to fix it: declare windows-1252, or write `reference` in the property `content`. Both texts
// are empty where that would not help.
struct TextWayOut {
  bool windows1252 = false;
  std::string_view content;
  std::string_view reference;
};
Message TextNotInEncoding(std::string_view character, std::string_view encoding,
                          const TextWayOut& wayOut);
// The page declares no encoding and is read in `encoding`.
Message UndeclaredEncoding(std::string_view encoding);
// The page's declaration is ineffective; it is read in `encoding`.
Message VoidDeclaration(const PageEncoding::VoidDeclaration& declaration,
                        std::string_view encoding);

Message ControlFails(const RuntimeError& error);
inline constexpr Plain EditedByHand = {
    "Der Text zwischen den Kommentaren wurde von Hand geändert. Übernehmen Sie "
    "die Änderung in die "
    "Eigenschaften; \"kvo save --force\" überschreibt sie.",
    "The text between the comments was edited by hand. Take the change over "
    "into the properties; "
    "\"kvo save --force\" overwrites it."};
inline constexpr Plain EditedByHandPublished = {
    "Der Text zwischen den Kommentaren wurde von Hand geändert; veröffentlicht "
    "wurde, was die "
    "Eigenschaften ergeben.",
    "The text between the comments was edited by hand; what the properties "
    "give was published."};
inline constexpr Plain UnstableBag = {
    "Neu gespeichert läse sich dieses Control beim nächsten Mal anders; die "
    "Seite behält, was sich "
    "gleich bleibt. Ändern Sie die Werte, wenn das nicht gemeint ist.",
    "Stored anew, this control would read differently the next time; the page "
    "keeps what stays the "
    "same. Change the values if that is not what you mean."};
inline constexpr Quoting DuplicateId = {
    "Die id {} steht schon bei einem anderen Control. Geben Sie jedem eine "
    "eigene.",
    "Another control has the id {} already. Give each an id of its own."};

}  // namespace kvo::page::messages
