// What a preview says about what it cannot show.
#pragma once

#include "document/page/Messages.h"

namespace kvo::preview::words {

using page::messages::Plain;
using page::messages::Quoting;

inline constexpr Plain BrokenTag = {
    "Das Tag ist beschädigt; steht ein Anführungszeichen in einem Wert?",
    "The tag is broken; is there a quotation mark in a value?"};
inline constexpr Plain UnendedTag = {"Das Tag endet nicht; fehlt ein Anführungszeichen oder \">\"?",
                                     "The tag does not end; is a quotation mark or \">\" missing?"};
inline constexpr Plain UnclosedTag = {"Das Ende fehlt. Ergänzen Sie </{}>.",
                                      "The end is missing. Add </{}>."};
inline constexpr Plain StrayEnd = {"Zu diesem Ende fehlt der Anfang.",
                                   "The start that belongs to this end is missing."};
inline constexpr Plain TooDeep = {"Die Tags sind zu tief verschachtelt.",
                                  "The tags are nested too deep."};
inline constexpr Quoting UnknownTag = {"Das Tag {} kennt die Vorschau nicht.",
                                       "The preview does not know the tag {}."};
inline constexpr Plain FailedControl = {
    "Dieses Control hat einen Fehler und lässt sich nicht veröffentlichen.",
    "This control has an error and cannot be published."};
inline constexpr Plain Script = {"Ein Skript; die Vorschau führt es nicht aus.",
                                 "A script; the preview does not run it."};
inline constexpr Plain Counter = {"Ein Zähler für Öffnungen; in der Vorschau zählt er nicht.",
                                  "A counter of openings; it does not count in the preview."};
inline constexpr Plain Unsubscribes = {"Abmeldung an {}, Bestätigung auf {}",
                                       "Unsubscribes at {}, confirms on {}"};
// Takes the record and "group.name".
inline constexpr Quoting NoValue = {"Der Datensatz {} hat keinen Wert für {}.",
                                    "The record {} has no value for {}."};
inline constexpr Quoting NoPositions = {"Der Datensatz {} nennt keine Positionen (positions).",
                                        "The record {} names no positions (positions)."};
inline constexpr Plain Currency = {"Die Währung setzt der Shop ein.",
                                   "The shop puts in the currency."};
inline constexpr Quoting UnsafeAddress = {
    "Als Adresse zeigt die Vorschau {} an dieser Stelle nicht.",
    "The preview does not show {} as an address in this place."};
inline constexpr Quoting UnsafeText = {
    "In einem Tag, einem Skript oder einem Stil zeigt die Vorschau {} nicht.",
    "Inside a tag, a script or a style the preview does not show {}."};
// Takes the attribute and the text.
inline constexpr Quoting UnsafeAttribute = {"Im Attribut {} zeigt die Vorschau {} nicht.",
                                            "In the attribute {} the preview does not show {}."};
inline constexpr Plain NoElementHere = {"Hier kann kein Element stehen.",
                                        "No element can stand here."};
inline constexpr Plain NoTableHere = {"Hier kann keine Tabelle stehen.",
                                      "No table can stand here."};
inline constexpr Plain NoShop = {
    "Ohne Shop zeigt die Vorschau nur die Nummern der Produkte.",
    "Without a shop the preview shows products by their numbers alone."};
inline constexpr Quoting UnknownProduct = {"Das Produkt {} gibt es im Shop nicht.",
                                           "The shop does not have the product {}."};
inline constexpr Plain ShopsOwn = {"Bilder und Preise der Produkte setzt der Shop ein.",
                                   "The shop puts in the pictures and prices of products."};
inline constexpr Plain MadeUp = {" (ausgedachte Werte)", " (made-up values)"};
inline constexpr Plain Price = {"Preis", "Price"};
inline constexpr Plain Picture = {"Bild", "Picture"};

// Of expressions.
inline constexpr Quoting NotUnderstood = {"Den Ausdruck {} versteht die Vorschau nicht.",
                                          "The preview does not understand the expression {}."};
inline constexpr Quoting NoTest = {"Die Bedingung {} ist weder wahr noch falsch.",
                                   "The condition {} is neither true nor false."};
inline constexpr Plain NotAFlag = {"Ein Teil des Ausdrucks ist weder wahr noch falsch.",
                                   "A part of the expression is neither true nor false."};
inline constexpr Quoting NotComparable = {"{} und {} lassen sich nicht vergleichen.",
                                          "{} and {} cannot be compared."};
inline constexpr Quoting NotANumber = {"Mit {} und {} lässt sich nicht rechnen.",
                                       "{} and {} cannot be calculated with."};
inline constexpr Plain DividedByZero = {"Durch null lässt sich nicht teilen.",
                                        "Nothing can be divided by zero."};

}  // namespace kvo::preview::words
