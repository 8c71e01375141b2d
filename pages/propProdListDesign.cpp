#include "pages/propProdListDesign.h"

namespace kvo {

propProdListDesign::propProdListDesign() {
  // Numbers, where the position list offers texts.
  static constexpr auto borders = [] {
    std::vector<Choice> pixels = choices::Pixels();
    for (Choice& each : pixels) each.value = ToInteger(each.value);
    return pixels;
  };
  static constexpr auto yesNo = []() -> std::vector<Choice> {
    return {{{"Ja", "Yes"}, 1}, {{"Nein", "No"}, 0}};
  };
  // clang-format off
  static constexpr Row rows[] = {
      // kind              caption               key                 choices                order property           way
      {ItemKind::category, "Allgemein"},
      {ItemKind::list,     "Schriftarten",       "font-family",      choices::FontFamilies, 1, "FontFamily"},
      {ItemKind::list,     "Schriftgrösse (Pt)", "font-size",        choices::FontSizes,    2, "FontSize",        Way::choiceStored},
      {ItemKind::list,     "Rahmen (Px)",        "border",           borders,               3, "Border",          Way::choiceStored},
      {ItemKind::color,    "Hintergundfarbe",    "table-bgcolor",    nullptr,               4, "TableBgColor"},  // deliberate: without its "r"
      {ItemKind::text,     "CSS Angaben",        "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",   "header-bgcolor",   nullptr,               5, "HeaderBgColor"},
      {ItemKind::text,     "CSS Angaben",        "header-css-style", nullptr,               6, "HeaderCSSStyle"},
      {ItemKind::list,     "Text fettgedruckt",  "header-font-bold", yesNo},
      {ItemKind::category, "Körper"},
      {ItemKind::text,     "Link CSS Angaben",   "link-css-style"},
      {ItemKind::list,     "Link fettgedruckt",  "link-font-bold",   yesNo},
  };
  // clang-format on
  Declare(rows);
}

}  // namespace kvo
