#include "common/Variant.h"

#include <gtest/gtest.h>

#include "common/Object.h"
#include "common/RuntimeError.h"

namespace kvo {
namespace {

constexpr int kMismatch = 13;
constexpr int kOverflow = 6;

struct IntegerCase {
  const char* text;
  int error;
  int value;
};
class WholeNumber : public testing::TestWithParam<IntegerCase> {};
TEST_P(WholeNumber, FromGermanText) {
  const IntegerCase& expected = GetParam();
  try {
    EXPECT_EQ(ToInteger(Variant(expected.text)), expected.value) << expected.text;
    EXPECT_EQ(expected.error, 0) << expected.text;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), expected.error) << expected.text;
  }
}
INSTANTIATE_TEST_SUITE_P(
    Table, WholeNumber,
    testing::Values(
        IntegerCase{" 5 ", 0, 5}, IntegerCase{"5,5", 0, 6}, IntegerCase{"4,5", 0, 4},
        IntegerCase{"-4,5", 0, -4}, IntegerCase{"-5,5", 0, -6}, IntegerCase{"5.5", 0, 55},
        IntegerCase{"1.000", 0, 1000}, IntegerCase{"&H10", 0, 16}, IntegerCase{"&hFFFFFFFF", 0, -1},
        IntegerCase{"1e2", 0, 100}, IntegerCase{"1E+2", 0, 100}, IntegerCase{"25e-1", 0, 2},
        IntegerCase{"1e-400", 0, 0}, IntegerCase{"+7", 0, 7}, IntegerCase{"-7", 0, -7},
        IntegerCase{",5", 0, 0}, IntegerCase{"7,", 0, 7}, IntegerCase{"2147483647", 0, 2147483647},
        IntegerCase{"-2147483648", 0, INT32_MIN}, IntegerCase{"2147483648", kOverflow, 0},
        IntegerCase{"99999999999", kOverflow, 0}, IntegerCase{"1e999", kOverflow, 0},
        IntegerCase{"&H123456789", kMismatch, 0}, IntegerCase{"", kMismatch, 0},
        IntegerCase{" ", kMismatch, 0}, IntegerCase{"abc", kMismatch, 0},
        IntegerCase{"1 2", kMismatch, 0}, IntegerCase{"1,2,3", kMismatch, 0},
        IntegerCase{"--1", kMismatch, 0}, IntegerCase{"1e", kMismatch, 0},
        IntegerCase{",", kMismatch, 0}, IntegerCase{"50%", kMismatch, 0},
        IntegerCase{"inf", kMismatch, 0}, IntegerCase{"nan", kMismatch, 0},
        IntegerCase{"0x10", kMismatch, 0}));

struct FlagCase {
  const char* text;
  int error;
  bool value;
};
class Flag : public testing::TestWithParam<FlagCase> {};
TEST_P(Flag, FromText) {
  const FlagCase& expected = GetParam();
  try {
    EXPECT_EQ(ToFlag(Variant(expected.text)), expected.value) << expected.text;
    EXPECT_EQ(expected.error, 0) << expected.text;
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), expected.error) << expected.text;
  }
}
INSTANTIATE_TEST_SUITE_P(
    Table, Flag,
    testing::Values(FlagCase{"true", 0, true}, FlagCase{"TRUE", 0, true},
                    FlagCase{"False", 0, false}, FlagCase{"#TRUE#", 0, true},
                    FlagCase{"#FALSE#", 0, false}, FlagCase{"0", 0, false}, FlagCase{"1", 0, true},
                    FlagCase{"-1", 0, true}, FlagCase{"0,5", 0, true}, FlagCase{"0,0", 0, false},
                    FlagCase{"", kMismatch, false}, FlagCase{"yes", kMismatch, false},
                    FlagCase{"wahr", kMismatch, false}, FlagCase{" true", kMismatch, false}));

TEST(VariantText, OfEachKind) {
  EXPECT_EQ(ToText(Variant()), "");
  EXPECT_EQ(ToText(Variant(true)), "True");
  EXPECT_EQ(ToText(Variant(false)), "False");
  EXPECT_EQ(ToText(Variant(-12)), "-12");
  EXPECT_EQ(ToText(Variant(1.5)), "1,5");
  EXPECT_EQ(ToText(Variant("ä")), "ä");
}
TEST(VariantText, OfAnObjectIsATypeMismatch) {
  EXPECT_THROW(ToText(Variant(ObjectRef(std::make_shared<Collection>()))), RuntimeError);
}
TEST(VariantObject, NothingIsObjectNotSet) {
  try {
    ToObject(Variant());
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 91);
  }
}
TEST(VariantInteger, TrueIsAllBits) { EXPECT_EQ(ToInteger(Variant(true)), -1); }

TEST(RuntimeErrors, DescribeThemselvesInBothLanguages) {
  const RuntimeError error(ErrorNumber::typeMismatch, "\"abc\"");
  EXPECT_EQ(error.Description(Language::german), "Typen unverträglich: \"abc\"");
  EXPECT_EQ(error.Description(Language::english), "Type mismatch: \"abc\"");
}

TEST(Collection, IsWalkedInOrderAndIndexedFromOne) {
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
