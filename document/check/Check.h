// Checks the controls of a page for mistakes and oddities that do not keep it from being saved.
#pragma once

#include <span>
#include <string_view>

#include "common/values/Object.h"
#include "document/page/Page.h"

namespace kvo::check {

// A rule about controls. docs/checks.md describes each with an example.
struct Rule {
  std::string_view id;  // shown in messages; never changes
  page::Severity severity;
};
std::span<const Rule> Rules();
page::Problem ProblemOf(const Rule& rule, const page::FoundControl& control, Message message);

class ShopProducts;

// Fixes take time to make; leave them out where nobody can use them.
enum class Fixes { add, leaveOut };

// Runs page::Check and every rule; problems are in page order. `office` is the host's context
// object with its field lists. Skips the look-up of fields without `office`, and of products
// without `products`, which may serve many pages.
page::Problems CheckPage(const page::Page& page, const ObjectRef& office,
                         ShopProducts* products = nullptr, Fixes fixes = Fixes::add);

}  // namespace kvo::check
