// Numbers as text: the texts that the standard requires of to_chars, even where the standard
// library lacks it for floating-point numbers.
#include "common/values/Floating.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kvo {
namespace {

struct Written {
  double number;
  const char* text;
  const char* fixed;
};

const Written kWritten[] = {
    {0, "0", "0"},
    {-0.0, "-0", "-0"},
    {0.1, "0.1", "0.1"},
    {-1234.5, "-1234.5", "-1234.5"},
    {99999, "99999", "99999"},
    {100000, "1e+05", "100000"},
    {0.001, "0.001", "0.001"},
    {0.0001, "1e-04", "0.0001"},
    {0.00001, "1e-05", "0.00001"},
    {1.0 / 3, "0.3333333333333333", "0.3333333333333333"},
    // Writes all digits of a whole number, although fewer would read back as it.
    {123456789012345680000.0, "123456789012345683968", "123456789012345683968"},
    {1e23, "1e+23", "99999999999999991611392"},
    // The nearest 16 digits do not read back as this power of two; their neighbour does.
    {0x1p-44, "5.684341886080802e-14", "0.00000000000005684341886080802"},
    {0x1p-1074, "5e-324", nullptr},
    {std::numeric_limits<double>::max(), "1.7976931348623157e+308", nullptr},
};

TEST(Floating, IsWrittenWithTheFewestDigits) {
  for (const Written& written : kWritten) {
    EXPECT_EQ(ShortestText(written.number), written.text);
    if (written.fixed != nullptr) {
      EXPECT_EQ(ShortestFixedText(written.number), written.fixed);
    }
  }
}

TEST(Floating, ReadsAsWhatWasWritten) {
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    const double power = std::ldexp(1.0, exponent);
    for (const double number : {power, -power / 3, std::nextafter(power, 0.0)}) {
      EXPECT_EQ(ReadFloating(ShortestText(number)), number) << number;
      EXPECT_EQ(ReadFloating(ShortestFixedText(number)), number) << number;
    }
  }
}

TEST(Floating, ReadsInfinityAndZeroOutOfRange) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(ReadFloating("1e400"), kInfinity);
  EXPECT_EQ(ReadFloating("-0.1e99999999999999999999"), -kInfinity);
  EXPECT_EQ(ReadFloating("1.7976931348623159e308"), kInfinity);
  EXPECT_EQ(ReadFloating("0e999"), 0);
  EXPECT_EQ(ReadFloating("12e-99999999999999999999"), 0);
  EXPECT_TRUE(std::signbit(ReadFloating("-1e-400")));
  EXPECT_EQ(ReadFloating("4e-324"), 0x1p-1074);  // the smallest positive double
}

}  // namespace
}  // namespace kvo
