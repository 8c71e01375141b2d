// Computes the expressions of pages as far as they can be known without the template engine.
//
// Knows what the expression builder writes, in plain characters and as entities: "==", "!=", ">",
// "<" and their like, "&&", "||", "and", "or", "not", brackets, numbers, texts in quotation marks,
// "true" and "false", references such as #customer.Email#, also inside texts; further + - * / % and
// a ? b : c. The percent signs around an expression may be missing.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "common/values/Localized.h"
#include "common/values/Variant.h"
#include "document/uses/References.h"

namespace kvo::preview {

using uses::ForEachReference;
using uses::Reference;
using uses::ReferenceAt;

// A value, or why there is none.
struct Outcome {
  Variant value;
  std::optional<Message> unknown;
};

// Finds the value of a reference.
using LookUp = std::function<Outcome(std::string_view group, std::string_view name)>;

// An unknown part does not matter where the result is the same without it ("false and ...").
Outcome Evaluate(std::string_view expression, const LookUp& lookUp);
// A test, whose result is a flag.
Outcome Test(std::string_view expression, const LookUp& lookUp);
// What a print control shows: an expression, or words with references in between.
Outcome Print(std::string_view text, const LookUp& lookUp);
// Whether a text stands in percent signs, and the text without them; each may be missing.
bool IsComputed(std::string_view text);
std::string_view WithoutPercentSigns(std::string_view text);
// Replaces the references of a text. Computes the whole text when it stands in percent signs.
Outcome Fill(std::string_view text, const LookUp& lookUp);

// A date and time as digits that sort by time, "20040423160953"; nothing for other texts. Reads
// "23.04.2004", "2004-04-23", and both with a time.
std::optional<std::string> SortableDate(std::string_view text);
// A value in a format pattern, as the system's own formatter writes it. Dates may be written as
// "2004-04-23".
std::string FormatValue(const Variant& value, std::string_view pattern);

}  // namespace kvo::preview
