#include <gtest/gtest.h>

#include "common/values/GermanFormat.h"

namespace kvo {
namespace {

const Variant kDate = "23.04.2004 16:09:53";

TEST(GermanFormat, GroupsByPointAndWritesDecimalsAfterAComma) {
  EXPECT_EQ(GermanFormat(1134.23, "#,##0.00"), "1.134,23");
  EXPECT_EQ(GermanFormat(1134.23, "#,##0"), "1.134");
  EXPECT_EQ(GermanFormat(1234567.0, "#,##0.00"), "1.234.567,00");
  EXPECT_EQ(GermanFormat(1134.23, "0.000"), "1134,230");
  EXPECT_EQ(GermanFormat(0.5, "#.##"), ",5");
  EXPECT_EQ(GermanFormat(7, "000"), "007");
  EXPECT_EQ(GermanFormat(-1134.23, "#,##0.00"), "-1.134,23");
}

TEST(GermanFormat, RoundsDecimalHalvesAwayFromZero) {
  EXPECT_EQ(GermanFormat(2.5, "0"), "3");
  EXPECT_EQ(GermanFormat(-2.5, "0"), "-3");
  EXPECT_EQ(GermanFormat(1.005, "0.00"), "1,01");
  EXPECT_EQ(GermanFormat(999.995, "#,##0.00"), "1.000,00");
  EXPECT_EQ(GermanFormat(-0.001, "0.00"), "0,00");
}

TEST(GermanFormat, ReadsATextAsDateAndTime) {
  EXPECT_EQ(GermanFormat(kDate, "dd.mm.yyyy"), "23.04.2004");
  EXPECT_EQ(GermanFormat(kDate, "dd. mmmm yyyy"), "23. April 2004");
  EXPECT_EQ(GermanFormat(kDate, "hh:mm"), "16:09");
  EXPECT_EQ(GermanFormat(kDate, "hh:mm:ss"), "16:09:53");
  EXPECT_EQ(GermanFormat("1.3.2024", "dd.mm.yy"), "01.03.24");
  EXPECT_EQ(GermanFormat("7:05", "h:m"), "7:5");
}

TEST(GermanFormat, MonthsBecomeMinutesOnlyDirectlyAfterAnHour) {
  EXPECT_EQ(GermanFormat(kDate, "dd.mm.yyyy hh:mm"), "23.04.2004 16:09");
  EXPECT_EQ(GermanFormat(kDate, "hh:mm mm"), "16:09 04");
  EXPECT_EQ(GermanFormat(kDate, "hh:nn"), "16:09");
}

TEST(GermanFormat, ABackslashMakesTheNextCharacterLiteral) {
  EXPECT_EQ(GermanFormat(kDate, "dd. mmmm yyyy u\\m hh:mm:ss"), "23. April 2004 um 16:09:53");
  EXPECT_EQ(GermanFormat(kDate, "\"dd\" dd"), "dd 23");
}

TEST(GermanFormat, ANumberReplacesItsFirstPlaceholder) {
  EXPECT_EQ(GermanFormat(1.5, "\\x0.00\\y"), "x1,50y");
}

TEST(GermanFormat, NamesDaysAndMonthsInGerman) {
  EXPECT_EQ(GermanFormat(kDate, "dddd, d. mmm"), "Freitag, 23. Apr");
  EXPECT_EQ(GermanFormat("01.03.2004", "ddd d. mmmm"), "Mo 1. März");
}

TEST(GermanFormat, ANumberInADatePatternCountsDays) {
  EXPECT_EQ(GermanFormat(38100.67353, "dd.mm.yyyy hh:mm"), "23.04.2004 16:09");
  EXPECT_EQ(GermanFormat(0, "dd.mm.yyyy"), "30.12.1899");
  EXPECT_EQ(GermanFormat(1.999999, "dd.mm.yyyy hh:mm:ss"), "01.01.1900 00:00:00");
  EXPECT_EQ(GermanFormat(2958465.99998, "dd.mm.yyyy hh:mm:ss"), "31.12.9999 23:59:58");
  const double beyond = 2958465.999999;  // rounded to seconds, the year 10000
  EXPECT_EQ(GermanFormat(beyond, "dd.mm.yyyy hh:mm:ss"), ToText(beyond));
}

TEST(GermanFormat, UnreadableTextsAreReturnedUnchanged) {
  EXPECT_EQ(GermanFormat("morgen", "dd.mm.yyyy"), "morgen");
  EXPECT_EQ(GermanFormat("31.02.2004", "dd.mm.yyyy"), "31.02.2004");
  EXPECT_EQ(GermanFormat("viel", "#,##0"), "viel");
  EXPECT_EQ(GermanFormat("25:00", "hh:mm"), "25:00");
  EXPECT_EQ(GermanFormat("23.04.2004x", "dd.mm.yyyy"), "23.04.2004x");
  EXPECT_EQ(GermanFormat(1e300, "dd.mm.yyyy"), ToText(1e300));
}

}  // namespace
}  // namespace kvo
