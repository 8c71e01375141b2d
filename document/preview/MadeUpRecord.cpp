// A record for pages without a file of records.
#include <algorithm>
#include <iterator>
#include <span>

#include "common/values/Ascii.h"
#include "document/preview/OfficeFields.h"
#include "document/preview/Records.h"

namespace kvo::preview {
namespace {

// The parts of a field's name, in lower case: "PaymentMethod" and "payment_method" have two.
std::vector<std::string> WordsOf(std::string_view name) {
  std::vector<std::string> words(1);
  bool lower = false;  // whether the character before is a lower-case letter
  for (const char c : name) {
    const bool upper = c >= 'A' && c <= 'Z';
    const bool inside = IsLetter(c) || IsDigit(c) || static_cast<unsigned char>(c) >= 0x80;
    if ((!inside || (upper && lower)) && !words.back().empty()) words.emplace_back();
    if (inside) words.back() += LowerAscii(c);
    lower = inside && !upper;
  }
  return words;
}

// The names of a field, prepared for comparisons.
class FieldWords {
 public:
  explicit FieldWords(const OfficeField& field) {
    for (const std::string* name : {&field.sqlName, &field.displayName}) {
      const std::vector<std::string> words = WordsOf(*name);
      words_.insert(words_.end(), words.begin(), words.end());
      for (const std::string& word : words) joined_ += word;
      joined_ += ' ';
    }
  }

  // Whether one of `words`, divided by "|", occurs in a name. A word in "<>" has to be a whole one,
  // as "ort" and "id" are parts of many others.
  bool HaveAny(std::string_view words) const {
    for (std::size_t at = 0; at <= words.size();) {
      const std::size_t end = std::min(words.find('|', at), words.size());
      if (Have(words.substr(at, end - at))) return true;
      at = end + 1;
    }
    return false;
  }

 private:
  bool Have(std::string_view word) const {
    if (!word.starts_with('<')) return joined_.find(word) != std::string::npos;
    return std::ranges::find(words_, word.substr(1, word.size() - 2)) != words_.end();
  }

  std::vector<std::string> words_;
  std::string joined_;  // each name without what divides its words, so that "first_name" is found
};

template <class Value>
struct Sample {
  std::string_view words;
  Value value;
};

constexpr Sample<std::string_view> kTexts[] = {
    {"mail", "erika.muster@kunde.example"},
    {"vorname|firstname|givenname|forename", "Erika"},
    {"nachname|lastname|surname|familienname|familyname", "Muster"},
    {"anrede|salutation", "Frau"},
    {"<titel>|<title>", "Dr."},
    {"firma|firmen|company|unternehmen", "Muster GmbH"},
    {"plz|postleitzahl|<zip>|zipcode|postcode|postalcode", "12345"},
    {"straße|strasse|street", "Musterweg 7"},
    {"<ort>|wohnort|<city>|<town>|<stadt>", "Musterstadt"},
    {"<land>|country", "Deutschland"},
    {"telefon|telephone|phone|<tel>|<fon>|mobil|handy|<fax>", "030 23125042"},
    {"adresse|address|anschrift", "Musterweg 7, 12345 Musterstadt"},
    {"zahlung|payment", "Rechnung"},
    {"sendung|tracking|paket|parcel", "MUSTER-0042"},
    {"gutschein|voucher|coupon", "MUSTER-2042"},
    {"währung|waehrung|currency", "EUR"},
    {"sprache|language", "de"},
    {"<url>|<link>|website|webseite|homepage", "https://www.kunde.example/"},
    {"nummer|number|<nr>|<no>|<id>", "4711"},
    {"<name>|fullname|kundenname|customername", "Erika Muster"},
};

// Two positions, and what an order of them costs.
constexpr double kFirstPrice = 12.5;
constexpr std::int32_t kFirstQuantity = 2;
constexpr double kSecondPrice = 7.9;
constexpr double kShipping = 4.9;
constexpr double kTotal = kFirstQuantity * kFirstPrice + kSecondPrice + kShipping;
constexpr std::int32_t kOrderNumber = 4711;
constexpr std::string_view kOrderDate = "24.11.2025";
constexpr std::string_view kToday = "01.12.2025";  // the same each day, as all of the record

constexpr Sample<double> kNumbers[] = {
    {"versand|shipping|porto|postage", kShipping},
    {"anzahl|count|menge|quantity", 3},
    {"total|summe|betrag|amount|gesamt", kTotal},
    {"preis|price", kFirstPrice},
    {"punkte|points", 1250},
    {"rabatt|discount|prozent|percent", 10},
    {"nummer|number|<nr>|<no>|<id>|orderid", kOrderNumber},
    {"plz|postleitzahl|<zip>|zipcode|postcode|postalcode", 12345},
    {"<alter>|<age>", 42},
    {"<jahr>|<year>|jahrgang", 1983},
};

constexpr Sample<std::string_view> kDates[] = {
    {"geburt|birth", "17.05.1983"},
    {"seit|since|erst|first", "01.03.2019"},
    {"bestell|order|kauf|purchase", kOrderDate},
};

// The value of the first sample that fits the field, else `other`.
template <class Value>
Value Choose(const OfficeField& field, std::span<const Sample<Value>> samples, Value other) {
  const FieldWords words(field);
  for (const Sample<Value>& sample : samples)
    if (words.HaveAny(sample.words)) return sample.value;
  return other;
}

Variant Number(double number) {
  const auto whole = static_cast<std::int32_t>(number);
  return whole == number ? Variant(whole) : Variant(number);
}

Variant MadeUpValue(const OfficeField& field) {
  if (field.dataType == kNumberField) return Number(Choose<double>(field, kNumbers, 42));
  if (field.dataType == kFlagField) return true;
  if (field.dataType == kDateField) return Choose<std::string_view>(field, kDates, "14.11.2025");
  const std::string& name = field.displayName.empty() ? field.sqlName : field.displayName;
  const std::string other = "Muster (" + name + ')';
  return Choose<std::string_view>(field, kTexts, other);
}

Values MadeUpPosition(std::string_view number, std::string_view description, std::int32_t quantity,
                      double price) {
  const Variant values[] = {number, description, quantity, price, Number(quantity * price)};
  Values position;
  for (std::size_t i = 0; i < std::size(values); ++i)
    position.Set(kPositionColumns[i].name, values[i]);
  return position;
}

}  // namespace

Record MadeUpRecord(const ObjectRef& office) {
  Record record;
  record.name = "Erika Muster";
  record.madeUp = true;
  record.Group(kCustomer);
  Values& order = record.Group(kOrder);
  // What pages may name whatever fields the office has.
  order.Set("orderid", kOrderNumber);
  order.Set("date", kOrderDate);
  order.Set("total", kTotal);
  for (const OfficeField& field : FieldsOf(office))
    record.Group(field.group).Set(field.sqlName, MadeUpValue(field));
  record.positions = {MadeUpPosition("M-1001", "Musterartikel", kFirstQuantity, kFirstPrice),
                      MadeUpPosition("M-1002", "Zweiter Musterartikel", 1, kSecondPrice)};
  record.Group(kConfig).Set("company-name", "Muster-Versand GmbH");
  record.Group("system").Set("date", kToday);
  return record;
}

}  // namespace kvo::preview
