// The controls whose pages are shown in the pictures.
#pragma once

#include <memory>
#include <vector>

#include "common/frame/Office.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {

inline const std::vector<MemoryBag::Entry>& PicturedBag(std::string_view className) {
  static const std::vector<MemoryBag::Entry> element = {
      {"basename", "element"}, {"value", "td"}, {"attributes", "align|center||width|100%"}};
  static const std::vector<MemoryBag::Entry> list = {{"selected-products", "100,200"},
                                                     {"header-bgcolor", "#3060C0"},
                                                     {"table-bgcolor", "#FFE0A0"},
                                                     {"font-size", "12pt"}};
  static const std::vector<MemoryBag::Entry> none;
  return className == "DTCElement" ? element : className == "DTCProductList" ? list : none;
}

inline std::shared_ptr<FakeOffice> MakeOffice() {
  auto office = std::make_shared<FakeOffice>();
  office->contactFields = {{"EMAIL", "E-Mail-Adresse", 0}, {"AGE", "Alter", 1}};
  office->orderFields = {{"ORDER_ID", "Nummer", 1}};
  office->connection = std::make_shared<FakeConnection>();
  return office;
}

inline std::shared_ptr<Control> MakePictured(const ControlClass& contract,
                                             const ObjectRef& office) {
  std::shared_ptr<Control> control = contract.create();
  MemoryBag bag(PicturedBag(contract.name));
  control->ReadProperties(bag);
  GiveOffice(*control, office);
  return control;
}

}  // namespace kvo
