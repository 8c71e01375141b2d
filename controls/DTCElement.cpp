#include "controls/DTCElement.h"

#include "common/frame/TagWriter.h"
#include "common/values/RuntimeError.h"
#include "controls/BlockLevel.h"

namespace kvo {
namespace {

constexpr std::string_view kItemSeparator = "||";

std::string_view FlagWord(bool flag) { return flag ? "true" : "false"; }

}  // namespace

const ControlClass& DTCElement::Contract() {
  using Self = DTCElement;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, Value),
      KVO_PROPERTY(5, OpeningTagOnly),
      KVO_PROPERTY(6, ClosingTagOnly),
      KVO_PROPERTY(7, HTMLContent),
      KVO_PROPERTY(8, Attributes),
      KVO_PROPERTY(9, AttributesCollection),
  });
  // Flags are read as any assignment of a text to them, and written as words.
  constexpr BagWay openingTagOnly = {
      Through(properties, "OpeningTagOnly").in, [](const Control& control, std::string&) {
        return FlagWord(static_cast<const Self&>(control).openingTagOnly_);
      }};
  constexpr BagWay closingTagOnly = {
      Through(properties, "ClosingTagOnly").in, [](const Control& control, std::string&) {
        return FlagWord(static_cast<const Self&>(control).closingTagOnly_);
      }};
  // Deliberate: a key without a property, dropped on reading and in practice never stored.
  constexpr BagWay displayValue = {[](Control&, Variant&&) {}, &Held<&Self::displayValue_>};
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key               read default  write default  in and out
      {"value",            "",           kAlwaysStored, Through(properties, "Value")},
      {"display-value",    "",           "",            displayValue},
      {"opening-tag-only", "false",      "false",       openingTagOnly},
      {"closing-tag-only", "false",      "false",       closingTagOnly},
      {"html-content",     "",           "",            kDirectTrimmed<&Self::storedContent_>},
      {"attributes",       "",           "",            Through(properties, "Attributes")},
  });
  // clang-format on
  static constexpr auto labels =
      SideBySideLabels("Element", "lblValue", "<Value>", [](const Control& control) {
        return std::string_view(static_cast<const Self&>(control).value_);
      });
  static constexpr std::string_view pages[] = {"propElementProperties", "propGeneralAttributes"};
  static constexpr ControlClass contract{
      .name = "DTCElement",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCElement::AppendRuntimeText(std::string& out) const {
  if (value_.empty()) return;
  const bool hasContent = !storedContent_.empty();
  if (hasContent) out += kBlockStart;
  TagWriter tag(out, Namespace(), basename());
  tag.Attribute<"name">(value_);
  if (openingTagOnly_) tag.AttributeAsIs<"render-open-tag-only">("true");
  if (closingTagOnly_) tag.AttributeAsIs<"render-closing-tag-only">("true");
  ForEachAttribute([&tag](std::string_view item) {
    if (item.empty()) return;
    const std::size_t bar = static_cast<std::size_t>(std::ranges::find(item, '|') - item.begin());
    if (bar == item.size())
      throw RuntimeError(ErrorNumber::subscriptOutOfRange, '"' + std::string(item) + '"');
    const std::string_view name = item.substr(0, bar);
    const std::string_view rest = item.substr(bar + 1);
    const std::string_view value = rest.substr(0, rest.find('|'));
    if (!name.empty() && !value.empty()) tag.NamedAttribute(name, value);
  });
  if (!hasContent) return tag.CloseEmpty();
  tag.Close();
  AppendDecodeMarkupTokens(out, storedContent_);
  AppendEndTag(out, Namespace(), basename());
  out += kBlockEnd;
}

std::string DTCElement::Attributes() const {
  std::string joined;
  ForEachAttribute([&joined](std::string_view item) {
    if (!joined.empty()) joined += kItemSeparator;  // deliberate: none before an empty beginning
    joined += item;
  });
  return joined;
}

void DTCElement::Attributes(std::string_view sNewAttributes) {
  auto items = std::make_shared<Collection>();
  std::string_view rest = sNewAttributes;
  while (!rest.empty() || items->Count() > 0) {
    const std::size_t end = rest.find(kItemSeparator);
    items->Add(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + kItemSeparator.size());
  }
  AttributesCollection(std::move(items));
}

void DTCElement::AttributesCollection(ObjectRef colNewAttributesCollection) {
  attributes_ = colNewAttributesCollection ? std::move(colNewAttributesCollection)
                                           : std::make_shared<Collection>();
  ownList_ = dynamic_cast<const Collection*>(attributes_.get());
}

template <class Visit>
void DTCElement::ForEachAttribute(const Visit& visit) const {
  const auto visitItem = [&visit](const Variant& item) {
    if (const std::string* text = item.If<std::string>()) return visit(*text);
    visit(ToText(item));
  };
  if (ownList_ == nullptr) return ForEach(*attributes_, visitItem);
  for (std::size_t i = 0; i < ownList_->Count(); ++i) visitItem((*ownList_)[i]);
}

}  // namespace kvo
