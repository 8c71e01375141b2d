// What a take-over says about what stays as it is.
#pragma once

#include "document/page/Messages.h"

namespace kvo::adopt::words {

using page::messages::Plain;
using page::messages::Quoting;

// Of runtime tags. They keep working where they stand.
inline constexpr Quoting UnknownTag = {"Zu dem Tag {} gibt es kein Control.",
                                       "There is no control for the tag {}."};
inline constexpr Plain NoPlaceForControl = {"Hier kann kein Control stehen; das Tag wirkt auch so.",
                                            "No control can stand here; the tag works as it is."};
inline constexpr Plain InsideOtherTag = {"Steht in einem anderen Tag und bleibt ein Teil davon.",
                                         "Stands in another tag and stays a part of it."};
inline constexpr Plain AroundControls = {"Umschließt ein Control; das Tag wirkt auch so.",
                                         "Surrounds a control; the tag works as it is."};
inline constexpr Quoting NoSuchAttribute = {"Kein Control schreibt an dieses Tag das Attribut {}.",
                                            "No control writes the attribute {} into this tag."};
inline constexpr Quoting AttributeTwice = {"Das Attribut {} steht zweimal.",
                                           "The attribute {} stands twice."};
// Takes what the page has and what the control would write.
inline constexpr Quoting OtherText = {"Statt {} schriebe das Control {}.",
                                      "In place of {} the control would write {}."};
inline constexpr Plain NoMarkers = {
    "Um das Tag fehlen die Marken eines Blocks (<!--KVO BLOCKLEVEL ELEMENT STARTSPAN ...); das "
    "Control schriebe sie.",
    "The markers of a block (<!--KVO BLOCKLEVEL ELEMENT STARTSPAN ...) are missing around the tag; "
    "the control would write them."};
inline constexpr Plain NewIdentifier = {
    "Das Control schriebe bei jedem Mal eine neue Kennung (in-cache).",
    "The control would write a new identifier each time (in-cache)."};

// Of placeholders. They reach recipients as they are.
inline constexpr Plain NotMapped = {"Steht nicht in der Zuordnung. Tragen Sie ihn dort ein.",
                                    "The mapping does not have it. Add it there."};
inline constexpr Plain Statement = {
    "Eine Anweisung des anderen Systems. Ersetzen Sie sie von Hand, etwa durch eine Bedingung "
    "(DTCIf).",
    "A statement of the other system. Replace it by hand, by a condition (DTCIf) for example."};
inline constexpr Plain InsideRuntimeTag = {
    "Steht in einem Tag der Template-Sprache. Ersetzen Sie den Platzhalter dort von Hand.",
    "Stands in a tag of the template language. Replace the placeholder there by hand."};
inline constexpr Plain BlockInBlock = {
    "Sein Control schriebe einen Block, und in dem Inhalt eines Blocks kann kein anderer stehen. "
    "Ersetzen Sie den Platzhalter von Hand.",
    "Its control would write a block, and none can stand in the content of another one. Replace "
    "the "
    "placeholder by hand."};
inline constexpr Plain InComment = {"Steht in einem Kommentar; dort sieht es niemand.",
                                    "Stands in a comment, where nobody sees it."};
inline constexpr Plain NotHere = {
    "Hier kann weder ein Control noch ein Tag stehen. Ändern Sie die Stelle von Hand.",
    "Neither a control nor a tag can stand here. Change the place by hand."};
inline constexpr Plain QuotesInValue = {
    "Der Wert des Attributs enthält ein ', mit dem er enden würde, sobald ein Tag darin steht. "
    "Ändern Sie ihn von Hand.",
    "The value of the attribute holds a ', which would end it once a tag stands in it. Change it "
    "by hand."};
inline constexpr Quoting NeighbourNotMapped = {
    "Im selben Wert steht {}, das nicht in der Zuordnung ist.",
    "The same value holds {}, which the mapping does not have."};
inline constexpr Plain GivesNothing = {
    "Das Control gäbe nichts aus. Füllen Sie seine Eigenschaften in der Zuordnung.",
    "The control would give nothing. Fill in its properties in the mapping."};
inline constexpr Plain NotInEncoding = {
    "Die Kodierung der Seite hat nicht alle Zeichen des Controls.",
    "The page's encoding lacks a character of the control."};

// Of the proof.
inline constexpr Plain NotTheSame = {"Veröffentlicht ergäbe die Seite nicht dieselben Bytes.",
                                     "Published, the page would not give the same bytes."};
inline constexpr Plain MovesEncoding = {
    "Davor oder danach gälte die Angabe <meta charset> nicht mehr, die nur in den ersten 1024 "
    "Bytes zählt.",
    "It would move <meta charset> beyond the first 1024 bytes, where it does not count."};

}  // namespace kvo::adopt::words
