#include "controls/DTCPositionList.h"

#include "common/frame/TagWriter.h"

namespace kvo {
namespace {

// The bag's default and what stands in for an empty order. Deliberate: a fresh control holds
// another spelling.
constexpr std::string_view kOrderId = "#order.orderid#";

}  // namespace

const ControlClass& DTCPositionList::Contract() {
  using Self = DTCPositionList;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, OrderId),
      KVO_PROPERTY(5, TableCellSpacing),
      KVO_PROPERTY(6, TableCellPadding),
      KVO_PROPERTY(7, TableBorder),
      KVO_PROPERTY(8, TableBackground),
      KVO_PROPERTY(9, TableCssStyle),
      KVO_PROPERTY(10, HeaderBackground),
      KVO_PROPERTY(11, HeaderCSSStyle),
      KVO_PROPERTY(12, BodyBackground),
      KVO_PROPERTY(13, BodyCssStyle),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key                read default  write default  in and out
      {"order-id",          kOrderId,     kOrderId,      Through(properties, "OrderId")},
      {"table-cellspacing", kCellSpacing, kCellSpacing,  Through(properties, "TableCellSpacing")},
      {"table-cellpadding", kCellPadding, kCellPadding,  Through(properties, "TableCellPadding")},
      {"table-border",      kBorder,      kBorder,       Through(properties, "TableBorder")},
      {"table-bgcolor",     "",           "",            Through(properties, "TableBackground")},
      {"table-css-style",   "",           "",            Through(properties, "TableCssStyle")},
      {"header-bgcolor",    "",           "",            Through(properties, "HeaderBackground")},
      {"header-css-style",  "",           "",            Through(properties, "HeaderCSSStyle")},
      {"body-bgcolor",      "",           "",            Through(properties, "BodyBackground")},
      {"body-css-style",    "",           "",            Through(properties, "BodyCssStyle")},
  });
  static constexpr BoxLabel labels[] = {
      // name         design caption   weight            left, top, width, height  auto-size
      {"lblBasename", "Position-List", FontWeight::bold, {120, 120, 6930, 255},    false, BasenameCaption},
  };
  // clang-format on
  static constexpr std::string_view pages[] = {"propPosListDesign"};
  static constexpr ControlClass contract{
      .name = "DTCPositionList",
      .properties = properties,
      .bag = bag,
      .box = {7200, 480, labels, {15, 15, 7170, 450}, LayOutFixed},
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCPositionList::AppendRuntimeText(std::string& out) const {
  TagWriter tag(out, Namespace(), basename());
  const auto unless = [](std::string_view standard, std::string_view value) {
    return value == standard ? std::string_view() : value;
  };
  tag.Attribute<"order-id">(orderId_.empty() ? kOrderId : orderId_)
      .AttributeIfSet<"table-cellspacing">(unless(kCellSpacing, tableCellSpacing_))
      .AttributeIfSet<"table-cellpadding">(unless(kCellPadding, tableCellPadding_))
      .AttributeIfSet<"table-border">(unless(kBorder, tableBorder_));
  tag.AttributeIfSet<"table-bgcolor">(tableBackground_)
      .AttributeIfSet<"table-css-style">(tableCssStyle_)
      .AttributeIfSet<"header-bgcolor">(headerBackground_)
      .AttributeIfSet<"header-css-style">(headerCSSStyle_)
      .AttributeIfSet<"body-bgcolor">(bodyBackground_)
      .AttributeIfSet<"body-css-style">(bodyCssStyle_)
      .CloseEmpty();
}

}  // namespace kvo
