// The values that late binding carries, and their conversions.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace kvo {

class Object;
using ObjectRef = std::shared_ptr<Object>;

// Empty (also a database null), flag, 32-bit integer, number, text (UTF-8) or object.
class Variant {
 public:
  Variant() = default;
  Variant(bool flag) : held_(flag) {}
  Variant(std::int32_t integer) : held_(integer) {}
  Variant(double number) : held_(number) {}
  Variant(std::string text) : held_(std::move(text)) {}
  Variant(std::string_view text) : held_(std::string(text)) {}
  Variant(const char* text) : held_(std::string(text)) {}
  Variant(ObjectRef object) : held_(std::move(object)) {}
  template <class Pointer>
  requires std::is_pointer_v<Pointer> Variant(Pointer)
  = delete;  // no pointer silently becomes a flag

  // Copies by assigning. Works around libstdc++'s variant, whose copy constructor destroys an
  // unfinished copy when memory runs out.
  Variant(const Variant& other) : Variant() { held_ = other.held_; }
  Variant(Variant&&) noexcept = default;
  Variant& operator=(const Variant&) = default;
  Variant& operator=(Variant&&) noexcept = default;
  ~Variant() = default;

  bool IsEmpty() const { return std::holds_alternative<std::monostate>(held_); }

  // The held value, or nullptr when another kind is held. No conversion.
  template <class T>
  const T* If() const {
    return std::get_if<T>(&held_);
  }
  template <class T>
  T* If() {
    return std::get_if<T>(&held_);
  }

  bool operator==(const Variant&) const = default;

 private:
  std::variant<std::monostate, bool, std::int32_t, double, std::string, ObjectRef> held_;
};

// Convert as an assignment to a typed property does. Throw RuntimeError 13 (type mismatch), or 6
// (overflow) for a whole number beyond 32 bits.

// Empty is the empty text; a flag is "True" or "False"; a number has a decimal comma.
std::string ToText(const Variant& value);
inline std::string ToText(Variant&& value) {
  if (std::string* text = value.If<std::string>()) return std::move(*text);
  return ToText(std::as_const(value));
}
// Texts: "true" and "false" in any case, "#TRUE#" and "#FALSE#", numbers (0 is false).
bool ToFlag(const Variant& value);
// Texts: as ParseNumber reads them; halves go to the even neighbour.
std::int32_t ToInteger(const Variant& value);
// An empty value is no object: RuntimeError 91.
ObjectRef ToObject(const Variant& value);

// A number as written in German: surrounding blanks, a sign, "." between digits as grouping, ","
// as decimal mark, an exponent ("1e2"), or "&H" and up to eight hexadecimal digits (32 bits,
// signed; with more it is beyond every whole number). Nothing for any other text.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace kvo
