// The rows of the classes offer what the property pages offer for the same property.
#include "common/forms/FormPropertyGrid.h"
#include "common/forms/PageField.h"
#include "common/values/RuntimeError.h"
#include "host/registration/classes.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using Offers = std::vector<std::pair<std::string, std::string>>;  // value and German caption

Offers Offered(const PropertyRow& row) {
  Offers offers;
  for (const Choice& choice : row.input.choices ? row.input.choices() : std::vector<Choice>())
    offers.emplace_back(ToText(choice.value), choice.caption.german);
  return offers;
}

Offers Offered(const ComboBox& list) {
  Offers offers;
  for (const ComboBox::Row& row : list.Rows())
    offers.emplace_back(row.key.value_or(row.text), row.text);
  return offers;
}

Offers Offered(const PropertyGridItem& row) {
  Offers offers;
  for (const auto& choice : row.Choices())
    offers.emplace_back(ToText(choice->Value()), choice->Caption());
  return offers;
}

class OffersTest : public testing::Test {
 protected:
  // Calls `visit` for every page of every class, filled from a new control as far as that goes.
  template <class Visit>
  void ForEachPage(const Visit& visit) {
    for (const RegisteredControl& registered : RegisteredControls())
      for (const std::string_view name : registered.contract().pages) {
        SCOPED_TRACE(name);
        const auto page = CreatePage(name);
        try {
          page->Select({registered.contract().create()});
        } catch (const RuntimeError&) {
          continue;  // the products need a shop
        }
        visit(registered.contract(), *page);
      }
  }

  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(OffersTest, ListsOfPagesAreThoseOfTheRows) {
  int lists = 0;
  ForEachPage([&lists](const ControlClass& contract, const PropertyPage& page) {
    for (const FormControl* control : page.AllControls()) {
      const auto* list = dynamic_cast<const Field<ComboBox>*>(control);
      if (list == nullptr) continue;
      const PropertyRow& row = *contract.FindProperty(list->Bound().property);
      SCOPED_TRACE(row.name);
      if (row.input.kind == InputKind::officeField) continue;
      ++lists;
      EXPECT_EQ(Offered(*list), Offered(row));
      EXPECT_EQ(list->Editable(), row.input.kind == InputKind::openList);
    }
  });
  EXPECT_EQ(lists, 5);
}

TEST_F(OffersTest, ListsAndColoursOfDesignsAreThoseOfTheRows) {
  int compared = 0;
  ForEachPage([&compared](const ControlClass& contract, const PropertyPage& page) {
    for (const FormControl* control : page.AllControls()) {
      const auto* grid = dynamic_cast<const PropertyGrid*>(control);
      if (grid == nullptr) continue;
      for (const auto& item : grid->Items()) {
        if (item->Kind() == ItemKind::category) continue;
        const PropertyRow* row = contract.FindKey(item->Key());
        if (row == nullptr) row = contract.FindKey("table-" + item->Key());
        if (row == nullptr) continue;  // deliberate: rows without a property
        SCOPED_TRACE(row->name);
        ++compared;
        EXPECT_EQ(Offered(*item), Offered(*row));
        EXPECT_EQ(item->Kind() == ItemKind::color, row->input.kind == InputKind::color);
        EXPECT_EQ(item->Kind() == ItemKind::list, row->input.kind == InputKind::openList);
      }
    }
  });
  EXPECT_EQ(compared, 15);
}

}  // namespace
}  // namespace kvo
