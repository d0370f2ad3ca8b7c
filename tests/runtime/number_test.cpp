// Standard number text, the leading-number parser, rounding and the
// arithmetic faults. Every expected text is "%.15G" worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "runtime/error.hpp"
#include "support/error_of.hpp"
#include "runtime/number.hpp"

using namespace ravelo;

namespace {
using test::ErrorOf;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
}  // namespace

TEST(NumText, BlankSignZeroAndExponentForms) {
    EXPECT_EQ(NumText(25.0), " 25");
    EXPECT_EQ(NumText(0.0), " 0");
    EXPECT_EQ(NumText(-0.0), " 0");
    EXPECT_EQ(NumText(0.5), " .5");
    EXPECT_EQ(NumText(-0.25), "-.25");
    EXPECT_EQ(NumText(10.5), " 10.5");  // only a zero at the very start goes
    // Fixed form down to 1E-4 and up to 15 digits before the point.
    EXPECT_EQ(NumText(0.0001), " .0001");
    EXPECT_EQ(NumText(1e-05), " 1E-05");
    EXPECT_EQ(NumText(1e14), " 100000000000000");
    EXPECT_EQ(NumText(1e15), " 1E+15");
    EXPECT_EQ(NumText(-1.5e-7), "-1.5E-07");
    EXPECT_EQ(NumText(1e100), " 1E+100");
    EXPECT_EQ(NumTextBare(25.0), "25");
    EXPECT_EQ(NumTextBare(0.75), ".75");
    EXPECT_EQ(NumText(7LL), " 7");
    EXPECT_EQ(NumText(-7LL), "-7");
    EXPECT_EQ(NumText(0LL), " 0");
}

TEST(NumText, FifteenSignificantDigits) {
    EXPECT_EQ(NumText(0.1 + 0.2), " .3");  // 0.300000000000000044 rounds to .3
    EXPECT_EQ(NumText(1.0 / 3), " .333333333333333");
    EXPECT_EQ(NumText(2.0 / 3), " .666666666666667");
    EXPECT_EQ(NumText(123456789012345678.0), " 1.23456789012346E+17");
    EXPECT_EQ(NumText(1.00000000000006), " 1.00000000000006");
    EXPECT_EQ(NumText(999999999999999.9), " 1E+15");  // rounding carries into the exponent
}

TEST(NumText, ValuesOfFewDecimalsAsTheCLibraryWritesThem) {
    // Coordinates and charges take a shorter way than other values; its
    // texts must be those of "%.15G", around its limits too.
    std::mt19937_64 random(7);
    std::uniform_int_distribution<long long> whole(-2'000'000'000'000LL, 2'000'000'000'000LL);
    std::uniform_int_distribution<int> places(0, 8);
    std::vector<double> values = {1e-4, 9.9999e-5, 999999999.5, 1e9, 0.1 + 0.2, 123456.000001, 1e-6};
    for (int i = 0; i < 200000; ++i) values.push_back(static_cast<double>(whole(random)) / std::pow(10.0, places(random)));
    for (const double value : values) {
        if (value == 0) continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.15G", value);
        std::string text = expected;
        const std::size_t zero = text[0] == '-' ? 1 : 0;
        if (text.compare(zero, 2, "0.") == 0) text.erase(zero, 1);
        ASSERT_EQ(NumTextBare(value), text) << expected;
    }
}

TEST(Val, DecimalsAsTheCLibraryReadsThem) {
    std::mt19937_64 random(11);
    std::uniform_int_distribution<int> digit(0, 9), length(1, 18), point(0, 18);
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        const int n = length(random), at = point(random);
        for (int k = 0; k < n; ++k) {
            if (k == at) text.push_back('.');
            text.push_back(static_cast<char>('0' + digit(random)));
        }
        ASSERT_EQ(Val(text), std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_EQ(Val("-" + text), -std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(Val, LeadingNumberForms) {
    EXPECT_EQ(Val("1e-5"), 1e-05);
    EXPECT_EQ(Val("1D3"), 1000);
    EXPECT_EQ(Val(" -3.5e+2xyz"), -350);
    EXPECT_EQ(Val("  +7"), 7);
    EXPECT_EQ(Val("-.5"), -0.5);
    EXPECT_EQ(Val("12 34"), 12);
    EXPECT_EQ(Val("3,5"), 3);
}

TEST(Val, WhereTheNumberStops) {
    EXPECT_EQ(Val("1E"), 1);      // a letter without digits ends the number before it
    EXPECT_EQ(Val("1E+"), 1);
    EXPECT_EQ(Val("2e5x"), 200000);
    EXPECT_EQ(Val("4Dx"), 4);
    EXPECT_EQ(Val(".5.5"), 0.5);
    EXPECT_EQ(Val("abc"), 0);
    EXPECT_EQ(Val("- 5"), 0);
    EXPECT_EQ(Val(""), 0);
    EXPECT_EQ(Val("."), 0);
    EXPECT_EQ(Val("\t5"), 0);  // only blanks are skipped
    EXPECT_EQ(Val("inf"), 0);
}

TEST(Val, RangeOfADouble) {
    EXPECT_EQ(ErrorOf([] { Val("1e400"); }), 6);
    EXPECT_EQ(ErrorOf([] { Val("-1D309"); }), 6);
    EXPECT_EQ(ErrorOf([] { Val("1e99999999999999999999"); }), 6);
    EXPECT_EQ(Val("1e-400"), 0);
    EXPECT_EQ(Val("0e99999"), 0);
    EXPECT_EQ(Val("0.000001e310"), 1e304);  // the exponent alone is out of range, the value is not
    EXPECT_EQ(Val("12345678901234567890"), 12345678901234567890.0);
}

TEST(Rounding, HalvesGoToEven) {
    EXPECT_EQ(RoundHalfEven(2.5), 2);
    EXPECT_EQ(RoundHalfEven(3.5), 4);
    EXPECT_EQ(RoundHalfEven(-2.5), -2);
    EXPECT_EQ(RoundHalfEven(-3.5), -4);
    EXPECT_EQ(RoundHalfEven(0.5), 0);
    EXPECT_EQ(RoundHalfEven(2.5000001), 3);
    EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.5), -2147483648LL);  // the half goes to the even end, inside
    EXPECT_EQ(ToInt16(32766.5), 32766);
    EXPECT_EQ(ToInt16(-32768.5), -32768);
}

TEST(Rounding, OutOfRangeIsOverflow) {
    EXPECT_EQ(ErrorOf([] { ToInt32(2147483647.5); }), 6);  // rounds to 2^31
    EXPECT_EQ(ErrorOf([] { ToInt32(-2147483649.0); }), 6);
    EXPECT_EQ(ErrorOf([] { ToInt32(kNaN); }), 6);
    EXPECT_EQ(ErrorOf([] { ToInt16(32767.5); }), 6);
    EXPECT_EQ(ErrorOf([] { ToInt16(-32769); }), 6);
}

TEST(Arithmetic, ClassicFaults) {
    EXPECT_EQ(CheckedResult(1.5), 1.5);
    EXPECT_EQ(ErrorOf([] { CheckedResult(kInf); }), 6);
    EXPECT_EQ(ErrorOf([] { CheckedResult(kNaN); }), 6);
    EXPECT_EQ(Divide(7, 2), 3.5);
    EXPECT_EQ(ErrorOf([] { Divide(1, 0); }), 11);
    EXPECT_EQ(ErrorOf([] { Divide(-1, -0.0); }), 11);
    EXPECT_EQ(ErrorOf([] { Divide(0, 0); }), 6);
    EXPECT_EQ(ErrorOf([] { Divide(1e308, 1e-308); }), 6);
    EXPECT_EQ(Power(-2, 3), -8);
    EXPECT_EQ(Power(0, 0), 1);
    EXPECT_EQ(ErrorOf([] { Power(0, -1); }), 11);
    EXPECT_EQ(ErrorOf([] { Power(-8, 1.0 / 3); }), 5);
    EXPECT_EQ(ErrorOf([] { Power(10, 400); }), 6);
    EXPECT_EQ(Log(1), 0);
    EXPECT_EQ(ErrorOf([] { Log(0); }), 5);
}
