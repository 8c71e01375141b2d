#include "document/assist/Offers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/headless/HeadlessPlatform.h"

namespace kvo::assist {
namespace {

using Labels = std::vector<std::string>;

const office::Office::Description kOffice{
    {{"Email", "E-Mail-Adresse", 0},
     {"LastName", "Nachname", 0},
     {"Straße", "Straße", 0},
     {"a&b", "", 0}},
    {{"OrderID", "Bestellnummer", 1}, {"OrderTotal", "Summe", 1}},
    {}};
const Labels kContactFields = {"Email", "LastName", "Straße"};
const Labels kOrderFields = {"OrderID", "OrderTotal"};

class OffersTest : public testing::Test {
 protected:
  // In the text, "|" is the caret.
  static std::vector<Offer> At(std::string text, bool hasOffice = true) {
    const std::size_t place = text.find('|');
    text.erase(place, 1);
    return OffersAt(page::Page(text), place, hasOffice ? &kOffice : nullptr);
  }
  static Labels LabelsAt(const std::string& text) {
    Labels labels;
    for (const Offer& offer : At(text)) labels.push_back(offer.label);
    return labels;
  }
  // Returns the text after choosing an offer, with "|" where the author writes on.
  static std::string Chosen(std::string text, const std::string& label) {
    const std::vector<Offer> offers = At(text);
    const auto offer = std::ranges::find(offers, label, &Offer::label);
    if (offer == offers.end()) return "no such offer";
    text.erase(text.find('|'), 1);
    std::string bytes = offer->edit.bytes;
    bytes.insert(offer->caret, "|");
    return page::Applied(text, {{offer->edit.begin, offer->edit.end, bytes}});
  }
  static std::string In(const std::string& className, const std::string& params) {
    return "<p><object classid=\"progid:KVOPDesignObjects." + className + "\">" + params +
           "</object></p>";
  }
  // In the value of a key.
  static std::string Value(const std::string& className, const std::string& key,
                           const std::string& value) {
    return In(className, "<param name=\"" + key + "\" value=\"" + value + "\">");
  }

 private:
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
};

TEST_F(OffersTest, ClassesInTheClassId) {
  const Labels all = LabelsAt("<object classid=\"|\">");
  EXPECT_EQ(all.size(), 12U);
  EXPECT_EQ(LabelsAt("<object id='x' classid='progid:|'></object>"), all);
  EXPECT_EQ(LabelsAt("<!--KVO CONTROL STARTSPAN 1 <object classid=\"|"), all);
  EXPECT_EQ(Chosen("<object classid=\"DTCP|Foo\" id=\"x\">", "DTCPrint"),
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint|\" id=\"x\">");
  EXPECT_EQ(Chosen("<object classid=|", "DTCPrint"),
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"|");
  EXPECT_EQ(Chosen("<object classid=\"|>\n<p class=\"x\">", "DTCPrint"),
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint|>\n<p class=\"x\">");
}

TEST_F(OffersTest, KeysThatTheElementLacks) {
  const Labels keys = {"namespace", "basename", "display-basename", "display-value"};
  EXPECT_EQ(
      LabelsAt(In("DTCPrint",
                  "<param name=\"value\" value=\"x\"><param name=\"|\"><param name='format'>")),
      keys);
  EXPECT_EQ(
      Chosen(In("DTCPrint", "<param name=\"dis|play-basename\" value=\"\">"), "display-value"),
      In("DTCPrint", "<param name=\"display-value|\" value=\"\">"));
  // A key that is read for old pages only.
  const Labels ofElement = LabelsAt(In("DTCElement", "<param name=\"|\">"));
  EXPECT_EQ(std::ranges::count(ofElement, "display-value"), 0);
  EXPECT_EQ(std::ranges::count(ofElement, "attributes"), 1);
}

TEST_F(OffersTest, ParamsBetweenTheTags) {
  EXPECT_EQ(
      Chosen(In("DTCContact", "<param name=\"field\" value=\"\"> |"), "format"),
      In("DTCContact", "<param name=\"field\" value=\"\"> <param name=\"format\" value=\"|\">"));
  EXPECT_EQ(Chosen(In("DTCContact", "<par|"), "namespace"),
            In("DTCContact", "<param name=\"namespace\" value=\"kv|\">"));
  EXPECT_EQ(Chosen(In("DTCContact", "<|"), "field"),
            In("DTCContact", "<param name=\"field\" value=\"|\">"));
  EXPECT_EQ(LabelsAt(In("DTCNone", "<|")), Labels());
  EXPECT_EQ(LabelsAt("<object data=\"x\"><|</object>"), Labels());
  EXPECT_EQ(LabelsAt(In("DTCContact", "") + "<|"), Labels());
}

TEST_F(OffersTest, AttributesOfTheTags) {
  EXPECT_EQ(Chosen("<object |>", "classid"), "<object classid=\"|\">");
  EXPECT_EQ(Chosen("<object cl|>", "id"), "<object id=\"|\">");
  EXPECT_EQ(Chosen(In("DTCPrint", "<param na|"), "name"), In("DTCPrint", "<param name=\"|\""));
}

TEST_F(OffersTest, ValuesOfAKey) {
  EXPECT_EQ(LabelsAt(Value("DTCProductList", "display-price", "|")), (Labels{"yes", "no"}));
  EXPECT_EQ(LabelsAt(Value("DTCElement", "opening-tag-only", "|")), (Labels{"true", "false"}));
  EXPECT_EQ(LabelsAt(Value("DTCElement", "basename", "pri|nt")), Labels{"element"});
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "value", "|")), Labels());
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "no-key", "|")), Labels());
  const Labels formats = LabelsAt(Value("DTCPrint", "format", "|"));
  EXPECT_EQ(std::ranges::count(formats, "#,##0.00"), 1);
  EXPECT_EQ(Chosen(Value("DTCPrint", "format", "dd.|mm"), "#,##0.00"),
            Value("DTCPrint", "format", "#,##0.00|"));
  const Labels thumbnails = LabelsAt(Value("DTCProductList", "display-thumb", "|"));
  EXPECT_EQ(std::ranges::count(thumbnails, "left"), 1);
  // The name may follow the value.
  EXPECT_EQ(LabelsAt(In("DTCProductList", "<param value='|' name='in-cache'>")),
            (Labels{"yes", "no"}));
}

TEST_F(OffersTest, FieldsOfTheOffice) {
  Labels all = kContactFields;
  all.push_back("a&b");
  EXPECT_EQ(LabelsAt(Value("DTCContact", "field", "|")), all);
  EXPECT_EQ(LabelsAt(Value("DTCOrder", "field", "Or|")), kOrderFields);
  EXPECT_TRUE(At(Value("DTCOrder", "field", "|"), false).empty());
  EXPECT_EQ(Chosen(Value("DTCContact", "field", "E|mail"), "a&b"),
            Value("DTCContact", "field", "a&amp;b|"));
}

TEST_F(OffersTest, ReferencesInValues) {
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "value", "#customer.|")), kContactFields);
  EXPECT_EQ(LabelsAt(Value("DTCIf", "test", "%#order.Or|>5%")), kOrderFields);
  EXPECT_EQ(Chosen(Value("DTCIf", "test", "%#order.Or|>5%"), "OrderTotal"),
            Value("DTCIf", "test", "%#order.OrderTotal#|>5%"));
  EXPECT_EQ(Chosen(Value("DTCIf", "test", "%#order.Or|derID#>5%"), "OrderTotal"),
            Value("DTCIf", "test", "%#order.OrderTotal#|>5%"));
  Labels both = kContactFields;
  both.insert(both.end(), kOrderFields.begin(), kOrderFields.end());
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "value", "#|")), both);
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "value", "#c|")), kContactFields);
  EXPECT_EQ(Chosen(Value("DTCPrint", "value", "1+#|"), "OrderID"),
            Value("DTCPrint", "value", "1+#order.OrderID#|"));
  EXPECT_EQ(LabelsAt(Value("DTCPrint", "value", "#order.OrderID#|")), Labels());
}

TEST_F(OffersTest, ReferencesInContents) {
  const std::string content = "kv:@lt;kv:contact field=kv:@quot;La|kv:@quot;/kv:@gt;";
  EXPECT_EQ(LabelsAt(Value("DTCIf", "on-true", content)), kContactFields);
  EXPECT_EQ(Chosen(Value("DTCIf", "on-true", content), "Email"),
            Value("DTCIf", "on-true", "kv:@lt;kv:contact field=kv:@quot;Email|kv:@quot;/kv:@gt;"));
  EXPECT_EQ(LabelsAt(Value("DTCIf", "on-true", "&lt;kv:order field=&quot;|")), kOrderFields);
  EXPECT_EQ(LabelsAt(Value("DTCIf", "on-true", "<kv:order field='|")), kOrderFields);
  EXPECT_EQ(LabelsAt(Value("DTCIf", "on-true", "kv:@lt;kv:contact format=kv:@quot;|")), Labels());
}

TEST_F(OffersTest, ReferencesInThePagesOwnText) {
  EXPECT_EQ(LabelsAt("<p><kv:contact field=\"|"), kContactFields);
  EXPECT_EQ(LabelsAt("<p><kv:order\nfield=|"), kOrderFields);
  EXPECT_EQ(LabelsAt("<p title=\"#customer.|\">"), kContactFields);
  EXPECT_EQ(LabelsAt("<p>#cust|"), kContactFields);
  EXPECT_EQ(LabelsAt("<p>#|"), Labels());
  EXPECT_EQ(LabelsAt("<p style=\"color:#c|\">"), kContactFields);
  EXPECT_EQ(LabelsAt("<a href=\"#top\">#fff |"), Labels());
  EXPECT_EQ(LabelsAt("|"), Labels());
  EXPECT_EQ(Chosen("<p>#customer.|", "Straße"), "<p>#customer.Straße#|");
}

TEST_F(OffersTest, WritesTheEncodingOfThePage) {
  const std::string head = "<meta charset=\"windows-1252\">";
  EXPECT_EQ(Chosen(head + "#customer.|", "Straße"), head +
                                                        "#customer.Stra\xDF"
                                                        "e#|");
  const office::Office::Description greek{{{"Ωmega", "", 0}}, {}, {}};
  const auto at = [&](const std::string& text) {
    return OffersAt(page::Page(head + text), head.size() + text.size(), &greek);
  };
  EXPECT_TRUE(at("#customer.").empty()) << "the page cannot hold it";
  const std::vector<Offer> offers =
      at("<object classid=\"progid:KVOPDesignObjects.DTCContact\"><param name=field value=\"");
  ASSERT_EQ(offers.size(), 1U);
  EXPECT_EQ(offers[0].edit.bytes, "&#937;mega");
}

TEST_F(OffersTest, AnyPlaceOfAPageOrOfItsBeginning) {
  const std::string text =
      "x<kv:contact field='a'>" +
      In("DTCIf",
         "<param name=\"test\" value='#order.x# \"'>\r\n"
         "<param name=on-true value=kv:@lt;kv:contact></param>") +
      "<!--<object classid=\"progid:KVOPDesignObjects.DTCPrint\"--> #customer.é";
  for (std::size_t place = 0; place <= text.size(); ++place)
    for (const std::string& typed : {text, text.substr(0, place)})
      for (const Offer& offer : OffersAt(page::Page(typed), place, &kOffice)) {
        ASSERT_LE(offer.edit.begin, place);
        ASSERT_LE(place, offer.edit.end);
        ASSERT_LE(offer.edit.end, typed.size());
        ASSERT_LE(offer.caret, offer.edit.bytes.size());
      }
}

}  // namespace
}  // namespace kvo::assist
