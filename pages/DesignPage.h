// The page on which the look of a table is edited in a property grid.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/FormPropertyGrid.h"
#include "common/forms/PropertyPage.h"
#include "pages/ColorDialog.h"

namespace kvo {

class DesignPage : public PropertyPage {
 public:
  KVO_CONTROL(
      PropertyGrid, suiDesign, .at = {120, 120, 5520, 4320}, .onChange = marksChanged,
      .onButtonClick = [this](PropertyGridItem& row) { PickColor(row); });
  ColorDialog comDlgColor;

 protected:
  struct Choice {
    std::string caption;
    Variant value;
  };
  struct Row {
    ItemKind kind;
    std::string_view caption;
    std::string_view key{};
    std::vector<Choice> (*choices)() = nullptr;
  };

  // How a row and its property exchange their value.
  enum class Way {
    asItStands,    // in both directions
    choiceStored,  // filled as it stands; a chosen row stores the choice's value
    choiceOnly,    // as choiceStored, but a row whose choices lack the value keeps the one it had
  };
  struct Transfer {
    std::string_view key;
    std::string_view property;
    Way way;
  };

  // `transfers` stand in the order in which they are carried out. Rows that are not among them
  // show and can be edited, but never reach the control.
  DesignPage(std::span<const Row> rows, std::span<const Transfer> transfers)
      : PropertyPage("Design"), rows_(rows), transfers_(transfers) {}

 private:
  void Initialize() override;
  void SelectionChanged() override;
  void ApplyChanges() override;
  void PickColor(PropertyGridItem& row);

  std::span<const Row> rows_;
  std::span<const Transfer> transfers_;
};

}  // namespace kvo
