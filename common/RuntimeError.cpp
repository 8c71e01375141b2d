#include "common/RuntimeError.h"

#include <array>
#include <utility>

namespace kvo {
namespace {

struct Row {
  ErrorNumber number;
  Localized description;
};

constexpr std::array kDescriptions = {
    Row{ErrorNumber::invalidCall,
        {"Ungültiger Prozeduraufruf oder ungültiges Argument",
         "Invalid procedure call or argument"}},
    Row{ErrorNumber::overflow, {"Überlauf", "Overflow"}},
    Row{ErrorNumber::subscriptOutOfRange,
        {"Index außerhalb des gültigen Bereichs", "Subscript out of range"}},
    Row{ErrorNumber::typeMismatch, {"Typen unverträglich", "Type mismatch"}},
    Row{ErrorNumber::objectNotSet, {"Objektvariable nicht festgelegt", "Object variable not set"}},
    Row{ErrorNumber::cannotCreateObject,
        {"Objekterstellung nicht möglich", "Can't create the object"}},
    Row{ErrorNumber::unknownMember,
        {"Objekt unterstützt diese Eigenschaft oder Methode nicht",
         "Object doesn't support this property or method"}},
    Row{ErrorNumber::keyInUse,
        {"Dieser Schlüssel ist bereits einem Element dieser Auflistung zugeordnet",
         "This key is already associated with an element of this collection"}},
};

}  // namespace

RuntimeError::RuntimeError(ErrorNumber number, std::string about)
    : number_(number), about_(std::move(about)), what_(Description(Language::english)) {}

std::string RuntimeError::Description(Language language) const {
  std::string text;
  for (const Row& row : kDescriptions)
    if (row.number == number_) text = row.description.In(language);
  if (!about_.empty()) text += ": " + about_;
  return text;
}

}  // namespace kvo
