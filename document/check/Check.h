// What is wrong or odd about the controls of a page, beyond what keeps the page from being saved.
#pragma once

#include <span>
#include <string_view>

#include "common/values/Object.h"
#include "document/page/Page.h"

namespace kvo::check {

// A rule about controls. docs/checks.md describes each with an example.
struct Rule {
  std::string_view id;  // as it stands in messages; never changes
  page::Severity severity;
};
std::span<const Rule> Rules();
page::Problem ProblemOf(const Rule& rule, const page::FoundControl& control, Message message);

class ProductNumbers;

// page::Check and every rule, in the order of their places. `office` is the host's context object
// with its field lists; without one, fields are not looked up. Nor are products without `products`,
// which may serve many pages.
page::Problems CheckPage(const page::Page& page, const ObjectRef& office,
                         ProductNumbers* products = nullptr);

}  // namespace kvo::check
