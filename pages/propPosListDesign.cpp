#include "pages/propPosListDesign.h"

namespace kvo {

std::span<const DesignPage::Row> propPosListDesign::Rows() {
  static constexpr auto pixels = []() -> std::vector<Choice> {
    std::vector<Choice> choices;
    for (int n = 0; n <= 10; ++n)
      choices.push_back({std::to_string(n) + " Pixel", std::to_string(n)});
    return choices;
  };
  // clang-format off
  static constexpr Row rows[] = {
      {ItemKind::category, "Allgemein",          "cellspacing"},
      {ItemKind::list,     "Zellenabstand (Px)", "table-cellspacing", pixels},
      {ItemKind::list,     "Textabstand (Px)",   "table-cellpadding", pixels},
      {ItemKind::list,     "Rahmen (Px)",        "table-border",      pixels},
      {ItemKind::color,    "Hintergrundfarbe",   "table-bgcolor"},
      {ItemKind::text,     "CSS Angaben",        "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",   "header-bgcolor"},
      {ItemKind::text,     "CSS Angaben",        "header-css-style"},
      {ItemKind::category, "Körper"},
      {ItemKind::color,    "Hintergrundfarbe",   "body-bgcolor"},
      {ItemKind::text,     "CSS Angaben",        "body-css-style"},
  };
  // clang-format on
  return rows;
}

std::span<const DesignPage::Transfer> propPosListDesign::Transfers() {
  // The table's CSS and both settings of the body are not among them: deliberate.
  static constexpr Transfer transfers[] = {
      {"table-border", "TableBorder", Way::choiceOnly},
      {"table-cellspacing", "TableCellSpacing", Way::choiceOnly},
      {"table-cellpadding", "TableCellPadding", Way::choiceOnly},
      {"table-bgcolor", "TableBackground", Way::asItStands},
      {"header-bgcolor", "HeaderBackground", Way::asItStands},
      {"header-css-style", "HeaderCSSStyle", Way::asItStands},
  };
  return transfers;
}

}  // namespace kvo
