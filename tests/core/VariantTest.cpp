#include "common/values/Variant.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "common/values/Object.h"
#include "common/values/RuntimeError.h"
#include "tests/core/Conversions.h"
#include "tests/core/ErrorOf.h"

namespace kvo {
namespace {

class WholeNumber : public testing::TestWithParam<Conversion<std::int32_t>> {};
TEST_P(WholeNumber, FromGermanText) {
  const Conversion<std::int32_t>& expected = GetParam();
  try {
    EXPECT_EQ(ToInteger(Variant(expected.text)), expected.value) << expected.text;
    EXPECT_EQ(expected.error, 0) << expected.text;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), expected.error) << expected.text;
  }
}
INSTANTIATE_TEST_SUITE_P(Table, WholeNumber, testing::ValuesIn(kWholeNumbers));

TEST(ParseNumber, TooLargeIsInfiniteAndTooSmallIsNothing) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::string zeros(400, '0');
  EXPECT_EQ(ParseNumber("1" + zeros), kInfinity);
  EXPECT_EQ(ParseNumber("-1" + zeros), -kInfinity);
  EXPECT_EQ(ParseNumber("1" + zeros + "e-1"), kInfinity);
  EXPECT_EQ(ParseNumber("1e999999999999999999999"), kInfinity);
  EXPECT_EQ(ParseNumber("10e9223372036854775807"), kInfinity);
  EXPECT_EQ(ParseNumber("0," + zeros + "1"), 0);
  EXPECT_EQ(ParseNumber("0," + zeros + "1e1"), 0);
  EXPECT_EQ(ParseNumber("1e-999999999999999999999"), 0);
  EXPECT_EQ(ParseNumber("0e999"), 0);
  EXPECT_EQ(ParseNumber("1" + zeros + "e-400"), 1);
  EXPECT_EQ(ParseNumber("0," + zeros + "1e401"), 1);
}

class Flag : public testing::TestWithParam<Conversion<bool>> {};
TEST_P(Flag, FromText) {
  const Conversion<bool>& expected = GetParam();
  try {
    EXPECT_EQ(ToFlag(Variant(expected.text)), expected.value) << expected.text;
    EXPECT_EQ(expected.error, 0) << expected.text;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), expected.error) << expected.text;
  }
}
INSTANTIATE_TEST_SUITE_P(Table, Flag, testing::ValuesIn(kFlags));

TEST(VariantText, OfEachKind) {
  EXPECT_EQ(ToText(Variant()), "");
  EXPECT_EQ(ToText(Variant(true)), "True");
  EXPECT_EQ(ToText(Variant(false)), "False");
  EXPECT_EQ(ToText(Variant(-12)), "-12");
  EXPECT_EQ(ToText(Variant(1.5)), "1,5");
  EXPECT_EQ(ToText(Variant("ä")), "ä");
}
TEST(VariantText, OfAnObjectIsATypeMismatch) {
  EXPECT_EQ(ErrorOf([] { ToText(Variant(ObjectRef(std::make_shared<Collection>()))); }), 13);
}
TEST(VariantObject, EmptyIsObjectNotSet) {
  EXPECT_EQ(ErrorOf([] { ToObject(Variant()); }), 91);
}
TEST(VariantInteger, TrueIsAllBits) { EXPECT_EQ(ToInteger(Variant(true)), -1); }

TEST(RuntimeErrors, DescribeThemselvesInBothLanguages) {
  const RuntimeError error(ErrorNumber::typeMismatch, "\"abc\"");
  EXPECT_EQ(error.Text(Language::german), "Typen unverträglich: \"abc\"");
  EXPECT_EQ(error.Text(Language::english), "Type mismatch: \"abc\"");
}

TEST(Collection, IsEnumeratedInOrderAndIndexedFromOne) {
  Collection collection;
  collection.Add("a");
  collection.Add("b");
  std::string walked;
  ForEach(collection, [&](const Variant& item) { walked += ToText(item); });
  EXPECT_EQ(walked, "ab");
  EXPECT_EQ(collection.Item(Variant(1)), Variant("a"));
  EXPECT_EQ(collection.Get("count"), Variant(2));
  EXPECT_THROW(collection.Item(Variant(0)), RuntimeError);
  EXPECT_THROW(collection.Item(Variant(3)), RuntimeError);
}

}  // namespace
}  // namespace kvo
