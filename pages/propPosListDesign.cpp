#include "pages/propPosListDesign.h"

namespace kvo {

propPosListDesign::propPosListDesign() {
  static constexpr auto pixels = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    for (int n = 0; n <= 10; ++n)
      choices.push_back({std::to_string(n) + " Pixel", std::to_string(n)});
    return choices;
  };
  // Deliberate: the table's CSS and both settings of the body have no property here.
  // clang-format off
  static constexpr Row rows[] = {
      // kind              caption               key                  choices order property            way
      {ItemKind::category, "Allgemein",          "cellspacing"},
      {ItemKind::list,     "Zellenabstand (Px)", "table-cellspacing", pixels,  2, "TableCellSpacing", Way::choiceOnly},
      {ItemKind::list,     "Textabstand (Px)",   "table-cellpadding", pixels,  3, "TableCellPadding", Way::choiceOnly},
      {ItemKind::list,     "Rahmen (Px)",        "table-border",      pixels,  1, "TableBorder",      Way::choiceOnly},
      {ItemKind::color,    "Hintergrundfarbe",   "table-bgcolor",     nullptr, 4, "TableBackground"},
      {ItemKind::text,     "CSS Angaben",        "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",   "header-bgcolor",    nullptr, 5, "HeaderBackground"},
      {ItemKind::text,     "CSS Angaben",        "header-css-style",  nullptr, 6, "HeaderCSSStyle"},
      {ItemKind::category, "Körper"},
      {ItemKind::color,    "Hintergrundfarbe",   "body-bgcolor"},
      {ItemKind::text,     "CSS Angaben",        "body-css-style"},
  };
  // clang-format on
  Declare(rows);
}

}  // namespace kvo
