// The order in which pages read and write an object's properties, and which of them they declare.
#include "common/forms/PropertyPage.h"
#include "host/registration/classes.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

using Names = std::vector<std::string>;

// Wraps a control and records which of its properties are read and written, in order.
class Noted final : public Object {
 public:
  explicit Noted(ObjectRef control) : control_(std::move(control)) {}

  Variant Get(std::string_view name) override {
    read.emplace_back(name);
    return control_->Get(name);
  }
  void Let(std::string_view name, Variant value) override {
    written.emplace_back(name);
    control_->Let(name, std::move(value));
  }

  Names read;
  Names written;

 private:
  ObjectRef control_;
};

struct Order {
  std::string_view page;
  std::string_view control;
  Names read;
  Names written;
};
void PrintTo(const Order& order, std::ostream* out) { *out << order.page; }

const Order kOrders[] = {
    {"propPrintGeneral", "DTCPrint", {"Value"}, {"Value"}},
    {"propGeneralFormat", "DTCPrint", {"Format"}, {"Format"}},
    {"propContactGeneral", "DTCContact", {"Office", "Field"}, {"Field", "DisplayValue"}},
    {"propOrderGeneral", "DTCOrder", {"Office", "Field"}, {"Field", "DisplayValue"}},
    {"propElementProperties",
     "DTCElement",
     {"Value", "OpeningTagOnly", "ClosingTagOnly", "HTMLContent"},
     {"Value", "HTMLContent", "OpeningTagOnly", "ClosingTagOnly"}},
    {"propGeneralAttributes", "DTCElement", {"AttributesCollection"}, {"AttributesCollection"}},
    {"propIfGeneral",
     "DTCIf",
     {"Test", "OnTrue", "OnFalse", "DisplayValue"},
     {"Test", "OnTrue", "OnFalse", "DisplayValue"}},
    {"propProdListGeneral",
     "DTCProductList",
     {"DisplayColumns", "TableWidth", "DisplayDesc2", "DisplayPrice", "CacheObject",
      "DisplayAsLink", "StretchBreach", "DisplayThumb", "Headline", "ShopHTTPURL", "ImagesHTTPURL",
      "DefaultExtension", "ClickId"},
     {"DisplayColumns", "TableWidth", "DisplayDesc2", "DisplayPrice", "CacheObject", "DisplayThumb",
      "DisplayAsLink", "StretchBreach", "Headline", "ShopHTTPURL", "ImagesHTTPURL",
      "DefaultExtension", "ClickId"}},
    {"propProdListDesign",
     "DTCProductList",
     {"FontFamily", "FontSize", "Border", "TableBgColor", "HeaderBgColor", "HeaderCSSStyle"},
     {"FontFamily", "FontSize", "Border", "TableBgColor", "HeaderBgColor", "HeaderCSSStyle"}},
    {"propProdListPicker", "DTCProductList", {"Office", "SelectedProducts"}, {"SelectedProducts"}},
    {"propPosListDesign",
     "DTCPositionList",
     {"TableBorder", "TableCellSpacing", "TableCellPadding", "TableBackground", "HeaderBackground",
      "HeaderCSSStyle"},
     {"TableBorder", "TableCellSpacing", "TableCellPadding", "TableBackground", "HeaderBackground",
      "HeaderCSSStyle"}},
    {"propClickGeneral",
     "DTCClicktracker",
     {"Href", "ClickId", "HTMLContent"},
     {"Href", "ClickId", "HTMLContent"}},
    {"propUnsubGeneral",
     "DTCUnsubscriber",
     {"Recipient", "Site", "HTMLContent"},
     {"Recipient", "Site", "HTMLContent"}},
};

// A host with an order field, a contact field and a shop.
class PropertyOrderHost : public testing::Test {
 protected:
  PropertyOrderHost() {
    office->contactFields = {{"EMAIL", "E-Mail"}};
    office->orderFields = {{"EMAIL", "E-Mail"}};
    office->connection = std::make_shared<FakeConnection>();
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
  }
  // Returns a control that records what a page does with it.
  std::shared_ptr<Noted> Make(const ControlClass& contract) const {
    const std::shared_ptr<Control> control = contract.create();
    MemoryBag bag(std::vector<MemoryBag::Entry>{{"field", "EMAIL"}});
    control->ReadProperties(bag);
    if (contract.FindProperty("Office")) control->Let("Office", ObjectRef(office));
    return std::make_shared<Noted>(control);
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  FakeTable table;
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
};

class PropertyOrder : public PropertyOrderHost, public testing::WithParamInterface<Order> {};

TEST_P(PropertyOrder, MatchesThePage) {
  const auto control = Make(FindControlByName(GetParam().control)->contract());
  const auto page = CreatePage(GetParam().page);
  page->Select({control});
  EXPECT_EQ(control->read, GetParam().read);
  page->Apply();
  EXPECT_EQ(control->written, GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(Every, PropertyOrder, testing::ValuesIn(kOrders),
                         [](const auto& order) { return std::string(order.param.page); });

// Filling the pages of every class reads the properties that they show.
TEST_F(PropertyOrderHost, PagesDeclareThePropertiesThatTheyRead) {
  std::size_t shown = 0;
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    for (const std::string_view name : contract.pages) {
      const auto control = Make(contract);
      CreatePage(name)->Select({control});
      for (const PropertyRow& row : contract.properties) {
        if (row.type == PropertyType::object) continue;
        const bool isRead = std::count(control->read.begin(), control->read.end(), row.name) > 0;
        EXPECT_EQ(CreatePage(name)->Shows(row.name), isRead)
            << contract.name << " " << name << " " << row.name;
        shown += isRead ? 1 : 0;
      }
    }
  }
  EXPECT_EQ(shown, 46U);
}

TEST_F(PropertyOrderHost, ShowsIgnoresCase) {
  const auto page = CreatePage("propClickGeneral");
  EXPECT_TRUE(page->Shows("HREF"));
  EXPECT_FALSE(page->Shows("Value"));
}

TEST(PropertyOrderTable, HasEveryPage) {
  for (const RegisteredPage& page : RegisteredPages())
    EXPECT_EQ(std::count_if(std::begin(kOrders), std::end(kOrders),
                            [&](const Order& order) { return order.page == page.name; }),
              1)
        << page.name;
}

}  // namespace
}  // namespace kvo
