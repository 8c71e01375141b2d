#pragma once

#include <string>
#include <string_view>

#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"
#include "common/forms/PageField.h"

namespace kvo {

// The products of the shop beside those that a product list shows. Reaches the shop's database
// through the control's `Office`; a failure there is the page's failure.
class propProdListPicker final : public PropertyPage {
 public:
  propProdListPicker() : PropertyPage("Produkte auswählen") {}

  // Deliberate: the button and the timer of the product search call an empty procedure.
  KVO_CONTROL(
      PropertyGrid, suiSearch, .at = {120, 120, 2040, 2400},
      .onChange = [this](PropertyGridItem& item) { suiSearch_Change(item); },
      .onButtonClick = [this](PropertyGridItem&) { Search(); });
  KVO_CONTROL(
      Grid, gdProducts, .at = {2220, 120, 3420, 2400}, .onDblClick = [this](Grid&) {
        AddSelectedRows();
        Changed(true);
      });
  // Deliberate: adds without marking the page changed, unlike the double click.
  KVO_CONTROL(
      CommandButton, cmdAddProduct, .caption = "Hinzufügen", .at = {120, 2640, 1500, 360},
      .onClick = [this](CommandButton&) { AddSelectedRows(); });
  // The picked products. The page reads back only their keys.
  KVO_CONTROL(
      PropertyGrid, suiPickedProducts, .at = {120, 3120, 5520, 900},
      .onDeleteKey = [this](PropertyGrid&) { DeletePicked(); });
  KVO_CONTROL(
      CommandButton, cmdDelete, .caption = "Löschen", .at = {120, 4080, 1500, 360},
      .onClick = [this](CommandButton&) { DeletePicked(); });
  // Keeps ticking while the search text is not empty.
  KVO_CONTROL(
      Timer, timerAutomaticSearch, .onTick = [this](Timer&) { Search(); });

 private:
  void Initialize() override;
  void SelectionChanged() override;

  // The control's form of the picked products: their numbers, separated.
  void ShowPicked(const std::string& numbers);
  std::string PickedNumbers() const;
  void AddSelectedRows();
  void DeletePicked();
  void LoadProducts(const ObjectRef& connection);
  void SetUpGrid();
  void EnableControls(bool enabled);
  void AddSearchColumn(std::string_view key, std::string_view caption);
  void Search() {}
  void suiSearch_Change(const PropertyGridItem& item);

  const PageField selectedProducts_{
      *this, Binding("SelectedProducts"),
      [this](Variant&& numbers) { ShowPicked(ToText(std::move(numbers))); },
      [this] { return PickedNumbers(); }};
  // Held from the first load until the page ends; the connection is the host's and stays open.
  ObjectRef connection_;
  ObjectRef recordset_;
};

}  // namespace kvo
