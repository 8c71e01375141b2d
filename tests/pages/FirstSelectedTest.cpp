// Pages act on the first of several selected objects and never access the others.
#include "common/forms/PropertyPage.h"
#include "common/frame/Office.h"
#include "host/registration/classes.h"
#include "host/script/FormState.h"
#include "pages/frmExpressionBuilder.h"
#include "pages/propIfGeneral.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

// Records every access and returns nothing.
class Watched final : public Object {
 public:
  std::vector<std::string> asked;

  Variant Get(std::string_view name) override { return Noted(name), Object::Get(name); }
  void Let(std::string_view name, Variant value) override {
    Noted(name);
    Object::Let(name, std::move(value));
  }
  Variant Call(std::string_view name, std::span<const Variant> arguments) override {
    return Noted(name), Object::Call(name, arguments);
  }
  Variant Item(const Variant& key) override { return Noted("Item"), Object::Item(key); }
  std::unique_ptr<Enumerator> Enumerate() override {
    return Noted("Enumerate"), Object::Enumerate();
  }
  std::optional<std::vector<std::string>> PropertyPages() override {
    return Noted("PropertyPages"), Object::PropertyPages();
  }

 private:
  void Noted(std::string_view what) { asked.emplace_back(what); }
};

class Actor {
 public:
  Actor(HeadlessPlatform& platform, Form& form) : form_(form), user_(platform, form) {}

  void TypeOver(std::string_view box, std::string_view text) {
    user_.FocusByKeyboard(*form_.Find(box));
    user_.Press(Key::selectAll);
    user_.Type(text);
  }
  void Choose(std::string_view list, std::string_view text) {
    user_.Choose(As<ComboBox>(list), text);
  }
  void Choose(std::string_view grid, std::string_view row, std::string_view text) {
    user_.Choose(As<PropertyGrid>(grid).Item(row), text);
  }
  void TypeInRow(std::string_view grid, std::string_view row, std::string_view text) {
    user_.SelectItem(As<PropertyGrid>(grid).Item(row));
    user_.Type(text);
  }
  void DoubleClick(std::string_view grid, std::size_t row) {
    user_.DoubleClick(As<Grid>(grid), row);
  }

 private:
  template <class Kind>
  Kind& As(std::string_view name) {
    return dynamic_cast<Kind&>(*form_.Find(name));
  }
  Form& form_;
  HeadlessUser user_;
};

// An edit on a page, and the first control's property after it is applied.
struct Edit {
  std::string_view page;
  std::string_view control;
  void (*perform)(Actor&);
  std::string_view property;
  std::string_view expected;
};
void PrintTo(const Edit& edit, std::ostream* out) { *out << edit.page; }

const Edit kEdits[] = {
    {"propPrintGeneral", "DTCPrint", [](Actor& user) { user.TypeOver("txtValue", "neu"); }, "Value",
     "neu"},
    {"propGeneralFormat", "DTCPrint", [](Actor& user) { user.TypeOver("cboFormat", "0.0"); },
     "Format", "0.0"},
    {"propContactGeneral", "DTCContact",
     [](Actor& user) { user.Choose("cboContactFields", "Nachname"); }, "Field", "LASTNAME"},
    {"propOrderGeneral", "DTCOrder", [](Actor& user) { user.Choose("cboOrderFields", "Summe"); },
     "Field", "TOTAL"},
    {"propElementProperties", "DTCElement",
     [](Actor& user) { user.TypeOver("txtElementBasename", "th"); }, "Value", "th"},
    {"propGeneralAttributes", "DTCElement",
     [](Actor& user) { user.TypeInRow("suiAttributes", "align", "right"); }, "Attributes",
     "align|right"},
    {"propIfGeneral", "DTCIf", [](Actor& user) { user.TypeOver("txtTestCondition", "x"); }, "Test",
     "%x%"},
    {"propProdListGeneral", "DTCProductList",
     [](Actor& user) { user.TypeOver("txtHeadline", "Neu"); }, "Headline", "Neu"},
    {"propProdListDesign", "DTCProductList",
     [](Actor& user) { user.Choose("suiDesign", "font-size", "12 Punkte"); }, "FontSize", "12pt"},
    {"propProdListPicker", "DTCProductList", [](Actor& user) { user.DoubleClick("gdProducts", 0); },
     "SelectedProducts", "7,100"},
    {"propPosListDesign", "DTCPositionList",
     [](Actor& user) { user.Choose("suiDesign", "table-border", "3 Pixel"); }, "TableBorder", "3"},
    {"propClickGeneral", "DTCClicktracker", [](Actor& user) { user.TypeOver("txtHref", "a"); },
     "Href", "a"},
    {"propUnsubGeneral", "DTCUnsubscriber", [](Actor& user) { user.TypeOver("txtRecipient", "r"); },
     "Recipient", "r"},
};

class FirstSelected : public testing::TestWithParam<Edit> {
 protected:
  FirstSelected() {
    office->contactFields = {{"EMAIL", "E-Mail", 0}, {"LASTNAME", "Nachname", 0}};
    office->orderFields = {{"TOTAL", "Summe", 1}};
    office->connection = std::make_shared<FakeConnection>();
    table.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", ""}}};
    platform.recordsets = [this] { return std::make_shared<FakeRecordset>(table); };
    const ControlClass& contract = FindControlByName(GetParam().control)->contract();
    control = contract.create();
    MemoryBag bag(std::vector<MemoryBag::Entry>{
        {"value", "td"}, {"attributes", "align|left"}, {"selected-products", "7"}});
    control->ReadProperties(bag);
    GiveOffice(*control, office);
  }
  std::vector<MemoryBag::Entry> Stored() const {
    MemoryBag bag;
    control->WriteProperties(bag);
    return bag.Entries();
  }

  HeadlessPlatform platform;
  PlatformScope scope{platform};
  FakeTable table;
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
  std::shared_ptr<Control> control;
  std::shared_ptr<Watched> other = std::make_shared<Watched>();
  std::unique_ptr<PropertyPage> page = CreatePage(GetParam().page);
};

TEST_P(FirstSelected, IsTheOnlyOneReadAndWritten) {
  page->Select({control, other, other});
  EXPECT_EQ(other->asked, std::vector<std::string>());
  Actor user(platform, *page);
  GetParam().perform(user);
  page->Apply();
  EXPECT_EQ(ToText(control->Get(GetParam().property)), GetParam().expected);
  EXPECT_EQ(other->asked, std::vector<std::string>());
}

TEST_P(FirstSelected, IsNotReplacedByAMatchingOne) {
  const auto before = Stored();
  try {
    page->Select({other, control});
    page->Apply();
  } catch (const RuntimeError&) {
    // The first object has no property that the page could show.
  }
  EXPECT_NE(other->asked, std::vector<std::string>());
  EXPECT_EQ(Stored(), before);
}

INSTANTIATE_TEST_SUITE_P(Every, FirstSelected, testing::ValuesIn(kEdits),
                         [](const auto& edit) { return std::string(edit.param.page); });

TEST(FirstSelectedTable, HasEveryPage) {
  for (const RegisteredPage& page : RegisteredPages())
    EXPECT_EQ(std::count_if(std::begin(kEdits), std::end(kEdits),
                            [&](const Edit& edit) { return edit.page == page.name; }),
              1)
        << page.name;
}

TEST(FirstSelectedOffice, IsPassedToTheBuilder) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const auto offices = {std::make_shared<FakeOffice>(), std::make_shared<FakeOffice>()};
  std::vector<ObjectRef> objects;
  for (const auto& office : offices) {
    office->contactFields = {{"F" + std::to_string(objects.size()), "Feld", 0}};
    objects.push_back(std::make_shared<PropertyObject>(
        PropertyObject::Properties{{"Test", ""},
                                   {"OnTrue", ""},
                                   {"OnFalse", ""},
                                   {"DisplayValue", ""},
                                   {"Office", ObjectRef(office)}}));
  }
  propIfGeneral page;
  HeadlessUser user(platform, page);
  for (const auto& office : offices) {
    page.Select(objects);
    int opened = 0;
    platform.whileModal = [&](Form& form) {
      auto& builder = dynamic_cast<frmExpressionBuilder&>(form);
      EXPECT_EQ(builder.Office, office);
      EXPECT_EQ(builder.cboFields.SelectedItem()->key, office->contactFields[0].sqlName);
      ++opened;
    };
    const auto held = office.use_count();
    user.Click(page.cmdShowExpressionBuilder);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(office.use_count(), held);  // the dialog has released it
    std::reverse(objects.begin(), objects.end());
  }
}

}  // namespace
}  // namespace kvo
