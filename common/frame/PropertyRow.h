// The rows that make up a control's contract. A row declares everything about a property: its name
// and id in the interface, its key and defaults in the bag, and its attribute in the runtime text.
// Its caption and help for users are declared beside the rows (common/frame/PropertyInput.h).
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "common/frame/Property.h"
#include "common/frame/PropertyBag.h"
#include "common/frame/PropertyInput.h"

namespace kvo {

class TagWriter;
struct PropertyRow;

enum class PropertyType { text, flag, integer, object };

// Access to one property of a control.
struct Accessors {
  std::string_view name{};
  PropertyType type = PropertyType::text;
  std::string_view argumentPrefix{};  // of a setter's argument: "s" for `sNewValue`
  Variant (*get)(const Control&) = nullptr;
  void (*let)(Control&, Variant&&) = nullptr;  // converts as an assignment does
  // The held value as text, in `scratch` if the control holds no text.
  std::string_view (*held)(const Control&, std::string& scratch) = nullptr;
  void (*hold)(Control&, std::string) = nullptr;  // past the setter; texts only
};

// Converts a value between the bag and the control.
struct KeyCodec {
  std::string_view name;  // in listings
  void (*read)(const PropertyRow&, Control&, std::string_view stored);
  std::string_view (*write)(const PropertyRow&, const Control&, std::string& scratch);
  // For flags that are stored as words, which are compared exactly.
  std::string_view yes{};
  std::string_view no{};
};

// Writes a value as an attribute of the runtime text.
struct Emission {
  void (*append)(const PropertyRow&, const Control&, TagWriter&) = nullptr;  // nullptr: writes none
  bool last = false;  // after the attributes of all other rows; one row of a class at most
};

// Assigns to the property; stores the held form.
void ReadAssigning(const PropertyRow& row, Control& control, std::string_view stored);
std::string_view WriteHeld(const PropertyRow& row, const Control& control, std::string& scratch);
inline constexpr KeyCodec kAsIs = {"as-is", ReadAssigning, WriteHeld};
// The same for a TokenText: reading encodes the stored text, though it should be in token form
// already.
inline constexpr KeyCodec kEncoding = {"tokens", ReadAssigning, WriteHeld};
// Token form in the bag and in the control, without the blanks and line breaks around it.
void ReadTrimmed(const PropertyRow& row, Control& control, std::string_view stored);
inline constexpr KeyCodec kTrimmed = {"tokens", ReadTrimmed, WriteHeld};
// Token form in the bag, plain in the control.
void ReadTokens(const PropertyRow& row, Control& control, std::string_view stored);
std::string_view WriteTokens(const PropertyRow& row, const Control& control, std::string& scratch);
inline constexpr KeyCodec kAsTokens = {"tokens", ReadTokens, WriteTokens};
// A flag as one of two words. True for every word but `no`, for `yes` alone, or for every text that
// converts to true.
void ReadUnlessNo(const PropertyRow& row, Control& control, std::string_view stored);
void ReadOnlyYes(const PropertyRow& row, Control& control, std::string_view stored);
std::string_view WriteWord(const PropertyRow& row, const Control& control, std::string& scratch);
inline constexpr KeyCodec kUnlessNo = {"yes/no", ReadUnlessNo, WriteWord, "yes", "no"};
inline constexpr KeyCodec kOnlyYes = {"yes/no", ReadOnlyYes, WriteWord, "yes", "no"};
inline constexpr KeyCodec kTrueFalse = {"as-is", ReadAssigning, WriteWord, "true", "false"};

// The key is the attribute's name; the one attribute rule applies.
void EmitAlways(const PropertyRow& row, const Control& control, TagWriter& tag);
void EmitIfSet(const PropertyRow& row, const Control& control, TagWriter& tag);
void EmitUnlessDefault(const PropertyRow& row, const Control& control, TagWriter& tag);
void EmitIfSetUnlessDefault(const PropertyRow& row, const Control& control, TagWriter& tag);
inline constexpr Emission kNever = {};
inline constexpr Emission kAlways = {EmitAlways};
inline constexpr Emission kIfSet = {EmitIfSet};
// The stored form, unless it is the default for reading.
inline constexpr Emission kUnlessDefault = {EmitUnlessDefault};
inline constexpr Emission kIfSetUnlessDefault = {EmitIfSetUnlessDefault};

// The text to store for a value that a host keeps under the row's key. Empty means 0 where the
// property is not a text.
std::string StoredText(const PropertyRow& row, const Variant& value);

struct PropertyRow : Accessors {
  int id = 0;  // dispatch id: positive, unique in its class, never reused; 0: no property
  std::string_view key{};  // empty: not stored
  std::string_view readDefault{};
  WriteDefault writeDefault{};
  Emission emission{};
  KeyCodec codec = kAsIs;
  PropertyInput input{};

  constexpr PropertyRow() = default;
  constexpr PropertyRow(int rowId, const Accessors& accessors) : Accessors(accessors), id(rowId) {}
  constexpr PropertyRow(int rowId, const Accessors& accessors, std::string_view rowKey,
                        std::string_view whenRead, WriteDefault whenWritten,
                        const Emission& emitted, const KeyCodec& keyCodec = kAsIs)
      : Accessors(accessors),
        id(rowId),
        key(rowKey),
        readDefault(whenRead),
        writeDefault(whenWritten),
        emission(emitted),
        codec(keyCodec) {}

  // The caption for users: the name, unless the class declares one.
  constexpr Localized Caption() const {
    return input.caption.german.empty() ? Localized{name, name} : input.caption;
  }
};

namespace rows {

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

template <class Kind>
constexpr std::string_view ArgumentPrefix() {
  if constexpr (requires { Kind::kArgumentPrefix; }) return Kind::kArgumentPrefix;
  constexpr std::string_view prefixes[] = {"s", "b", "l", "o"};
  return prefixes[static_cast<std::size_t>(TypeOf<typename Kind::Type>())];
}

// Assigning an empty value to an object property means "no object", not a failed conversion.
template <class T>
T Convert(Variant&& value) {
  if constexpr (std::same_as<T, std::string>) return ToText(std::move(value));
  if constexpr (std::same_as<T, bool>) return ToFlag(value);
  if constexpr (std::same_as<T, std::int32_t>) return ToInteger(value);
  if constexpr (std::same_as<T, ObjectRef>) return value.IsEmpty() ? nullptr : ToObject(value);
}

// Reaches a property, a member of a control, from the control.
template <auto member>
struct Bound;
template <class Class, class Kind, Kind Class::*member>
struct Bound<member> {
  static const Kind& In(const Control& control) {
    return static_cast<const Class&>(control).*member;
  }
  static Kind& In(Control& control) { return static_cast<Class&>(control).*member; }

  static Variant Get(const Control& control) { return typename Kind::Type(In(control)()); }
  static void Let(Control& control, Variant&& value) {
    In(control)(Convert<typename Kind::Type>(std::move(value)));
  }
  static std::string_view Held(const Control& control, std::string& scratch) {
    if constexpr (requires(const Kind& kind) { kind.Held(); })
      return In(control).Held();
    else
      return scratch = ToText(Get(control));
  }
  static void Hold(Control& control, std::string text) {
    if constexpr (requires(Kind & kind) { kind.Hold(std::string()); })
      In(control).Hold(std::move(text));
  }

  static constexpr Accessors Under(std::string_view name) {
    return {name, TypeOf<typename Kind::Type>(), ArgumentPrefix<Kind>(), Get, Let, Held, Hold};
  }
};

}  // namespace rows

// The property `Name` of the class `Self`.
#define KVO(Name) ::kvo::rows::Bound<&Self::Name>::Under(#Name)

}  // namespace kvo
