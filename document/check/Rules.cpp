#include <iterator>
#include <vector>

#include "document/check/ControlRules.h"
#include "document/check/MailRules.h"
#include "document/check/Products.h"

namespace kvo::check {
namespace {

namespace rule = page::rule;
using page::Severity;

// Those of page::Check.
constexpr Rule kPageRules[] = {
    {rule::encoding,
     Severity::error,
     {"Eine Kodierung, die nicht unterstützt wird", "An encoding that is not supported"}},
    {rule::unknownClass,
     Severity::error,
     {"Eine Klasse, die es nicht gibt", "A class that does not exist"}},
    {rule::unknownKey,
     Severity::error,
     {"Ein Schlüssel, den die Klasse nicht hat", "A key that the class does not have"}},
    {rule::duplicateParam,
     Severity::error,
     {"Ein Schlüssel, der zweimal steht", "A key that occurs twice"}},
    {rule::malformedParam,
     Severity::error,
     {"Ein param ohne name oder value, oder mit mehr als ihnen",
      "A param without name or value, or with more than them"}},
    {rule::attribute,
     Severity::error,
     {"Ein Attribut des Elements object, das nicht erhalten werden kann",
      "An attribute of the object element that cannot be kept"}},
    {rule::unexpectedContent,
     Severity::error,
     {"Ein Control, das etwas anderes als param enthält",
      "A control that contains something other than params"}},
    {rule::unclosedControl,
     Severity::error,
     {"Ein Control ohne </object>", "A control without </object>"}},
    {rule::malformedSpan,
     Severity::error,
     {"Ein beschädigter Anfangskommentar", "A damaged start comment"}},
    {rule::missingEnd,
     Severity::error,
     {"Ein gespeichertes Control ohne Endekommentar", "A saved control without an end comment"}},
    {rule::nestedControl,
     Severity::error,
     {"Ein Control im Text eines gespeicherten", "A control in the text of a saved one"}},
    {rule::strayEnd,
     Severity::error,
     {"Ein Endekommentar ohne Anfangskommentar", "An end comment without a start comment"}},
    {rule::misplacedControl,
     Severity::error,
     {"Ein Control, wo HTML keine Elemente hat", "A control where HTML has no elements"}},
    {rule::invalidBytes,
     Severity::error,
     {"Bytes, die in der Kodierung der Seite ungültig sind",
      "Bytes that are invalid in the page's encoding"}},
    {rule::notInEncoding,
     Severity::error,
     {"Ein Zeichen, das die Kodierung der Seite nicht kennt",
      "A character that the page's encoding lacks"}},
    {rule::encodingChanges,
     Severity::error,
     {"Gespeichert würde die Seite in einer anderen Kodierung gelesen",
      "Once saved, the page would be read in another encoding"}},
    {rule::undeclaredEncoding,
     Severity::warning,
     {"Eine Seite, die ihre Kodierung nicht angibt", "A page that does not declare its encoding"}},
    {rule::controlFails,
     Severity::error,
     {"Ein Control, das sich nicht laden lässt oder keinen Text ergibt",
      "A control that cannot be loaded or gives no text"}},
    {rule::editedByHand,
     Severity::error,
     {"Ein gespeicherter Text, der von Hand geändert wurde",
      "A saved text that was edited by hand"}},
    {rule::duplicateId,
     Severity::warning,
     {"Zwei Controls mit derselben id", "Two controls with one id"}},
    {rule::unstableBag,
     Severity::warning,
     {"Ein Control, das sich beim Speichern ändert", "A control that changes when it is saved"}},
};

}  // namespace

std::span<const Rule> Rules() {
  static const std::vector<Rule> rules = [] {
    std::vector<Rule> all(std::begin(kPageRules), std::end(kPageRules));
    for (const Rule& rule : {kUnbalanced, kUnknownProduct, kProductsNotChecked})
      all.push_back(rule);
    for (const ControlRule& rule : ControlRules()) all.push_back(rule.rule);
    for (const Rule& rule : MailRules()) all.push_back(rule);
    return all;
  }();
  return rules;
}

}  // namespace kvo::check
