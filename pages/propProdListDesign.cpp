#include "pages/propProdListDesign.h"

namespace kvo {

propProdListDesign::propProdListDesign() {
  static constexpr auto fonts = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    for (const char* family :
         {"Arial, Helvetica, sans-serif", "Times New Roman, Times, serif",
          "Courier New, Courier, mono", "Georgia, Times New Roman, Times, serif",
          "Verdana, Arial, Helvetica, sans-serif", "Tahoma, Arial, Helvetica, sans-serif"})
      choices.push_back({family, family});
    return choices;
  };
  static constexpr auto sizes = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    for (int n = 8; n <= 18; ++n)
      choices.push_back({std::to_string(n) + " Punkte", std::to_string(n) + "pt"});
    return choices;
  };
  static constexpr auto borders = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    for (int n = 0; n <= 10; ++n) choices.push_back({std::to_string(n) + " Pixel", n});
    return choices;
  };
  static constexpr auto yesNo = []() -> std::vector<Choice> { return {{"Ja", 1}, {"Nein", 0}}; };
  // clang-format off
  static constexpr Row rows[] = {
      // kind              caption               key                 choices order property           way
      {ItemKind::category, "Allgemein"},
      {ItemKind::list,     "Schriftarten",       "font-family",      fonts,   1, "FontFamily"},
      {ItemKind::list,     "Schriftgrösse (Pt)", "font-size",        sizes,   2, "FontSize",        Way::choiceStored},
      {ItemKind::list,     "Rahmen (Px)",        "border",           borders, 3, "Border",          Way::choiceStored},
      {ItemKind::color,    "Hintergundfarbe",    "table-bgcolor",    nullptr, 4, "TableBgColor"},  // deliberate: without its "r"
      {ItemKind::text,     "CSS Angaben",        "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",   "header-bgcolor",   nullptr, 5, "HeaderBgColor"},
      {ItemKind::text,     "CSS Angaben",        "header-css-style", nullptr, 6, "HeaderCSSStyle"},
      {ItemKind::list,     "Text fettgedruckt",  "header-font-bold", yesNo},
      {ItemKind::category, "Körper"},
      {ItemKind::text,     "Link CSS Angaben",   "link-css-style"},
      {ItemKind::list,     "Link fettgedruckt",  "link-font-bold",   yesNo},
  };
  // clang-format on
  Declare(rows);
}

}  // namespace kvo
