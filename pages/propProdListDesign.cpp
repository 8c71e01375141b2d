#include "pages/propProdListDesign.h"

namespace kvo {
namespace {

constexpr int kSteps = 11;  // choices of the numeric rows

}  // namespace

std::span<const DesignPage::Row> propProdListDesign::Rows() {
  static constexpr auto fonts = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    choices.reserve(kSteps);
    for (const char* family :
         {"Arial, Helvetica, sans-serif", "Times New Roman, Times, serif",
          "Courier New, Courier, mono", "Georgia, Times New Roman, Times, serif",
          "Verdana, Arial, Helvetica, sans-serif", "Tahoma, Arial, Helvetica, sans-serif"})
      choices.push_back({family, family});
    return choices;
  };
  static constexpr auto sizes = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    choices.reserve(kSteps);
    for (int n = 8; n < 8 + kSteps; ++n)
      choices.push_back({std::to_string(n) + " Punkte", std::to_string(n) + "pt"});
    return choices;
  };
  static constexpr auto borders = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    choices.reserve(kSteps);
    for (int n = 0; n < kSteps; ++n) choices.push_back({std::to_string(n) + " Pixel", n});
    return choices;
  };
  static constexpr auto yesNo = []() -> std::vector<Choice> { return {{"Ja", 1}, {"Nein", 0}}; };
  // clang-format off
  static constexpr Row rows[] = {
      {ItemKind::category, "Allgemein"},
      {ItemKind::list,     "Schriftarten",      "font-family",      fonts},
      {ItemKind::list,     "Schriftgrösse (Pt)", "font-size",       sizes},
      {ItemKind::list,     "Rahmen (Px)",       "border",           borders},
      {ItemKind::color,    "Hintergundfarbe",   "table-bgcolor"},  // an "r" is missing: deliberate
      {ItemKind::text,     "CSS Angaben",       "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",  "header-bgcolor"},
      {ItemKind::text,     "CSS Angaben",       "header-css-style"},
      {ItemKind::list,     "Text fettgedruckt", "header-font-bold", yesNo},
      {ItemKind::category, "Körper"},
      {ItemKind::text,     "Link CSS Angaben",  "link-css-style"},
      {ItemKind::list,     "Link fettgedruckt", "link-font-bold",   yesNo},
  };
  // clang-format on
  return rows;
}

std::span<const DesignPage::Transfer> propProdListDesign::Transfers() {
  static constexpr Transfer transfers[] = {
      {"font-family", "FontFamily", Way::asItStands},
      {"font-size", "FontSize", Way::choiceStored},
      {"border", "Border", Way::choiceStored},
      {"table-bgcolor", "TableBgColor", Way::asItStands},
      {"header-bgcolor", "HeaderBgColor", Way::asItStands},
      {"header-css-style", "HeaderCSSStyle", Way::asItStands},
  };
  return transfers;
}

}  // namespace kvo
