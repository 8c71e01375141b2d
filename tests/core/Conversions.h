// Expected conversions of texts to whole numbers and flags. Shared by the tests of our conversions
// and those of Windows, which must agree.
#pragma once

#include <cstdint>

namespace kvo {

inline constexpr int kMismatch = 13;
inline constexpr int kOverflow = 6;

template <class T>
struct Conversion {
  const char* text;
  int error;  // the number of the run-time error; 0 for none
  T value;
};

// clang-format off
inline constexpr Conversion<std::int32_t> kWholeNumbers[] = {
    {" 5 ", 0, 5},
    {"5,5", 0, 6},
    {"4,5", 0, 4},
    {"-4,5", 0, -4},
    {"-5,5", 0, -6},
    {"5.5", 0, 55},
    {"1.000", 0, 1000},
    {"&H10", 0, 16},
    {"&hFFFFFFFF", 0, -1},
    {"1e2", 0, 100},
    {"1E+2", 0, 100},
    {"25e-1", 0, 2},
    {"1e-400", 0, 0},
    {"+7", 0, 7},
    {"-7", 0, -7},
    {",5", 0, 0},
    {"7,", 0, 7},
    {"2147483647", 0, 2147483647},
    {"-2147483648", 0, INT32_MIN},
    {"2147483648", kOverflow, 0},
    {"99999999999", kOverflow, 0},
    {"1e999", kOverflow, 0},
    {"&H123456789", kOverflow, 0},
    {"", kMismatch, 0},
    {" ", kMismatch, 0},
    {"abc", kMismatch, 0},
    {"1 2", kMismatch, 0},
    {"1,2,3", kMismatch, 0},
    {"--1", kMismatch, 0},
    {"1e", kMismatch, 0},
    {",", kMismatch, 0},
    {"50%", kMismatch, 0},
    {"inf", kMismatch, 0},
    {"nan", kMismatch, 0},
    {"0x10", kMismatch, 0},
};

inline constexpr Conversion<bool> kFlags[] = {
    {"true", 0, true},
    {"TRUE", 0, true},
    {"False", 0, false},
    {"#TRUE#", 0, true},
    {"#FALSE#", 0, false},
    {"0", 0, false},
    {"1", 0, true},
    {"-1", 0, true},
    {"0,5", 0, true},
    {"0,0", 0, false},
    {"", kMismatch, false},
    {"yes", kMismatch, false},
    {"wahr", kMismatch, false},
    {" true", kMismatch, false},
};
// clang-format on

}  // namespace kvo
