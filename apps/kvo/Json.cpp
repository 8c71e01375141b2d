#include "apps/kvo/Json.h"

#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

Json Elements(Object& collection) {
  Json elements = Json::array();
  ForEach(collection, [&](const Variant& element) { elements.push_back(ToJson(element)); });
  return elements;
}

Json Element(std::string_view name, std::string_view caption, const Rect& at, bool bold) {
  return {{"name", name},      {"caption", caption},  {"left", at.left}, {"top", at.top},
          {"width", at.width}, {"height", at.height}, {"bold", bold}};
}

}  // namespace

Json ToJson(const Variant& value) {
  if (const auto* text = value.If<std::string>()) return *text;
  if (const auto* flag = value.If<bool>()) return *flag;
  if (const auto* integer = value.If<std::int32_t>()) return *integer;
  if (const auto* number = value.If<double>()) return *number;
  const auto* object = value.If<ObjectRef>();
  if (object == nullptr || *object == nullptr) return nullptr;
  try {
    return Elements(**object);
  } catch (const RuntimeError&) {
    return nullptr;  // not a collection
  }
}

Json ToJson(const Box& box) {
  Json elements = Json::array();
  for (const Box::Label& label : box.labels)
    elements.push_back(
        Element(label.name, label.caption, label.at, label.weight == FontWeight::bold));
  elements.push_back(Element(kBorderName, "", box.border, false));
  return {{"width", box.width}, {"height", box.height}, {"elements", std::move(elements)}};
}

void PrintJson(const Json& document) {
  Print(document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n');
}

}  // namespace kvo
