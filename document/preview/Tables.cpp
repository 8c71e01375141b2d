#include "document/preview/Tables.h"

#include <algorithm>

#include "document/preview/Expression.h"
#include "document/preview/Words.h"

namespace kvo::preview {
namespace {

std::string_view AttributeOf(const RuntimeTag& tag, std::string_view name,
                             std::string_view otherwise = {}) {
  const std::string* const value = tag.Find(name);
  return value == nullptr ? otherwise : std::string_view(*value);
}

// CSS declarations, joined by semicolons.
std::string Css(std::initializer_list<std::pair<std::string_view, std::string_view>> declarations) {
  std::string css;
  for (const auto& [property, value] : declarations)
    if (!value.empty()) css.append(property).append(":").append(value).append(";");
  return css;
}

// A size without a unit counts pixels.
std::string Size(std::string_view size) {
  std::string text(size);
  if (!text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; }))
    text += "px";
  return text;
}

constexpr std::size_t kMostColumns = 20;

std::size_t ColumnsOf(const RuntimeTag& tag) {
  std::size_t columns = 0;
  for (const char c : AttributeOf(tag, "display-columns", "1")) {
    if (c < '0' || c > '9') return 1;
    columns = std::min(columns * 10 + static_cast<std::size_t>(c - '0'), kMostColumns);
  }
  return std::max<std::size_t>(columns, 1);
}

class ProductTable {
 public:
  ProductTable(const RuntimeTag& tag, Language language, Html& html)
      : tag_(tag),
        language_(language),
        html_(html),
        thumb_(AttributeOf(tag, "display-thumb", "left")),
        isLink_(AttributeOf(tag, "display-as-link") != "no") {}

  void Append(const std::string& headline, const std::vector<ProductCell>& products) {
    const std::size_t columns = ColumnsOf(tag_);
    const std::string span = std::to_string(columns);
    html_.Open("table", {{"width", AttributeOf(tag_, "table-width")},
                         {"border", AttributeOf(tag_, "table-border", "0")},
                         {"cellspacing", "0"},
                         {"cellpadding", "6"},
                         {"bgcolor", AttributeOf(tag_, "table-bgcolor")},
                         {"style", font_}});
    if (!headline.empty()) {
      html_.Open("tr")
          .Open("td", {{"colspan", span},
                       {"bgcolor", AttributeOf(tag_, "header-bgcolor")},
                       {"style", font_ + std::string(AttributeOf(tag_, "header-css-style"))}})
          .Text(headline)
          .Close("td")
          .Close("tr");
    }
    const bool stretches = AttributeOf(tag_, "breach") == "stretch";
    const std::string width = std::to_string(100 / columns) + "%";
    for (std::size_t at = 0; at < products.size(); ++at) {
      if (at % columns == 0) html_.Open("tr");
      const bool isLast = at + 1 == products.size();
      const std::size_t missing = isLast ? columns - at % columns : 1;
      html_.Open("td", {{"width", width},
                        {"valign", "top"},
                        {"colspan", stretches && missing > 1 ? std::to_string(missing) : ""},
                        {"style", font_}});
      AppendProduct(products[at]);
      html_.Close("td");
      if (isLast && !stretches)
        for (std::size_t i = 1; i < missing; ++i) html_.Open("td").Close("td");
      if (isLast || (at + 1) % columns == 0) html_.Close("tr");
    }
    html_.Close("table");
  }

 private:
  void AppendProduct(const ProductCell& cell) {
    if (!cell.product) {
      html_
          .Open("span", {{"style", cell.reason.empty() ? kOutsideStyle : kMissingStyle},
                         {"title", cell.reason}})
          .Text(cell.number)
          .Close("span");
      return;
    }
    if (thumb_ == "left" || thumb_ == "right" || thumb_ == "top") AppendThumb();
    if (isLink_)
      html_.Open("a", {{"href", AttributeOf(tag_, "shop-http-url")}, {"title", cell.number}});
    html_.Open("b").Text(cell.product->description).Close("b");
    if (isLink_) html_.Close("a");
    if (AttributeOf(tag_, "display-desc2") != "no" && !cell.product->description2.empty())
      html_.Open("br").Text(cell.product->description2);
    if (AttributeOf(tag_, "display-price") != "no")
      html_.Open("br")
          .Open("span", {{"style", kOutsideStyle}})
          .Text(words::Price().In(language_))
          .Close("span");
    if (thumb_ == "bottom") AppendThumb();
  }

  void AppendThumb() {
    const bool floats = thumb_ == "left" || thumb_ == "right";
    const std::string style = Css({{"float", floats ? thumb_ : std::string_view()},
                                   {"display", floats ? "" : "block"},
                                   {"width", "56px"},
                                   {"margin", floats ? "0 6px 6px 6px" : "6px 0"},
                                   {"text-align", "center"},
                                   {"line-height", "56px"}}) +
                              std::string(kOutsideStyle);
    html_.Open("span", {{"style", style}}).Text(words::Picture().In(language_)).Close("span");
  }

  const RuntimeTag& tag_;
  Language language_;
  Html& html_;
  std::string_view thumb_;
  bool isLink_;
  std::string font_ = Css({{"font-family", AttributeOf(tag_, "font-family")},
                           {"font-size", Size(AttributeOf(tag_, "font-size"))}});
};

std::string PositionValue(const Values& position, std::string_view name) {
  constexpr std::string_view kMoney = "#,##0.00";
  const Variant* const value = position.Find(name);
  const bool isMoney = name == "price" || name == "total";
  if (value != nullptr) return FormatValue(*value, isMoney ? kMoney : std::string_view());
  if (name != "total") return {};
  const Outcome total =
      Evaluate("#p.price# * #p.quantity#", [&](std::string_view, std::string_view factor) {
        const Variant* const found = position.Find(factor);
        return found != nullptr ? Outcome{*found, std::nullopt} : Outcome{{}, Message{}};
      });
  return total.unknown ? std::string() : FormatValue(total.value, kMoney);
}

}  // namespace

void AppendProductTable(const RuntimeTag& tag, const std::string& headline,
                        const std::vector<ProductCell>& products, Language language, Html& html) {
  ProductTable(tag, language, html).Append(headline, products);
}

void AppendPositionTable(const RuntimeTag& tag, const std::vector<Values>& positions, Html& html) {
  html.Open("table", {{"width", "100%"},
                      {"cellspacing", AttributeOf(tag, "table-cellspacing", "1")},
                      {"cellpadding", AttributeOf(tag, "table-cellpadding", "3")},
                      {"border", AttributeOf(tag, "table-border", "0")},
                      {"bgcolor", AttributeOf(tag, "table-bgcolor")},
                      {"style", AttributeOf(tag, "table-css-style")}});
  const auto row = [&](std::string_view background, std::string_view style, const auto& append) {
    html.Open("tr", {{"bgcolor", background}});
    for (const PositionColumn& column : kPositionColumns) {
      const bool isNumber =
          column.name == "quantity" || column.name == "price" || column.name == "total";
      html.Open("td", {{"align", isNumber ? "right" : "left"}, {"style", style}});
      append(column);
      html.Close("td");
    }
    html.Close("tr");
  };
  row(AttributeOf(tag, "header-bgcolor"), AttributeOf(tag, "header-css-style"),
      [&](const PositionColumn& column) { html.Open("b").Text(column.caption).Close("b"); });
  for (const Values& position : positions)
    row(AttributeOf(tag, "body-bgcolor"), AttributeOf(tag, "body-css-style"),
        [&](const PositionColumn& column) { html.Text(PositionValue(position, column.name)); });
  html.Close("table");
}

}  // namespace kvo::preview
