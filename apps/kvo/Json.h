// JSON as the program prints it: one document, UTF-8, keys in the order in which they are set.
#pragma once

#include <nlohmann/json.hpp>

#include "apps/kvo/Terminal.h"
#include "common/frame/DesignBox.h"
#include "common/frame/PropertyBag.h"
#include "common/values/Object.h"

namespace kvo {

using Json = nlohmann::ordered_json;

// Texts, flags and numbers as what they are; collections as arrays; no value or any other object
// as null.
Json ToJson(const Variant& value);

// {"width", "height", "elements": [{"name", "caption", "left", "top", "width", "height", "bold"}]},
// in twips: the labels, then the border, which has no caption.
Json ToJson(const Box& box);

void PrintJson(const Json& document);

}  // namespace kvo
