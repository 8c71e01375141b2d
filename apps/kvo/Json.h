// The program's JSON output: one UTF-8 document, with keys in the order they are set.
#pragma once

#include <nlohmann/json.hpp>

#include "apps/kvo/Terminal.h"
#include "common/frame/DesignBox.h"
#include "common/frame/PropertyBag.h"
#include "common/values/Object.h"

namespace kvo {

using Json = nlohmann::ordered_json;

// Converts texts, flags and numbers to their JSON types, collections to arrays, and empty values
// and other objects to null.
Json ToJson(const Variant& value);

// {"width", "height", "elements": [{"name", "caption", "left", "top", "width", "height", "bold"}]},
// in twips: the labels, then the border, which has no caption.
Json ToJson(const Box& box);

void PrintJson(const Json& document);

}  // namespace kvo
