// The two tables that a page can hold, drawn from the attributes of their tags. The engine's own
// layout is not known; this one shows everything that an author sets.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/preview/Html.h"
#include "document/preview/Record.h"
#include "document/preview/RuntimeTag.h"
#include "document/preview/Template.h"

namespace kvo::preview {

// A cell of the product table. An unknown product has its number alone.
struct ProductCell {
  std::string number;
  std::optional<Product> product;
  std::string reason;  // why there is no product; empty when it need not be said
};

void AppendProductTable(const RuntimeTag& tag, const std::string& headline,
                        const std::vector<ProductCell>& products, Language language, Html& html);
void AppendPositionTable(const RuntimeTag& tag, const std::vector<Values>& positions, Html& html);

// The frame around what is missing: its look, for the style of an element.
inline constexpr std::string_view kMissingStyle =
    "outline:1px dashed #b3261e;background:#fdecea;color:#8c1d18";
// What stands for something that only the shop knows.
inline constexpr std::string_view kOutsideStyle = "background:#eceff1;color:#546e7a";

}  // namespace kvo::preview
