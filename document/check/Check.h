// Checks the controls of a page for mistakes and oddities that do not keep it from being saved.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/values/Object.h"
#include "document/page/Page.h"

namespace kvo::check {

// A rule. docs/checks.md describes each with an example.
struct Rule {
  std::string_view id;  // shown in messages; never changes
  page::Severity severity;
  Localized help;  // one line: what it finds
};
// Those of page::Check and CheckMail included.
std::span<const Rule> Rules();
page::Problem ProblemOf(const Rule& rule, const page::FoundControl& control, Message message);

class ShopProducts;
struct KnownFields;

// Fixes take time to make; leave them out where nobody can use them.
enum class Fixes { add, leaveOut };

// Runs page::Check and every rule; problems are in page order. `office` is the host's context
// object with its field lists. Skips the look-up of fields without `office`, and of products
// without `products`, which may serve many pages.
page::Problems CheckPage(const page::Page& page, const ObjectRef& office,
                         ShopProducts* products = nullptr, Fixes fixes = Fixes::add);

// The product numbers that a control names, at least one.
struct Selection {
  page::FoundControl control;
  std::vector<std::string> numbers;
};
using Selections = std::vector<Selection>;

// CheckPage in two steps, for many pages: the first takes most of the time and needs no shop, so
// that pages can go through it side by side; the second takes them in order, because the shop is
// asked once for each product and reported once when it cannot be read.
struct CheckedPage {
  page::Problems problems;
  Selections selections;
};
CheckedPage CheckButProducts(const page::Page& page, KnownFields fields, Fixes fixes = Fixes::add);
page::Problems WithProducts(CheckedPage checked, ShopProducts* products);

}  // namespace kvo::check
