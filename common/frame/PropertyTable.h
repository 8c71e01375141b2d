// The tables of which a control's contract is made: the interface (properties under their names
// and ids) and the bag (persisted keys with their defaults and their way in and out).
#pragma once

#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "common/frame/PropertyBag.h"
#include "common/text/modGlobal.h"
#include "common/values/Variant.h"

namespace kvo {

class Control;

enum class PropertyType { text, flag, integer, object };

// One property of a class's interface. Late binding, dispatch ids, listings and the bag are all
// fed from these rows.
struct PropertyRow {
  std::string_view name;
  int id;  // dispatch id: positive, unique in its class, never reused
  PropertyType type;
  Variant (*get)(const Control&);
  void (*let)(Control&, Variant&&);             // converts as an assignment does
  void (*letText)(Control&, std::string_view);  // the same for a text; nullptr: `let` converts it
  // The value as text; `scratch` holds it where the control itself does not.
  std::string_view (*text)(const Control&, std::string& scratch);
};

// How a key's value gets into the control and out of it.
struct BagWay {
  void (*in)(Control&, Variant&& stored);  // nullptr: any value goes in as a text
  std::string_view (*out)(const Control&, std::string& scratch);
  void (*inText)(Control&, std::string_view stored) = nullptr;
};

struct BagKey {
  std::string_view key;
  std::string_view readDefault;
  WriteDefault writeDefault;
  BagWay way;
};

namespace property_table {

template <class T>
constexpr PropertyType TypeOf() {
  if constexpr (std::same_as<T, bool>) {
    return PropertyType::flag;
  } else if constexpr (std::same_as<T, std::int32_t>) {
    return PropertyType::integer;
  } else if constexpr (std::same_as<T, ObjectRef>) {
    return PropertyType::object;
  } else {
    static_assert(std::same_as<T, std::string>, "a property type without a conversion");
    return PropertyType::text;
  }
}

// Assigning an empty value to an object property means "no object", not a failed conversion.
template <class T>
T Convert(Variant&& value) {
  if constexpr (std::same_as<T, std::string>) return ToText(std::move(value));
  if constexpr (std::same_as<T, bool>) return ToFlag(value);
  if constexpr (std::same_as<T, std::int32_t>) return ToInteger(value);
  if constexpr (std::same_as<T, ObjectRef>) return value.IsEmpty() ? nullptr : ToObject(value);
}

// How setters take a converted value: texts by view.
template <class T>
decltype(auto) Argument(T&& value) {
  if constexpr (std::same_as<T, std::string>)
    return std::string_view(value);
  else
    return std::forward<T>(value);
}

// How a text is assigned to a property of type T; none for the types that convert it.
template <class T, class Class, class Setter>
constexpr auto LetText() -> void (*)(Control&, std::string_view) {
  if constexpr (std::same_as<T, std::string>) {
    return [](Control& control, std::string_view text) {
      Setter{}(static_cast<Class&>(control), text);
    };
  } else {
    return nullptr;
  }
}

// Accessors are handed over as captureless lambdas, so that a row is made of plain functions.
template <class Class, class Getter, class Setter>
constexpr PropertyRow Row(std::string_view name, int id, Getter, Setter) {
  using Returned = std::invoke_result_t<Getter, const Class&>;
  using T = std::remove_cvref_t<Returned>;
  return {
      name,
      id,
      TypeOf<T>(),
      [](const Control& control) -> Variant {
        return Variant(T(Getter{}(static_cast<const Class&>(control))));
      },
      [](Control& control, Variant&& value) {
        Setter{}(static_cast<Class&>(control), Argument(Convert<T>(std::move(value))));
      },
      LetText<T, Class, Setter>(),
      [](const Control& control, std::string& scratch) -> std::string_view {
        if constexpr (std::same_as<Returned, const std::string&>) {
          return Getter{}(static_cast<const Class&>(control));
        } else {
          if constexpr (!std::same_as<T, ObjectRef>)
            scratch = ToText(Variant(Getter{}(static_cast<const Class&>(control))));
          return scratch;
        }
      },
  };
}

template <class Class, class T>
Class OwnerOf(T Class::*);

// The object that holds a member of `Self` or of one of its bases.
template <auto member>
using Owner = decltype(OwnerOf(member));

}  // namespace property_table

// A row of `Self`'s interface from the accessor overloads `Name()` and `Name(newValue)`.
#define KVO_PROPERTY(id, Name)                                                         \
  ::kvo::property_table::Row<Self>(                                                    \
      #Name, id, [](const Self& control) -> decltype(auto) { return control.Name(); }, \
      [](Self& control, auto&& value) { control.Name(std::forward<decltype(value)>(value)); })

namespace property_table {

// The row of a property. In a table, which is made by the compiler, a name that the interface does
// not have does not compile.
constexpr const PropertyRow& Find(std::span<const PropertyRow> properties, std::string_view name) {
  for (const PropertyRow& row : properties)
    if (row.name == name) return row;
  throw "no property of this name";
}

}  // namespace property_table

// In through the property's setter and out through its getter.
constexpr BagWay Through(std::span<const PropertyRow> properties, std::string_view name) {
  const PropertyRow& row = property_table::Find(properties, name);
  return {row.type == PropertyType::text ? nullptr : row.let, row.text, row.letText};
}

// The held member as it stands.
template <auto member>
std::string_view Held(const Control& control, std::string&) {
  return static_cast<const property_table::Owner<member>&>(control).*member;
}

// Straight into the held member, past the setter, and straight out of it.
template <auto member>
inline constexpr BagWay kDirect = {
    nullptr, &Held<member>, [](Control& control, std::string_view stored) {
      static_cast<property_table::Owner<member>&>(control).*member = stored;
    }};

// As kDirect, but without the blanks and line breaks around the stored text.
template <auto member>
inline constexpr BagWay kDirectTrimmed = {
    nullptr, &Held<member>, [](Control& control, std::string_view stored) {
      static_cast<property_table::Owner<member>&>(control).*member = TrimCrLf(std::string(stored));
    }};

// In through the property's setter, but out of the held member, which differs from the getter.
template <auto member>
constexpr BagWay InThrough(std::span<const PropertyRow> properties, std::string_view name) {
  BagWay way = Through(properties, name);
  way.out = &Held<member>;
  return way;
}

}  // namespace kvo
