#include <gtest/gtest.h>

#include "document/office/Office.h"
#include "document/preview/Records.h"

namespace kvo::preview {
namespace {

using office::Field;
using office::Office;

// The value for a contact field.
Variant ValueOf(const std::string& sqlName, const std::string& displayName,
                std::int32_t dataType = 0) {
  const Record record = MadeUpRecord(std::make_shared<Office>(
      Office::Description{{{sqlName, displayName, dataType}}, {}, std::nullopt}));
  EXPECT_TRUE(record.madeUp);
  return *record.Find(kCustomer, sqlName);
}

TEST(MadeUpRecord, HasATextThatFitsTheNameInBothLanguages) {
  for (const char* name : {"FirstName", "first_name", "Vorname", "VORNAME"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Erika")) << name;
  for (const char* name : {"LastName", "Nachname", "Surname"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Muster")) << name;
  for (const char* name : {"Anrede", "Salutation"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Frau")) << name;
  for (const char* name : {"PLZ", "Zip", "ZipCode", "Postleitzahl"})
    EXPECT_EQ(ValueOf(name, ""), Variant("12345")) << name;
  for (const char* name : {"Ort", "City", "Wohnort", "home_town"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Musterstadt")) << name;
  for (const char* name : {"Straße", "Strasse", "street"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Musterweg 7")) << name;
  for (const char* name : {"Telefon", "Phone", "Tel"})
    EXPECT_EQ(ValueOf(name, ""), Variant("030 23125042")) << name;
  for (const char* name : {"Firma", "Company", "Firmenname"})
    EXPECT_EQ(ValueOf(name, ""), Variant("Muster GmbH")) << name;
}

TEST(MadeUpRecord, LooksAtTheDisplayNameToo) {
  EXPECT_EQ(ValueOf("F17", "Vorname"), Variant("Erika"));
  EXPECT_EQ(ValueOf("F18", "E-Mail-Adresse"), Variant("erika.muster@kunde.example"));
  EXPECT_EQ(ValueOf("F19", "Ort"), Variant("Musterstadt"));
}

TEST(MadeUpRecord, NamesAFieldThatItDoesNotKnow) {
  EXPECT_EQ(ValueOf("Portrait", "Bild", 5), Variant("Muster (Bild)"));
  EXPECT_EQ(ValueOf("Passwort", ""), Variant("Muster (Passwort)"));
  EXPECT_EQ(ValueOf("Sortierung", ""), Variant("Muster (Sortierung)"));
}

TEST(MadeUpRecord, HasValuesOfTheFieldsType) {
  EXPECT_EQ(ValueOf("BonusPoints", "Treuepunkte", 1), Variant(1250));
  EXPECT_EQ(ValueOf("X", "", 1), Variant(42));
  EXPECT_EQ(ValueOf("Preis", "", 1), Variant(12.5));
  EXPECT_EQ(ValueOf("IsPremium", "", 3), Variant(true));
  EXPECT_EQ(ValueOf("Birthday", "Geburtstag", 6), Variant("17.05.1983"));
  EXPECT_EQ(ValueOf("X", "", 6), Variant("14.11.2025"));
}

TEST(MadeUpRecord, HasAnOrderThatAddsUp) {
  const Record record = MadeUpRecord(
      std::make_shared<Office>(Office::Description{{},
                                                   {{"OrderID", "Bestellnummer", 1},
                                                    {"OrderDate", "Bestelldatum", 6},
                                                    {"OrderTotal", "Gesamtbetrag", 1},
                                                    {"ShippingCosts", "Versandkosten", 1}},
                                                   std::nullopt}));
  EXPECT_EQ(*record.Find(kOrder, "OrderID"), Variant(4711));
  EXPECT_EQ(*record.Find(kOrder, "orderid"), Variant(4711));
  EXPECT_EQ(*record.Find(kOrder, "OrderDate"), Variant("24.11.2025"));
  ASSERT_EQ(record.positions.value().size(), 2U);
  const auto number = [](const Variant& value) {
    const auto* whole = value.If<std::int32_t>();
    return whole != nullptr ? *whole : *value.If<double>();
  };
  double sum = number(*record.Find(kOrder, "ShippingCosts"));
  for (const Values& position : *record.positions) {
    ASSERT_EQ(position.All().size(), std::size(kPositionColumns));
    EXPECT_DOUBLE_EQ(number(*position.Find("price")) * number(*position.Find("quantity")),
                     number(*position.Find("total")));
    sum += number(*position.Find("total"));
  }
  EXPECT_DOUBLE_EQ(sum, number(*record.Find(kOrder, "OrderTotal")));
}

TEST(MadeUpRecord, HasWhatPagesNameBesidesFields) {
  const Record record = MadeUpRecord(nullptr);
  EXPECT_TRUE(record.madeUp);
  EXPECT_EQ(*record.Find(kConfig, "company-name"), Variant("Muster-Versand GmbH"));
  EXPECT_EQ(*record.Find("system", "date"), Variant("01.12.2025"));
  EXPECT_EQ(record, MadeUpRecord(nullptr));
}

}  // namespace
}  // namespace kvo::preview
