#include "apps/kvo/Names.h"

#include "apps/kvo/Terminal.h"
#include "common/text/Suggest.h"
#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

constexpr std::string_view TypeWords(PropertyType type, bool german) {
  switch (type) {
    case PropertyType::flag:
      return german ? "true oder false" : "true or false";
    case PropertyType::integer:
      return german ? "eine ganze Zahl" : "a whole number";
    default:
      return german ? "einen Text" : "a text";
  }
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  const std::string_view name = Suggest(word, names);
  if (name.empty()) return {};
  return Say({" Meinten Sie „{}“?", " Did you mean \"{}\"?"}, {name});
}

const ControlClass& ClassNamed(std::string_view name) {
  std::vector<std::string_view> names;
  for (const RegisteredControl& control : RegisteredControls()) {
    const ControlClass& contract = control.contract();
    if (EqualIgnoringCase(contract.name, name)) return contract;
    names.push_back(contract.name);
  }
  throw Failure(Say({"Es gibt keine Klasse „{}“.", "There is no class \"{}\"."}, {name}) +
                DidYouMean(name, names) +
                Say({" „kvo classes“ zählt alle auf.", " \"kvo classes\" lists them all."}));
}

std::vector<Assignment> ParseAssignments(const std::vector<std::string>& words) {
  std::vector<Assignment> assignments;
  for (const std::string& word : words) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0)
      throw Failure(Say({"„{}“ ist keine Zuweisung; erwartet wird NAME=WERT, zum Beispiel Value=x.",
                         "\"{}\" is no assignment; NAME=VALUE is expected, such as Value=x."},
                        {word}));
    assignments.push_back({word.substr(0, equals), word.substr(equals + 1)});
  }
  return assignments;
}

void Assign(Control& control, const std::vector<Assignment>& assignments) {
  const ControlClass& contract = control.Class();
  for (const auto& [name, value] : assignments) {
    const PropertyRow* row = contract.FindProperty(name);
    if (row == nullptr) {
      std::vector<std::string_view> names;
      for (const PropertyRow& known : contract.properties)
        if (known.type != PropertyType::object) names.push_back(known.name);
      throw Failure(Say({"{} hat keine Eigenschaft „{}“.", "{} has no property \"{}\"."},
                        {contract.name, name}) +
                    DidYouMean(name, names) +
                    Say({" „kvo classes“ zählt alle auf.", " \"kvo classes\" lists them all."}));
    }
    if (row->type == PropertyType::object)
      throw Failure(Say({"{}.{} ist ein Objekt des Editors und lässt sich hier nicht setzen.",
                         "{}.{} is an object of the editor and can't be set here."},
                        {contract.name, row->name}));
    try {
      control.Let(name, Variant(value));
    } catch (const RuntimeError& error) {
      throw Failure(Say({"{}.{} nimmt „{}“ nicht an ({}); erwartet wird {}.",
                         "{}.{} refuses \"{}\" ({}); it takes {}."},
                        {contract.name, row->name, value, error.Text(UserLanguage()),
                         TypeWords(row->type, UserLanguage() == Language::german)}));
    }
  }
}

}  // namespace kvo
