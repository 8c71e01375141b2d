// Checks JSON documents against schemas.
#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

namespace kvo::test {

using Json = nlohmann::ordered_json;

// Knows the words that the schema uses, and refuses others.
class Schema {
 public:
  explicit Schema(Json root) : root_(std::move(root)) {}

  bool Accepts(const Json& value) const { return Accepts(root_, value); }
  const Json& Root() const { return root_; }

 private:
  static bool IsOf(const std::string& type, const Json& value) {
    return type == "object"    ? value.is_object()
           : type == "array"   ? value.is_array()
           : type == "string"  ? value.is_string()
           : type == "number"  ? value.is_number()
           : type == "integer" ? value.is_number_integer()
           : type == "boolean" ? value.is_boolean()
           : type == "null"    ? value.is_null()
                               : throw std::runtime_error("type " + type);
  }

  bool Accepts(const Json& schema, const Json& value) const {
    if (schema.is_boolean()) return schema.get<bool>();
    for (const auto& each : schema.items()) {
      const std::string& word = each.key();
      const Json& rule = each.value();
      if (word == "$ref") {
        if (!Accepts(root_.at(Json::json_pointer(rule.get<std::string>().substr(1))), value))
          return false;
      } else if (word == "type") {
        const Json types = rule.is_array() ? rule : Json::array({rule});
        if (std::ranges::none_of(types, [&](const Json& type) { return IsOf(type, value); }))
          return false;
      } else if (word == "pattern") {
        if (value.is_string() &&
            !std::regex_search(value.get<std::string>(), std::regex(rule.get<std::string>())))
          return false;
      } else if (word == "enum") {
        if (std::ranges::find(rule, value) == rule.end()) return false;
      } else if (word == "minimum") {
        if (value.is_number() && value < rule) return false;
      } else if (word == "minItems") {
        if (value.is_array() && value.size() < rule.get<std::size_t>()) return false;
      } else if (word == "const") {
        if (value != rule) return false;
      } else if (word == "required") {
        const auto has = [&](const Json& name) { return value.contains(name.get<std::string>()); };
        if (value.is_object() && !std::ranges::all_of(rule, has)) return false;
      } else if (word == "anyOf" || word == "oneOf") {
        const auto accepts = [&](const Json& option) { return Accepts(option, value); };
        const auto count = std::ranges::count_if(rule, accepts);
        if (count == 0 || (word == "oneOf" && count > 1)) return false;
      } else if (word == "items") {
        if (value.is_array() &&
            !std::ranges::all_of(value, [&](const Json& item) { return Accepts(rule, item); }))
          return false;
      } else if (word == "additionalProperties") {
        if (value.is_object() && !AcceptsMembers(schema, value)) return false;
      } else if (!std::set<std::string>{"$schema", "title", "description", "properties",
                                        "patternProperties", "$defs"}
                      .contains(word)) {
        throw std::runtime_error("word " + word);
      }
    }
    return true;
  }

  bool AcceptsMembers(const Json& schema, const Json& object) const {
    const Json properties = schema.value("properties", Json::object());
    const Json patterns = schema.value("patternProperties", Json::object());
    for (const auto& each : object.items()) {
      const std::string& name = each.key();
      const Json& member = each.value();
      bool known = false;
      const auto check = [&](const Json& rule) {
        known = true;
        return Accepts(rule, member);
      };
      if (properties.contains(name) && !check(properties[name])) return false;
      for (const auto& [pattern, rule] : patterns.items())
        if (std::regex_search(name, std::regex(pattern)) && !check(rule)) return false;
      if (!known && !Accepts(schema["additionalProperties"], member)) return false;
    }
    return true;
  }

  Json root_;
};

}  // namespace kvo::test
