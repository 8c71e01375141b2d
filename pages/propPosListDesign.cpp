#include "pages/propPosListDesign.h"

namespace kvo {

propPosListDesign::propPosListDesign() {
  // Deliberate: the table's CSS and both settings of the body have no property here.
  // clang-format off
  static constexpr Row rows[] = {
      // kind              caption               key                  choices          order property            way
      {ItemKind::category, "Allgemein",          "cellspacing"},
      {ItemKind::list,     "Zellenabstand (Px)", "table-cellspacing", choices::Pixels, 2, "TableCellSpacing", Way::choiceOnly},
      {ItemKind::list,     "Textabstand (Px)",   "table-cellpadding", choices::Pixels, 3, "TableCellPadding", Way::choiceOnly},
      {ItemKind::list,     "Rahmen (Px)",        "table-border",      choices::Pixels, 1, "TableBorder",      Way::choiceOnly},
      {ItemKind::color,    "Hintergrundfarbe",   "table-bgcolor",     nullptr,         4, "TableBackground"},
      {ItemKind::text,     "CSS Angaben",        "table-css-style"},
      {ItemKind::category, "Kopfzeile"},
      {ItemKind::color,    "Hintergrundfarbe",   "header-bgcolor",    nullptr,         5, "HeaderBackground"},
      {ItemKind::text,     "CSS Angaben",        "header-css-style",  nullptr,         6, "HeaderCSSStyle"},
      {ItemKind::category, "Körper"},
      {ItemKind::color,    "Hintergrundfarbe",   "body-bgcolor"},
      {ItemKind::text,     "CSS Angaben",        "body-css-style"},
  };
  // clang-format on
  Declare(rows);
}

}  // namespace kvo
