#include "controls/DTCContact.h"
#include "controls/DTCOrder.h"
#include "pages/propContactGeneral.h"
#include "pages/propOrderGeneral.h"
#include "tests/pages/FakeOffice.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

class ContactFieldPage : public PageTest<propContactGeneral> {
 protected:
  ContactFieldPage() {
    office->contactFields = {{"EMAIL", "E-Mail-Adresse"}, {"LASTNAME", "Nachname"}};
    office->orderFields = {{"ORDER_TOTAL", "Gesamtsumme"}};
  }
  void OpenOn(const std::string& field) {
    Open({{"Field", field}, {"DisplayValue", "alt"}, {"Office", ObjectRef(office)}});
  }
  std::vector<std::string> Listed() const {
    std::vector<std::string> rows;
    for (const ComboBox::Row& row : page.cboFields.Rows())
      rows.push_back(*row.key + "=" + row.text);
    return rows;
  }
  using Rows = std::vector<std::string>;
  std::shared_ptr<FakeOffice> office = std::make_shared<FakeOffice>();
};

TEST_F(ContactFieldPage, MatchesItsDesign) {
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.lblField.Caption(), "Auszugebendes Datenfeld:");
  EXPECT_EQ(page.Find("cboContactFields"), &page.cboFields);
  EXPECT_FALSE(page.cboFields.Editable());
}

TEST_F(ContactFieldPage, ListsTheContactFieldsInOrder) {
  OpenOn("LASTNAME");
  EXPECT_EQ(Listed(), (Rows{"EMAIL=E-Mail-Adresse", "LASTNAME=Nachname"}));
  EXPECT_EQ(page.cboFields.SelectedItem()->key, "LASTNAME");
}

TEST_F(ContactFieldPage, AnUnknownFieldOpensWithNothingChosen) {
  OpenOn("PHONE");
  EXPECT_EQ(page.cboFields.SelectedItem(), nullptr);
  EXPECT_FALSE(page.Changed());
}

TEST_F(ContactFieldPage, KeysAreComparedExactly) {
  OpenOn("email");
  EXPECT_EQ(page.cboFields.SelectedItem(), nullptr);
}

TEST_F(ContactFieldPage, ChoosingMarksThePageChangedAndApplyWritesBothNames) {
  OpenOn("");
  EXPECT_FALSE(page.Changed());
  user.Choose(page.cboFields, "Nachname");
  EXPECT_TRUE(page.Changed());
  page.Apply();
  EXPECT_EQ((*object)["Field"], Variant("LASTNAME"));
  EXPECT_EQ((*object)["DisplayValue"], Variant("Nachname"));
  EXPECT_EQ(object->written, (std::vector<std::string>{"Field", "DisplayValue"}));
}

TEST_F(ContactFieldPage, ApplyWithoutAChoiceIsAnErrorAndChangesNothing) {
  OpenOn("PHONE");
  EXPECT_EQ(ErrorOf([&] { page.Apply(); }), 91);
  EXPECT_TRUE(object->written.empty());
}

TEST_F(ContactFieldPage, WithoutAnOfficeTheListIsEmpty) {
  Open({{"Field", "EMAIL"}, {"DisplayValue", ""}, {"Office", Variant()}});
  EXPECT_TRUE(page.cboFields.Rows().empty());
  Open({{"Field", "EMAIL"}, {"DisplayValue", ""}, {"Office", ObjectRef()}});
  EXPECT_TRUE(page.cboFields.Rows().empty());
  Open({});
  EXPECT_TRUE(page.cboFields.Rows().empty());
}

TEST_F(ContactFieldPage, AnOfficeWithoutContactFieldsGivesAnEmptyList) {
  Open({{"Field", "EMAIL"}, {"Office", ObjectRef(std::make_shared<Collection>())}});
  EXPECT_TRUE(page.cboFields.Rows().empty());
}

TEST_F(ContactFieldPage, TheSecondOfTwoFieldsWithTheSameNameIsNotListed) {
  office->contactFields = {{"EMAIL", "Eins"}, {"EMAIL", "Zwei"}, {"PHONE", "Telefon"}};
  OpenOn("EMAIL");
  EXPECT_EQ(Listed(), (Rows{"EMAIL=Eins", "PHONE=Telefon"}));
}

TEST_F(ContactFieldPage, AnUnreadableFieldIsOmitted) {
  const auto fields = std::make_shared<Collection>();
  fields->Add("kein Objekt");
  const auto broken = std::make_shared<PropertyObject>(Properties{{"SQLName", "A"}});
  fields->Add(ObjectRef(broken));
  const auto good =
      std::make_shared<PropertyObject>(Properties{{"SQLName", "B"}, {"DisplayName", "Be"}});
  fields->Add(ObjectRef(good));
  const auto host =
      std::make_shared<PropertyObject>(Properties{{"ContactFields", ObjectRef(fields)}});
  Open({{"Field", "B"}, {"Office", ObjectRef(host)}});
  EXPECT_EQ(Listed(), Rows{"B=Be"});
}

TEST_F(ContactFieldPage, ANewSelectionRefillsTheList) {
  OpenOn("EMAIL");
  OpenOn("LASTNAME");
  EXPECT_EQ(Listed().size(), 2U);
  EXPECT_EQ(page.cboFields.SelectedItem()->key, "LASTNAME");
}

TEST_F(ContactFieldPage, EditsTheContactControl) {
  const auto control = std::make_shared<DTCContact>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->Office(office);
  page.Select({control});
  user.Choose(page.cboFields, 0);
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:contact field="EMAIL"/>)");
  EXPECT_EQ(control->DisplayValue(), "E-Mail-Adresse");
}

class OrderFieldPage : public PageTest<propOrderGeneral> {};

TEST_F(OrderFieldPage, ListsTheOrderFields) {
  const auto office = std::make_shared<FakeOffice>();
  office->contactFields = {{"EMAIL", "E-Mail-Adresse"}};
  office->orderFields = {{"ORDER_ID", "Nummer"}, {"ORDER_TOTAL", "Gesamtsumme"}};
  const auto control = std::make_shared<DTCOrder>();
  MemoryBag bag;
  control->ReadProperties(bag);
  control->Office(office);
  page.Select({control});
  EXPECT_EQ(page.Caption(), "Allgemein");
  EXPECT_EQ(page.Find("cboOrderFields"), &page.cboFields);
  ASSERT_EQ(page.cboFields.Rows().size(), 2U);
  user.Choose(page.cboFields, "Gesamtsumme");
  page.Apply();
  EXPECT_EQ(control->GetRuntimeText(), R"(<kv:order field="ORDER_TOTAL"/>)");
}

}  // namespace
}  // namespace kvo
