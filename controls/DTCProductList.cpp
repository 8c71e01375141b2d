#include "controls/DTCProductList.h"

#include <array>
#include <charconv>
#include <limits>

#include "common/frame/TagWriter.h"

namespace kvo {
namespace {

// Flags are persisted as words, compared exactly.
struct Words {
  std::string_view yes;
  std::string_view no;
};
constexpr Words kYesNo{"yes", "no"};
constexpr Words kStretchFill{"stretch", "fill"};

template <auto member>
bool& Flag(Control& control) {
  return static_cast<property_table::Owner<member>&>(control).*member;
}
template <auto member, const Words& words>
std::string_view Word(const Control& control, std::string&) {
  return static_cast<const property_table::Owner<member>&>(control).*member ? words.yes : words.no;
}

// True for every stored word but "no".
template <auto member>
constexpr BagWay kUnlessNo = {[](Control& control, Variant&& stored) {
                                Flag<member>(control) = ToText(std::move(stored)) != kYesNo.no;
                              },
                              &Word<member, kYesNo>};
// True for the one word alone.
template <auto member, const Words& words>
constexpr BagWay kOnlyIf = {[](Control& control, Variant&& stored) {
                              Flag<member>(control) = ToText(std::move(stored)) == words.yes;
                            },
                            &Word<member, words>};

constexpr std::string_view kStandardThumb = "left";
constexpr std::string_view kStandardExtension = "htm";
constexpr int kSmallestPixelWidth = 100;

// The box's width in twips for a width in pixels of at least 100; 0 for any other width text.
int WidthInTwips(std::string_view tableWidth) {
  const auto pixels = ParseNumber(tableWidth);
  if (!pixels || !(*pixels >= kSmallestPixelWidth)) return 0;
  constexpr int kMostPixels = std::numeric_limits<int>::max() / kTwipsPerPixel;
  if (*pixels > kMostPixels) return 0;
  return static_cast<int>(*pixels) * kTwipsPerPixel;
}

}  // namespace

const ControlClass& DTCProductList::Contract() {
  using Self = DTCProductList;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, DisplayColumns),   KVO_PROPERTY(5, TableWidth),
      KVO_PROPERTY(6, SelectedProducts), KVO_PROPERTY(7, DisplayDesc2),
      KVO_PROPERTY(8, DisplayPrice),     KVO_PROPERTY(9, CacheObject),
      KVO_PROPERTY(10, DisplayThumb),    KVO_PROPERTY(11, DisplayAsLink),
      KVO_PROPERTY(12, FontFamily),      KVO_PROPERTY(13, FontSize),
      KVO_PROPERTY(14, StretchBreach),   KVO_PROPERTY(15, Border),
      KVO_PROPERTY(16, Headline),        KVO_PROPERTY(17, TableBgColor),
      KVO_PROPERTY(18, HeaderBgColor),   KVO_PROPERTY(19, HeaderCSSStyle),
      KVO_PROPERTY(20, Office),          KVO_PROPERTY(21, ShopHTTPURL),
      KVO_PROPERTY(22, ImagesHTTPURL),   KVO_PROPERTY(23, DefaultExtension),
      KVO_PROPERTY(24, ClickId),
  });
  // Held as it is, persisted in token form.
  constexpr BagWay selectedProducts = {
      [](Control& control, Variant&& stored) {
        static_cast<Self&>(control).selectedProducts_ =
            DecodeMarkupTokens(ToText(std::move(stored)));
      },
      [](const Control& control, std::string& scratch) -> std::string_view {
        scratch.clear();
        AppendEncodeMarkupTokens(scratch, static_cast<const Self&>(control).selectedProducts_);
        return scratch;
      }};
  // clang-format off
  static constexpr auto bag = FrameKeys("print", {  // deliberate: not a name of its own
      // key                read default  write default  in and out
      {"display-columns",   "1",          "1",           Through(properties, "DisplayColumns")},
      {"table-width",       "",           "",            Through(properties, "TableWidth")},
      {"selected-products", "",           "",            selectedProducts},
      {"shop-http-url",     "",           "",            kDirect<&Self::shopHTTPURL_>},
      {"images-http-url",   "",           "",            kDirect<&Self::imagesHTTPURL_>},
      {"display-desc2",     "yes",        kAlwaysStored, kUnlessNo<&Self::displayDesc2_>},
      {"display-price",     "yes",        kAlwaysStored, kUnlessNo<&Self::displayPrice_>},
      {"in-cache",          "no",         kAlwaysStored, kOnlyIf<&Self::cacheObject_, kYesNo>},
      {"display-thumb",     "left",       "left",        kDirect<&Self::displayThumb_>},
      {"display-as-link",   "yes",        kAlwaysStored, kUnlessNo<&Self::displayAsLink_>},
      {"font-family",       "",           kAlwaysStored, kDirect<&Self::fontFamily_>},
      {"font-size",         "",           kAlwaysStored, kDirect<&Self::fontSize_>},
      {"breach",            "fill",       kAlwaysStored, kOnlyIf<&Self::stretchBreach_, kStretchFill>},
      {"table-border",      "0",          "",            kDirect<&Self::border_>},  // deliberate: an empty border comes back as "0"
      {"header-caption",    "",           "",            kDirect<&Self::headline_>},
      {"table-bgcolor",     "",           "",            kDirect<&Self::tableBgColor_>},
      {"header-bgcolor",    "",           "",            kDirect<&Self::headerBgColor_>},
      {"header-css-style",  "",           "",            kDirect<&Self::headerCSSStyle_>},
      {"default-extension", "htm",        "htm",         kDirect<&Self::defaultExtension_>},
      {"click-id",          "",           "",            kDirect<&Self::clickId_>},
  });
  static constexpr BoxLabel labels[] = {
      // name         design caption  weight            left, top, width, height  auto-size
      {"lblBasename", "Product-List", FontWeight::bold, {120, 120, 6930, 255},    false, BasenameCaption},
  };
  // clang-format on
  static constexpr std::string_view pages[] = {"propProdListGeneral", "propProdListDesign",
                                               "propProdListPicker"};
  static constexpr ControlClass contract{
      .name = "DTCProductList",
      .properties = properties,
      .bag = bag,
      .box = {7200, 480, labels, {15, 15, 7170, 450}, LayOut},
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
  };
  return contract;
}

void DTCProductList::AppendRuntimeText(std::string& out) const {
  TagWriter tag(out, Namespace(), basename());
  if (displayColumns_ > 0) {
    char digits[12];
    const auto end = std::to_chars(digits, digits + sizeof digits, displayColumns_).ptr;
    tag.Attribute<"display-columns">({digits, end});
  }
  tag.AttributeIfSet<"table-width">(tableWidth_)
      .AttributeIfSet<"selected-products">(selectedProducts_)
      .AttributeIfSet<"shop-http-url">(shopHTTPURL_)
      .AttributeIfSet<"images-http-url">(imagesHTTPURL_);
  if (!displayDesc2_) tag.AttributeAsIs<"display-desc2">(kYesNo.no);
  if (!displayPrice_) tag.AttributeAsIs<"display-price">(kYesNo.no);
  if (displayThumb_ != kStandardThumb) tag.Attribute<"display-thumb">(displayThumb_);
  if (!displayAsLink_) tag.AttributeAsIs<"display-as-link">(kYesNo.no);
  if (!fontFamily_.empty()) {
    // Deliberate: the size hangs on the family, and then goes out even when it is empty.
    tag.Attribute<"font-family">(fontFamily_).Attribute<"font-size">(fontSize_);
  }
  if (stretchBreach_) tag.AttributeAsIs<"breach">(kStretchFill.yes);
  tag.AttributeIfSet<"table-border">(border_);
  if (!headline_.empty()) {
    // Deliberate: entities for "<", ">" and quotes, but no ampersand fix.
    tag.AttributeWith<"header-caption">(headline_, AppendEncodeHtmlEntities);
  }
  tag.AttributeIfSet<"table-bgcolor">(tableBgColor_)
      .AttributeIfSet<"header-bgcolor">(headerBgColor_)
      .AttributeIfSet<"header-css-style">(headerCSSStyle_);
  if (defaultExtension_ != kStandardExtension)
    tag.AttributeIfSet<"default-extension">(defaultExtension_);
  tag.AttributeIfSet<"click-id">(clickId_);
  if (cacheObject_) tag.AttributeAsIs<"in-cache">(CreateGUID());  // a new one at every call
  tag.CloseEmpty();
}

void DTCProductList::Resize() {
  Control::Resize();
  if (const int width = WidthInTwips(tableWidth_); width > 0) laidOutWidth_ = width;
}

void DTCProductList::LayOut(Box& box, const Control& control) {
  const auto& self = static_cast<const DTCProductList&>(control);
  const int width = WidthInTwips(self.tableWidth_);
  box.width = width > 0 ? width : 7200;
  box.height = 480;
  if (self.laidOutWidth_ == 0) return;
  box.border.width = self.laidOutWidth_ - 30;
  box.border.left = 15;
  Rect& caption = box.labels[0].at;
  caption.width = self.laidOutWidth_ - 240;
  caption.left = 120;
}

}  // namespace kvo
