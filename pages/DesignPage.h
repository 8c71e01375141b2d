// A page that edits the look of a table in a property grid.
#pragma once

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/FormPropertyGrid.h"
#include "common/forms/PageField.h"
#include "common/frame/Choices.h"
#include "common/frame/Platform.h"

namespace kvo {

class DesignPage : public PropertyPage {
 public:
  KVO_CONTROL(
      PropertyGrid, suiDesign, .at = {120, 120, 5520, 4320}, .onChange = marksChanged,
      .onButtonClick = [this](PropertyGridItem& row) { PickColor(row); });
  // The colour dialog's colour, kept from one opening to the next; black at first.
  ColorNumber comDlgColor = 0;

 protected:
  // How a row and its property exchange values.
  enum class Way {
    asItStands,    // in both directions
    choiceStored,  // filled as it stands; a chosen row stores the choice's value
    choiceOnly,    // as choiceStored, but a row whose choices lack the value keeps the one it had
  };
  struct Row {
    ItemKind kind;
    std::string_view caption;
    std::string_view key{};
    std::vector<Choice> (*choices)() = nullptr;
    // The row's turn among the transfers with the control, from 1. 0: can be edited, but never
    // reaches the control.
    int order = 0;
    std::string_view property{};
    Way way = Way::asItStands;
  };

  DesignPage() : PropertyPage("Design") {}
  // Called once, at the page's construction.
  void Declare(std::span<const Row> rows);

 private:
  void Initialize() override;
  void Fill(const Row& row, const std::string& value);
  Variant ValueOf(const Row& row);
  // Deliberate: does not notice that the user cancelled the dialog.
  void PickColor(PropertyGridItem& row);

  std::span<const Row> rows_;
  std::deque<PageField> fields_;
};

}  // namespace kvo
